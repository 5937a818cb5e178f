// Which files take part in a scan.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/candidate.h"
#include "engine/criteria.h"
#include "engine/similar_content.h"
#include "media/media_kinds.h"
#include "platform/shell_namespace.h"
#include "props/property_source.h"

namespace kelvane {

// How the contents of files are looked at.
struct ContentAdmission {
    SimilarContent* similar = nullptr;  // null: no content is looked at
    bool valuesLater = false;           // whoever takes the candidates asks for their values and descriptors
};

// The tests that a file passes on its way to the candidates, in order of rising cost. What is handed over at
// construction must outlive it. Used by one thread at a time.
class Admission {
public:
    Admission(const ScanCriteria& criteria, ShellNamespace& shell, const PropertySource& properties,
              ContentAdmission contents);

    // The candidate, or nothing for a file that stays out. Links that are not followed stay out.
    [[nodiscard]] std::optional<Candidate> test(const Ref<ShellItem>& file);

    // Files that stayed out because their contents would have had to be fetched.
    [[nodiscard]] std::uint64_t offlineSkipped() const { return offlineSkipped_; }
    // Files that stayed out by the masks of their category alone: it has none for some kinds of what it is for.
    [[nodiscard]] std::uint64_t outsideMasks() const { return outsideMasks_; }
    // Files that stayed out because they have no value for the primary property, or cannot have a descriptor.
    [[nodiscard]] std::uint64_t withoutValue() const { return withoutValue_; }

private:
    [[nodiscard]] bool hasRightName(const ShellItem& file) const;
    void countIfOfKind(const ShellItem& file);
    [[nodiscard]] bool hasRightSize(const ShellItem& file) const;
    [[nodiscard]] bool isFetched(const ShellItem& file) const;
    [[nodiscard]] bool hasRightAttributes(const ShellItem& file) const;
    [[nodiscard]] bool hasRightContents(Candidate& file);

    const ScanCriteria& criteria_;
    ShellNamespace& shell_;
    const PropertySource& properties_;
    ContentAdmission contents_;
    std::uint64_t tinyLimit_;
    std::optional<MediaKind> unmasked_;  // the kind whose files are counted that the masks leave out
    std::uint64_t outsideMasks_ = 0;
    std::uint64_t offlineSkipped_ = 0;
    std::uint64_t withoutValue_ = 0;
};

}  // namespace kelvane
