#include "ui/scan/local_path.h"

#include <QDir>
#include <QFile>

namespace kelvane {

std::string bytesOfPath(const QString& path)
{
    return QFile::encodeName(QDir::toNativeSeparators(path)).toStdString();
}

std::string bytesOfUrl(const QUrl& url)
{
    if (!url.isLocalFile())
        return {};
    const QString path = url.toLocalFile();
    if (path.contains(QChar::ReplacementCharacter))
        return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
    return bytesOfPath(path.size() > 1 && path.endsWith(u'/') ? path.chopped(1) : path);
}

}  // namespace kelvane
