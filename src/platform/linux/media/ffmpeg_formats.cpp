#include "platform/linux/media/ffmpeg_formats.h"

extern "C" {
#include <libavutil/avstring.h>
}

#include "platform/linux/media/ffmpeg_input.h"

namespace kelvane::linux_os {
namespace {

// What can be recognised by at most.
constexpr unsigned probeBytes = 1'048'576;

// FFmpeg knows many more: playlists and manifests that name other files, series of pictures, captures of devices,
// music that has to be composed first, and rarities in code that few have ever tried to break.
constexpr const char* readFormats =
    "aac,ac3,aiff,amr,amrnb,amrwb,ape,asf,au,av1,avi,caf,dsf,dts,dtshd,dv,eac3,flac,flv,gxf,h263,h264,hevc,iff,ivf,"
    "live_flv,loas,m4v,matroska,webm,mlp,mov,mp3,mpc,mpc8,mpeg,mpegts,mpegvideo,mxf,nsv,nut,obu,ogg,oma,rm,shn,tak,"
    "truehd,tta,vc1,voc,w64,wav,wtv,wv,xwma,yuv4mpegpipe";

// Whether files with such names are something that FFmpeg could write.
bool nameIsOfMedia(const std::string& fileName)
{
    return av_guess_format(nullptr, fileName.c_str(), nullptr) != nullptr;
}

MediaFormat unrecognised(const std::string& fileName)
{
    // "song.mp3" that is anything but that is damaged; "song.mid" is something else.
    return {nullptr, {nameIsOfMedia(fileName) ? MediaOutcome::damaged : MediaOutcome::unknownFormat, {}, {}}};
}

}  // namespace

MediaFormat recogniseFormat(AVIOContext& io, const std::string& fileName)
{
    const AVInputFormat* format = nullptr;
    const int score = av_probe_input_buffer2(&io, &format, fileName.c_str(), nullptr, 0, probeBytes);
    if (score < 0 || format == nullptr) {
        const bool plain = score >= 0 || score == AVERROR_INVALIDDATA || score == AVERROR_EOF;
        return plain ? unrecognised(fileName) : MediaFormat{nullptr, ffmpegFault(score)};
    }
    if (av_match_list(format->name, readFormats, ',') <= 0)
        return {nullptr, {MediaOutcome::unknownFormat, {}, format->name}};
    return {format, {}};
}

}  // namespace kelvane::linux_os
