// The decision at the heart of grouping: are two files duplicates under the criteria?
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/candidate.h"
#include "engine/content_compare.h"
#include "engine/criteria.h"
#include "engine/similar_content.h"
#include "props/property_source.h"

namespace kelvane {

// The answer of Compare: 0 for a match, the 1-based stage at which the two parted (property index + 1, then the type
// stage, then the content stage), -1 when cancelled.
struct MatchResult {
    std::int32_t stage = 0;
    bool endsWalk = false;     // no later file in sort order can match the seed either
    bool approximate = false;  // contents were sampled
    [[nodiscard]] bool match() const { return stage == 0; }
    [[nodiscard]] bool cancelled() const { return stage < 0; }
};

// What one stage found, for people who ask why.
struct StageReport {
    std::int32_t stage = 0;
    std::string name;                   // the property's canonical name, "type", "content"
    PropValue a, b;                     // of a property stage; missing otherwise
    std::u16string textA, textB;        // the values as text
    std::optional<double> difference;   // percent, where one was computed (100 - similarity for texts)
    std::optional<double> allowed;      // percent
    std::optional<std::int32_t> score;  // of a similar-content stage
    bool equal = false;
};

// Decides for pairs. One a thread. Ports outlive it.
class Matcher {
public:
    Matcher(const ScanCriteria& criteria, const PropertySource& properties, ShellNamespace& shell,
            ContentComparer& contents, SimilarContent* similar);

    // keysEqual: whether sorting put both files into one class of equal primary values; nothing when there was no
    // sorting (two files compared by themselves), and then the values are compared.
    [[nodiscard]] MatchResult compare(Candidate& a, Candidate& b, std::optional<bool> keysEqual);

    // An answer about contents known ahead: equal, different, or unknown (then they are read).
    using ContentOracle = std::function<std::optional<ContentResult>(const Candidate&, const Candidate&)>;
    void setContentOracle(ContentOracle oracle) { oracle_ = std::move(oracle); }

    // Every stage up to the one that parts the two (that one included) is appended to `report` from now on.
    void reportTo(std::vector<StageReport>* report) { report_ = report; }

private:
    const ScanCriteria& criteria_;
    const PropertySource& properties_;
    ShellNamespace& shell_;
    ContentComparer& contents_;
    SimilarContent* similar_;
    ContentOracle oracle_;
    std::vector<StageReport>* report_ = nullptr;
};

// `notSupported`, with a message that names the category, when the criteria need a descriptor that nothing supplies.
[[nodiscard]] Status checkDescriptors(const ScanCriteria& criteria, const SimilarContent* similar);

}  // namespace kelvane
