// How texts are extracted, as plain values: nothing here knows of settings.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "text/plugin_entry.h"

namespace kelvane {

struct ExtractionOptions {
    std::uint32_t textSample = 65'536;  // UTF-16 characters that are kept of a document
    std::uint64_t largestStream =
        6'291'456;  // bytes of one stream that are read: a file, or a part of a package; 0: no limit
    std::chrono::milliseconds timeout{12'000};  // for one document in a worker; 0: none
    std::uint64_t workerMemory = 1'024u * 1'048'576u;
    bool worker = true;                       // false: everything happens in this process
    unsigned workers = 0;                     // at most so many at once; 0: by the number of processors
    std::vector<std::string> excluded;        // extensions without dot, lower case: their texts are never taken
    std::vector<std::string> whiteList;       // extensions whose files are read however large they are
    std::vector<ContentPluginEntry> plugins;  // in the order in which they are loaded

    // A text is gone through this far beyond the sample to tell what it weighs; longer ones all weigh the same.
    [[nodiscard]] std::uint64_t weighedCharacters() const { return std::uint64_t{16} * textSample; }
};

}  // namespace kelvane
