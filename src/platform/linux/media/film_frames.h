// Single frames of a film by their time.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/linux/media/ffmpeg_input.h"

namespace kelvane::linux_os {

// Used by one thread at a time. Times are in milliseconds from the first frame on.
class FilmFrames {
public:
    struct Opened {
        std::unique_ptr<FilmFrames> frames;  // null: see the fault
        MediaFault fault;
    };

    // Of the first moving picture. The file outlives it.
    [[nodiscard]] static Opened open(RandomAccessFile& file, std::string_view fileName, std::uint64_t mostPixels);

    // How long the moving picture is: as the file says, or else found by reading it to its end. 0: nobody knows.
    [[nodiscard]] std::int64_t duration() const { return duration_; }
    // The frame that is on screen at this time, or the last one before damage or the end; null with a fault where there
    // is none. Jumps to a place from where the film can be decoded and goes on from there, so that the outcome does not
    // depend on how often an encoder left such places.
    [[nodiscard]] FfmpegFrame frameAt(std::int64_t time, MediaFault& fault);

    [[nodiscard]] FfmpegInput& input() { return *input_; }
    [[nodiscard]] AVStream& stream() { return stream_; }

private:
    FilmFrames(std::unique_ptr<FfmpegInput> input, AVStream& stream, std::unique_ptr<FfmpegDecoder> decoder);

    [[nodiscard]] std::int64_t statedDuration() const;
    [[nodiscard]] std::int64_t measuredDuration();
    [[nodiscard]] bool jump(std::int64_t time);
    [[nodiscard]] FfmpegFrame decodeUpTo(std::int64_t time, MediaFault& fault);
    [[nodiscard]] bool startsLater(const AVFrame& frame, std::int64_t time) const;
    [[nodiscard]] bool isNear(std::int64_t at, std::int64_t time) const;
    [[nodiscard]] std::int64_t stamp(std::int64_t time) const;

    std::unique_ptr<FfmpegInput> input_;
    AVStream& stream_;
    std::unique_ptr<FfmpegDecoder> decoder_;
    std::int64_t duration_;
};

}  // namespace kelvane::linux_os
