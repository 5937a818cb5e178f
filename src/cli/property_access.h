// The catalogue, the one source of values and the texts of documents, wired to a platform.
#pragma once

#include <memory>

#include "cli/plugin_support.h"
#include "engine/engine_options.h"
#include "platform/platform.h"
#include "props/property_source.h"
#include "text/text_extraction.h"

namespace kelvane {

// Lives as long as the verb that asks for values; the platform outlives it.
struct PropertyAccess {
    PropertyAccess(Platform& platform, const EngineOptions& options);
    PropertyAccess(const PropertyAccess&) = delete;
    PropertyAccess& operator=(const PropertyAccess&) = delete;

    std::unique_ptr<PluginSupport> plugins;      // asked what they offer at once, if any are listed
    std::unique_ptr<TextExtraction> extraction;  // starts its workers when the first text is asked for
    std::unique_ptr<PropertyReaders> readers;    // what documents say of themselves, and what the platform reads
    PropertyCatalogue catalogue;
    PropertySource source;
};

}  // namespace kelvane
