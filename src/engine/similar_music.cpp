#include "engine/similar_music.h"

#include <utility>
#include <vector>

#include "engine/classified_ahead.h"
#include "engine/media_causes.h"
#include "engine/music_neighbours.h"
#include "props/held_object.h"
#include "props/mp3_finger.h"

namespace kelvane {
namespace {

class SimilarMusic final : public SimilarContent {
public:
    SimilarMusic(const PropertySource& properties, MediaDescriber& describer, unsigned threads)
        : properties_(properties),
          describer_(describer),
          fingerprint_(properties.catalogue().stock(StockProperty::audioFingerprint)),
          duration_(properties.catalogue().byName("System.Media.Duration")),
          leastDuration_(SongOpening(describer.reading().options().songStartMs).leastDuration()),
          threads_(workerCount(threads))
    {
    }

    bool supports(Category category) const override { return category == Category::audio; }

    bool mayAdmit(const ScanCriteria&, const ItemContext& file) const override
    {
        return !describer_.reading().hopeless(file.item());
    }

    std::optional<NoDescriptorCause> describe(const ScanCriteria&, Candidate& file, const CancelFlag& cancel) override
    {
        if (wasMade(file, fingerprint_))
            return std::nullopt;
        SoundDescription made = describer_.sound(file.item(), cancel);
        if (made.fault.outcome == MediaOutcome::cancelled)
            return mediaCause(made.fault);  // nothing is known: it can be asked for again
        // The fingerprint comes first: whatever reads the file for it knows its duration then.
        if (made.fingerprint && endsEarly(file)) {
            made.fingerprint = nullptr;
            made.fault.outcome = MediaOutcome::tooShort;
        }
        const bool any = static_cast<bool>(made.fingerprint);
        keepObject(file, fingerprint_, made.fingerprint);
        return any ? std::nullopt : std::optional(mediaCause(made.fault));
    }

    bool admits(const ScanCriteria&, ItemContext& file) override
    {
        return held<MP3Finger>(file, fingerprint_) && durationOf(file) >= leastDuration_;
    }

    ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b,
                         const CancelFlag& cancel) override
    {
        const auto first = fingerprintOf(criteria, a, cancel);
        const auto second = fingerprintOf(criteria, b, cancel);
        ContentScore result;
        result.comparable = first && second;
        result.score = result.comparable ? compareFingers(*first, *second) : 0;
        result.a.duration = durationOf(a);
        result.b.duration = durationOf(b);
        return result;
    }

    std::unique_ptr<Neighbours> narrow(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                       const CancelFlag& cancel) override
    {
        // Where properties are compared first, few pairs are left to be scored.
        if (!criteria.properties.empty())
            return nullptr;
        std::vector<Ref<const MP3Finger>> songs;
        songs.reserve(sorted.size());
        for (std::uint32_t i = 0; i < sorted.size(); ++i)
            songs.push_back(fingerprintOf(criteria, sorted.at(i), cancel));
        return std::make_unique<MusicNeighbours>(std::move(songs), criteria.similarity, threads_, cancel);
    }

private:
    Ref<const MP3Finger> fingerprintOf(const ScanCriteria& criteria, ItemContext& file, const CancelFlag& cancel)
    {
        static_cast<void>(describe(criteria, file, cancel));
        return held<MP3Finger>(file, fingerprint_);
    }

    // In 100-nanosecond units; 0 where it is not known.
    std::int64_t durationOf(ItemContext& file) const
    {
        const PropValue duration = properties_.value(file, duration_);
        return duration.missing() ? 0 : duration.number();
    }

    // A file that says nothing of its duration has no primary value: it is left out, or compared, for that.
    bool endsEarly(ItemContext& file) const
    {
        const std::int64_t duration = durationOf(file);
        return duration > 0 && duration < leastDuration_;
    }

    const PropertySource& properties_;
    MediaDescriber& describer_;
    const PropRef fingerprint_;
    const PropRef duration_;
    const std::int64_t leastDuration_;
    const unsigned threads_;
};

}  // namespace

std::unique_ptr<SimilarContent> makeSimilarMusic(const PropertySource& properties, MediaDescriber& describer,
                                                 unsigned threads)
{
    return std::make_unique<SimilarMusic>(properties, describer, threads);
}

}  // namespace kelvane
