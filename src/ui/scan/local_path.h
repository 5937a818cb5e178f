// Paths that Qt hands over, in the form of path rules.
#pragma once

#include <QString>
#include <QUrl>
#include <string>

namespace kelvane {

// Of a path as Qt's dialogs give it: absolute, with "/" between names.
[[nodiscard]] std::string bytesOfPath(const QString& path);

// Of something dropped; empty when it is no file of this computer. A name that is no text keeps its bytes.
[[nodiscard]] std::string bytesOfUrl(const QUrl& url);

}  // namespace kelvane
