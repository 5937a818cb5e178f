#include "ui/core/local_path.h"

#include <QDir>

#include "base/wtf8.h"
#include "platform/native_text.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr bool namesAreBytes = sizeof(NativeString::value_type) == 1;

QString withoutEnd(const QString& path)
{
    return path.size() > 1 && path.endsWith(u'/') ? path.chopped(1) : path;
}

}  // namespace

std::string bytesOfPath(const QString& path)
{
    return wtf8FromUnits(fromQt(QDir::toNativeSeparators(path)));
}

std::filesystem::path chosenPath(const QString& path)
{
    return nativeFromBytes(bytesOfPath(path));
}

std::string bytesOfUrl(const QUrl& url)
{
    if (!url.isLocalFile())
        return {};
    const QString path = withoutEnd(url.toLocalFile());
    if (namesAreBytes && path.contains(QChar::ReplacementCharacter))
        return QByteArray::fromPercentEncoding(withoutEnd(url.path(QUrl::FullyEncoded)).toLatin1()).toStdString();
    return bytesOfPath(path);
}

std::vector<std::filesystem::path> localFiles(const QMimeData& dropped)
{
    std::vector<std::filesystem::path> files;
    for (const QUrl& url : dropped.urls())
        if (std::string bytes = bytesOfUrl(url); !bytes.empty())
            files.emplace_back(nativeFromBytes(bytes));
    return files;
}

}  // namespace kelvane
