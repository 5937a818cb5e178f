#include "platform/linux/media/mono_sound.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <new>
#include <utility>

namespace kelvane::linux_os {
namespace {

// Of channels whose places are unknown, all count alike.
int mixEqually(SwrContext& converter, int channels)
{
    const std::vector<double> weights(static_cast<std::size_t>(channels), 1.0 / channels);
    return swr_set_matrix(&converter, weights.data(), channels);
}

}  // namespace

MonoSound::~MonoSound()
{
    av_channel_layout_uninit(&inputLayout_);
}

bool MonoSound::fits(const AVFrame& frame) const
{
    return converter_ && frame.sample_rate == inputRate_ && frame.format == inputFormat_ &&
           av_channel_layout_compare(&frame.ch_layout, &inputLayout_) == 0;
}

int MonoSound::prepare(const AVFrame& frame)
{
    if (const int error = av_channel_layout_copy(&inputLayout_, &frame.ch_layout); error < 0)
        return error;
    if (inputLayout_.order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(&inputLayout_, frame.ch_layout.nb_channels);
    inputRate_ = frame.sample_rate;
    inputFormat_ = frame.format;
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    SwrContext* made = nullptr;
    const int error = swr_alloc_set_opts2(&made, &mono, AV_SAMPLE_FMT_FLT, rate_, &inputLayout_,
                                          static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    converter_.reset(made);
    if (error < 0)
        return error;
    // The mix of full channels stays within -1 to 1.
    av_opt_set_double(made, "rematrix_maxval", 1.0, 0);
    if (inputLayout_.order == AV_CHANNEL_ORDER_UNSPEC)
        if (const int mixed = mixEqually(*made, inputLayout_.nb_channels); mixed < 0)
            return mixed;
    const int started = swr_init(made);
    // Compared with the next frame's, which says no more than this one.
    const int copied = av_channel_layout_copy(&inputLayout_, &frame.ch_layout);
    return started < 0 ? started : copied;
}

int MonoSound::convert(const std::uint8_t** input, int count)
{
    const int room = swr_get_out_samples(converter_.get(), count);
    if (room < 0)
        return room;
    const std::size_t before = samples_.size();
    samples_.resize(before + static_cast<std::size_t>(room));
    auto* output = reinterpret_cast<std::uint8_t*>(samples_.data() + before);
    const int made = swr_convert(converter_.get(), &output, room, input, count);
    samples_.resize(std::min(most_, before + static_cast<std::size_t>(std::max(made, 0))));
    return std::min(made, 0);
}

int MonoSound::add(const AVFrame& frame)
{
    if (!fits(frame)) {
        if (const int error = finish(); error < 0)
            return error;
        if (const int error = prepare(frame); error < 0)
            return error;
    }
    return convert(const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples);
}

int MonoSound::finish()
{
    const int error = converter_ && !full() ? convert(nullptr, 0) : 0;
    converter_.reset();
    return error;
}

std::vector<float> MonoSound::take()
{
    return std::exchange(samples_, {});
}

}  // namespace kelvane::linux_os
