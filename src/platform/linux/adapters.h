// The factories of the Linux adapters; platform.cpp puts them together.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

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
#include "platform/places.h"
#include "platform/priority.h"
#include "platform/processes.h"
#include "platform/property_system.h"
#include "platform/run_cache.h"
#include "platform/settings_store.h"
#include "platform/shared_libraries.h"
#include "platform/terminal.h"
#include "platform/text_folding.h"
#include "platform/text_modules.h"
#include "platform/worker_processes.h"
#include "platform/xml_parsing.h"

namespace kelvane {

[[nodiscard]] std::unique_ptr<FileSystem> makeLinuxFileSystem();
[[nodiscard]] std::unique_ptr<FileOutput> makeLinuxFileOutput();
[[nodiscard]] std::unique_ptr<HeldFiles> makeLinuxHeldFiles();
// Follows the Trash specification of freedesktop.org, version 1.0; the environment is asked at each call.
[[nodiscard]] std::unique_ptr<FileOperations> makeLinuxFileOperations();
[[nodiscard]] std::unique_ptr<ArchiveFolders> makeLibarchiveFolders();
[[nodiscard]] std::unique_ptr<Clock> makeSystemClock();
[[nodiscard]] std::unique_ptr<Priority> makeLinuxPriority();
[[nodiscard]] std::unique_ptr<Terminal> makePosixTerminal();
[[nodiscard]] std::unique_ptr<Interrupts> makePosixInterrupts();
// `offeredFolder` is what the session has for such things ($XDG_RUNTIME_DIR), used when it is the user's alone; may be
// empty.
[[nodiscard]] std::unique_ptr<InstancePorts> makeSocketPorts(const std::filesystem::path& offeredFolder,
                                                             const std::filesystem::path& temporaryFolder);
// Where the tools of the desktop are looked for, and how long one may take before it is taken for the program that it
// found.
struct ProcessTools {
    std::string searchPath;  // as the PATH variable has it
    std::chrono::milliseconds patience{5000};
};
[[nodiscard]] std::unique_ptr<Processes> makeLinuxProcesses(ProcessTools tools);
[[nodiscard]] std::unique_ptr<LinkMaker> makePosixLinkMaker();
[[nodiscard]] std::unique_ptr<Places> makeLinuxPlaces();
[[nodiscard]] std::unique_ptr<CrashCapture> makeMinidumpCapture();
[[nodiscard]] std::unique_ptr<SystemFacts> makeLinuxSystemFacts();
[[nodiscard]] std::unique_ptr<PropertyReaders> makeFileTypeReaders();
// The folding must outlive it. The file is made by the first write.
[[nodiscard]] std::unique_ptr<SettingsStore> makeSqliteSettingsStore(std::filesystem::path file,
                                                                     const TextFolding& folding);
// The file and its folder are made by the first open(); the clock must outlive it.
[[nodiscard]] std::unique_ptr<RunCaches> makeSqliteRunCaches(std::filesystem::path file, const Clock& clock);
[[nodiscard]] std::unique_ptr<TextModules> makeLinuxTextModules(FileSystem& files);
[[nodiscard]] std::unique_ptr<SharedLibraries> makeLinuxSharedLibraries();
[[nodiscard]] std::unique_ptr<XmlParsing> makePugixmlParsing();
[[nodiscard]] std::unique_ptr<PackagedFiles> makeLibarchivePackages();
// Of each kind the first one that is there is the one that is started.
struct WorkerPrograms {
    std::vector<std::filesystem::path> documents;
    std::vector<std::filesystem::path> media = {};
};
[[nodiscard]] std::unique_ptr<WorkerProcesses> makeLinuxWorkerProcesses(WorkerPrograms programs);
// Where workers may lie: beside the running program, above it (programs in a folder of the build), or installed.
[[nodiscard]] WorkerPrograms workerPrograms(const std::filesystem::path& programFile);
// Where filter programs are looked for; not in the folders of a person's own PATH, which anybody may write to.
inline constexpr const char* filterFolders = "/usr/local/bin:/usr/bin:/bin";
// A program that is still running after `patience` counts as failed; 0: it may take any time.
[[nodiscard]] std::unique_ptr<FilterPrograms> makeLinuxFilterPrograms(std::chrono::milliseconds patience,
                                                                      std::string searchPath = filterFolders);

}  // namespace kelvane
