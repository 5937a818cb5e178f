// The catalogue, the one source of values, and what describes contents, wired to a platform.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/descriptor_cache.h"
#include "app/plugin_support.h"
#include "engine/engine_options.h"
#include "media/described_media.h"
#include "platform/platform.h"
#include "props/property_source.h"
#include "text/text_extraction.h"

namespace kelvane {

// Lives as long as values are asked for; what is handed over outlives it.
struct PropertyAccess {
    // cache: what is known of contents from earlier runs. After a cancel values are missing. Both may be null.
    PropertyAccess(Platform& platform, const EngineOptions& options, DescriptorCache* cache = nullptr,
                   const CancelFlag* cancel = nullptr);
    PropertyAccess(const PropertyAccess&) = delete;
    PropertyAccess& operator=(const PropertyAccess&) = delete;

    // A line, in UTF-8, for each plug-in, program and codec that was missing or broke down, and for a cache that is not
    // used. Plug-ins are named once.
    [[nodiscard]] std::vector<std::string> takeComplaints() const;

    DescriptorCache* const cache;
    std::unique_ptr<PluginSupport> plugins;      // asked what they offer at once, if any are listed
    std::unique_ptr<TextExtraction> extraction;  // starts its workers when the first text is asked for
    std::unique_ptr<MediaReading> media;         // likewise
    std::unique_ptr<MediaDescriber> describer;   // of sound, films and pictures
    std::unique_ptr<PropertyReaders> documents;  // what documents say of themselves, and what the platform reads
    std::unique_ptr<PropertyReaders> readers;    // the same of media
    PropertyCatalogue catalogue;
    PropertySource source;
};

}  // namespace kelvane
