// Where values come from: the one door through which the scan asks for a property of a file.
#pragma once

#include <string_view>

#include "platform/property_system.h"
#include "platform/shell_namespace.h"
#include "props/prop_cache.h"
#include "props/property_catalogue.h"
#include "props/stock_readers.h"
#include "props/substitutes.h"
#include "props/text_fold.h"

namespace kelvane {

// A comparable value. Text points into the cache node and lives as long as the file's context.
struct PropValue {
    PropKind kind = PropKind::none;
    std::uint64_t bits = PROPCACHE::missingMark;
    std::u16string_view text;

    [[nodiscard]] bool missing() const
    {
        return kind == PropKind::text ? text.empty() : bits == PROPCACHE::missingMark;
    }
    [[nodiscard]] std::int64_t number() const { return static_cast<std::int64_t>(bits); }
    [[nodiscard]] double real() const;
};

// Reads, converts and caches. The source itself is immutable and thread-safe; a context passed to it belongs to the
// calling thread for the time of the call. Everything handed over at construction must outlive it.
class PropertySource {
public:
    PropertySource(const PropertyCatalogue& catalogue, ShellNamespace& shell, PropertyReaders& readers,
                   const TextFolding& folding, KindMasks kinds);

    // The value; read on the first request. What the file's record holds anyway (size, dates, name, attributes of
    // the listing) is given without making a cache node. Never fails: an unreadable value is missing.
    [[nodiscard]] PropValue value(ItemContext& file, const PropRef& property) const;

    // The cache node of a property, made and read when there is none.
    [[nodiscard]] PROPCACHE& cached(ItemContext& file, const PropRef& property) const;

    // Makes the node without reading the file; see PROPCACHE. Nothing for properties of the file record, for
    // Stock.FileCount of anything but a folder, and where a node exists.
    void prefill(ItemContext& file, const PropRef& property) const;

    // The folded copy of a text value, kept with its node; empty for other kinds and missing values.
    [[nodiscard]] std::u16string_view foldedText(ItemContext& file, const PropRef& property) const;

    // Puts the file's group number into its cached Stock.GroupID, if there is one.
    void groupChanged(ItemContext& file) const;

    [[nodiscard]] const PropertyCatalogue& catalogue() const { return catalogue_; }
    [[nodiscard]] const TextFolding& folding() const { return folding_; }

private:
    void fill(ItemContext& file, const PropRef& property, PROPCACHE& node) const;
    [[nodiscard]] RawValue readRaw(ItemContext& file, const PropRef& property) const;
    [[nodiscard]] RawValue readOwn(ItemContext& file, const PropRef& property) const;
    [[nodiscard]] RawValue substitute(ItemContext& file, const PropRef& property) const;
    [[nodiscard]] RawValue combinedList(ItemContext& file, const PropRef& property) const;
    void applyHemisphere(ItemContext& file, PROPCACHE& node) const;

    const PropertyCatalogue& catalogue_;
    ShellNamespace& shell_;
    PropertyReaders& readers_;
    const TextFolding& folding_;
    KindMasks kinds_;
    Substitutes substitutes_;
    PropRef latitudeRef_, longitudeRef_;
};

}  // namespace kelvane
