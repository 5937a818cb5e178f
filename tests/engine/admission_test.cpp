#include "engine/admission.h"

#include <gtest/gtest.h>

#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

class AdmissionOfFiles : public ::testing::Test {
protected:
    static Ref<ShellItem> file(const std::string& name, std::uint64_t bytes, std::uint32_t attributes = 0,
                               FileKind kind = FileKind::regular, Ref<ShellItem> parent = nullptr,
                               ShellItem::Place place = ShellItem::Place::fileSystem)
    {
        FileInfo info;
        info.kind = kind;
        info.size.bytes = bytes;
        info.attributes = attributes;
        if (!parent)
            parent = ShellItem::make(nullptr, testing::native("/d"), {}, ShellItem::Place::fileSystem);
        return ShellItem::make(parent, testing::native(name), info, place);
    }
    bool admits(const ScanCriteria& criteria, const Ref<ShellItem>& item)
    {
        Admission admission(criteria, *world.shell, world.properties, {});
        const bool admitted = admission.test(item).has_value();
        offline = admission.offlineSkipped();
        outsideMasks = admission.outsideMasks();
        return admitted;
    }

    testing::ScanWorld world;
    std::uint64_t offline = 0, outsideMasks = 0;
};

TEST_F(AdmissionOfFiles, OnlyFilesWithTheRightName)
{
    const auto criteria = world.criteria(0, "System.Size", Category::images);
    EXPECT_TRUE(admits(criteria, file("a.JPG", 1)));
    EXPECT_FALSE(admits(criteria, file("a.txt", 1)));
    EXPECT_FALSE(admits(criteria, file("a.jpg", 1, 0, FileKind::link)));
    EXPECT_FALSE(admits(criteria, file("a.jpg", 1, 0, FileKind::other)));
    EXPECT_FALSE(admits(criteria, file("a.jpg", 1, 0, FileKind::folder)));
    const auto root =
        ShellItem::make(nullptr, testing::native("/d.d/a.jpg"), file("x", 1)->info(), ShellItem::Place::fileSystem);
    EXPECT_TRUE(admits(criteria, root));
}

TEST_F(AdmissionOfFiles, FilesOfACategoryThatItsMasksDoNotKnowAreCounted)
{
    auto criteria = world.criteria(0, "System.Size", Category::images);
    criteria.sizes.smallest = 5;
    const auto counted = [&](const std::string& name, std::uint64_t bytes = 10) {
        EXPECT_FALSE(admits(criteria, file(name, bytes)));
        return outsideMasks;
    };
    EXPECT_EQ(counted("a.WebP"), 1u);
    EXPECT_EQ(counted("a.opus"), 0u) << "of another category";
    EXPECT_EQ(counted("a.txt"), 0u);
    EXPECT_EQ(counted("a.webp", 4), 0u) << "left out for its size as well";
    criteria.definition.masks = "png,jpg";
    EXPECT_EQ(counted("a.webp"), 0u) << "a person said which";
}

TEST_F(AdmissionOfFiles, SmallFilesStayOutOnRequest)
{
    EXPECT_FALSE(admits(world.criteria(scan_flag::ignoreSmall), file("a", 50'000)));
    EXPECT_TRUE(admits(world.criteria(scan_flag::ignoreSmall), file("a", 50'001)));
    EXPECT_TRUE(admits(world.criteria(0), file("a", 0)));
    EXPECT_FALSE(admits(world.criteria(scan_flag::skipEmpty), file("a", 0)));
    EXPECT_TRUE(admits(world.criteria(scan_flag::skipEmpty), file("a", 1)));
    world.options.tinyFile.bytes = 10;  // never below 2048
    EXPECT_FALSE(admits(world.criteria(scan_flag::ignoreSmall), file("a", 2048)));
    EXPECT_TRUE(admits(world.criteria(scan_flag::ignoreSmall), file("a", 2049)));
    auto ranged = world.criteria(0);
    ranged.sizes = {10, 20};
    EXPECT_FALSE(admits(ranged, file("a", 9)));
    EXPECT_TRUE(admits(ranged, file("a", 20)));
    EXPECT_FALSE(admits(ranged, file("a", 21)));
}

TEST_F(AdmissionOfFiles, OfflineFilesStayOutOnlyWhenTheyWouldBeOpened)
{
    const auto away = file("a", 9, attribute::offline);
    EXPECT_FALSE(admits(world.criteria(scan_flag::contents), away));
    EXPECT_EQ(offline, 1u);
    EXPECT_TRUE(admits(world.criteria(0), away));
    EXPECT_EQ(offline, 0u);
    const auto entry = file("a", 9, attribute::offline, FileKind::regular, nullptr, ShellItem::Place::insideArchive);
    EXPECT_TRUE(admits(world.criteria(scan_flag::contents), entry));
}

TEST_F(AdmissionOfFiles, MarkedFilesStayOutOnRequest)
{
    for (const auto& [flag, marks] :
         {std::pair(scan_flag::skipLinks, attribute::reparsePoint), std::pair(scan_flag::protect, attribute::hidden),
          std::pair(scan_flag::protect, attribute::system)}) {
        EXPECT_FALSE(admits(world.criteria(flag), file("a", 1, marks)));
        EXPECT_TRUE(admits(world.criteria(0), file("a", 1, marks)));
    }
    const auto placeholder = file("a", 1, attribute::reparsePoint | attribute::cloudPlaceholder);
    EXPECT_TRUE(admits(world.criteria(scan_flag::skipLinks), placeholder));
}

TEST_F(AdmissionOfFiles, ThePrimaryPropertyMustHaveAValue)
{
    world.readers.set("/d/titled", "System.Title", RawValue::text(u"x"));
    world.readers.set("/d/blank", "System.Title", RawValue::text(u""));
    world.readers.set("/d/zero", "System.Media.Year", RawValue::number(VarType::uint32, 0));
    const auto byTitle = world.criteria(0, "System.Title");
    EXPECT_TRUE(admits(byTitle, file("titled", 1)));
    EXPECT_FALSE(admits(byTitle, file("blank", 1)));
    EXPECT_FALSE(admits(byTitle, file("none", 1)));
    EXPECT_TRUE(admits(world.criteria(0, "System.Media.Year"), file("zero", 1)));  // 0 is a value
}

}  // namespace
}  // namespace kelvane
