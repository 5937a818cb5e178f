// Ports that a system has no adapter for: every call answers notSupported, or that there is nothing.
#pragma once

#include <memory>

#include "platform/filter_programs.h"
#include "platform/packaged_files.h"
#include "platform/run_cache.h"
#include "platform/xml_parsing.h"

namespace kelvane {

[[nodiscard]] std::unique_ptr<XmlParsing> makeMissingXmlParsing();
[[nodiscard]] std::unique_ptr<PackagedFiles> makeMissingPackagedFiles();
[[nodiscard]] std::unique_ptr<FilterPrograms> makeMissingFilterPrograms();
[[nodiscard]] std::unique_ptr<RunCaches> makeMissingRunCaches();

}  // namespace kelvane
