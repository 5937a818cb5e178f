// Ports that a system has no adapter for: every call answers notSupported, or that there is nothing.
#pragma once

#include <memory>

#include "platform/filter_programs.h"
#include "platform/packaged_files.h"
#include "platform/run_cache.h"
#include "platform/shared_libraries.h"
#include "platform/text_decoding.h"
#include "platform/worker_processes.h"
#include "platform/xml_parsing.h"

namespace kelvane {

[[nodiscard]] std::unique_ptr<TextDecoding> makeMissingTextDecoding();
[[nodiscard]] std::unique_ptr<XmlParsing> makeMissingXmlParsing();
[[nodiscard]] std::unique_ptr<PackagedFiles> makeMissingPackagedFiles();
[[nodiscard]] std::unique_ptr<FilterPrograms> makeMissingFilterPrograms();
[[nodiscard]] std::unique_ptr<WorkerProcesses> makeMissingWorkerProcesses();
[[nodiscard]] std::unique_ptr<SharedLibraries> makeMissingSharedLibraries();
[[nodiscard]] std::unique_ptr<RunCaches> makeMissingRunCaches();

}  // namespace kelvane
