#include "ui/core/shown_values.h"

#include <QLocale>
#include <QStringList>
#include <optional>

#include "base/desktop_texts/frame.h"
#include "base/size_text.h"
#include "results/result_columns.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// In the order of their letters: each stands at its own place.
constexpr TextId attributeWords[] = {say::attributeReadOnly,   say::attributeHidden,  say::attributeSystem,
                                     say::attributeArchive,    say::attributeFolder,  say::attributeCompressed,
                                     say::attributeEncrypted,  say::attributeOffline, say::attributeLink,
                                     say::attributeNotIndexed, say::attributeSparse,  say::attributeTemporary};

QString wordsOfAttributes(std::u16string_view letters)
{
    if (letters.size() != std::size(attributeWords))
        return toQt(letters);
    QStringList words;
    for (std::size_t place = 0; place < letters.size(); ++place)
        if (letters[place] != u'-')
            words.append(shown(attributeWords[place]));
    return words.join(QStringLiteral(", "));
}

// From the one form of sizes to that of the place.
QString localSize(const QString& size)
{
    const QString number = size.section(u' ', 0, 0), unit = size.section(u' ', 1);
    if (unit == QStringLiteral("byte"))
        return shown(say::sizeOneByte);
    if (unit == QStringLiteral("bytes"))
        return shown(say::sizeManyBytes, {number.toStdString()});
    return shownNumber(number) + u' ' + unit;
}

// The system's own words for types are English, since files are compared by them.
QString typeInWords(const QString& type)
{
    const QString end = QStringLiteral(" file");
    if (type.endsWith(end))
        return shown(say::typeOfExtension, {type.chopped(end.size()).toStdString()});
    if (type == QStringLiteral("Folder") || type == QStringLiteral("File"))
        return shown(type == QStringLiteral("File") ? say::typeFile : say::typeFolder);
    return type;
}

// Of a rate that is kept as a thousand times the number of its unit; null for all others.
std::optional<TextId> unitOfThousandths(const PropRef& property)
{
    const std::string_view name = property.info->name;
    if (name == "System.Video.FrameRate")
        return say::unitFrames;
    if (name == "System.Audio.SampleRate")
        return say::unitKilohertz;
    if (name == "System.Audio.EncodingBitrate" || name == "System.Video.EncodingBitrate" ||
        name == "System.Video.TotalBitrate")
        return say::unitKilobits;
    return std::nullopt;
}

// With nothing of it lost: 23976 is "23.976".
QString thousandths(qulonglong number)
{
    QString text = QString::number(number / 1'000);
    QString rest = QStringLiteral("%1").arg(number % 1'000, 3, 10, QLatin1Char('0'));
    while (rest.endsWith(u'0'))
        rest.chop(1);
    return rest.isEmpty() ? text : shownNumber(text + u'.' + rest);
}

// What is neither a size nor attributes.
QString plainValue(const PropRef& property, std::u16string_view value)
{
    if (property.identifier == property_id::itemTypeText)
        return typeInWords(toQt(value));
    if (property.kind() == PropKind::real)
        return shownNumber(toQt(value));
    if (const std::optional<TextId> unit = unitOfThousandths(property)) {
        bool isNumber = false;
        const qulonglong number = toQt(value).toULongLong(&isNumber);
        return isNumber ? shown(*unit, {thousandths(number).toStdString()}) : toQt(value);
    }
    if (property.info->type == VarType::boolean && (value == u"True" || value == u"False"))
        return shown(value == u"True" ? TextId::wordTrue : TextId::wordFalse);
    return toQt(value);
}

bool holdsLetters(const PropRef& property)
{
    return property.info->name == "Stock.FileAttributes";
}

}  // namespace

QString shownSize(std::uint64_t bytes)
{
    return localSize(toQt(sizeText({bytes})));
}

std::string shownSizeText(FileSize size)
{
    return shownSize(size.bytes).toStdString();
}

QString shownExactSize(std::uint64_t bytes)
{
    constexpr std::uint64_t exactBelow = 10 * 1024;  // there the size itself is the exact number
    const QString size = shownSize(bytes);
    return bytes < exactBelow
               ? size
               : shown(say::sizeExact, {size.toStdString(), QLocale().toString(qulonglong{bytes}).toStdString()});
}

QString shownNumber(QString number)
{
    return number.replace(QStringLiteral("."), QLocale().decimalPoint());
}

QString shownCell(const PropRef& column, std::u16string_view cell)
{
    if (!column || cell.empty())
        return {};
    if (holdsLetters(column))
        return wordsOfAttributes(cell);
    return isSize(column) ? localSize(toQt(cell)) : plainValue(column, cell);
}

QString shownCell(ItemContext& file, const PropRef& column, const PropertySource& source)
{
    return shownCell(column, cellText(file, column, source));
}

QString shownValue(const PropRef& property, std::u16string_view value)
{
    if (!property || value.empty())
        return toQt(value);
    if (holdsLetters(property))
        return wordsOfAttributes(value);
    bool isNumber = false;
    const qulonglong bytes = toQt(value).toULongLong(&isNumber);
    return isSize(property) && isNumber ? shownExactSize(bytes) : plainValue(property, value);
}

}  // namespace kelvane
