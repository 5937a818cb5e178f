// The factories of the Windows adapters; platform.cpp puts them together.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/crash_capture.h"
#include "platform/desktop_activation.h"
#include "platform/file_operations.h"
#include "platform/file_output.h"
#include "platform/file_system.h"
#include "platform/held_files.h"
#include "platform/instance_port.h"
#include "platform/interrupts.h"
#include "platform/link_maker.h"
#include "platform/path_rules.h"
#include "platform/places.h"
#include "platform/priority.h"
#include "platform/processes.h"
#include "platform/property_system.h"
#include "platform/settings_store.h"
#include "platform/shared_libraries.h"
#include "platform/terminal.h"
#include "platform/text_modules.h"
#include "platform/worker_processes.h"

struct _GUID;

namespace kelvane {

// Where Windows and its programs are on this computer.
[[nodiscard]] WindowsFolders systemFolders();
// One of the shell's known folders; nothing where it is not known here.
[[nodiscard]] std::optional<std::filesystem::path> knownFolder(const _GUID& id);

[[nodiscard]] std::unique_ptr<FileSystem> makeWindowsFileSystem();
[[nodiscard]] std::unique_ptr<FileOutput> makeWindowsFileOutput();
[[nodiscard]] std::unique_ptr<HeldFiles> makeWindowsHeldFiles();
[[nodiscard]] std::unique_ptr<FileOperations> makeWindowsFileOperations();
[[nodiscard]] std::unique_ptr<Clock> makeSystemClock();
[[nodiscard]] std::unique_ptr<Priority> makeWindowsPriority();
[[nodiscard]] std::unique_ptr<Terminal> makeConsoleTerminal();
[[nodiscard]] std::unique_ptr<Interrupts> makeConsoleInterrupts();
[[nodiscard]] std::unique_ptr<PropertyReaders> makeFileTypeReaders();
[[nodiscard]] std::unique_ptr<LinkMaker> makeWindowsLinkMaker();
[[nodiscard]] std::unique_ptr<Places> makeWindowsPlaces();
[[nodiscard]] std::unique_ptr<SystemFacts> makeWindowsSystemFacts();
// Paths are taken below HKEY_CURRENT_USER and this key ("Software\\..\\", for tests).
[[nodiscard]] std::unique_ptr<SettingsStore> makeRegistryStore(std::wstring above = {});
[[nodiscard]] std::unique_ptr<InstancePorts> makeWindowPorts();
[[nodiscard]] std::unique_ptr<Processes> makeWindowsProcesses();
[[nodiscard]] std::unique_ptr<CrashCapture> makeWindowsCrashCapture();
[[nodiscard]] std::unique_ptr<DesktopActivation> makeDdeActivation();
[[nodiscard]] std::unique_ptr<TextModules> makeWindowsTextModules(FileSystem& files);
[[nodiscard]] std::unique_ptr<SharedLibraries> makeWindowsSharedLibraries();
// The worker is looked for in the folder of the program and in the one above.
[[nodiscard]] std::unique_ptr<WorkerProcesses> makeWindowsWorkerProcesses(const std::filesystem::path& programFolder);

}  // namespace kelvane
