// Help as a person asks for it: the guide and its places, tips, keys, versions, and messages that are put off.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QtTest/QTest>

#include "platform/library_versions.h"
#include "support/ui/desktop_world.h"
#include "ui/core/text.h"
#include "ui/options/guide_window.h"
#include "ui/options/notice_box.h"
#include "ui/options/tips_dialog.h"

namespace kelvane::testing {
namespace {

QString shownChapter(const QWidget& guide)
{
    const auto* const chapters = guide.findChild<QListWidget*>(QStringLiteral("guideChapters"));
    return chapters->currentItem() == nullptr ? QString() : chapters->currentItem()->text();
}

TEST(Guide, OpensAtAPlaceAndGoesBackAndForth)
{
    DesktopWorld world;
    ASSERT_TRUE(world.trigger("help.guide"));
    auto* const guide = world.await<QWidget>("guideWindow");
    ASSERT_NE(guide, nullptr);
    EXPECT_EQ(shownChapter(*guide), QStringLiteral("Kelvane: user guide"));

    Q_EMIT world.link().helpWanted(QStringLiteral("toc_clean"));
    EXPECT_EQ(world.window().findChildren<GuideWindow*>().size(), 1) << "one a window";
    EXPECT_EQ(shownChapter(*guide), QStringLiteral("Cleaning up"));
    auto* const back = guide->findChild<QPushButton*>(QStringLiteral("guideBack"));
    auto* const forward = guide->findChild<QPushButton*>(QStringLiteral("guideForward"));
    QTest::mouseClick(back, Qt::LeftButton);
    QTest::mouseClick(back, Qt::LeftButton);
    EXPECT_EQ(shownChapter(*guide), QStringLiteral("Kelvane: user guide"));
    EXPECT_FALSE(back->isEnabled());
    QTest::mouseClick(forward, Qt::LeftButton);
    QTest::mouseClick(forward, Qt::LeftButton);
    EXPECT_EQ(shownChapter(*guide), QStringLiteral("Cleaning up"));
    EXPECT_FALSE(forward->isEnabled());
}

TEST(Guide, FollowsLinksAndScrollsToHeadings)
{
    DesktopWorld world;
    Q_EMIT world.link().helpWanted({});
    auto* const guide = world.await<QWidget>("guideWindow");
    auto* const text = guide->findChild<QTextBrowser*>(QStringLiteral("guideText"));
    guide->resize(600, 300);
    Q_EMIT text->anchorClicked(QUrl(QStringLiteral("undo.md")));
    EXPECT_EQ(shownChapter(*guide), QStringLiteral("Taking a clean-up back"));
    EXPECT_EQ(text->verticalScrollBar()->value(), 0);
    Q_EMIT world.link().helpWanted(QStringLiteral("the-same-without-windows"));
    EXPECT_EQ(shownChapter(*guide), QStringLiteral("When something does not work"));
    EXPECT_TRUE(waitUntil([&] { return text->verticalScrollBar()->value() > 0; })) << "a heading far down";
}

TEST(Guide, SearchLeavesTheChaptersThatHaveTheWords)
{
    DesktopWorld world;
    Q_EMIT world.link().helpWanted({});
    auto* const guide = world.await<QWidget>("guideWindow");
    auto* const chapters = guide->findChild<QListWidget*>(QStringLiteral("guideChapters"));
    guide->findChild<QLineEdit*>(QStringLiteral("guideSearch"))->setText(QStringLiteral("memory dump"));
    EXPECT_EQ(shownChapter(*guide), QStringLiteral("Privacy"));
    int left = 0;
    for (int row = 0; row < chapters->count(); ++row)
        left += chapters->item(row)->isHidden() ? 0 : 1;
    EXPECT_EQ(left, 1);
    const auto* const text = guide->findChild<QTextBrowser*>(QStringLiteral("guideText"));
    EXPECT_GE(text->extraSelections().size(), 2);
}

TEST(Tips, GoRoundInBothDirectionsAndCanBeSwitchedOff)
{
    DesktopWorld world;
    ASSERT_TRUE(world.trigger("help.tips"));
    auto* const dialog = world.await<QWidget>("tipsDialog");
    ASSERT_NE(dialog, nullptr);
    const auto* const tip = dialog->findChild<QLabel*>(QStringLiteral("tipText"));
    auto* const next = dialog->findChild<QPushButton*>(QStringLiteral("tipNext"));
    const QString first = tip->text();
    QStringList seen{first};
    for (int step = 1; step < TipsDialog::count(); ++step) {
        QTest::mouseClick(next, Qt::LeftButton);
        seen.push_back(tip->text());
    }
    EXPECT_EQ(seen.removeDuplicates(), 0);
    EXPECT_GE(seen.size(), 12);
    QTest::mouseClick(next, Qt::LeftButton);
    EXPECT_EQ(tip->text(), first);
    QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("tipPrevious")), Qt::LeftButton);
    EXPECT_EQ(tip->text(), seen.back());
    QTest::keyClick(dialog, Qt::Key_Return);
    EXPECT_EQ(tip->text(), first) << "Enter goes on";

