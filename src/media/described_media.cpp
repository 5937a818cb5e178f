#include "media/described_media.h"

#include <span>
#include <utility>

#include "base/byte_stream.h"
#include "platform/run_cache_key.h"
#include "text/worker_values.h"

namespace kelvane {
namespace {

using Bytes = std::vector<std::byte>;

// The place in the cache of one value of a file. What is kept begins with the outcome, `made` for a value behind it.
class Slot {
public:
    struct Found {
        MediaOutcome outcome = MediaOutcome::made;
        Bytes value;
    };

    Slot(RunCache* cache, ShellNamespace& shell, const ShellItem& item, CachedKind kind, std::string settings)
        : cache_(cache), shell_(shell), item_(item), kind_(kind), settings_(std::move(settings)), key_(keyNow())
    {
    }

    [[nodiscard]] std::optional<Found> find() const
    {
        auto bytes = key_ ? cache_->find(*key_) : std::nullopt;
        if (!bytes || bytes->empty())
            return std::nullopt;
        const auto outcome = static_cast<MediaOutcome>(bytes->front());
        if (!isLasting(outcome))
            return std::nullopt;
        bytes->erase(bytes->begin());
        return Found{outcome, std::move(*bytes)};
    }
    // A file that changed while it was read is kept under neither of its states.
    void keep(MediaOutcome outcome, Bytes value) const
    {
        if (!key_ || !isLasting(outcome) || key_->size != item_.info().size || keyNow() != key_)
            return;
        value.insert(value.begin(), static_cast<std::byte>(outcome));
        cache_->put(*key_, value);
    }

private:
    [[nodiscard]] std::optional<RunCacheKey> keyNow() const
    {
        return cache_ != nullptr ? runCacheKey(shell_, item_, kind_, settings_) : std::nullopt;
    }

