// A message that can be put off for ever: its tick "Do not show this again" sets a bit of the settings.
#pragma once

#include <QString>
#include <cstdint>
#include <functional>

namespace kelvane {

class WindowLink;

// Main thread. Opens the box, unless its bit of Settings::noticesOff is set; `then` is called when it is closed, or at
// once when it is not shown. The tick counts however it is closed.
void showNotice(WindowLink& link, std::uint32_t bit, const QString& text, const std::function<void()>& then = nullptr);

}  // namespace kelvane
