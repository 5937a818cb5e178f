// Texts of the program, as Qt has them.
#pragma once

#include <QString>
#include <initializer_list>
#include <string>
#include <string_view>

#include "base/filled_text.h"
#include "base/text_table.h"

namespace kelvane {

[[nodiscard]] inline QString toQt(std::u16string_view text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline QString toQt(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

[[nodiscard]] inline std::u16string fromQt(const QString& text)
{
    return text.toStdU16String();
}

// For a tool tip, which would take the name of a file for markup where it looks like it.
[[nodiscard]] inline QString plainTip(const QString& text)
{
    return QStringLiteral("<p>") + text.toHtmlEscaped() + QStringLiteral("</p>");
}

// In the language in force. With parts: %1, %2 ... filled in, see filledText().
[[nodiscard]] inline QString shown(TextId id)
{
    return toQt(text(id));
}

[[nodiscard]] inline QString shown(TextId id, std::initializer_list<std::string_view> parts)
{
    return toQt(filledText(id, parts));
}

}  // namespace kelvane
