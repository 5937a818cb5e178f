// The option bits that a person may choose, one by one: beside the table of settings, where they are whole words.
#pragma once

#include <span>

#include "app/questions.h"
#include "app/settings_table.h"

namespace kelvane {

struct SettingBit {
    std::u16string_view key;  // of the setting that holds it
    std::uint32_t Settings::*word;
    std::uint32_t bit;
    bool isOff;  // the tick stands for the bit being clear
    TextId label;
    OptionsPage page;

    [[nodiscard]] bool isTicked(const Settings& settings) const { return ((settings.*word & bit) != 0) != isOff; }
    void tick(Settings& settings, bool on) const;
};

// In the order of their pages. Bits that the program sets by itself, and those of the interface mode, are not here.
[[nodiscard]] std::span<const SettingBit> settingBits();

[[nodiscard]] InterfaceMode interfaceModeOf(const Settings& settings);
void setInterfaceMode(Settings& settings, InterfaceMode mode);

}  // namespace kelvane
