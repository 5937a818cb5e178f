// The real platform, but for what belongs to the person who runs the tests: settings, places, other programs.
#pragma once

#include <memory>

#include "platform/platform.h"
#include "support/fake_crash_capture.h"
#include "support/fake_places.h"
#include "support/fake_processes.h"
#include "support/memory_settings_store.h"

namespace kelvane::testing {

class HomePlatform final : public Platform {
public:
    // What the program keeps lies below `home`, see FakePlaces.
    explicit HomePlatform(const std::filesystem::path& home) : ownPlaces(home) {}

    FakePlaces ownPlaces;
    FakeProcesses otherPrograms;  // records what was opened
    MemorySettingsStore settingsStore;
    FakeCrashCapture crashes;

    Places& places() override { return ownPlaces; }
    Processes& processes() override { return otherPrograms; }
    SettingsStore& registry() override { return settingsStore; }
    CrashCapture& crashCapture() override { return crashes; }

    FileSystem& files() override { return real_->files(); }
    FileOutput& output() override { return real_->output(); }
    HeldFiles& heldFiles() override { return real_->heldFiles(); }
    FileOperations& fileOperations() override { return real_->fileOperations(); }
    ShellNamespace& shell() override { return real_->shell(); }
    PathRules& paths() override { return real_->paths(); }
    TextFolding& folding() override { return real_->folding(); }
    Clock& clock() override { return real_->clock(); }
    Priority& priority() override { return real_->priority(); }
    PropertySystem& properties() override { return real_->properties(); }
    PropertyReaders& readers() override { return real_->readers(); }
    Terminal& terminal() override { return real_->terminal(); }
    Interrupts& interrupts() override { return real_->interrupts(); }
    InstancePorts& instancePorts() override { return real_->instancePorts(); }
    LinkMaker& links() override { return real_->links(); }
    SystemFacts& systemFacts() override { return real_->systemFacts(); }
    TextModules& textModules() override { return real_->textModules(); }
    TextDecoding& decoding() override { return real_->decoding(); }
    XmlParsing& xml() override { return real_->xml(); }
    PackagedFiles& packages() override { return real_->packages(); }
    FilterPrograms& filters() override { return real_->filters(); }
    WorkerProcesses& workers() override { return real_->workers(); }
    SharedLibraries& libraries() override { return real_->libraries(); }
    RunCaches& runCaches() override { return real_->runCaches(); }

private:
    std::unique_ptr<Platform> real_ = makePlatform();
};

}  // namespace kelvane::testing
