// Names of properties: the system's and the program's own, and how the two are told apart.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/property_system.h"
#include "props/prop_kind.h"

namespace kelvane {

// A reference to a property: what callers hold to name one. Cheap to copy; an empty reference names nothing, and
// every read of it gives "no value".
struct PropRef {
    const PropertyInfo* info = nullptr;  // its description in the catalogue, which outlives the reference
    std::uint32_t identifier = 0;        // CRC-32 of the key; 0 for an empty reference

    explicit operator bool() const { return info != nullptr; }
    [[nodiscard]] PropKind kind() const { return info != nullptr ? kindOf(info->type) : PropKind::none; }
    [[nodiscard]] bool has(std::uint16_t flag) const { return info != nullptr && (info->flags & flag) != 0; }
    friend bool operator==(const PropRef& a, const PropRef& b) { return a.identifier == b.identifier; }
};

// Identifiers that the code asks for by themselves: the CRCs of the keys that carry these names in the catalogue.
namespace property_id {
inline constexpr std::uint32_t groupId = 0x548909DB;
inline constexpr std::uint32_t fileCount = 0x950B6FAD;
inline constexpr std::uint32_t isFolder = 0x93B7A424;
inline constexpr std::uint32_t gpsLatitude = 0x1FCC7FD5;
inline constexpr std::uint32_t gpsLongitude = 0xFD6343F1;
inline constexpr std::uint32_t comment = 0xC9E40EA6;

inline constexpr std::uint32_t size = 0xA8C3FECA;
inline constexpr std::uint32_t fileAttributes = 0x107F99AF;
inline constexpr std::uint32_t dateModified = 0x02CA3641;
inline constexpr std::uint32_t dateCreated = 0xBA765124;
inline constexpr std::uint32_t dateAccessed = 0xB20C16ED;
inline constexpr std::uint32_t fileAllocationSize = 0x1805DE66;
inline constexpr std::uint32_t fileOwner = 0x4ABFE802;

inline constexpr std::uint32_t fileName = 0x22CF91D5;
inline constexpr std::uint32_t itemName = 0x970C1B9A;
inline constexpr std::uint32_t itemNameDisplay = 0x8DA8A116;
inline constexpr std::uint32_t itemNameDisplayWithoutExtension = 0x77B83E02;
inline constexpr std::uint32_t fileExtension = 0x0FFABAAF;
inline constexpr std::uint32_t parsingName = 0x4A70AF65;
inline constexpr std::uint32_t parsingPath = 0x6F1BF0B9;
inline constexpr std::uint32_t itemPathDisplay = 0x3C62CC6F;
inline constexpr std::uint32_t itemFolderPathDisplay = 0x84DEAB0A;
inline constexpr std::uint32_t itemFolderNameDisplay = 0x481C89F9;
inline constexpr std::uint32_t itemUrl = 0x609135D5;

inline constexpr std::uint32_t itemType = 0x08DC5714;
inline constexpr std::uint32_t itemTypeText = 0x6D77D625;
inline constexpr std::uint32_t kind = 0x0481E2E1;
inline constexpr std::uint32_t kindText = 0xD0ECDB34;
}  // namespace property_id

// The rows of the program's own properties, in the order of their small numbers.
enum class StockProperty : unsigned {
    signedBy,
    fileAttributes,
    infoTipText,
    isFolder,
    kind,
    find,
    algorithmic,
    totalFileSize,
    streamCount,
    streamNames,
    fileCount,
    thumbnail,
    groupId,
    hardLinks,
    simDocDescriptor,
    audioFingerprint,
    audioList,
    videoList,
    bookList,
};
inline constexpr unsigned stockPropertyCount = 19;

// The program's own rows, in order.
[[nodiscard]] std::span<const PropertyInfo> stockTable() noexcept;

// Resolves names. Immutable after construction and thread-safe; the system must outlive it.
class PropertyCatalogue {
public:
    explicit PropertyCatalogue(const PropertySystem& system);

    // The system's properties first, then the stock rows from the last to the first; exact and case-sensitive.
    // An unknown name gives an empty reference.
    [[nodiscard]] PropRef byName(std::string_view canonicalName) const;
    // A stock row by its small number; 19 and above give an empty reference.
    [[nodiscard]] PropRef byNumber(unsigned number) const;
    [[nodiscard]] PropRef stock(StockProperty row) const { return byNumber(static_cast<unsigned>(row)); }

    // 1-based stock index of a reference; 0 when it is no stock property, also when it is a property of the system that
    // shares its key with a stock row.
    [[nodiscard]] unsigned stockIndex(const PropRef& property) const;

    // The components that a combined list is made from, in listed order; empty for any other property.
    [[nodiscard]] std::span<const PropRef> components(const PropRef& property) const;

    // Every canonical name, the stock ones included: for messages about unknown ones.
    [[nodiscard]] std::vector<std::string> names() const;

    // Comma-separated names into references; unknown names are returned, in order, in `unknown` when it is given.
    [[nodiscard]] std::vector<PropRef> parseList(std::string_view names,
                                                 std::vector<std::string>* unknown = nullptr) const;

private:
    const PropertySystem& system_;
    std::vector<PropRef> audioList_, videoList_, bookList_;
};

}  // namespace kelvane
