// The application core as a program of its own, with windows that nobody sees: for tests that need real processes.
//
//   kelvane-headless -G:LOG [/P] [TARGET]
//
// LOG names a file and, by its path, the instance port: processes with one log are starts of one program. Each window
// adds a line to the log: a number that stands for the process, and the name of its target. A target named "end" closes
// all windows of its process, "crash" ends the process without any leave-taking, as soon as a signal file is there.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include "app/cx_application.h"
#include "platform/native_text.h"
#include "platform/platform.h"
#include "platform/program_arguments.h"
#include "platform/standard_streams.h"
#include "support/fake_crash_capture.h"
#include "support/fake_questions.h"
#include "support/headless/names.h"
#include "support/memory_settings_store.h"

namespace kelvane::testing {
namespace {

[[noreturn]] void crashWhenTold(const std::filesystem::path& log)
{
    while (!std::filesystem::exists(headlessCrashSignal(log)))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::_Exit(9);
}

class LoggingHost final : public ApplicationHost {
public:
    LoggingHost(FileOutput& output, std::filesystem::path log) : output_(output), log_(std::move(log)) {}

    Questions& questions() override { return questions_; }

    std::unique_ptr<Window> makeWindow(CXInstance& instance) override
    {
        const auto& targets = instance.commandLine().targets;
        const std::string target =
            targets.empty() ? std::string() : bytesFromNative(targets.back().filename().native());
        note(target);
        if (target == "crash")
            crashWhenTold(log_);
        if (target == "end")
            application->post(CloseAllWindows{});
        return std::make_unique<SilentWindow>(instance);
    }

    // Another process, or the test that reads, may have the file for a moment.
    void note(const std::string& what)
    {
        for (int attempt = 0; attempt < 200; ++attempt) {
            if (tryToNote(process_ + ' ' + what + '\n'))
                return;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        std::_Exit(3);
    }

    CXApplication* application = nullptr;

private:
    class SilentWindow final : public Window {
    public:
        explicit SilentWindow(CXInstance& instance) : instance_(instance) {}
        void closeRequested() override { instance_.quit(); }

    private:
        CXInstance& instance_;
    };

    bool tryToNote(const std::string& line)
    {
        auto file = output_.append(log_);
        return file.ok() && (*file)->write(std::as_bytes(std::span(line))).ok() && (*file)->close().ok();
    }

    FileOutput& output_;
    std::filesystem::path log_;
    FakeQuestions questions_;
    std::string process_ = std::to_string(std::random_device{}());
};

int run(const std::vector<std::string>& arguments)
{
    const auto platform = makePlatform();
    const auto waiting = makeWaiting();
    MemorySettingsStore registry;
    FakeCrashCapture crashes;
    std::vector<std::string> words{"kelvane-headless"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const auto text = commandTextFromWords(std::move(words), std::filesystem::current_path());
    const std::filesystem::path log =
        nativeFromBytes(parseCommandLine(text, 0, false, [](const auto&) { return false; }).gValue);
    LoggingHost host(platform->output(), log);
    CXApplication application({platform->files(), platform->places(), platform->systemFacts(), platform->clock(),
                               platform->instancePorts(), platform->processes(), crashes, platform->textModules(),
                               platform->links(), *waiting},
                              {platform->files(), platform->output(), registry, platform->places(),
                               platform->systemFacts(), platform->folding(), platform->clock(),
                               [](const std::filesystem::path&) { return std::make_unique<MemorySettingsStore>(); }},
                              host, headlessPortBase(log));
    host.application = &application;
    const int status = application.run(text, 1);
    host.note("ended");
    return status;
}

}  // namespace
}  // namespace kelvane::testing

int main(int count, char** words)
{
    kelvane::reserveStandardStreams();
    return kelvane::testing::run(kelvane::programArguments(count, words));
}
