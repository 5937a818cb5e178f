// Runs the console program in this process, with streams in memory.
#pragma once

#include <optional>
#include <sstream>
#include <string>

#include "cli/console.h"
#include "platform/file_namespace.h"
#include "support/memory_file_system.h"
#include "support/memory_settings_store.h"

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
};

// The real platform, but for its files and settings: those are in memory and can be told to fail.
class MemoryPlatform final : public Platform {
public:
    MemoryFileSystem memory;
    MemorySettingsStore settings;

    FileSystem& files() override { return memory; }
    FileOutput& output() override { return real_->output(); }
    ShellNamespace& shell() override { return *shell_; }
    PathRules& paths() override { return real_->paths(); }
    TextFolding& folding() override { return real_->folding(); }
    Clock& clock() override { return real_->clock(); }
    Priority& priority() override { return real_->priority(); }
    PropertySystem& properties() override { return real_->properties(); }
    PropertyReaders& readers() override { return real_->readers(); }
    Terminal& terminal() override { return real_->terminal(); }
    Interrupts& interrupts() override { return real_->interrupts(); }
    InstancePorts& instancePorts() override { return real_->instancePorts(); }
    Processes& processes() override { return real_->processes(); }
    LinkMaker& links() override { return real_->links(); }
    Places& places() override { return real_->places(); }
    SystemFacts& systemFacts() override { return real_->systemFacts(); }
    CrashCapture& crashCapture() override { return real_->crashCapture(); }
    SettingsStore& registry() override { return settings; }
    TextModules& textModules() override { return real_->textModules(); }

private:
    std::unique_ptr<Platform> real_ = makePlatform();
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(memory, nullptr, real_->folding());
};

inline ConsoleRun runCli(const Arguments& arguments, const Surroundings& around, Platform& platform)
{
    std::ostringstream out;
    std::ostringstream err;
    CancelFlag cancel;
    if (around.cancelled)
        cancel.cancel();
    const ExitCode code = runConsole(arguments, platform, {out, err, cancel, around.errorColumns, {}});
    return {code, out.str(), err.str()};
}

inline ConsoleRun runCli(const Arguments& arguments, const Surroundings& around = {})
{
    return runCli(arguments, around, *makePlatform());
}

}  // namespace kelvane::testing
