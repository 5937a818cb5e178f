#include "platform/platform.h"

#include <cstdlib>

#include "platform/archive_support.h"
#include "platform/file_namespace.h"
#include "platform/linux/adapters.h"
#include "platform/missing_ports.h"
#include "platform/property_table.h"

namespace kelvane {
namespace {

std::string variable(const char* name, const char* otherwise)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : otherwise;
}

// Here nobody else ends a program that hangs on a document.
constexpr std::chrono::minutes longestFilterRun{1};

class LinuxPlatform final : public Platform {
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
    InstancePorts& instancePorts() override { return *instancePorts_; }
    Processes& processes() override { return *processes_; }
    LinkMaker& links() override { return *links_; }
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
    std::unique_ptr<FileSystem> files_ = makeLinuxFileSystem();
    std::unique_ptr<FileOutput> output_ = makeLinuxFileOutput();
    std::unique_ptr<HeldFiles> heldFiles_ = makeLinuxHeldFiles();
    std::unique_ptr<FileOperations> fileOperations_ = makeLinuxFileOperations();
    std::unique_ptr<ArchiveFolders> archives_ = makeLibarchiveFolders();
    std::unique_ptr<TextFolding> folding_ = makeTextFolding();
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(*files_, archives_.get(), *folding_);
    std::unique_ptr<PathRules> paths_ = makePosixPathRules();
    std::unique_ptr<Clock> clock_ = makeSystemClock();
    std::unique_ptr<Priority> priority_ = makeLinuxPriority();
    std::unique_ptr<PropertySystem> properties_ = makePropertyTable();
    std::unique_ptr<PropertyReaders> readers_ = makeFileTypeReaders();
    std::unique_ptr<Terminal> terminal_ = makePosixTerminal();
    std::unique_ptr<Interrupts> interrupts_ = makePosixInterrupts();
    std::unique_ptr<LinkMaker> links_ = makePosixLinkMaker();
    std::unique_ptr<Places> places_ = makeLinuxPlaces();
    std::unique_ptr<SystemFacts> systemFacts_ = makeLinuxSystemFacts();
    std::unique_ptr<CrashCapture> crashCapture_ = makeMinidumpCapture();
    std::unique_ptr<SettingsStore> registry_ =
        makeSqliteSettingsStore(places_->settingsFolder() / "kelvane" / "registry.db", *folding_);
    std::unique_ptr<TextModules> textModules_ = makeLinuxTextModules(*files_);
    std::unique_ptr<InstancePorts> instancePorts_ =
        makeSocketPorts(variable("XDG_RUNTIME_DIR", ""), places_->temporaryFolder());
    std::unique_ptr<Processes> processes_ = makeLinuxProcesses({variable("PATH", "/usr/local/bin:/usr/bin:/bin")});
    std::unique_ptr<TextDecoding> decoding_ = makeTextDecoding();
    std::unique_ptr<XmlParsing> xml_ = makePugixmlParsing();
    std::unique_ptr<PackagedFiles> packages_ = makeLibarchivePackages();
    std::unique_ptr<FilterPrograms> filters_ = makeLinuxFilterPrograms(longestFilterRun);
    std::unique_ptr<WorkerProcesses> workers_ = makeLinuxWorkerProcesses(workerPrograms(places_->programFile()));
    std::unique_ptr<SharedLibraries> libraries_ = makeLinuxSharedLibraries();
    std::unique_ptr<RunCaches> runCaches_ =
        makeSqliteRunCaches(places_->cacheFolder() / "kelvane" / "descriptors.db", *clock_);
};

}  // namespace

bool archivesAreRead() noexcept
{
    return true;
}

std::unique_ptr<Platform> makePlatform()
{
    return std::make_unique<LinuxPlatform>();
}

}  // namespace kelvane
