#include "ui/clean/text_values.h"

#include <QDateTime>
#include <QLocale>

#include "app/error_text.h"
#include "base/desktop_texts/clean.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "platform/native_text.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr std::int64_t millisecondsTo1970 = 11'644'473'600'000;  // from 1601

}  // namespace

QString countedItems(std::uint64_t count)
{
    return toQt(countedText(count, desktop_text::oneItem, desktop_text::manyItems));
}

QString countedGroups(std::uint64_t count)
{
    return toQt(countedText(count, TextId::oneGroup, TextId::manyGroups));
}

QString sizeShown(std::uint64_t bytes)
{
    return shownSize(bytes);
}

QString timeShown(FileTime time)
{
    if (time.ticks == 0)
        return {};
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(time.ticks / ticksPerMillisecond - millisecondsTo1970);
    return QLocale().toString(when, QLocale::ShortFormat);
}

QString pathShown(const std::filesystem::path& path)
{
    return toQt(toUtf8(displayFromNative(path.native())));
}

QString pathShown(std::string_view bytes)
{
    return toQt(toUtf8(displayFromNative(bytes)));
}

QString errorShown(const Error& error)
{
    return toQt(errorText(error));
}

}  // namespace kelvane
