#include "app/settings_lists.h"

#include <gmock/gmock.h>

#include "app/ignored_list.h"
#include "app/list_section.h"
#include "base/text_table.h"
#include "settings_back_ends.h"
#include "support/settings_world.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::SettingsComputer;
using ::testing::SizeIs;

constexpr auto done = SettingsCode::done;

CScanNode scanNamed(std::u16string name, std::string roots)
{
    CScanNode scan;
    scan.setName(std::move(name));
    scan.roots = std::move(roots);
    return scan;
}

// In one batch that is never committed: lists need no safe disk.
class SettingsLists : public ::testing::TestWithParam<testing::SettingsBackEnd> {
protected:
    SettingsLists() { EXPECT_EQ(store_->begin(), done); }
    [[nodiscard]] SettingsNode section(std::u16string_view name) { return {root_, name, SettingsAccess::writing}; }
    [[nodiscard]] std::vector<std::u16string> names(std::u16string_view name)
    {
        return SettingsNode(root_, name, SettingsAccess::reading).valueNames();
    }
    [[nodiscard]] Settings read(ReadList* list)
    {
        Settings settings;
        settings.folderMask = u"*.md";
        list(root_, context_, settings);
        return settings;
    }

    SettingsComputer computer_;
    std::unique_ptr<testing::SettingsWorld> world_ = GetParam().make();
    std::unique_ptr<SettingsStore> store_ = world_->open();
    SettingsRoot root_{store_.get(), GetParam().knowsTypes ? registryLocation() : SettingsLocation{u"", "/x.ini"}};
    SettingsContext context_ = computer_.context();
};

TEST_P(SettingsLists, FileTypesAreSixOrTheDefaults)
{
    Settings settings = read(readFileTypes);
    ASSERT_THAT(settings.fileTypes, SizeIs(7));
    EXPECT_EQ(settings.fileTypes[6].masks, "*.md") << "the folders' mask is a setting of its own";
    settings.fileTypes[0] = {u"Töne = alles", "OGG,ÄX"};
    settings.fileTypes[1].masks = "";
    settings.fileTypes[5].masks = "jpg";
    ASSERT_EQ(writeFileTypes(root_, settings), done);
    EXPECT_THAT(names(u"File types"), SizeIs(12)) << "the automatic last one is not stored";

    settings = read(readFileTypes);
    EXPECT_EQ(settings.fileTypes[0].name, u"Töne = alles");
    EXPECT_EQ(settings.fileTypes[0].masks, "ogg,äx");
    EXPECT_THAT(settings.fileTypes[1].masks, ::testing::StartsWith("wmv,"));
    EXPECT_EQ(settings.fileTypes[5].masks, "jpg");
    EXPECT_THAT(settings.fileTypes, SizeIs(7));

    for (const auto* name : {u"Name5", u"Text5", u"Name4", u"Text4"})
        ASSERT_EQ(section(u"File types").deleteValue(name), done);
    settings = read(readFileTypes);
    EXPECT_THAT(settings.fileTypes, SizeIs(7));
    EXPECT_THAT(settings.fileTypes[0].masks, ::testing::StartsWith("mp2,")) << "a list of four is discarded";
}

TEST_P(SettingsLists, NamesOfFileTypesThatNobodyChangedFollowTheLanguage)
{
    const TextsByNumber german = {{static_cast<std::uint16_t>(TextId::languageName), u"Deutsch"},
                                  {static_cast<std::uint16_t>(TextId::categoryMusic), u"Musik"},
                                  {static_cast<std::uint16_t>(TextId::categoryAll), u"Alle Dateitypen"}};
    ASSERT_TRUE(installTranslation(german));
    Settings settings = read(readFileTypes);
    EXPECT_EQ(settings.fileTypes[5].name, u"Alle Dateitypen");
    settings.fileTypes[0].name = u"Kl\u00E4nge";
    settings.fileTypes[5].masks = "jpg";
    ASSERT_EQ(writeFileTypes(root_, settings), done);

    releaseTranslation();
    settings = read(readFileTypes);
    EXPECT_EQ(settings.fileTypes[0].name, u"Kl\u00E4nge") << "that is the person's own name";
    EXPECT_EQ(settings.fileTypes[5].name, u"All file types");
    EXPECT_EQ(settings.fileTypes[5].masks, "jpg");
    ASSERT_EQ(writeFileTypes(root_, settings), done);

    ASSERT_TRUE(installTranslation(german));
    EXPECT_EQ(read(readFileTypes).fileTypes[5].name, u"Alle Dateitypen");
    releaseTranslation();
}

