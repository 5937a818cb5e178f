// Sound of any rate and number of channels as one channel of one rate.
#pragma once

extern "C" {
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
}

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace kelvane::linux_os {

// Sound that needs no change comes out as it went in, sample for sample.
class MonoSound {
public:
    // most: how many samples are kept.
    MonoSound(int rate, std::size_t most) : rate_(rate), most_(most) {}
    MonoSound(const MonoSound&) = delete;
    MonoSound& operator=(const MonoSound&) = delete;
    ~MonoSound();

    // 0, or an error of FFmpeg's. The form of the sound may change from frame to frame.
    [[nodiscard]] int add(const AVFrame& frame);
    // What was held back, since each sample depends on its neighbours.
    [[nodiscard]] int finish();
    [[nodiscard]] bool full() const { return samples_.size() >= most_; }
    [[nodiscard]] std::vector<float> take();

private:
    struct Free {
        void operator()(SwrContext* converter) const { swr_free(&converter); }
    };

    [[nodiscard]] bool fits(const AVFrame& frame) const;
    [[nodiscard]] int prepare(const AVFrame& frame);
    [[nodiscard]] int convert(const std::uint8_t** input, int count);

    int rate_;
    std::size_t most_;
    std::vector<float> samples_;
    std::unique_ptr<SwrContext, Free> converter_;
    int inputRate_ = 0;
    int inputFormat_ = 0;
    AVChannelLayout inputLayout_{};
};

}  // namespace kelvane::linux_os