    RunCache* cache_;
    ShellNamespace& shell_;
    const ShellItem& item_;
    CachedKind kind_;
    std::string settings_;
    std::optional<RunCacheKey> key_;
};

std::string fingerprintSettings(const SongOpening& opening)
{
    return std::to_string(fingerprintVersion) + ',' + std::to_string(opening.milliseconds) + ',';
}

std::string previewSettings(MediaKind kind)
{
    return std::to_string(previewVersion) + (kind == MediaKind::film ? 'f' : 'p');
}

std::string factsSettings()
{
    return std::to_string(mediaFactsVersion) + ',';
}

Bytes packed(const std::vector<NamedValue>& facts)
{
    ByteWriter out;
    writeNamedValues(out, facts);
    return out.take();
}

std::optional<std::vector<NamedValue>> unpackedFacts(std::span<const std::byte> bytes)
{
    ByteReader in(bytes);
    auto facts = readNamedValues(in);
    return in.atEnd() ? std::move(facts) : std::nullopt;
}

// Behind an outcome other than `made` stands what is known beyond it.
MediaFault faultOf(const Slot::Found& found)
{
    return {found.outcome, {}, keptDetail(found.value)};
}

// Whether the file was looked at for what it says of itself, whatever became of the rest.
bool tellsFacts(MediaOutcome outcome)
{
    return isLasting(outcome) || outcome == MediaOutcome::codecMissing;
}

}  // namespace

bool isLasting(MediaOutcome outcome)
{
    switch (outcome) {
    case MediaOutcome::made:
    case MediaOutcome::unknownFormat:
    case MediaOutcome::nothingThere:
    case MediaOutcome::tooShort:
    case MediaOutcome::lowRate:
    case MediaOutcome::featureless:
    case MediaOutcome::tooLarge:
    case MediaOutcome::encrypted:
    case MediaOutcome::damaged:
        return true;
    default:
        return false;
    }
}

MediaDescriber::MediaDescriber(ShellNamespace& shell, MediaReading& reading, RunCache* cache)
    : shell_(shell), reading_(reading), cache_(cache)
{
}

SoundDescription MediaDescriber::sound(const ShellItem& item, const CancelFlag& cancel) const
{
    const SongOpening opening(reading_.options().songStartMs);
    const Slot slot(cache_, shell_, item, CachedKind::audioFingerprint, fingerprintSettings(opening));
    if (const auto found = slot.find()) {
        if (found->outcome != MediaOutcome::made)
            return {nullptr, faultOf(*found)};
        if (Ref<MP3Finger> fingerprint = MP3Finger::unpacked(found->value, opening.frames))
            return {std::move(fingerprint), {}};
    }
    MediaAnswer answer = read(item, {.facts = true, .fingerprint = true}, cancel);
    slot.keep(answer.fault.outcome,
              answer.fingerprint ? answer.fingerprint->packed() : detailToKeep(answer.fault.detail));
    return {std::move(answer.fingerprint), std::move(answer.fault)};
}

PreviewDescription MediaDescriber::signature(const ShellItem& item, MediaKind kind, const CancelFlag& cancel) const
{
    const Slot slot(cache_, shell_, item, CachedKind::previewSignature, previewSettings(kind));
    if (const auto found = slot.find()) {
        if (found->outcome != MediaOutcome::made)
            return {std::nullopt, nullptr, faultOf(*found)};
        if (auto signature = PreviewSignature::unpacked(found->value))
            return {signature, nullptr, {}};
    }
    PreviewDescription made = makePreview(item, kind, cancel);
    slot.keep(made.fault.outcome, made.signature ? made.signature->packed() : detailToKeep(made.fault.detail));
    return made;
}

Ref<CachedBitmap> MediaDescriber::preview(const ShellItem& item, MediaKind kind, const CancelFlag& cancel) const
{
    const Slot slot(cache_, shell_, item, CachedKind::picturePreview, previewSettings(kind));
    if (const auto found = slot.find(); found && found->outcome == MediaOutcome::made)
        if (Ref<CachedBitmap> preview = CachedBitmap::unpacked(found->value))
            return preview;
    return makePreview(item, kind, cancel).preview;
}

// The preview is kept here: whoever needs only the signature next time finds that one alone.
PreviewDescription MediaDescriber::makePreview(const ShellItem& item, MediaKind kind, const CancelFlag& cancel) const
{
    const Slot slot(cache_, shell_, item, CachedKind::picturePreview, previewSettings(kind));
    const MediaWish wish{.facts = kind == MediaKind::film, .preview = true, .previewOf = kind};
    MediaAnswer answer = read(item, wish, cancel);
    if (!answer.preview)
        return {std::nullopt, nullptr, std::move(answer.fault)};
    slot.keep(MediaOutcome::made, answer.preview->packed());
    return {PreviewSignature::of(*answer.preview), std::move(answer.preview), {}};
}

MediaAnswer MediaDescriber::read(const ShellItem& item, MediaWish wish, const CancelFlag& cancel) const
{
    const auto latest = latest_.of(item);
    if (wish.facts)
        wish.facts = !latest->get([]() -> std::optional<Facts> { return std::nullopt; });
    MediaAnswer answer = reading_.read(item, wish, cancel);
    if (wish.facts && tellsFacts(answer.fault.outcome)) {
        Slot(cache_, shell_, item, CachedKind::mediaFacts, factsSettings())
            .keep(MediaOutcome::made, packed(answer.facts));
        latest->put(std::make_shared<const std::vector<NamedValue>>(answer.facts));
    }
    return answer;
}

std::vector<NamedValue> MediaDescriber::facts(const ShellItem& item, const CancelFlag& cancel) const
{
    const auto facts = latest_.of(item)->get([&]() -> std::optional<Facts> {
        Facts read = readFacts(item, cancel);
        return read ? std::optional(std::move(read)) : std::nullopt;
    });
    return facts ? **facts : std::vector<NamedValue>();
}

// A file that breaks its reader is not tried again for the next of its values, but in the next run.
MediaDescriber::Facts MediaDescriber::readFacts(const ShellItem& item, const CancelFlag& cancel) const
{
    const Slot slot(cache_, shell_, item, CachedKind::mediaFacts, factsSettings());
    if (const auto found = slot.find())
        if (auto facts = unpackedFacts(found->value))
            return std::make_shared<const std::vector<NamedValue>>(std::move(*facts));
    MediaAnswer answer = reading_.read(item, {.facts = true}, cancel);
    if (answer.fault.outcome == MediaOutcome::cancelled)
        return nullptr;
    if (tellsFacts(answer.fault.outcome))
        slot.keep(MediaOutcome::made, packed(answer.facts));
    return std::make_shared<const std::vector<NamedValue>>(std::move(answer.facts));
}

}  // namespace kelvane
