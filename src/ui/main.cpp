// The desktop program.
#include <QApplication>
#include <filesystem>

#include "app/cx_application.h"
#include "platform/platform.h"
#include "platform/program_arguments.h"
#include "platform/standard_streams.h"
#include "ui/core/desktop_host.h"
#include "ui/core/main_thread.h"

namespace kelvane {
namespace {

CXApplication makeApplication(Platform& platform, Waiting& waiting, DesktopHost& host)
{
    return {{platform.files(), platform.places(), platform.systemFacts(), platform.clock(), platform.instancePorts(),
             platform.processes(), platform.crashCapture(), platform.textModules(), platform.links(), waiting},
            settingsPorts(platform),
            host};
}

int runProgram(std::vector<std::string> words)
{
    const auto platform = makePlatform();
    const auto waiting = makeWaiting();
    Desktop desktop(*platform);
    DesktopHost host(desktop);
    CXApplication application = makeApplication(*platform, *waiting, host);
    desktop.setApplication(application);
    application.setWake([&application] {
        postToMain([&application] {
            if (!application.dispatchWaiting())
                QCoreApplication::quit();
        });
    });
    if (const auto over = application.start(commandTextFromWords(std::move(words), std::filesystem::current_path()), 1))
        return *over;
    QApplication::setQuitOnLastWindowClosed(false);
    const int code = QApplication::exec();
    application.shutDown();
    return code;
}

}  // namespace
}  // namespace kelvane

int main(int count, char** words)
{
    kelvane::reserveStandardStreams();
    std::vector<std::string> all = kelvane::programArguments(count, words);
    all.insert(all.begin(), "kelvane");
    QApplication application(count, words);
    return kelvane::runProgram(std::move(all));
}
