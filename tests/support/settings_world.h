// A computer with settings, made up in a folder of its own.
#pragma once

#include <map>
#include <memory>

#include "app/registry_access.h"
#include "base/utf.h"
#include "platform/platform.h"
#include "support/fake_places.h"
#include "support/fake_questions.h"
#include "support/fakes.h"
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

    SettingsComputer() { clock.milliseconds = 1'000'000; }

    [[nodiscard]] SettingsContext context(bool inIniFile = false) const
    {
        return {.facts = facts,
                .places = places,
                .folding = folding,
                .now = clock.now(),
                .version = 7,
                .inIniFile = inIniFile};
    }
};

}  // namespace kelvane::testing
