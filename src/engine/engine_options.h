// The settings that the engine works by, as plain values: it knows nothing of where they are stored.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/file_size.h"
#include "base/file_time.h"
#include "media/media_options.h"
#include "text/extraction_options.h"

namespace kelvane {

// Bits of the main option word that scanning reads.
namespace option_flag {
inline constexpr std::uint32_t lowPriority = 0x20;
inline constexpr std::uint32_t enumerateHidden = 0x40;
inline constexpr std::uint32_t directEnumeration = 0x100;
inline constexpr std::uint32_t followJunctions = 0x1000;
inline constexpr std::uint32_t enterVirtualFolders = 0x2000;
inline constexpr std::uint32_t skipSmallVirtual = 0x4000;
inline constexpr std::uint32_t thumbnailsWanted = 0x1000000;
inline constexpr std::uint32_t keepSameSeries = 0x8000000;  // bit 27: turns the same-folder rule of tag searches off
}  // namespace option_flag

// Bits of the second option word.
namespace more_option_flag {
inline constexpr std::uint32_t imagesSkipPrimary = 0x10;
}

namespace notice_flag {
inline constexpr std::uint32_t firstScanShown = 0x200;
}

struct FileCategory {
    std::u16string name;
    std::string masks;  // comma-separated, lower case
};

// The categories as they are when nobody changed them: five of them, "All file types" and "Folders".
[[nodiscard]] std::vector<FileCategory> defaultCategories();

struct EngineOptions {
    std::uint32_t flags = option_flag::directEnumeration | option_flag::enumerateHidden;
    std::uint32_t moreFlags = 2;
    std::uint32_t noticesSeen = 0;
    FileSize hugeFile{10u * 1'048'576u};                       // nHugeFileMB
    FileSize tinyFile{50'000};                                 // nTinyFile
    std::int64_t dateTolerance = 1'000 * ticksPerMillisecond;  // msDateTolerance, 100-ns units
    std::int64_t hoursPerPercent = 240;                        // nHours1PCdiff
    FileSize largestVirtualStream{64u * 1'048'576u};           // largest file that is read out of an archive
    std::vector<FileCategory> categories = defaultCategories();
    std::vector<std::uint32_t> excludedVolumes;  // serial numbers, "Excluded volumes"
    std::string seriesProperties;  // property list for which files of one folder never match (tag searches)
    // One property a category, empty for none.
    std::array<std::string, 6> extraColumns = {
        "System.Media.Duration", "System.Media.Duration", "", "System.Image.Dimensions", "", ""};
    ExtractionOptions extraction;  // of the texts of documents
    MediaOptions media;            // of sounds, films and pictures
    unsigned threads = 0;          // 0: by the number of processors
    bool classifyAhead = true;     // false: the plain pairwise walk, for tests and doubt
    bool exhaustive = false;       // similar contents: compare every pair that the rules allow, filter none
    bool secondLook = true;        // pictures: colours and structure must not contradict the score
    bool sizesOnDisk = false;      // documents: compare sizes of files, not the weights of their texts

    [[nodiscard]] bool has(std::uint32_t flag) const { return (flags & flag) != 0; }
};

}  // namespace kelvane
