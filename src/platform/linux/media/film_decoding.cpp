#include <algorithm>
#include <utility>

#include "platform/linux/media/adapters.h"
#include "platform/linux/media/film_picture.h"

namespace kelvane {
namespace {

using linux_os::FilmFrames;

// Where frames are taken, in hundredths of the length: the first that is not black counts. Beginnings and ends are
// titles that many films have in common.
constexpr int places[] = {20, 35, 50, 65, 80};

// Copies of one film differ in length by the last frames and by how their sound ends. On half seconds, most of them
// agree all the same.
constexpr std::int64_t timeStep = 500;

// Mean brightness, of 255. Black of a film is rarely quite black.
constexpr std::uint64_t darkest = 16;

std::int64_t timeAt(std::int64_t duration, int place)
{
    return (duration * place / 100 + timeStep / 2) / timeStep * timeStep;
}

// Weights of the colours as in Rec. 601, in 256ths.
std::uint64_t brightness(const DecodedPicture& picture)
{
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i + 4 <= picture.pixels.size(); i += 4) {
        const auto sample = [&](std::size_t at) { return std::to_integer<std::uint64_t>(picture.pixels[i + at]); };
        sum += 29 * sample(0) + 150 * sample(1) + 77 * sample(2);
    }
    return sum / 256 / std::max<std::size_t>(picture.pixels.size() / 4, 1);
}

DecodedPicture nothing(MediaFault fault)
{
    return {std::move(fault), 0, 0, {}};
}

// Of the frames that there are, the first bright one, else the brightest.
class Choice {
public:
    // Whether to look no further.
    bool offer(DecodedPicture picture)
    {
        const std::uint64_t light = brightness(picture);
        if (picture.pixels.empty() || (best_.pixels.empty() ? false : light <= light_))
            return false;
        best_ = std::move(picture);
        light_ = light;
        return light_ >= darkest;
    }
    [[nodiscard]] DecodedPicture take(MediaFault fault)
    {
        return best_.pixels.empty() ? nothing(std::move(fault)) : std::move(best_);
    }

private:
    DecodedPicture best_;
    std::uint64_t light_ = 0;
};

class FfmpegFilmDecoding final : public FilmDecoding {
public:
    DecodedPicture preview(RandomAccessFile& file, std::string_view fileName, const PreviewBounds& bounds) override
    {
        auto opened = FilmFrames::open(file, fileName, bounds.pixels);
        if (!opened.frames)
            return nothing(std::move(opened.fault));
        return choose(*opened.frames, bounds);
    }

private:
    static DecodedPicture choose(FilmFrames& frames, const PreviewBounds& bounds)
    {
        Choice choice;
        MediaFault fault{MediaOutcome::nothingThere, {}, {}};
        std::int64_t last = -1;
        for (const int place : places) {
            const std::int64_t time = timeAt(frames.duration(), place);
            if (std::exchange(last, time) == time)
                continue;
            const linux_os::FfmpegFrame frame = frames.frameAt(time, fault);
            if (frame && choice.offer(framePreview(frames, *frame, bounds)))
                break;
        }
        return choice.take(std::move(fault));
    }
};

}  // namespace

std::unique_ptr<FilmDecoding> makeFfmpegFilmDecoding()
{
    return std::make_unique<FfmpegFilmDecoding>();
}

}  // namespace kelvane
