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
    bool endsWalk = false;                             // no later file in sort order can match the seed either
    bool approximate = false;                          // contents were sampled
    std::optional<std::int32_t> score = std::nullopt;  // of similar contents, where they were compared
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
    // How much was compared, of a similar-content stage.
    std::optional<ContentMeasure> measureA = std::nullopt, measureB = std::nullopt;
    std::optional<PreviewLook> look = std::nullopt;  // of pictures and films
    bool vetoed = false;                             // the second look speaks against a score that would do
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
    using ContentOracle = std::function<std::optional<ContentResult>(const Candidate& a, const Candidate& b)>;
    void setContentOracle(ContentOracle oracle) { oracle_ = std::move(oracle); }

    // The same for similar contents: the score of the pair that is being compared, where it is known.
    using ScoreOracle = std::function<std::optional<ContentScore>()>;
    void setScoreOracle(ScoreOracle oracle) { scoreOracle_ = std::move(oracle); }

    // Every stage up to the one that parts the two (that one included) is appended to `report` from now on.
    void reportTo(std::vector<StageReport>* report) { report_ = report; }

private:
    [[nodiscard]] bool keysPart(std::optional<bool> keysEqual) const;
    [[nodiscard]] std::size_t startIndex(std::optional<bool> keysEqual) const;
    [[nodiscard]] bool parted(std::size_t index, Candidate& a, Candidate& b);
    [[nodiscard]] std::optional<std::int32_t> difference(const PropRef& property, Candidate& a, Candidate& b) const;
    [[nodiscard]] std::int32_t allowed(std::size_t index) const;
    [[nodiscard]] MatchResult compareStages(Candidate& a, Candidate& b);
    [[nodiscard]] bool sameType(std::int32_t stage, const Candidate& a, const Candidate& b) const;
    [[nodiscard]] MatchResult exactContents(std::int32_t stage, const Candidate& a, const Candidate& b);
    [[nodiscard]] MatchResult similarContents(std::int32_t stage, Candidate& a, Candidate& b);
    void reportScore(std::int32_t stage, const ContentScore& score, bool similar) const;
    [[nodiscard]] bool sameSeries(Candidate& a, Candidate& b) const;
    void reportProperty(std::size_t index, Candidate& a, Candidate& b, std::optional<std::int32_t> percent,
                        bool equal) const;

    const ScanCriteria& criteria_;
    const PropertySource& properties_;
    ShellNamespace& shell_;
    ContentComparer& contents_;
    SimilarContent* similar_;
    std::size_t propertyCount_;
    bool keepsSeriesApart_;
    PropRef folderName_;
    ContentOracle oracle_;
    ScoreOracle scoreOracle_;
    std::vector<StageReport>* report_ = nullptr;
};

// Whether the sizes alone say that contents are compared over samples: by the limit of the pair.
[[nodiscard]] bool comparedBySamples(const ShellItem& a, const ShellItem& b, const EngineOptions& options);

// Whether the criteria ask for similar contents of a category that `similar` has descriptors for; it may be null.
[[nodiscard]] bool isDescribed(const ScanCriteria& criteria, const SimilarContent* similar);

// `notSupported`, with a message that names the category, when the criteria need a descriptor that nothing supplies.
[[nodiscard]] Status checkDescriptors(const ScanCriteria& criteria, const SimilarContent* similar);

}  // namespace kelvane
