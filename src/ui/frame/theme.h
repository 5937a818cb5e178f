// Colours of the program: light, dark, or as the system has them.
#pragma once

#include <cstdint>

#include "app/settings.h"
#include "ui/core/desktop_memory.h"

class QLabel;

namespace kelvane {

enum class Theme { system, light, dark };

// The dark one is a flag of the settings; whether the other one is light by choice or by the system stands beside the
// layout. On the main thread.
[[nodiscard]] Theme themeOf(const Settings& settings, const DesktopMemory& memory);
void chooseTheme(Theme theme, Settings& settings);
void rememberTheme(Theme theme, DesktopMemory& memory);

// Style and palettes of the whole program, the background of lists included. Widgets hear of it by their change events.
void applyTheme(Theme theme, const Settings& settings);
// Whether the palette in force is a dark one.
[[nodiscard]] bool isDarkNow();
// What a person must not overlook: bold, in a colour that can be read in both themes and follows them.
void makeWarning(QLabel& label);

}  // namespace kelvane
