#include "platform/linux/media/ffmpeg_input.h"

#include <algorithm>
#include <new>
#include <span>
#include <utility>

#include "platform/linux/media/ffmpeg_formats.h"

namespace kelvane::linux_os {
namespace {

constexpr int bufferSize = 64 * 1024;
constexpr int mostStreams = 256;
// A single block of memory that any of the libraries may ask for.
constexpr std::size_t largestBlock = 768u * 1'048'576u;

// The file as FFmpeg's libraries read it.
class Source {
public:
    Source(RandomAccessFile& file, std::uint64_t mostBytes) : file_(file), size_(file.size()), left_(mostBytes) {}

    [[nodiscard]] bool unreadable() const { return unreadable_; }
    [[nodiscard]] bool spent() const { return left_ == 0; }

    static int read(void* self, std::uint8_t* buffer, int count)
    {
        return static_cast<Source*>(self)->readNext(
            {reinterpret_cast<std::byte*>(buffer), static_cast<std::size_t>(std::max(count, 0))});
    }

    static std::int64_t seek(void* self, std::int64_t offset, int whence)
    {
        return static_cast<Source*>(self)->moveTo(offset, whence & ~AVSEEK_FORCE);
    }

private:
    int readNext(std::span<std::byte> buffer)
    {
        const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), left_));
        const auto count = file_.readAt(position_, buffer.first(most));
        if (!count) {
            unreadable_ = true;
            return AVERROR(EIO);
        }
        position_ += *count;
        left_ -= *count;
        return *count == 0 ? AVERROR_EOF : static_cast<int>(*count);
    }

    std::int64_t moveTo(std::int64_t offset, int whence)
    {
        const auto size = static_cast<std::int64_t>(size_);
        if (whence == AVSEEK_SIZE)
            return size;
        const std::int64_t origin = whence == SEEK_SET   ? 0
                                    : whence == SEEK_CUR ? static_cast<std::int64_t>(position_)
                                                         : size;
        // Subtraction cannot overflow where the sum could.
        if (offset < -origin || offset > INT64_MAX - origin)
            return AVERROR(EINVAL);
        position_ = static_cast<std::uint64_t>(origin + offset);
        return origin + offset;
    }

    RandomAccessFile& file_;
    std::uint64_t size_;
    std::uint64_t left_;
    std::uint64_t position_ = 0;
    bool unreadable_ = false;
};

struct FreeIo {
    void operator()(AVIOContext* io) const
    {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

struct FreeFormat {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
};

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(ENOENT);  // what stands in another file is not there
}

int isSpent(void* source)
{
    return static_cast<const Source*>(source)->spent() ? 1 : 0;
}

class OpenInput final : public FfmpegInput {
public:
    OpenInput(RandomAccessFile& file, const FfmpegLimits& limits) : source_(file, limits.bytes), left_(limits.packets)
    {
        auto* buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
        io_.reset(buffer == nullptr
                      ? nullptr
                      : avio_alloc_context(buffer, bufferSize, 0, &source_, &Source::read, nullptr, &Source::seek));
        if (!io_) {
            av_free(buffer);
            throw std::bad_alloc();
        }
    }

    [[nodiscard]] MediaFault begin(const std::string& fileName)
    {
        const MediaFormat found = recogniseFormat(*io_, fileName);
        if (found.format == nullptr)
            return faultOf(found.fault);
        if (const int error = openAs(*found.format, fileName); error < 0)
            return faultOf(ffmpegFault(error));
        const int error = avformat_find_stream_info(format_.get(), nullptr);
        if (error < 0 && format_->nb_streams == 0)
            return faultOf(ffmpegFault(error));
        return {};
    }

    AVFormatContext& format() override { return *format_; }
    bool limited() const override { return left_ == 0 || source_.spent(); }

    int read(const AVStream& stream, AVPacket& packet) override
    {
        // The other streams' packets are not even put together.
        for (unsigned i = 0; i < format_->nb_streams; ++i)
            format_->streams[i]->discard = format_->streams[i] == &stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        while (left_ > 0) {
            --left_;
            av_packet_unref(&packet);
            const int error = av_read_frame(format_.get(), &packet);
            if (error < 0 && error != AVERROR(EAGAIN))
                return source_.unreadable() ? unreadableError : source_.spent() ? AVERROR_EOF : error;
            if (error == 0 && packet.stream_index == stream.index)
                return 0;
        }
        return AVERROR_EOF;
    }

private:
    [[nodiscard]] MediaFault faultOf(MediaFault fault) const
    {
        if (source_.unreadable())
            fault.outcome = MediaOutcome::unreadable;
        return fault;
    }

    [[nodiscard]] int openAs(const AVInputFormat& known, const std::string& fileName)
    {
        AVFormatContext* context = avformat_alloc_context();
        if (context == nullptr)
            throw std::bad_alloc();
        context->pb = io_.get();
        context->flags |= AVFMT_FLAG_CUSTOM_IO;
        context->io_open = &refuseToOpen;
        context->interrupt_callback = {&isSpent, &source_};
        context->max_streams = mostStreams;
        context->protocol_whitelist = av_strdup("none");
        // On failure the context is freed.
        const int error = avformat_open_input(&context, fileName.c_str(), &known, nullptr);
        format_.reset(error < 0 ? nullptr : context);
        return error;
    }

    Source source_;
    std::uint64_t left_;
    std::unique_ptr<AVIOContext, FreeIo> io_;
    std::unique_ptr<AVFormatContext, FreeFormat> format_;  // reads from the one above
};

}  // namespace

FfmpegPacket makePacket()
{
    FfmpegPacket packet(av_packet_alloc());
    if (!packet)
        throw std::bad_alloc();
    return packet;
}

FfmpegFrame makeFrame()
{
    FfmpegFrame frame(av_frame_alloc());
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

FfmpegInput::Opened FfmpegInput::open(RandomAccessFile& file, std::string_view fileName, const FfmpegLimits& limits)
{
    av_log_set_level(AV_LOG_QUIET);
    av_max_alloc(largestBlock);
    auto input = std::make_unique<OpenInput>(file, limits);
    MediaFault fault = input->begin(std::string(fileName));
    if (fault.outcome != MediaOutcome::made)
        return {nullptr, std::move(fault)};
    return {std::move(input), {}};
}

AVStream* FfmpegInput::first(AVMediaType kind)
{
    const AVFormatContext& all = format();
    const auto streams = std::span(all.streams, all.nb_streams);
    const auto found = std::find_if(streams.begin(), streams.end(), [kind](const AVStream* stream) {
        constexpr int still = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
        return stream->codecpar->codec_type == kind && (stream->disposition & still) == 0;
    });
    return found == streams.end() ? nullptr : *found;
}

}  // namespace kelvane::linux_os
