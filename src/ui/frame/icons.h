// Icons of commands: drawn once as two-tone lines, in the colours of the palette in force.
#pragma once

#include <QIcon>
#include <QPalette>

namespace kelvane {

// Nothing for a name that nobody has drawn. To be asked again when the palette changes.
[[nodiscard]] QIcon commandIcon(const QString& name, QPalette::ColorRole accent = QPalette::Link);
// In its own colours.
[[nodiscard]] QIcon programIcon();

}  // namespace kelvane
