// Lists of named texts: categories of file types, sets of columns, sets of folders.
#include <algorithm>
#include <array>

#include "app/list_section.h"
#include "app/settings_lists.h"
#include "base/text_table.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::u16string_view namePart = u"Name";
constexpr std::u16string_view textPart = u"Text";
constexpr std::size_t ownCategories = 5;  // the last two are "All file types" and "Folders"
constexpr std::size_t storedCategories = ownCategories + 1;
constexpr std::array standardNames = {TextId::categoryMusic,  TextId::categoryMovies, TextId::categoryDocuments,
                                      TextId::categoryPhotos, TextId::categoryEbooks, TextId::categoryAll};
static_assert(standardNames.size() == storedCategories);
constexpr std::u16string_view sampleColumns = u"System.ItemNameDisplay,System.Size,System.ItemFolderPathDisplay";

std::vector<NamedText> readNamed(const SettingsRoot& root, std::u16string_view section, std::size_t most)
{
    const SettingsNode node(root, section, SettingsAccess::reading);
    std::vector<NamedText> list;
    for (const std::size_t number : entryNumbers(node, namePart)) {
        NamedText entry;
        if (list.size() == most || node.readString(entry.name, entryName(namePart, number)) != SettingsCode::done)
            continue;
        static_cast<void>(node.readString(entry.text, entryName(textPart, number)));  // missing: empty
        list.push_back(std::move(entry));
    }
    return list;
}

SettingsCode writeNamed(const SettingsRoot& root, std::u16string_view section, const std::vector<NamedText>& list,
                        std::size_t most)
{
    ListWriter writer(root, section);
    for (std::size_t number = 0; number < std::min(list.size(), most); ++number) {
        writer.writeText(entryName(namePart, number), list[number].name);
        writer.writeText(entryName(textPart, number), list[number].text);
    }
    return writer.finish();
}

std::vector<std::u16string> shown(const std::vector<NamedText>& list)
{
    std::vector<std::u16string> lines;
    for (const NamedText& entry : list)
        lines.push_back(entry.name + u": " + entry.text);
    return lines;
}

// Names that nobody changed are kept in English, so that they are in the language of each run.
std::u16string keptName(const std::u16string& name, std::size_t category)
{
    return std::u16string(name == text(standardNames[category]) ? englishText(standardNames[category]) : name);
}
std::u16string nameInLanguage(const std::u16string& kept, std::size_t category)
{
    return std::u16string(kept == englishText(standardNames[category]) ? text(standardNames[category]) : kept);
}

// An entry without masks would admit every file: it takes those of the category it stands for.
FileCategory categoryOf(const NamedText& entry, const FileCategory& standard, const SettingsContext& context)
{
    const std::string masks = toUtf8(context.folding.lower(entry.text));
    return {entry.name, masks.empty() ? standard.masks : masks};
}

// Without the last one, which is made anew at every start.
std::vector<NamedText> namedCategories(const std::vector<FileCategory>& categories)
{
    std::vector<NamedText> list;
    for (const FileCategory& category : categories)
        list.push_back({category.name, toUtf16(category.masks)});
    if (!list.empty())
        list.pop_back();
    return list;
}

}  // namespace

void readFileTypes(const SettingsRoot& root, const SettingsContext& context, Settings& settings)
{
    std::vector<FileCategory> categories = defaultCategories();
    const std::vector<NamedText> stored = readNamed(root, u"File types", storedCategories + 1);
    if (stored.size() == storedCategories)
        for (std::size_t index = 0; index < storedCategories; ++index) {
            categories[index] = categoryOf(stored[index], categories[index], context);
            categories[index].name = nameInLanguage(stored[index].name, index);
        }
    categories.back().masks = toUtf8(settings.folderMask);
    settings.fileTypes = std::move(categories);
}

SettingsCode writeFileTypes(const SettingsRoot& root, const Settings& settings)
{
    std::vector<NamedText> list = namedCategories(settings.fileTypes);
    for (std::size_t index = 0; index < std::min(list.size(), storedCategories); ++index)
        list[index].name = keptName(list[index].name, index);
    return writeNamed(root, u"File types", list, storedCategories);
}

std::vector<std::u16string> showFileTypes(const Settings& settings)
{
    return shown(namedCategories(settings.fileTypes));
}

void readColumnSets(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    settings.columnSets = readNamed(root, u"Column sets", mostSets);
    if (settings.columnSets.empty())
        settings.columnSets.push_back({u"sample", std::u16string(sampleColumns)});
}

SettingsCode writeColumnSets(const SettingsRoot& root, const Settings& settings)
{
    return writeNamed(root, u"Column sets", settings.columnSets, mostSets);
}

std::vector<std::u16string> showColumnSets(const Settings& settings)
{
    return shown(settings.columnSets);
}

void readFolderSets(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    settings.folderSets = readNamed(root, u"Folder sets", mostSets);
}

SettingsCode writeFolderSets(const SettingsRoot& root, const Settings& settings)
{
    return writeNamed(root, u"Folder sets", settings.folderSets, mostSets);
}

std::vector<std::u16string> showFolderSets(const Settings& settings)
{
    return shown(settings.folderSets);
}

}  // namespace kelvane
