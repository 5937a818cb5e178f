// The values of one file that were read already, so that each is read at most once a scan.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/node.h"
#include "platform/raw_value.h"
#include "platform/shell_item.h"
#include "props/prop_kind.h"
#include "props/property_catalogue.h"

namespace kelvane {

// One value of one file. A node is pending (made ahead without reading), or read: present, or missing for good.
class PROPCACHE final : public CMinNode {
public:
    static constexpr std::uint32_t flagNumeric = 0x80;
    static constexpr std::uint32_t flagSexagesimal = 0x100;
    // The mark of a missing value: these two words in the halves of the 64-bit value.
    static constexpr std::uint64_t missingMark = 0x0000BEEF'0000DEAD;
    // The mark of a node that was not read yet: the low half of the raw value's data, its type being empty.
    static constexpr std::uint32_t pendingMark = 0xDEADBEEF;

    std::unique_ptr<PROPCACHE> next;
    std::uint32_t identifier = 0;
    PropKind kind = PropKind::none;
    std::uint32_t flags = 0;
    std::uint64_t value = missingMark;  // the number, the date's ticks, or the double's bits
    std::u16string text;                // for PropKind::text
    RawValue raw;
    std::optional<std::u16string> folded;  // lower-cased, accent-free, punctuation-free copy, made on first use

    PROPCACHE() = default;
    ~PROPCACHE() override;  // frees the rest of its list without recursion

    [[nodiscard]] bool missing() const { return kind == PropKind::text ? text.empty() : value == missingMark; }
    [[nodiscard]] std::int64_t number() const { return static_cast<std::int64_t>(value); }
    [[nodiscard]] double real() const;
    [[nodiscard]] bool pending() const;
};

// The group field of a file: negative marks, then numbers from 1.
struct GroupField {
    std::int32_t value = -1;
    static constexpr std::int32_t none = -1;
    static constexpr std::int32_t excluded = -2;
    [[nodiscard]] bool isExcluded() const { return value == excluded; }
    [[nodiscard]] bool grouped() const { return value > 0; }
};

// A file that values are asked of: its item, its cached values, its group. Used by one thread at a time.
// One allocation-free record of 32 bytes until the first value is cached.
class ItemContext {
public:
    explicit ItemContext(Ref<const ShellItem> item) : item_(std::move(item)) {}
    ItemContext(ItemContext&&) noexcept = default;
    ItemContext& operator=(ItemContext&&) noexcept = default;

    [[nodiscard]] const ShellItem& item() const { return *item_; }
    [[nodiscard]] const Ref<const ShellItem>& itemRef() const { return item_; }
    // The kind tells a row of the program from a property of the system that shares its key: Stock.FileAttributes is
    // a text, System.FileAttributes a number.
    [[nodiscard]] PROPCACHE* find(std::uint32_t identifier, PropKind kind) const;
    PROPCACHE& push(std::unique_ptr<PROPCACHE> node);
    [[nodiscard]] std::uint32_t cachedValues() const { return count_; }

    GroupField group;

private:
    Ref<const ShellItem> item_;
    std::unique_ptr<PROPCACHE> head_;
    std::uint32_t count_ = 0;
};

}  // namespace kelvane
