// Sounds and films through FFmpeg's libraries, read from a file that is already open and from nothing else.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/media_decoding.h"

namespace kelvane::linux_os {

// Beside FFmpeg's own errors: the file could not be read. Its EIO may also mean that a file is shorter than it claims.
inline constexpr int unreadableError = FFERRTAG('k', 'v', 'i', 'o');

// Error codes in our terms; never `made`.
[[nodiscard]] MediaFault ffmpegFault(int error);

// Never give a null object: without memory they throw.
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeFrame {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
using FfmpegPacket = std::unique_ptr<AVPacket, FreePacket>;
using FfmpegFrame = std::unique_ptr<AVFrame, FreeFrame>;
[[nodiscard]] FfmpegPacket makePacket();
[[nodiscard]] FfmpegFrame makeFrame();

// What a file may cost. Streams can be made so that they yield nothing for as long as one reads.
struct FfmpegLimits {
    std::uint64_t bytes = 256u * 1'048'576u;  // read, whether or not twice
    std::uint64_t packets = 400'000;
};

// The containers that hold sound or films are known by their content. None that names other files (playlists,
// manifests, numbered pictures) is understood, and no other file is ever opened. Used by one thread at a time.
class FfmpegInput {
public:
    struct Opened {
        std::unique_ptr<FfmpegInput> input;  // null: see the fault
        MediaFault fault;
    };

    // The file outlives it. fileName helps to tell formats apart that have no mark of their own.
    [[nodiscard]] static Opened open(RandomAccessFile& file, std::string_view fileName,
                                     const FfmpegLimits& limits = {});
    virtual ~FfmpegInput() = default;

    [[nodiscard]] virtual AVFormatContext& format() = 0;
    // The first stream of the kind; null when there is none. Covers of albums are no moving pictures.
    [[nodiscard]] AVStream* first(AVMediaType kind);
    // The next packet of the stream, whose predecessor in `packet` is let go; 0, or an error, AVERROR_EOF at the end
    // and where a limit is reached. Damage ahead is skipped as far as FFmpeg can.
    [[nodiscard]] virtual int read(const AVStream& stream, AVPacket& packet) = 0;

    // Whether a limit was reached, so that an end is not the file's.
    [[nodiscard]] virtual bool limited() const = 0;

protected:
    FfmpegInput() = default;
    FfmpegInput(const FfmpegInput&) = delete;
    FfmpegInput& operator=(const FfmpegInput&) = delete;
};

// Whether what the stream holds is locked by a key.
[[nodiscard]] bool isEncrypted(const AVFormatContext& format, const AVStream& stream);

// The decoder of one stream, on this thread alone.
class FfmpegDecoder {
public:
    struct Opened {
        std::unique_ptr<FfmpegDecoder> decoder;  // null: see the fault
        MediaFault fault;
    };

    // input outlives it, and the stream is one of its own. A frame of more pixels is refused as damaged.
    [[nodiscard]] static Opened open(FfmpegInput& input, AVStream& stream, std::int64_t mostPixels = 400'000'000);

    // 0 and a frame, or an error; AVERROR_EOF after the last frame. Packets that cannot be decoded are
    // passed over, unless they are too many.
    [[nodiscard]] int next(AVFrame& frame);
    // After a jump to another place of the file.
    void forget();
    // Whether frames that no other frame builds on are passed over, which takes about half the time.
    void hurry(bool on) { context_->skip_frame = on ? AVDISCARD_NONREF : AVDISCARD_DEFAULT; }
    // FFmpeg's error with the last packet that was passed over; 0: there was none.
    [[nodiscard]] int damage() const { return damage_; }
    [[nodiscard]] const AVCodecContext& context() const { return *context_; }

private:
    struct Free {
        void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    };
    using Context = std::unique_ptr<AVCodecContext, Free>;

    FfmpegDecoder(FfmpegInput& input, AVStream& stream, Context context);
    [[nodiscard]] int feed();
    [[nodiscard]] int passOver(int error);

    FfmpegInput& input_;
    AVStream& stream_;
    Context context_;
    FfmpegPacket packet_;
    int badPackets_ = 0;
    int damage_ = 0;
    bool ended_ = false;
};

}  // namespace kelvane::linux_os
