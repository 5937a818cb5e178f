// Files and folders that Qt hands over: chosen in its dialogs, or dropped.
#pragma once

#include <QMimeData>
#include <QString>
#include <QUrl>
#include <filesystem>
#include <string>
#include <vector>

namespace kelvane {

// All give paths as path rules have them: the bytes of the name. `path` is absolute, with "/" between names.
[[nodiscard]] std::string bytesOfPath(const QString& path);
[[nodiscard]] std::filesystem::path chosenPath(const QString& path);

// Empty when it is no file of this computer. A name that is no text keeps its bytes.
[[nodiscard]] std::string bytesOfUrl(const QUrl& url);
// Those that are files or folders of this computer.
[[nodiscard]] std::vector<std::filesystem::path> localFiles(const QMimeData& dropped);

}  // namespace kelvane
