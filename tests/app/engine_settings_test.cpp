#include "app/engine_settings.h"

namespace kelvane {
namespace {

// One limit of time serves for texts and for media; the opening of songs is that of the settings.
TEST(EngineSettings, WhatWorkersGoByComesFromTheSettings)
{
    Settings settings;
    settings.songStartMs = 20'000;
    settings.extractionTimeoutMs = 3'000;
    const EngineOptions options = engineOptionsFrom(settings);
    EXPECT_EQ(options.media.songStartMs, 20'000);
    EXPECT_EQ(options.media.timeout, std::chrono::seconds(3));
    EXPECT_EQ(options.extraction.timeout, std::chrono::seconds(3));
}

}  // namespace
}  // namespace kelvane
