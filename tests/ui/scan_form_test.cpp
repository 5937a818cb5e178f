#include "base/desktop_texts/scan.h"
#include "ui/scan/scan_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSlider>
#include <QTest>

#include "support/ui/scan_person.h"
#include "ui/core/local_path.h"
#include "ui/core/text.h"
#include "ui/scan/options_box.h"
#include "ui/scan/scan_modes.h"

namespace kelvane::testing {
namespace {

QString labelText(const DesktopWorld& world, const char* name)
{
    return world.find<QLabel>(name)->text();
}

bool awaitText(const DesktopWorld& world, const char* name, const QString& part)
{
    return waitUntil([&] { return labelText(world, name).contains(part); });
}

TEST(ScanForm, GivesBackTheDefinitionThatItWasShown)
{
    DesktopWorld world;
    ScanOrder order;
    order.definition.flags = scan_flag::fuzzy | scan_flag::contents | scan_flag::ignoreSmall;
    order.definition.setCategory(Category::images);
    order.definition.similarity = 83;
    order.definition.properties = "System.Size,System.FileName";
    order.definition.roots = world.platform.paths().joinRoots({"/x|y", "/z"});
    order.definition.sizeRange = "4096-1000001";
    order.definition.note = "mine";
    order.archives = order.exhaustive = true;
    scanPane(world).showOrder(order);
    const ScanOrder read = scanPane(world).order();
    EXPECT_EQ(read.definition.flags, order.definition.flags);
    EXPECT_EQ(read.definition.similarity, 83);
    EXPECT_EQ(read.definition.properties, order.definition.properties);
    EXPECT_EQ(read.definition.roots, order.definition.roots);
    EXPECT_EQ(read.definition.sizeRange, order.definition.sizeRange);
    EXPECT_EQ(read.definition.note, "mine");
    EXPECT_TRUE(read.archives && read.exhaustive);
    EXPECT_EQ(world.find<QLineEdit>("scan.sizeFrom")->text(), QStringLiteral("4K"));
}

TEST(ScanForm, TakesMasksOfOnesOwn)
{
    DesktopWorld world;
    auto* const category = world.find<QComboBox>("scan.category");
    auto* const masks = world.find<QLineEdit>("scan.masks");
    category->setCurrentIndex(static_cast<int>(Category::images));
    EXPECT_TRUE(masks->isReadOnly());
    EXPECT_TRUE(masks->text().contains(QStringLiteral("jpg")));
    category->setCurrentIndex(category->count() - 1);
    QTest::keyClicks(masks, QStringLiteral("*.iso, img"));
    const CScanNode definition = scanPane(world).order().definition;
    EXPECT_EQ(definition.category(), Category::custom);
    EXPECT_EQ(definition.masks, "*.iso,img");
    EXPECT_EQ(masksInForce(definition, {}), "*.iso,img");
}

TEST(ScanForm, SaysWhatIsWrongBesideTheControl)
{
    DesktopWorld world;
    world.loadList({{"a", "b"}});
    EXPECT_FALSE(scanBy(world, "scan.find"));
    EXPECT_TRUE(awaitText(world, "scan.check", shown(desktop_text::foldersNone)));
    EXPECT_EQ(world.link().rows().count(), 2u) << "a scan that is refused leaves the list alone";

    dropFolder(world, "scan.folderList", "/usr");
    dropFolder(world, "scan.folderList", world.tree.path("missing"));
    EXPECT_TRUE(awaitText(world, "scan.check", shown(desktop_text::folderProtected)));
    EXPECT_TRUE(awaitText(world, "scan.check", toQt(world.tree.path("missing").string())));
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    EXPECT_TRUE(awaitText(world, "scan.check", shown(desktop_text::foldersEffective)));

    world.find<QCheckBox>("scan.contents")->setChecked(false);
    EXPECT_TRUE(awaitText(world, "scan.compareProblem", shown(TextId::nothingIsCompared)));
    EXPECT_FALSE(scanBy(world, "scan.find"));
    world.find<QCheckBox>("scan.contents")->setChecked(true);
    EXPECT_TRUE(waitUntil([&] { return labelText(world, "scan.compareProblem").isEmpty(); }));

    QTest::keyClicks(world.find<QLineEdit>("scan.sizeFrom"), QStringLiteral("12 apples"));
    EXPECT_TRUE(labelText(world, "scan.sizeProblem").contains(QStringLiteral("12 apples")));
    EXPECT_FALSE(scanBy(world, "scan.find"));
    EXPECT_TRUE(labelText(world, "scan.compareProblem").isEmpty()) << "said once, beside the sizes";
    world.find<QLineEdit>("scan.sizeFrom")->setText(QStringLiteral("10K"));
    world.find<QLineEdit>("scan.sizeTo")->setText(QStringLiteral("9K"));
    EXPECT_EQ(labelText(world, "scan.sizeProblem"), shown(desktop_text::sizesBackwards));
    EXPECT_EQ(world.link().rows().count(), 2u);
}

TEST(ScanForm, NamesWhatADegreeOfSimilarityMeans)
{
    DesktopWorld world;
    auto* const slider = world.find<QSlider>("scan.similarity");
    EXPECT_EQ(labelText(world, "scan.similarityMeaning"), shown(desktop_text::similarityExact));
    EXPECT_FALSE(scanPane(world).order().definition.has(scan_flag::fuzzy));
    slider->setValue(80);
    EXPECT_EQ(labelText(world, "scan.similarityMeaning"), shown(desktop_text::similarityAlike, {"80"}));
    EXPECT_EQ(slider->accessibleDescription(), labelText(world, "scan.similarityMeaning"));
    EXPECT_EQ(scanPane(world).order().definition.effectiveSimilarity(), 80);
}

TEST(ScanForm, KeepsStandardModeOutOfSystemFoldersAndArchives)
{
    const auto risky = [](Settings& settings) {
        settings.lastScan.emplace();
        settings.lastScan->flags = scan_flag::contents;
        settings.flags |= option_flag::enterVirtualFolders;
    };
    DesktopWorld standard({.mode = InterfaceMode::standard, .change = risky});
    EXPECT_FALSE(standard.find<QCheckBox>("scan.protect")->isVisible());
    EXPECT_FALSE(standard.find<QCheckBox>("scan.archives")->isVisible());
    const ScanOrder order = scanPane(standard).order();
    EXPECT_TRUE(order.definition.has(scan_flag::protect));
    EXPECT_TRUE(order.definition.has(scan_flag::skipLinks));
    EXPECT_FALSE(order.archives);
    EXPECT_FALSE(order.definition.has(scan_flag::subfolders)) << "what the mode does offer stays as it was";
    scanPane(standard).setMode(InterfaceMode::advanced);
    EXPECT_TRUE(standard.find<QCheckBox>("scan.protect")->isVisibleTo(&standard.window()));
    EXPECT_TRUE(scanPane(standard).order().archives);
}

TEST(ScanForm, OffersNoLookIntoArchivesWhereNobodyReadsThem)
{
    ScanOrder order;
    order.archives = true;
    for (const bool here : {true, false}) {
        OptionsBox box(here);
        box.show(order);
        ScanOrder read;
        box.read(read);
        EXPECT_EQ(read.archives, here);
        const auto* const archives = box.findChild<QCheckBox*>(QStringLiteral("scan.archives"));
        EXPECT_EQ(archives->isEnabled(), here);
        EXPECT_EQ(archives->toolTip().isEmpty(), here) << "it says why";
    }
}

TEST(ScanForm, SaysThatAFolderWithoutATickIsSearchedWithTheOneAboveIt)
{
    DesktopWorld world({.files = [](const TempTree& tree) { tree.folder("files/pictures"); }});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    dropFolder(world, "scan.folderList", world.tree.path("files/pictures"));
    auto* const list = world.find<QListWidget>("scan.folders");
    const std::string above = list->item(0)->text().toStdString(), inside = list->item(1)->text().toStdString();
    const QString line =
        shown(desktop_text::folderDropped, {inside, shown(desktop_text::folderCovered, {above}).toStdString()});
    EXPECT_TRUE(awaitText(world, "scan.check", shown(TextId::rootInsideOther, {above})));
    EXPECT_FALSE(labelText(world, "scan.check").contains(line));
    EXPECT_TRUE(list->item(1)->toolTip().contains(shown(desktop_text::folderTickTip)));
    list->item(1)->setCheckState(Qt::Unchecked);
    EXPECT_TRUE(awaitText(world, "scan.check", line));
    list->item(0)->setCheckState(Qt::Unchecked);
    EXPECT_TRUE(waitUntil([&] { return !labelText(world, "scan.check").contains(line); }));
    list->item(0)->setCheckState(Qt::Checked);
    ASSERT_TRUE(awaitText(world, "scan.check", line));
    world.find<QCheckBox>("scan.subfolders")->setChecked(false);
    EXPECT_TRUE(waitUntil([&] { return !labelText(world, "scan.check").contains(line); }));
}

TEST(ScanForm, RemembersFoldersWithoutATickFromRunToRun)
{
    const auto kept = std::make_shared<MemorySettingsStore>();
    const auto other = [](const DesktopWorld& world) { return world.tree.path("files/other \xFF"); };
    std::string unticked;
    {
        DesktopWorld first({.kept = kept});
        dropFolder(first, "scan.folderList", first.tree.path("files"));
        unticked = other(first).string();
        dropFolder(first, "scan.folderList", unticked);
        auto* const list = first.find<QListWidget>("scan.folders");
        list->item(1)->setCheckState(Qt::Unchecked);
        first.find<QComboBox>("scan.category")->setCurrentIndex(static_cast<int>(Category::images));
        EXPECT_EQ(scanPane(first).order().definition.roots, first.tree.path("files").string());
        first.desktop().memory.forgetLayout();
    }
    DesktopWorld next({.kept = kept});
    auto* const list = next.find<QListWidget>("scan.folders");
    ASSERT_EQ(list->count(), 1) << "nothing was searched yet, so nothing has a tick";
    EXPECT_EQ(list->item(0)->checkState(), Qt::Unchecked);
    list->item(0)->setCheckState(Qt::Checked);
    EXPECT_EQ(scanPane(next).order().definition.roots, unticked);
}

TEST(ScanForm, TakesAFolderWhoseNameIsNoTextAlsoWhenItFallsOnTheWindow)
{
    if (std::filesystem::path::preferred_separator != '/')
        GTEST_SKIP() << "names are texts";
    DesktopWorld world({.files = [](const TempTree& tree) { tree.folder("files/\xFF\xFE"); }});
    const std::filesystem::path folder = world.tree.path("files/\xFF\xFE");
    dropFolder(world, "mainWindow", folder);
    EXPECT_TRUE(waitUntil([&] { return scanPane(world).order().definition.roots == folder.string(); }));
}

TEST(ScanForm, OffersBeginnersLargeChoices)
{
    DesktopWorld world({.mode = InterfaceMode::beginner, .files = [](const TempTree& tree) {
                            for (const char* const name : {"a.jpg", "b.jpg", "c.txt", "d.txt"})
                                tree.write(std::string("files/") + name, "the same");
                        }});
    EXPECT_TRUE(world.find<QWidget>("scan.express")->isVisible());
    EXPECT_FALSE(world.find<QWidget>("scan.form")->isVisible());
    dropFolder(world, "scan.express", world.tree.path("files"));
    click(world, "express.pictures");
    ASSERT_TRUE(scanBy(world, "express.find"));
    EXPECT_EQ(listedGroups(world), (NamedGroups{{"a.jpg", "b.jpg"}}));

    dropFolder(world, "scan.express", world.tree.path("missing"));
    EXPECT_FALSE(scanBy(world, "express.find"));
    EXPECT_TRUE(awaitText(world, "express.problem", QStringLiteral("missing")));

    scanPane(world).setMode(InterfaceMode::advanced);
    EXPECT_EQ(scanPane(world).order().definition.roots, world.tree.path("missing").string())
        << "the chosen folder stays";
}

TEST(LocalPath, KeepsTheBytesOfANameThatIsNoText)
{
    EXPECT_EQ(bytesOfUrl(QUrl(QStringLiteral("file:///a%20b/"))), "/a b");
    EXPECT_EQ(bytesOfUrl(QUrl(QStringLiteral("https://host/a"))), "");
    if (std::filesystem::path::preferred_separator == '/') {
        EXPECT_EQ(bytesOfUrl(QUrl(QStringLiteral("file:///a/%FF%FE/"))), "/a/\xFF\xFE");
    }
}

}  // namespace
}  // namespace kelvane::testing
