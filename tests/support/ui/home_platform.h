// The real platform, but for what belongs to the person who runs the tests: settings, places, other programs.
#pragma once

#include "support/fake_crash_capture.h"
#include "support/fake_places.h"
#include "support/fake_processes.h"
#include "support/memory_settings_store.h"
#include "support/real_platform.h"

namespace kelvane::testing {

class HomePlatform final : public RealPlatform {
public:
    // What the program keeps lies below `home`, see FakePlaces.
    explicit HomePlatform(const std::filesystem::path& home) : ownPlaces(home) {}

    FakePlaces ownPlaces;
    FakeProcesses otherPrograms;  // records what was opened
    MemorySettingsStore settingsStore;
    FakeCrashCapture crashes;

    Places& places() override { return ownPlaces; }
    Processes& processes() override { return otherPrograms; }
    SettingsStore& registry() override { return settingsStore; }
    CrashCapture& crashCapture() override { return crashes; }
};

}  // namespace kelvane::testing
