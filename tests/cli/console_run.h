// Runs the console program in this process, with streams in memory.
#pragma once

#include <functional>
#include <optional>
#include <sstream>
#include <string>

#include "cli/console.h"
#include "platform/file_namespace.h"
#include "support/fake_places.h"
#include "support/memory_file_system.h"
#include "support/memory_run_cache.h"
#include "support/memory_settings_store.h"
#include "support/real_platform.h"

namespace kelvane::testing {

struct ConsoleRun {
    ExitCode code = ExitCode::done;
    std::string out;
    std::string err;
};

// What surrounds a run, where it matters.
struct Surroundings {
    std::optional<unsigned> errorColumns;  // a terminal behind the error stream
    bool cancelled = false;                // Ctrl-C was pressed already
    // What a person answers to each question; without one nobody can be asked.
    std::function<std::optional<std::string>(std::string_view question, CancelFlag& cancel)> answer = nullptr;
};

// The real platform, but for its settings and what is kept between runs, lest those of whoever runs the tests take
// part: the registry and the cache are in memory, and the places of INI files lie where nothing is unless a test puts
// it there.
class QuietPlatform : public RealPlatform {
public:
    MemorySettingsStore settings;
    MemoryRunCaches caches;
    FakePlaces ownPlaces{std::filesystem::temp_directory_path() / "kelvane-no-such-folder"};

    Places& places() override { return ownPlaces; }
    SettingsStore& registry() override { return settings; }
    RunCaches& runCaches() override { return caches; }
};

// The same with its files in memory, where they can be told to fail.
class MemoryPlatform final : public QuietPlatform {
public:
    MemoryFileSystem memory;

    FileSystem& files() override { return memory; }
    ShellNamespace& shell() override { return *shell_; }

private:
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(memory, nullptr, folding());
};

inline ConsoleRun runCli(const Arguments& arguments, const Surroundings& around, Platform& platform)
{
    std::ostringstream out;
    std::ostringstream err;
    CancelFlag cancel;
    if (around.cancelled)
        cancel.cancel();
    Console console{out, err, cancel, around.errorColumns, {}};
    if (around.answer) {
        console.ask = [&](std::string_view question) {
            err << question;
            return around.answer(question, cancel);
        };
    }
    const ExitCode code = runConsole(arguments, platform, console);
    return {code, out.str(), err.str()};
}

inline ConsoleRun runCli(const Arguments& arguments, const Surroundings& around = {})
{
    QuietPlatform platform;
    return runCli(arguments, around, platform);
}

}  // namespace kelvane::testing
