// The ports of one operating system, gathered. Only a main function asks for them; everything else is given what it
// needs by reference.
#pragma once

#include <memory>

#include "platform/archive_folders.h"
#include "platform/clock.h"
#include "platform/crash_capture.h"
#include "platform/file_operations.h"
#include "platform/file_output.h"
#include "platform/file_system.h"
#include "platform/filter_programs.h"
#include "platform/held_files.h"
#include "platform/instance_port.h"
#include "platform/interrupts.h"
#include "platform/link_maker.h"
#include "platform/packaged_files.h"
#include "platform/path_rules.h"
#include "platform/places.h"
#include "platform/priority.h"
#include "platform/processes.h"
#include "platform/property_system.h"
#include "platform/run_cache.h"
#include "platform/settings_store.h"
#include "platform/shared_libraries.h"
#include "platform/shell_namespace.h"
#include "platform/terminal.h"
#include "platform/text_decoding.h"
#include "platform/text_folding.h"
#include "platform/text_modules.h"
#include "platform/worker_processes.h"
#include "platform/xml_parsing.h"

namespace kelvane {

class Platform {
public:
    virtual ~Platform() = default;
    virtual FileSystem& files() = 0;
    virtual FileOutput& output() = 0;
    virtual HeldFiles& heldFiles() = 0;
    virtual FileOperations& fileOperations() = 0;
    virtual ShellNamespace& shell() = 0;
    virtual PathRules& paths() = 0;
    virtual TextFolding& folding() = 0;
    virtual Clock& clock() = 0;
    virtual Priority& priority() = 0;
    virtual PropertySystem& properties() = 0;
    virtual PropertyReaders& readers() = 0;
    virtual Terminal& terminal() = 0;
    virtual Interrupts& interrupts() = 0;
    virtual InstancePorts& instancePorts() = 0;
    virtual Processes& processes() = 0;
    virtual LinkMaker& links() = 0;
    virtual Places& places() = 0;
    virtual SystemFacts& systemFacts() = 0;
    virtual CrashCapture& crashCapture() = 0;
    virtual SettingsStore& registry() = 0;
    virtual TextModules& textModules() = 0;
    virtual TextDecoding& decoding() = 0;
    virtual XmlParsing& xml() = 0;
    virtual PackagedFiles& packages() = 0;
    virtual FilterPrograms& filters() = 0;
    virtual WorkerProcesses& workers() = 0;
    virtual SharedLibraries& libraries() = 0;
    virtual RunCaches& runCaches() = 0;
};

// Defined by the adapter that the program is linked with.
[[nodiscard]] std::unique_ptr<Platform> makePlatform();

}  // namespace kelvane
