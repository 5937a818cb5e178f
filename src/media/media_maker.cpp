#include "media/media_maker.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/watched_file.h"

namespace kelvane {
namespace {

using Facts = std::vector<NamedValue>;

// Who comes first is believed.
void addNew(Facts& facts, Facts more)
{
    for (NamedValue& value : more) {
        const auto known = [&value](const NamedValue& fact) { return fact.name == value.name; };
        if (std::none_of(facts.begin(), facts.end(), known))
            facts.push_back(std::move(value));
    }
}

Facts factsOfStreams(RandomAccessFile& file, const std::string& fileName, const MediaDecoders& decoders)
{
    Facts facts;
    addNew(facts, decoders.tags.read(file, fileName));
    addNew(facts, decoders.streams.read(file, fileName));
    return facts;
}

// The name says who is asked first; a file under a wrong name is understood all the same.
Facts factsOf(RandomAccessFile& file, const std::string& fileName, const MediaDecoders& decoders)
{
    const bool picture = mediaKindOf(fileName) == MediaKind::picture;
    Facts facts = picture ? decoders.pictureFacts.read(file, fileName) : factsOfStreams(file, fileName, decoders);
    if (!facts.empty())
        return facts;
    return picture ? factsOfStreams(file, fileName, decoders) : decoders.pictureFacts.read(file, fileName);
}

MediaOutcome outcomeOf(MP3Finger::Lack lack)
{
    switch (lack) {
    case MP3Finger::Lack::none:
        break;
    case MP3Finger::Lack::tooShort:
        return MediaOutcome::tooShort;
    case MP3Finger::Lack::featureless:
        return MediaOutcome::featureless;
    }
    return MediaOutcome::made;
}

MediaFault addFingerprint(MediaAnswer& answer, RandomAccessFile& file, const MediaRequest& request,
                          SoundDecoding& sounds)
{
    const SongOpening opening(request.songStartMs);
    DecodedSound sound = sounds.opening(file, request.fileName, std::chrono::milliseconds(opening.decodedMs()));
    if (sound.fault.outcome != MediaOutcome::made)
        return std::move(sound.fault);
    MP3Finger::Lack lack = MP3Finger::Lack::none;
    answer.fingerprint = MP3Finger::make(sound.samples, opening, lack);
    return {outcomeOf(lack), {}, {}};
}

MediaFault addPreview(MediaAnswer& answer, RandomAccessFile& file, const MediaRequest& request,
                      const MediaDecoders& decoders)
{
    PreviewBounds bounds;
    bounds.width = CachedBitmap::mostWidth;
    bounds.height = CachedBitmap::mostHeight;
    DecodedPicture picture = request.wish.previewOf == MediaKind::film
                                 ? decoders.films.preview(file, request.fileName, bounds)
                                 : decoders.pictures.preview(file, request.fileName, bounds);
    if (picture.fault.outcome != MediaOutcome::made)
        return std::move(picture.fault);
    answer.preview = CachedBitmap::make(picture.width, picture.height, std::move(picture.pixels));
    return {answer.preview ? MediaOutcome::made : MediaOutcome::damaged, {}, {}};
}

MediaAnswer answerFrom(RandomAccessFile& file, const MediaRequest& request, const MediaDecoders& decoders)
{
    MediaAnswer answer;
    if (request.wish.facts)
        answer.facts = factsOf(file, request.fileName, decoders);
    if (request.wish.fingerprint)
        answer.fault = addFingerprint(answer, file, request, decoders.sounds);
    if (!request.wish.preview)
        return answer;
    MediaFault fault = addPreview(answer, file, request, decoders);
    if (answer.fault.outcome == MediaOutcome::made)
        answer.fault = std::move(fault);
    return answer;
}

}  // namespace

// What was made of a file of which some part could not be read would be kept for what the file is.
MediaAnswer makeMediaAnswer(RandomAccessFile& file, const MediaRequest& request, const MediaDecoders& decoders)
{
    WatchedFile watched(file);
    MediaAnswer answer = answerFrom(watched, request, decoders);
    if (!watched.failed())
        return answer;
    MediaAnswer nothing;
    nothing.fault = {MediaOutcome::unreadable, {}, std::move(answer.fault.detail)};
    return nothing;
}

}  // namespace kelvane
