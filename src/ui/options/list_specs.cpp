#include "ui/options/list_specs.h"

#include <algorithm>

#include "app/plugin_list.h"
#include "app/settings_lists.h"
#include "app/settings_table.h"
#include "app/text_lists.h"
#include "base/desktop_texts/options.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QString hexadecimal(std::uint32_t number)
{
    return QStringLiteral("%1").arg(number, 8, 16, QLatin1Char('0')).toUpper();
}

// The last category is not stored: its masks are an option of their own.
std::size_t storedCategories(const Settings& settings)
{
    return settings.fileTypes.empty() ? 0 : settings.fileTypes.size() - 1;
}

ListRows readCategories(const Settings& settings)
{
    ListRows rows;
    for (std::size_t index = 0; index < storedCategories(settings); ++index)
        rows.push_back({toQt(settings.fileTypes[index].name), toQt(settings.fileTypes[index].masks)});
    return rows;
}

void writeCategories(Settings& settings, const ListRows& rows)
{
    const std::vector<FileCategory> usual = defaultCategories();
    for (std::size_t index = 0; index < std::min(rows.size(), storedCategories(settings)); ++index) {
        FileCategory& category = settings.fileTypes[index];
        const std::string masks = rows[index][1].simplified().remove(u' ').toLower().toStdString();
        category.masks = masks.empty() && index < usual.size() ? usual[index].masks : masks;
        if (const QString name = rows[index][0].trimmed(); !name.isEmpty())
            category.name = fromQt(name);
    }
}

template <std::vector<NamedText> Settings::*field>
ListRows readSets(const Settings& settings)
{
    ListRows rows;
    for (const NamedText& set : settings.*field)
        rows.push_back({toQt(set.name), toQt(set.text)});
    return rows;
}

template <std::vector<NamedText> Settings::*field>
void writeSets(Settings& settings, const ListRows& rows)
{
    (settings.*field).clear();
    for (const QStringList& row : rows) {
        if (!row[0].trimmed().isEmpty())
            (settings.*field).push_back({fromQt(row[0].trimmed()), fromQt(row[1].trimmed())});
    }
}

ListRows readTags(const Settings& settings)
{
    ListRows rows;
    for (const TagColor& tag : settings.tagColors)
        rows.push_back({toQt(tag.name), hexadecimal(tag.color)});
    return rows;
}

void writeTags(Settings& settings, const ListRows& rows)
{
    settings.tagColors.clear();
    for (const QStringList& row : rows) {
        if (!row[0].trimmed().isEmpty())
            settings.tagColors.push_back({fromQt(row[0].trimmed()), row[1].toUInt(nullptr, 16)});
    }
}

ListRows readVolumes(const Settings& settings)
{
    ListRows rows;
    for (const std::uint32_t serial : settings.excludedVolumes)
        rows.push_back({hexadecimal(serial)});
    return rows;
}

void writeVolumes(Settings& settings, const ListRows& rows)
{
    settings.excludedVolumes.clear();
    for (const QStringList& row : rows) {
        bool isNumber = false;
        const std::uint32_t serial = row[0].trimmed().remove(u'-').toUInt(&isNumber, 16);
        if (isNumber)
            settings.excludedVolumes.push_back(serial);
    }
}

ListRows readPlugins(const Settings& settings)
{
    ListRows rows;
    for (const ContentPluginEntry& entry : settings.contentPlugins)
        rows.push_back({toQt(textOfPath(entry.path)), toQt(entry.detect)});
    return rows;
}

void writePlugins(Settings& settings, const ListRows& rows)
{
    settings.contentPlugins.clear();
    for (const QStringList& row : rows) {
        if (!row[0].trimmed().isEmpty())
            settings.contentPlugins.push_back({pathOfText(fromQt(row[0].trimmed())), row[1].trimmed().toStdString()});
    }
}

// As the table of settings shows them, a line an entry.
ListRows linesOf(std::u16string_view key, const Settings& settings)
{
    ListRows rows;
    for (const std::u16string& line : std::get<ListRule>(findSetting(key)->rule).show(settings))
        rows.push_back({toQt(line)});
    return rows;
}

template <class Entries>
void eraseAt(Entries& entries, std::size_t row)
{
    if (row < entries.size())
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(row));
}

const std::vector<TextId> lines = {say::columnEntry};

const ListSpec specs[] = {
    {.key = u"File types",
     .columns = {say::columnName, say::columnMasks},
     .read = readCategories,
     .write = writeCategories,
     .canRemove = false},
    {.key = u"Column sets",
     .columns = {say::columnName, say::columnProperties},
     .read = readSets<&Settings::columnSets>,
     .write = writeSets<&Settings::columnSets>,
     .most = mostSets},
    {.key = u"Folder sets",
     .columns = {say::columnName, say::columnFolders},
     .read = readSets<&Settings::folderSets>,
     .write = writeSets<&Settings::folderSets>,
     .most = mostSets},
    {.key = u"Tag colors",
     .columns = {say::columnName, say::columnColor},
     .read = readTags,
     .write = writeTags,
     .most = mostTags,
     .colorColumn = 1},
    {.key = u"Excluded volumes",
     .columns = {say::columnSerial},
     .read = readVolumes,
     .write = writeVolumes,
     .most = 1'000},
    {.key = u"ContentPlugins",
     .columns = {say::columnLibrary, say::columnDetect},
     .read = readPlugins,
     .write = writePlugins,
     .most = mostPlugins},
    {.key = u"SavedScans",
     .columns = lines,
     .read = [](const Settings& settings) { return linesOf(u"SavedScans", settings); },
     .drop = [](Settings& settings, std::size_t row) { eraseAt(settings.savedScans, row); }},
    {.key = u"ScanHistory",
     .columns = lines,
     .read = [](const Settings& settings) { return linesOf(u"ScanHistory", settings); },
     .drop = [](Settings& settings, std::size_t row) { eraseAt(settings.scanHistory, row); }},
    {.key = u"Recent Document List",
     .columns = lines,
     .read = [](const Settings& settings) { return linesOf(u"Recent Document List", settings); },
     .drop = [](Settings& settings, std::size_t row) { eraseAt(settings.recentDocuments.paths, row); }},
    {.key = u"Ignored pairs",
     .columns = lines,
     .read = [](const Settings& settings) { return linesOf(u"Ignored pairs", settings); },
     .drop = [](Settings& settings, std::size_t row) { eraseAt(settings.ignoredGroups, row); }},
};

}  // namespace

const ListSpec* findListSpec(std::u16string_view key)
{
    const auto spec = std::find_if(std::begin(specs), std::end(specs), [&](const ListSpec& s) { return s.key == key; });
    return spec != std::end(specs) ? spec : nullptr;
}

}  // namespace kelvane
