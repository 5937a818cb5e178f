// The scan definition: everything that describes one search.
#pragma once

#include <cstdint>
#include <string>

#include "base/node.h"

namespace kelvane {

// Option bits of a scan definition.
namespace scan_flag {
inline constexpr std::uint32_t categoryMask = 0xF;
inline constexpr std::uint32_t fuzzy = 0x10;      // apply the similarity percentage
inline constexpr std::uint32_t protect = 0x100;   // keep out of system folders and hidden files
inline constexpr std::uint32_t contents = 0x200;  // compare contents; with fuzzy: similar content by category
inline constexpr std::uint32_t sameType = 0x400;
inline constexpr std::uint32_t skipLinks = 0x800;
inline constexpr std::uint32_t ignoreSmall = 0x1000;
inline constexpr std::uint32_t skipEmpty = 0x2000;  // leave out files without a single byte
inline constexpr std::uint32_t subfolders = 0x4000;
inline constexpr std::uint32_t standard = 32000;  // protect, sameType, skipLinks, ignoreSmall, skipEmpty, subfolders
}  // namespace scan_flag

// File-type categories; custom takes the definition's own masks.
enum class Category : std::uint32_t { audio, video, documents, images, ebooks, custom, folders };

class CScanNode final : public CStringNode {
public:
    CScanNode() : CStringNode(u"binLastScan") {}

    std::uint32_t flags = scan_flag::standard;
    std::int32_t similarity = 90;  // percent; see effectiveSimilarity()
    std::string properties;        // comma-separated canonical names whose values must match
    std::string roots;             // as PathRules::joinRoots writes them
    std::string extraRootsLine;    // shown on a line of its own above the roots in the summary
    std::string masks;             // comma-separated, in place of the category's when not empty
    std::string sizeRange;         // smallest and largest size in bytes, "4096-" or "1-1000000"; empty: any
    std::string note;              // the person's own words about this definition

    [[nodiscard]] bool has(std::uint32_t flag) const { return (flags & flag) != 0; }
    void set(std::uint32_t flag, bool on) { flags = on ? flags | flag : flags & ~flag; }
    [[nodiscard]] Category category() const { return static_cast<Category>(flags & scan_flag::categoryMask); }
    void setCategory(Category category);
    // The similarity field with the fuzzy bit, 100 without.
    [[nodiscard]] std::int32_t effectiveSimilarity() const { return has(scan_flag::fuzzy) ? similarity : 100; }
};

}  // namespace kelvane
