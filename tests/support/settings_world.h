// A computer with settings, made up in a folder of its own.
#pragma once

#include <memory>

#include "app/registry_access.h"
#include "base/utf.h"
#include "platform/ini_store.h"
#include "platform/platform.h"
#include "support/fake_places.h"
#include "support/fake_questions.h"
#include "support/fakes.h"
#include "support/faulty_output.h"
#include "support/memory_settings_store.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

struct SettingsComputer {
    TempTree tree;
    std::unique_ptr<Platform> platform = makePlatform();
    MemorySettingsStore registry;
    FakePlaces places{tree.path()};
    FakeSystemFacts facts;
    SimpleFolding folding;
    FakeClock clock;
    FakeQuestions questions;
    FaultyOutput output{platform->output()};

    SettingsComputer()
    {
        clock.milliseconds = 1'000'000;
        tree.folder("program");
    }

    [[nodiscard]] SettingsPorts ports()
    {
        return {.files = platform->files(),
                .output = output,
                .registry = registry,
                .places = places,
                .facts = facts,
                .folding = folding,
                .clock = clock,
                .makeIni = [this](const std::filesystem::path& path) {
                    return makeIniStore(platform->files(), output, folding, path);
                }};
    }

    [[nodiscard]] SettingsContext context() const
    {
        return {.facts = facts, .places = places, .folding = folding, .now = clock.now(), .version = 7};
    }
};

}  // namespace kelvane::testing
