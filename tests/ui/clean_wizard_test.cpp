#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <QTreeView>

#include "base/desktop_texts/clean.h"
#include "ui/clean/place_list.h"
#include "ui/clean/text_values.h"
#include "ui/clean_world.h"
#include "ui/core/text.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

QString effectOf(std::uint64_t items, std::uint64_t bytes, std::uint64_t groups)
{
    return shown(desktop_text::wizardMarks, {countedItems(items).toStdString(), sizeShown(bytes).toStdString(),
                                             countedGroups(groups).toStdString()});
}

TEST(CleanWizard, MarksWhatItsPreviewSaid)
{
    CleanWorld clean;
    ASSERT_TRUE(clean.world.trigger("mark.wizard"));
    auto* const dialog = clean.world.await<QDialog>("markWizard");
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowTitle(), toQt(text(TextId::wizardTitle)));
    EXPECT_FALSE(dialog->findChild<QRadioButton*>(QStringLiteral("ruleBiggest"))->isEnabled()) << "sizes were compared";
    dialog->findChild<QRadioButton*>(QStringLiteral("ruleLast"))->click();
    auto* const effect = dialog->findChild<QLabel*>(QStringLiteral("wizardEffect"));
    EXPECT_TRUE(waitUntil([&] { return effect->text() == effectOf(3, 24, 2); })) << effect->text().toStdString();
    EXPECT_THAT(clean.ticked(), IsEmpty()) << "a preview marks nothing";
    ASSERT_TRUE(clean.click("markWizard", "wizardApply"));
    EXPECT_TRUE(waitUntil([&] { return clean.world.link().rows().figures().ticked.items == 3; }));
    EXPECT_THAT(clean.ticked(), ElementsAre("a1", "a2", "b1"));

    ASSERT_TRUE(clean.world.trigger("mark.wizard"));
    auto* const again = clean.world.await<QDialog>("markWizard");
    EXPECT_TRUE(again->findChild<QRadioButton*>(QStringLiteral("ruleLast"))->isChecked()) << "the rule chosen last";
    ASSERT_TRUE(clean.escape("markWizard"));
    EXPECT_THAT(clean.ticked(), ElementsAre("a1", "a2", "b1"));
}

TEST(CleanWizard, AsksBeforeGroupsLoseEveryCopy)
{
    CleanWorld clean;
    clean.load({{"in/x", "out/x"}, {"out/y", "out/z"}});
    ASSERT_TRUE(clean.world.trigger("mark.wizard"));
    auto* const dialog = clean.world.await<QDialog>("markWizard");
    ASSERT_TRUE(dialog);
    auto* const folder = dialog->findChild<QComboBox*>(QStringLiteral("wizardFolder"));
    const auto in = bytesFromNative(clean.world.tree.path("files/in").native());
    folder->addItem(toQt(in), QByteArray::fromStdString(in));
    folder->setCurrentIndex(folder->count() - 1);
    dialog->findChild<QRadioButton*>(QStringLiteral("ruleUnder"))->click();
    auto* const warning = dialog->findChild<QLabel*>(QStringLiteral("wizardWarning"));
    EXPECT_TRUE(waitUntil([&] { return warning->text() == shown(TextId::oneGroupLost); }));
    ASSERT_TRUE(clean.click("markWizard", "wizardApply"));
    ASSERT_TRUE(clean.escape("wizardQuestion"));
    clean.world.onWindowThread([](Workbench&) {});
    EXPECT_THAT(clean.ticked(), IsEmpty());
}

// A folder that is picked by way of a link is the folder that the list has under its real name.
TEST(CleanWizard, FoldersCountByWhateverNameTheyArePicked)
{
    CleanWorld clean;
    clean.load({{"real/x", "other/x"}});
    std::filesystem::create_directory_symlink(clean.world.tree.path("files/real"), clean.world.tree.path("short"));
    const auto picked = bytesFromNative(clean.world.tree.path("short").native());
    ASSERT_TRUE(clean.world.trigger("mark.wizard"));
    auto* const dialog = clean.world.await<QDialog>("markWizard");
    ASSERT_TRUE(dialog);
    dialog->findChild<QAbstractButton*>(QStringLiteral("wizardMore"))->click();
    auto* const list = dialog->findChild<QListWidget*>(QStringLiteral("wizardProtected"));
    auto* const effect = dialog->findChild<QLabel*>(QStringLiteral("wizardEffect"));
    dialog->findChild<QRadioButton*>(QStringLiteral("ruleLast"))->click();
    EXPECT_TRUE(waitUntil([&] { return effect->text() == effectOf(1, 8, 1); })) << effect->text().toStdString();
    qobject_cast<PlaceList*>(list->parentWidget())->add(picked);
    EXPECT_TRUE(waitUntil([&] { return effect->text().contains(shown(TextId::oneProtectedStays)); }));
    ASSERT_TRUE(clean.click("markWizard", "wizardApply"));
    clean.world.onWindowThread([](Workbench&) {});
    EXPECT_THAT(clean.ticked(), IsEmpty()) << "it was protected";
}

TEST(CleanWizard, PaneShowsWhatIsMarked)
{
    CleanWorld clean;
    auto* const pane = clean.world.find<QWidget>("markingPane");
    ASSERT_TRUE(pane);
    clean.world.find<QWidget>("pane.marking")->show();
    clean.tick({"a1", "b1", "b2"});
    auto* const sum = pane->findChild<QLabel*>(QStringLiteral("markingSum"));
    const QString wanted =
        shown(desktop_text::markingSum, {countedItems(3).toStdString(), sizeShown(24).toStdString()});
    EXPECT_TRUE(waitUntil([&] { return sum->text() == wanted; })) << sum->text().toStdString();
    auto* const lost = pane->findChild<QLabel*>(QStringLiteral("markingLost"));
    EXPECT_TRUE(lost->isVisible()) << "group b is marked whole";
    EXPECT_EQ(lost->text(), shown(desktop_text::markingGroupsLost, {countedGroups(1).toStdString()}));
    auto* const folders = pane->findChild<QTreeView*>(QStringLiteral("markingFolders"))->model();
    EXPECT_TRUE(waitUntil([&] { return folders->rowCount() == 1; }));
    EXPECT_EQ(folders->index(0, 0).data().toString(), pathShown(clean.world.tree.path("files")));
    EXPECT_EQ(folders->index(0, 1).data().toString(), QStringLiteral("3"));
}

}  // namespace
}  // namespace kelvane::testing