TEST_P(SettingsLists, SetsAreCutAndLeaveNothingBehind)
{
    EXPECT_THAT(read(readColumnSets).columnSets,
                ElementsAre(NamedText{u"sample", u"System.ItemNameDisplay,System.Size,System.ItemFolderPathDisplay"}));
    Settings settings;
    settings.folderSets.resize(60, {u"same", u" /a b|\"c\" \n"});
    ASSERT_EQ(writeFolderSets(root_, settings), done);
    EXPECT_THAT(read(readFolderSets).folderSets, SizeIs(50));
    EXPECT_EQ(read(readFolderSets).folderSets.back(), settings.folderSets.front()) << "blanks, quotes and line breaks";
    settings.folderSets.resize(1);
    ASSERT_EQ(writeFolderSets(root_, settings), done);
    EXPECT_THAT(names(u"Folder sets"), ElementsAre(u"Name0", u"Text0"));
    settings.folderSets.clear();
    ASSERT_EQ(writeFolderSets(root_, settings), done);
    EXPECT_THAT(names(u"Folder sets"), IsEmpty());
}

TEST_P(SettingsLists, ScansAreWholeDefinitions)
{
    Settings settings;
    settings.savedScans = {{scanNamed(u"a", "/a"), {}, false}};
    for (int number = 0; number < 55; ++number)
        settings.scanHistory.push_back({scanNamed(u"h", std::to_string(number)), {1'000 + number}, number == 1});
    ASSERT_EQ(writeSavedScans(root_, settings), done);
    ASSERT_EQ(writeScanHistory(root_, settings), done);
    EXPECT_EQ(read(readSavedScans).savedScans.at(0).definition.roots, "/a");
    EXPECT_EQ(read(readSavedScans).savedScans.at(0).when, FileTime{});
    const auto history = read(readScanHistory).scanHistory;
    ASSERT_THAT(history, SizeIs(50));
    EXPECT_EQ(history[12].definition.roots, "12") << "by number, not by text";
    EXPECT_EQ(history[12].when, FileTime{1'012});
    EXPECT_TRUE(history[1].stale);
    EXPECT_FALSE(history[2].stale);
}

TEST_P(SettingsLists, ADamagedScanTakesNoOtherWithIt)
{
    Settings settings;
    settings.savedScans = {{scanNamed(u"a", "/a"), {}, false}, {scanNamed(u"b", "/b"), {}, false}};
    ASSERT_EQ(writeSavedScans(root_, settings), done);
    const std::vector<std::byte> garbage(40, std::byte{0x5A});
    ASSERT_EQ(section(u"SavedScans").writeBinary(garbage.data(), u"Scan0", garbage.size()), done);
    ASSERT_EQ(section(u"SavedScans").writeString(u"no scan", u"Scan7"), done);
    ASSERT_EQ(section(u"SavedScans").writeString(u"no number", u"ScanX"), done);
    const auto scans = read(readSavedScans).savedScans;
    ASSERT_THAT(scans, SizeIs(1));
    EXPECT_EQ(scans[0].definition.roots, "/b");
}

TEST_P(SettingsLists, RecentDocumentsAreInOrderAndBounded)
{
    EXPECT_EQ(read(readRecentDocuments).recentDocuments.capacity, 5u);
    Settings settings;
    for (const char16_t* path : {u"/1", u"/2", u"/3", u"/1", u"/4"})
        addRecentDocument(settings.recentDocuments, path);
    EXPECT_THAT(settings.recentDocuments.paths, ElementsAre(u"/4", u"/1", u"/3", u"/2"));
    ASSERT_EQ(writeRecentDocuments(root_, settings), done);
    EXPECT_EQ(read(readRecentDocuments).recentDocuments.paths, settings.recentDocuments.paths);
    std::u16string first;
    auto list = section(u"general\\Recent Document List");
    EXPECT_EQ(list.readString(first, u"Document1"), done);
    EXPECT_EQ(first, u"/4");
    for (const auto& [stored, taken] : {std::pair{0u, 2u}, {2u, 2u}, {16u, 16u}, {17u, 16u}, {UINT32_MAX, 16u}}) {
        ASSERT_EQ(list.writeNumber(stored, u"DocumentCount"), done);
        EXPECT_EQ(read(readRecentDocuments).recentDocuments.capacity, taken);
    }
    ASSERT_EQ(list.writeNumber(2, u"DocumentCount"), done);
    EXPECT_THAT(read(readRecentDocuments).recentDocuments.paths, ElementsAre(u"/4", u"/1"));
}

TEST_P(SettingsLists, VolumesAndTags)
{
    Settings settings;
    settings.excludedVolumes = {0xDEADBEEB, 0, 0xFFFFFFFF};
    ASSERT_EQ(writeExcludedVolumes(root_, settings), done);
    ASSERT_EQ(section(u"Excluded volumes").writeString(u"none", u"Volume9"), done);
    EXPECT_EQ(read(readExcludedVolumes).excludedVolumes, settings.excludedVolumes);
    settings.excludedVolumes.clear();
    ASSERT_EQ(writeExcludedVolumes(root_, settings), done);
    EXPECT_FALSE(SettingsNode(root_, u"Excluded volumes", SettingsAccess::reading).isOpen());

    EXPECT_THAT(read(readTagColors).tagColors,
                ElementsAre(TagColor{u"Red", 0xFF}, TagColor{u"Green", 0xFF00}, TagColor{u"Blue", 0xFF0000}));
    for (int number = 0; number < 35; ++number)
        settings.tagColors.push_back({entryName(u"tag ", static_cast<std::size_t>(number)), 0x123456});
    ASSERT_EQ(writeTagColors(root_, settings), done);
    ASSERT_EQ(section(u"Tag colors").writeNumber(1, u"one more"), done);
    settings.tagColors.resize(30);
    // The registry lists values in an order of its own.
    EXPECT_THAT(read(readTagColors).tagColors, SizeIs(30));
    if (GetParam().keepsSectionOrder) {
        EXPECT_EQ(read(readTagColors).tagColors, settings.tagColors);
    }
}

IgnoredGroup declaration(std::uint64_t number)
{
    return {{static_cast<std::int64_t>(number)},
            {{{1, number}, {UINT64_MAX}, {3, 4}, "/name \xFF\n"}, {{UINT64_MAX, 2}, {0}, {UINT64_MAX, 0}, ""}}};
}

TEST_P(SettingsLists, IgnoredPairsAreWholeOrLeftOut)
{
    Settings settings;
    for (const std::uint64_t number : {7u, 8u, 9u})
        settings.ignoredGroups.push_back(declaration(number));
    ASSERT_EQ(writeIgnoredPairs(root_, settings), done);
    EXPECT_EQ(read(readIgnoredPairs).ignoredGroups, settings.ignoredGroups);
    EXPECT_THAT(showIgnoredPairs(settings), SizeIs(3));
    const std::vector<std::byte> block = blockOfIgnored(declaration(8));
    ASSERT_EQ(section(u"Ignored pairs").writeBinary(block.data(), u"Group1", block.size() - 1), done);
    ASSERT_EQ(section(u"Ignored pairs").writeString(u"no block", u"Group2"), done);
    EXPECT_THAT(read(readIgnoredPairs).ignoredGroups, ElementsAre(declaration(7)));
    settings.ignoredGroups.clear();
    ASSERT_EQ(writeIgnoredPairs(root_, settings), done);
    EXPECT_FALSE(SettingsNode(root_, u"Ignored pairs", SettingsAccess::reading).isOpen());
}

TEST(IgnoredBlocks, AnyDamageAndAnyExcessIsNoticed)
{
    const std::vector<std::byte> block = blockOfIgnored(declaration(5));
    ASSERT_TRUE(ignoredOfBlock(block));
    for (std::size_t at = 0; at < block.size(); ++at) {
        std::vector<std::byte> damaged = block;
        damaged[at] ^= std::byte{0x10};
        EXPECT_FALSE(ignoredOfBlock(damaged)) << at;
        EXPECT_FALSE(ignoredOfBlock(std::span(block).first(at))) << at;
    }
    IgnoredGroup large = declaration(5);
    EXPECT_TRUE(blockOfIgnored({{}, {large.files[0]}}).empty()) << "one file is apart from nobody";
    while (!blockOfIgnored(large).empty())
        large.files.push_back(large.files.front());
    EXPECT_GT(large.files.size(), 600u);
    large.files.pop_back();
    EXPECT_LT(blockOfIgnored(large).size(), 32'768u) << "what an INI file holds";
}

INSTANTIATE_TEST_SUITE_P(BackEnds, SettingsLists, ::testing::ValuesIn(testing::settingsBackEnds()),
                         [](const auto& place) { return place.param.name; });

}  // namespace
}  // namespace kelvane
