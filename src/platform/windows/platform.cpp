#include "platform/platform.h"

#include "platform/archive_support.h"
#include "platform/file_namespace.h"
#include "platform/missing_ports.h"
#include "platform/property_table.h"
#include "platform/windows/adapters.h"

namespace kelvane {
namespace {

// Archives are not seen as folders here, and the property system is the program's own table: the system's own services
// for both are not asked yet.
class WindowsPlatform final : public Platform {
public:
    FileSystem& files() override { return *files_; }
    FileOutput& output() override { return *output_; }
    HeldFiles& heldFiles() override { return *heldFiles_; }
    FileOperations& fileOperations() override { return *fileOperations_; }
    ShellNamespace& shell() override { return *shell_; }
    PathRules& paths() override { return *paths_; }
    TextFolding& folding() override { return *folding_; }
    Clock& clock() override { return *clock_; }
    Priority& priority() override { return *priority_; }
    PropertySystem& properties() override { return *properties_; }
    PropertyReaders& readers() override { return *readers_; }
    Terminal& terminal() override { return *terminal_; }
    Interrupts& interrupts() override { return *interrupts_; }
    LinkMaker& links() override { return *links_; }
    InstancePorts& instancePorts() override { return *instancePorts_; }
    Processes& processes() override { return *processes_; }
    Places& places() override { return *places_; }
    SystemFacts& systemFacts() override { return *systemFacts_; }
    CrashCapture& crashCapture() override { return *crashCapture_; }
    SettingsStore& registry() override { return *registry_; }
    TextModules& textModules() override { return *textModules_; }
    TextDecoding& decoding() override { return *decoding_; }
    XmlParsing& xml() override { return *xml_; }
    PackagedFiles& packages() override { return *packages_; }
    FilterPrograms& filters() override { return *filters_; }
    WorkerProcesses& workers() override { return *workers_; }
    SharedLibraries& libraries() override { return *libraries_; }
    RunCaches& runCaches() override { return *runCaches_; }

private:
    // In the order in which they need one another.
    std::unique_ptr<FileSystem> files_ = makeWindowsFileSystem();
    std::unique_ptr<FileOutput> output_ = makeWindowsFileOutput();
    std::unique_ptr<HeldFiles> heldFiles_ = makeWindowsHeldFiles();
    std::unique_ptr<FileOperations> fileOperations_ = makeWindowsFileOperations();
    std::unique_ptr<TextFolding> folding_ = makeTextFolding();
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(*files_, nullptr, *folding_);
    std::unique_ptr<PathRules> paths_ = makeWindowsPathRules(*folding_, systemFolders());
    std::unique_ptr<Clock> clock_ = makeSystemClock();
    std::unique_ptr<Priority> priority_ = makeWindowsPriority();
    std::unique_ptr<PropertySystem> properties_ = makePropertyTable();
    std::unique_ptr<PropertyReaders> readers_ = makeFileTypeReaders();
    std::unique_ptr<Terminal> terminal_ = makeConsoleTerminal();
    std::unique_ptr<Interrupts> interrupts_ = makeConsoleInterrupts();
    std::unique_ptr<LinkMaker> links_ = makeWindowsLinkMaker();
    std::unique_ptr<Places> places_ = makeWindowsPlaces();
    std::unique_ptr<SystemFacts> systemFacts_ = makeWindowsSystemFacts();
    std::unique_ptr<InstancePorts> instancePorts_ = makeWindowPorts();
    std::unique_ptr<Processes> processes_ = makeWindowsProcesses();
    std::unique_ptr<TextDecoding> decoding_ = makeTextDecoding();
    std::unique_ptr<XmlParsing> xml_ = makeMissingXmlParsing();
    std::unique_ptr<PackagedFiles> packages_ = makeMissingPackagedFiles();
    std::unique_ptr<FilterPrograms> filters_ = makeMissingFilterPrograms();
    std::unique_ptr<WorkerProcesses> workers_ = makeWindowsWorkerProcesses(places_->programFolder());
    std::unique_ptr<SharedLibraries> libraries_ = makeWindowsSharedLibraries();
    std::unique_ptr<RunCaches> runCaches_ = makeMissingRunCaches();
    std::unique_ptr<CrashCapture> crashCapture_ = makeWindowsCrashCapture();
    std::unique_ptr<SettingsStore> registry_ = makeRegistryStore();
    std::unique_ptr<TextModules> textModules_ = makeWindowsTextModules(*files_);
};

}  // namespace

bool archivesAreRead() noexcept
{
    return false;
}

std::unique_ptr<Platform> makePlatform()
{
    return std::make_unique<WindowsPlatform>();
}

}  // namespace kelvane
