// What the defaults of settings are made from.
#pragma once

#include <cstdint>
#include <filesystem>

#include "app/settings_location.h"
#include "base/file_time.h"
#include "platform/places.h"
#include "platform/text_folding.h"

namespace kelvane {

enum class TranslationState {
    none,      // no module is installed
    inactive,  // one is, but the built-in language is in force
    active,
};

// Gathered anew for each load or save; the ports must outlive it.
struct SettingsContext {
    const SystemFacts& facts;
    const Places& places;
    const TextFolding& folding;
    FileTime now;
    std::uint32_t version = 0;  // of the running program
    bool inIniFile = false;     // where these settings are kept
    TranslationState translation = TranslationState::none;
    std::uint32_t interfaceBits = 0;  // of binFlags: the answer of the first run
    bool windowsRules = std::filesystem::path::preferred_separator == '\\';
};

}  // namespace kelvane
