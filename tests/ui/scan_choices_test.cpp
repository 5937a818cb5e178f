#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <set>

#include "app/kept_scans.h"
#include "base/desktop_texts/scan.h"
#include "support/ui/scan_person.h"
#include "ui/core/text.h"

namespace kelvane::testing {
namespace {

void accept(QDialog& dialog)
{
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
}

QTreeWidgetItem* propertyItem(QTreeWidget& tree, const QString& name)
{
    for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at)
        if ((*at)->data(0, Qt::UserRole).toString() == name)
            return *at;
    return nullptr;
}

// Opens the picker once the window's thread has said which properties there are.
QDialog* openPicker(DesktopWorld& world)
{
    auto* const button = world.find<QPushButton>("scan.pickProperties");
    EXPECT_TRUE(waitUntil([&] { return button->isEnabled(); }));
    button->click();
    return world.await<QDialog>("scan.picker");
}

TEST(PropertyPicker, FindsPropertiesAndKeepsTheOrderOfTheTicks)
{
    DesktopWorld world;
    QDialog* const picker = openPicker(world);
    ASSERT_NE(picker, nullptr);
    auto& tree = *picker->findChild<QTreeWidget*>();
    QStringList kinds;
    for (int at = 0; at < tree.topLevelItemCount(); ++at)
        kinds.append(tree.topLevelItem(at)->text(0));
    for (const TextId kind : {TextId::kindNumber, TextId::kindDate, TextId::kindText, TextId::kindEnumerated})
        EXPECT_TRUE(kinds.contains(shown(kind))) << shown(kind).toStdString();

    std::set<QString> labels;
    for (QTreeWidgetItemIterator at(&tree, QTreeWidgetItemIterator::NoChildren); *at != nullptr; ++at) {
        const QString label = (*at)->text(0);
        EXPECT_TRUE(labels.insert(label).second) << label.toStdString() << " is there twice";
        EXPECT_FALSE((label + (*at)->text(1)).contains(QStringLiteral("System."))) << label.toStdString();
    }

    QTreeWidgetItem* const title = propertyItem(tree, QStringLiteral("System.Title"));
    QTreeWidgetItem* const size = propertyItem(tree, QStringLiteral("System.Size"));
    ASSERT_TRUE(title != nullptr && size != nullptr);
    QTest::keyClicks(picker->findChild<QLineEdit*>(), QStringLiteral("system.title"));
    EXPECT_FALSE(title->isHidden());
    EXPECT_TRUE(size->isHidden());
    title->setCheckState(0, Qt::Checked);
    picker->findChild<QLineEdit*>()->clear();
    EXPECT_FALSE(size->isHidden());
    size->setCheckState(0, Qt::Checked);
    EXPECT_TRUE(picker->findChild<QLabel*>(QStringLiteral("scan.chosenProperties"))->text().contains(size->text(0)));
    accept(*picker);
    EXPECT_EQ(scanPane(world).order().definition.properties, "System.Title,System.Size");
}

TEST(PropertyPicker, ChangesNothingWhenItIsCancelled)
{
    DesktopWorld world;
    ScanOrder order;
    order.definition.properties = "System.Size,Gone.Property";
    scanPane(world).showOrder(order);
    QDialog* const picker = openPicker(world);
    ASSERT_NE(picker, nullptr);
    propertyItem(*picker->findChild<QTreeWidget*>(), QStringLiteral("System.Size"))->setCheckState(0, Qt::Unchecked);
    picker->reject();
    EXPECT_EQ(scanPane(world).order().definition.properties, "System.Size,Gone.Property");
}

// Types the name into the question that is open, and answers with OK.
void answerName(DesktopWorld& world, const QString& name)
{
    auto* const dialog = world.await<QDialog>("scan.nameDialog");
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QLineEdit*>()->setText(name);
    accept(*dialog);
}

// The menu as a person sees it when it is opened.
QMenu& openedMenu(const DesktopWorld& world, const char* name)
{
    QMenu& menu = *world.find<QMenu>(name);
    Q_EMIT menu.aboutToShow();
    return menu;
}

QAction* actionOf(const QMenu& menu, const QString& text)
{
    for (QAction* const action : menu.actions())
        if (action->text() == text)
            return action;
    return nullptr;
}

TEST(SavedScans, AreThereAtTheNextStartAndRun)
{
    const auto kept = std::make_shared<MemorySettingsStore>();
    {
        DesktopWorld first({.kept = kept});
        dropFolder(first, "scan.folderList", first.tree.path("files"));
        EXPECT_TRUE(first.trigger("scan.save"));
        answerName(first, QStringLiteral("  "));
        EXPECT_EQ(first.find<QLabel>("scan.nameProblem")->text(), shown(desktop_text::savedNoName));
        answerName(first, QStringLiteral("Mine & yours"));
        EXPECT_TRUE(waitUntil([&] { return first.find<QDialog>("scan.nameDialog") == nullptr; }));
        ASSERT_EQ(first.desktop().settings().savedScans.size(), 1u);
    }
    DesktopWorld next({.kept = kept});
    QMenu& menu = openedMenu(next, "menu.savedScans");
    QAction* const entry = actionOf(menu, QStringLiteral("Mine && yours"));
    ASSERT_NE(entry, nullptr);
    actionOf(*entry->menu(), shown(desktop_text::savedOpen))->trigger();
    EXPECT_TRUE(scanPane(next).order().definition.roots.ends_with("files"));
    actionOf(*entry->menu(), shown(desktop_text::savedRename))->trigger();
    answerName(next, QStringLiteral("Ours"));
    EXPECT_EQ(next.desktop().settings().savedScans.front().definition.name(), u"Ours");
    QMenu& again = openedMenu(next, "menu.savedScans");
    actionOf(*again.actions().front()->menu(), shown(desktop_text::savedDelete))->trigger();
    EXPECT_TRUE(next.desktop().settings().savedScans.empty());
}

TEST(ScanHistory, ShowsWhatWasSearchedAndWhatIsOutOfDate)
{
    const auto history = [](Settings& settings) {
        CScanNode definition;
        definition.roots = "/one & two";
        rememberScan(settings, definition, fileTimeFromUnix(1'700'000'000, 0));
        markStale(settings, definition);
    };
    DesktopWorld world({.change = history});
    QMenu& menu = openedMenu(world, "menu.scanHistory");
    QAction* const entry = menu.actions().front();
    EXPECT_TRUE(entry->text().contains(QStringLiteral("/one && two"))) << entry->text().toStdString();
    EXPECT_TRUE(entry->text().contains(QStringLiteral("2023")) || entry->text().contains(QStringLiteral("/23")))
        << entry->text().toStdString();
    EXPECT_TRUE(entry->text().endsWith(QStringLiteral("(cleaned up since)")));
    entry->trigger();
    EXPECT_EQ(scanPane(world).order().definition.roots, "/one & two");
    actionOf(menu, shown(desktop_text::historyClear))->trigger();
    EXPECT_TRUE(world.desktop().settings().scanHistory.empty());
}

TEST(FolderSets, AreSavedTakenAndDeleted)
{
    DesktopWorld world;
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    auto* const button = world.find<QPushButton>("scan.folderSets");
    const auto menu = [&]() -> QMenu& {
        Q_EMIT button->menu()->aboutToShow();
        return *button->menu();
    };
    actionOf(menu(), shown(desktop_text::setSaveAs))->trigger();
    answerName(world, QStringLiteral("Work"));
    ASSERT_EQ(world.desktop().settings().folderSets.size(), 1u);
    EXPECT_TRUE(world.trigger("scan.new"));
    EXPECT_TRUE(scanPane(world).order().definition.roots.empty());
    actionOf(menu(), QStringLiteral("Work"))->trigger();
    EXPECT_EQ(scanPane(world).order().definition.roots, world.tree.path("files").string());
    actionOf(*actionOf(menu(), shown(desktop_text::setDelete))->menu(), QStringLiteral("Work"))->trigger();
    EXPECT_TRUE(world.desktop().settings().folderSets.empty());
}

}  // namespace
}  // namespace kelvane::testing