    dialog->findChild<QCheckBox*>(QStringLiteral("tipsAtStart"))->setChecked(false);
    EXPECT_EQ(world.desktop().settings().tipOfTheDay, 0u);
}

TEST(Keyboard, ListsWhatTheMenusHave)
{
    DesktopWorld world;
    ASSERT_TRUE(world.trigger("help.keyboard"));
    auto* const dialog = world.await<QWidget>("keyboardDialog");
    auto* const list = dialog->findChild<QTreeWidget*>(QStringLiteral("keyboardList"));
    for (const char* const name : {"help.guide", "view.sort"}) {  // the second one has a menu of its own
        const auto* const command = world.find<QAction>(name);
        const auto found = list->findItems(command->text().remove(u'&'), Qt::MatchExactly | Qt::MatchRecursive);
        ASSERT_EQ(found.size(), 1) << name;
        EXPECT_EQ(found[0]->text(1), command->shortcut().toString(QKeySequence::NativeText));
    }
    dialog->findChild<QLineEdit*>(QStringLiteral("keyboardSearch"))->setText(QStringLiteral("no such command"));
    for (int at = 0; at < list->topLevelItemCount(); ++at)
        EXPECT_TRUE(list->topLevelItem(at)->isHidden());
}

TEST(About, NamesTheVersionsOfProgramAndLibraries)
{
    DesktopWorld world;
    ASSERT_TRUE(world.trigger("help.about"));
    auto* const dialog = world.await<QWidget>("aboutDialog");
    const QString lines = dialog->findChild<QLabel*>(QStringLiteral("aboutLines"))->text();
    EXPECT_TRUE(lines.contains(toQt(CAppVersionInfo::versionText()))) << lines.toStdString();
    EXPECT_TRUE(lines.contains(QLatin1String(qVersion()))) << lines.toStdString();
    EXPECT_FALSE(libraryVersions().empty());
    for (const LibraryVersion& library : libraryVersions()) {
        EXPECT_EQ(library.version.find_first_not_of("0123456789."), std::string::npos) << library.name;
        EXPECT_NE(library.version.find('.'), std::string::npos) << library.name << ' ' << library.version;
        EXPECT_TRUE(lines.contains(QString::fromStdString(library.name + ' ' + library.version))) << library.name;
    }
}

TEST(NoticeBox, IsShownUntilItsTickIsSet)
{
    constexpr std::uint32_t bit = 0x40000000;
    DesktopWorld world;
    int closed = 0;
    const auto show = [&] { showNotice(world.link(), bit, QStringLiteral("said"), [&] { ++closed; }); };
    show();
    auto* box = world.await<QMessageBox>("noticeBox");
    ASSERT_NE(box, nullptr);
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return world.find<QMessageBox>("noticeBox") == nullptr; }));
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(world.desktop().settings().noticesOff & bit, 0u);

    show();
    box = world.await<QMessageBox>("noticeBox");
    box->checkBox()->setChecked(true);
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return world.find<QMessageBox>("noticeBox") == nullptr; }));
    EXPECT_EQ(world.desktop().settings().noticesOff & bit, bit) << "the tick counts however the box is closed";

    show();
    EXPECT_EQ(closed, 3);
    EXPECT_EQ(world.find<QMessageBox>("noticeBox"), nullptr);
}

}  // namespace
}  // namespace kelvane::testing
