// The real platform behind a door of its own, for tests that put something else in the place of a port or two.
#pragma once

#include <memory>

#include "platform/platform.h"

namespace kelvane::testing {

class RealPlatform : public Platform {
public:
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
    Processes& processes() override { return real_->processes(); }
    LinkMaker& links() override { return real_->links(); }
    Places& places() override { return real_->places(); }
    SystemFacts& systemFacts() override { return real_->systemFacts(); }
    CrashCapture& crashCapture() override { return real_->crashCapture(); }
    SettingsStore& registry() override { return real_->registry(); }
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
