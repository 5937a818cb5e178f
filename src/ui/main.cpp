// The desktop program.
#include <QApplication>
#include <algorithm>
#include <filesystem>
#include <iostream>

#include "app/cx_application.h"
#include "app/desktop_requests.h"
#include "app/version_info.h"
#include "base/desktop_texts/frame.h"
#include "base/utf.h"
#include "platform/desktop_session.h"
#include "platform/platform.h"
#include "platform/program_arguments.h"
#include "platform/standard_streams.h"
#include "ui/core/desktop_host.h"
#include "ui/core/main_thread.h"
#include "ui/core/text.h"
#include "ui/frame/program_look.h"
#include "ui/frame/theme.h"

namespace kelvane {
namespace {

constexpr int noDisplayStatus = 1;

CXApplication makeApplication(Platform& platform, Waiting& waiting, DesktopHost& host)
{
    return {{platform.files(), platform.places(), platform.systemFacts(), platform.clock(), platform.instancePorts(),
             platform.processes(), platform.crashCapture(), platform.textModules(), platform.links(), waiting},
            settingsPorts(platform),
            host};
}

// A click on the program's icon, or "open with" in a file manager. Where no desktop asks, or another process answers
// it already, nothing is lost.
class DesktopDoor {
public:
    // `startedByDesktop`: the first request is why the program was started, and there is a window already.
    DesktopDoor(Platform& platform, bool startedByDesktop) : activation_(makeDesktopActivation())
    {
        std::string port = instancePortNameFor(platform.processes().isElevated());
        auto handOver = handOverRequests(platform.instancePorts(), std::move(port), 1);
        auto service =
            activation_->serve({{"new-window", {}}}, [handOver = std::move(handOver),
                                                      first = startedByDesktop](const DesktopRequest& request) mutable {
                if (!std::exchange(first, false) || !request.words.empty())
                    handOver(request);
            });
        if (service.ok())
            service_ = std::move(service).value();
    }

private:
    std::unique_ptr<DesktopActivation> activation_;
    std::unique_ptr<DesktopService> service_;
};

// What is asked for instead of a window, or nothing. A window program on Windows has nowhere to print it.
std::string answerTo(const std::vector<std::string>& words)
{
    const auto asks = [&](std::string_view word) { return std::find(words.begin(), words.end(), word) != words.end(); };
    if (asks("--help") || asks("-h"))
        return filledText(desktop_text::programUsage);
    const std::string version = toUtf8(CAppVersionInfo::versionText());
    return asks("--version") ? "kelvane " + version.substr(0, version.find(' ')) : std::string();
}

int runProgram(std::vector<std::string> words)
{
    const auto platform = makePlatform();
    const auto waiting = makeWaiting();
    Desktop desktop(*platform);
    DesktopHost host(desktop);
    CXApplication application = makeApplication(*platform, *waiting, host);
    desktop.setApplication(application);
    applyTheme(Theme::system, {});  // of what is asked before there is a window
    application.setWake([&application] {
        postToMain([&application] {
            if (!application.dispatchWaiting())
                QCoreApplication::quit();
        });
    });
    const bool byDesktop = std::find(words.begin(), words.end(), desktopServiceSwitch) != words.end();
    if (const auto over = application.start(commandTextFromWords(std::move(words), std::filesystem::current_path()), 1))
        return *over;
    std::optional<DesktopDoor> door(std::in_place, *platform, byDesktop);
    const int code = QApplication::exec();
    door.reset();  // nobody may come in any more
    application.shutDown();
    desktop.awaitFinished();
    return code;
}

}  // namespace
}  // namespace kelvane

int main(int count, char** words)
{
    kelvane::reserveStandardStreams();
    std::vector<std::string> all = kelvane::programArguments(count, words);
    if (const std::string answer = kelvane::answerTo(all); !answer.empty()) {
        std::cout << answer << std::endl;
        return 0;
    }
    if (!kelvane::displayIsThere()) {
        std::cerr << "kelvane: " << kelvane::filledText(kelvane::desktop_text::noDisplay) << std::endl;
        return kelvane::noDisplayStatus;
    }
    all.insert(all.begin(), "kelvane");
    QApplication application(count, words);
    kelvane::prepareLook();
    return kelvane::runProgram(std::move(all));
}
