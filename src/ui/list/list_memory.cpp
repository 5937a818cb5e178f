#include "ui/list/list_memory.h"

#include <QList>
#include <algorithm>

namespace kelvane {
namespace {

// A line for each column; what belongs to it stands behind a tab.
const QString chosenName = QStringLiteral("listColumns"), withoutName = QStringLiteral("listColumnsLeftOut"),
              widthsName = QStringLiteral("listColumnWidths"), groupedName = QStringLiteral("listKeepsGroups"),
              picturesName = QStringLiteral("listThumbnailsOfPictures"),
              othersName = QStringLiteral("listThumbnailsOfOthers");
constexpr std::string_view givenMark = "given";
constexpr int leastWidth = 10, mostWidth = 10'000;  // whatever somebody wrote into the settings

struct Line {
    std::string name, rest;
};

std::vector<Line> linesOf(const QByteArray& value)
{
    std::vector<Line> lines;
    for (const QByteArray& text : value.split('\n')) {
        const QList<QByteArray> parts = text.split('\t');
        if (!parts.front().isEmpty())
            lines.push_back({parts.front().toStdString(), parts.value(1).toStdString()});
    }
    return lines;
}

void append(QByteArray& value, std::string_view name, std::string_view rest = {})
{
    value.append(name.data(), static_cast<qsizetype>(name.size()));
    if (!rest.empty())
        value.append('\t').append(rest.data(), static_cast<qsizetype>(rest.size()));
    value.append('\n');
}

bool holds(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

QByteArray switched(bool on)
{
    return on ? QByteArrayLiteral("1") : QByteArrayLiteral("0");
}

}  // namespace

KeptColumns ListMemory::columns() const
{
    KeptColumns kept;
    for (const Line& line : linesOf(memory_.value(chosenName)))
        kept.chosen.push_back({line.name, line.rest == givenMark});
    for (const Line& line : linesOf(memory_.value(withoutName)))
        kept.without.push_back(line.name);
    return kept;
}

void ListMemory::choose(const std::vector<std::string>& names, const std::vector<ListColumn>& inView)
{
    QByteArray chosen, without;
    for (const std::string& name : names) {
        const auto known =
            std::find_if(inView.begin(), inView.end(), [&](const auto& one) { return one.name == name; });
        append(chosen, name, known != inView.end() && known->given ? givenMark : std::string_view());
    }
    std::vector<std::string> leftOut = names.empty() ? std::vector<std::string>() : columns().without;
    for (const ListColumn& column : inView)
        if (!holds(leftOut, column.name))
            leftOut.push_back(column.name);
    for (const std::string& name : leftOut)
        if (!names.empty() && !holds(names, name))
            append(without, name);
    memory_.setValue(chosenName, chosen);
    memory_.setValue(withoutName, without);
    if (names.empty())
        memory_.setValue(widthsName, {});
}

std::map<std::string, int> ListMemory::widths() const
{
    std::map<std::string, int> widths;
    for (const Line& line : linesOf(memory_.value(widthsName)))
        if (const int width = QByteArray::fromStdString(line.rest).toInt(); width > 0)
            widths[line.name] = std::clamp(width, leastWidth, mostWidth);
    return widths;
}

void ListMemory::setWidth(const std::string& name, int width)
{
    std::map<std::string, int> kept = widths();
    kept[name] = width;
    QByteArray value;
    for (const auto& [column, pixels] : kept)
        append(value, column, std::to_string(pixels));
    memory_.setValue(widthsName, value);
}

bool ListMemory::keepsGroups() const
{
    return memory_.value(groupedName) != switched(false);
}

void ListMemory::setKeepsGroups(bool on)
{
    memory_.setValue(groupedName, on ? QByteArray() : switched(false));
}

bool ListMemory::showsThumbnails(bool ofPictures) const
{
    const QByteArray value = memory_.value(ofPictures ? picturesName : othersName);
    return value.isEmpty() ? ofPictures : value == switched(true);
}

void ListMemory::setShowsThumbnails(bool ofPictures, bool on)
{
    memory_.setValue(ofPictures ? picturesName : othersName, on == ofPictures ? QByteArray() : switched(on));
}

}  // namespace kelvane
