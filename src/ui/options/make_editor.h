// Which editor a row of the table of settings gets.
#pragma once

#include "app/setting_bits.h"
#include "ui/options/option_editor.h"

namespace kelvane {

// Never null; the caller takes it. The context's ports outlive the editor. Where settings are kept is no value like the
// others, see LocationEditor.
[[nodiscard]] OptionEditor* makeEditor(const SettingRow& row, const SettingsContext& context);
[[nodiscard]] OptionEditor* makeEditor(const SettingBit& bit);
[[nodiscard]] OptionEditor* makeInterfaceModeEditor();

}  // namespace kelvane
