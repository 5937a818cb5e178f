#include <QComboBox>
#include <QCommandLinkButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTextBrowser>
#include <QTreeView>

#include "cleanup/cleanup_plan.h"
#include "ui/clean/log_viewer.h"
#include "ui/clean_world.h"
#include "ui/core/text.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

std::uintmax_t namesOf(const CleanWorld& clean, const std::string& name)
{
    return std::filesystem::hard_link_count(clean.world.tree.path("files/" + name));
}

// From the choice to the box at the end.
void cleanUp(CleanWorld& clean, const char* choice, int linkKind = -1)
{
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    auto* const dialog = clean.world.await<QDialog>("cleanupChoice");
    ASSERT_TRUE(dialog);
    if (linkKind >= 0) {
        auto* const kinds = dialog->findChild<QComboBox*>(QStringLiteral("linkKind"));
        kinds->setCurrentIndex(kinds->findData(linkKind));
    }
    ASSERT_TRUE(clean.click("cleanupChoice", choice));
    const auto countedBefore = clean.world.desktop().settings().deduped;
    ASSERT_TRUE(clean.click("cleanupSummary", "cleanupGo"));
    ASSERT_TRUE(clean.world.await<QMessageBox>("cleanupDone"));
    EXPECT_GT(clean.world.desktop().settings().deduped, countedBefore) << "counted before the box is closed";
    ASSERT_TRUE(clean.answer("cleanupDone", QMessageBox::Ok));
    ASSERT_TRUE(clean.isOver());
}

TEST(CleanJourney, LinksAndTakesThemBack)
{
    CleanWorld clean;
    ASSERT_TRUE(clean.world.trigger("mark.wizard"));
    clean.world.await<QDialog>("markWizard")->findChild<QRadioButton*>(QStringLiteral("ruleFirst"))->click();
    ASSERT_TRUE(clean.click("markWizard", "wizardApply"));
    ASSERT_TRUE(waitUntil([&] { return clean.world.link().rows().figures().ticked.items == 3; }));

    // The page alone changes nothing.
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    ASSERT_TRUE(clean.click("cleanupChoice", "choiceLinks"));
    auto* const summary = clean.world.await<QDialog>("cleanupSummary");
    ASSERT_TRUE(summary);
    EXPECT_TRUE(summary->findChild<QTextBrowser*>(QStringLiteral("cleanupSummaryPage"))
                    ->toPlainText()
                    .contains(QStringLiteral("3")));
    ASSERT_TRUE(clean.escape("cleanupSummary"));
    ASSERT_TRUE(clean.isOver());
    EXPECT_EQ(namesOf(clean, "a2"), 1u);

    ASSERT_NO_FATAL_FAILURE(cleanUp(clean, "choiceLinks", static_cast<int>(LinkKind::hard)));
    EXPECT_EQ(namesOf(clean, "a1"), 3u);
    EXPECT_EQ(namesOf(clean, "b2"), 2u);
    EXPECT_THAT(clean.inView(), ElementsAre()) << "groups without a second file are dealt with";
    EXPECT_EQ(clean.world.desktop().settings().deduped, 3u);

    ASSERT_TRUE(clean.world.trigger("clean.undo"));
    ASSERT_TRUE(clean.answer("undoConfirm", QMessageBox::Yes));
    ASSERT_TRUE(clean.answer("undoTold", QMessageBox::Ok));
    ASSERT_TRUE(clean.isOver());
    EXPECT_EQ(namesOf(clean, "a1"), 1u);
    EXPECT_EQ(namesOf(clean, "b2"), 1u);
    EXPECT_EQ(clean.world.tree.read("files/a3"), "the same");

    ASSERT_TRUE(clean.world.trigger("clean.undo"));
    EXPECT_TRUE(clean.answer("undoTold", QMessageBox::Ok)) << "nothing is left to be taken back";
}

TEST(CleanJourney, ALongLogComesInPiecesAndIsSearchedWhole)
{
    CleanWorld clean;
    std::string whole;
    for (int line = 0; line < 40'000; ++line)
        whole += "file " + std::to_string(line) + '\n';
    clean.world.tree.write("long.log", whole);
    const auto memory = std::make_shared<CleanupMemory>();
    memory->lastLog = clean.world.tree.path("long.log");
    openLastLog(clean.world.link(), memory);
    auto* const log = clean.world.await<QDialog>("cleanupLog");
    ASSERT_TRUE(log);
    const auto* const text = log->findChild<QPlainTextEdit*>(QStringLiteral("logText"));
    EXPECT_LT(text->toPlainText().size(), static_cast<qsizetype>(whole.size()));
    EXPECT_FALSE(text->textCursor().hasSelection());
    log->findChild<QLineEdit*>(QStringLiteral("logFind"))->setText(QStringLiteral("file 39999"));
    ASSERT_TRUE(clean.click("cleanupLog", "logNext"));
    EXPECT_EQ(text->textCursor().selectedText(), QStringLiteral("file 39999"));
    EXPECT_EQ(text->toPlainText().toStdString(), whole);
    ASSERT_TRUE(clean.escape("cleanupLog"));
}

TEST(CleanJourney, TrashAndItemsBackOneByOne)
{
    CleanWorld clean(false);
    clean.tick({"a2", "a3"});
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    auto* const dialog = clean.world.await<QDialog>("cleanupChoice");
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->findChild<QWidget*>(QStringLiteral("choiceLinks")), nullptr) << "links are for experts";
    dialog->findChild<QLabel*>(QStringLiteral("cleanupHelp"))->setFocus();
    QTest::keyClick(dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible()) << "only a choice that has the focus is made by Enter";
    ASSERT_TRUE(clean.escape("cleanupChoice"));
    ASSERT_TRUE(clean.isOver());
    EXPECT_TRUE(clean.allExist());
    ASSERT_NO_FATAL_FAILURE(cleanUp(clean, "choiceDelete"));
    EXPECT_TRUE(clean.exists("a1"));
    EXPECT_FALSE(clean.exists("a2"));
    EXPECT_FALSE(clean.exists("a3"));

    ASSERT_TRUE(clean.world.trigger("clean.log"));
    auto* const log = clean.world.await<QDialog>("cleanupLog");
    ASSERT_TRUE(log);
    EXPECT_TRUE(log->findChild<QPlainTextEdit*>(QStringLiteral("logText"))
                    ->toPlainText()
                    .contains(QStringLiteral("FILES HANDLED")));
    ASSERT_TRUE(clean.escape("cleanupLog"));

    ASSERT_TRUE(clean.world.trigger("clean.runs"));
    auto* const runs = clean.world.await<QDialog>("earlierRuns");
    ASSERT_TRUE(runs);
    auto* const items = runs->findChild<QTreeView*>(QStringLiteral("runItemsTable"));
    ASSERT_TRUE(waitUntil([&] { return items->model()->rowCount() == 2; }));
    items->setCurrentIndex(items->model()->index(1, 0));
    ASSERT_TRUE(clean.click("earlierRuns", "runsTakeBackItems"));
    ASSERT_TRUE(clean.answer("undoConfirm", QMessageBox::Yes));
    ASSERT_TRUE(clean.answer("undoTold", QMessageBox::Ok));
    EXPECT_TRUE(clean.exists("a3"));
    EXPECT_FALSE(clean.exists("a2")) << "only the chosen item is back";
}

TEST(CleanJourney, RefusesAGroupMarkedWhole)
{
    CleanWorld clean;
    clean.tick({"a2", "b1", "b2"});
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    auto* const warning = clean.world.await<QMessageBox>("cleanupWarning");
    ASSERT_TRUE(warning);
    EXPECT_EQ(warning->text(), toQt(text(TextId::groupsWhollyMarked)));
    ASSERT_TRUE(clean.answer("cleanupWarning", QMessageBox::Ok));
    ASSERT_TRUE(clean.isOver());
    EXPECT_THAT(clean.inView(), ElementsAre("b1", "b2")) << "only what is to be looked at";
    EXPECT_TRUE(clean.allExist());
}

TEST(CleanJourney, NoAndEscapeEverywhereChangeNothing)
{
    CleanWorld clean;
    clean.tick({"a2", "b2"});
    clean.world.onWindowThread([](Workbench& bench) {
        const ItemId first = bench.results().itemAt(0);
        bench.results().hide({&first, 1}, hiding_flag::filter);
    });
    // Whatever is asked is closed.
    for (int steps = 1; steps <= 2; ++steps) {
        ASSERT_TRUE(clean.world.trigger("clean.start"));
        ASSERT_TRUE(clean.escape("cleanupHidden"));
        auto* const dialog = clean.world.await<QDialog>("cleanupChoice");
        ASSERT_TRUE(dialog);
        if (steps == 2) {
            ASSERT_TRUE(clean.click("cleanupChoice", "choiceDelete"));
            auto* const summary = clean.world.await<QDialog>("cleanupSummary");
            ASSERT_TRUE(summary);
            QTest::keyClick(summary, Qt::Key_Return);  // the default button
        } else {
            dialog->close();
        }
        ASSERT_TRUE(clean.isOver());
        EXPECT_TRUE(clean.allExist());
    }
}

TEST(CleanJourney, MarksThatChangeBehindThePageStopIt)
{
    CleanWorld clean;
    clean.tick({"a2"});
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    ASSERT_TRUE(clean.click("cleanupChoice", "choiceDelete"));
    ASSERT_TRUE(clean.world.await<QDialog>("cleanupSummary"));
    clean.world.onWindowThread([](Workbench& bench) { bench.results().clearTicks(); });
    ASSERT_TRUE(clean.click("cleanupSummary", "cleanupGo"));
    ASSERT_TRUE(clean.isOver());
    EXPECT_TRUE(clean.allExist()) << "the page said something else than what is marked now";
}

// One group; every file but the first is marked.
void loadMany(CleanWorld& clean, int count)
{
    std::vector<std::string> names;
    for (int number = 0; number < count; ++number)
        names.push_back("m" + std::to_string(number));
    clean.load({names});
    clean.tick({names.begin() + 1, names.end()});
}

TEST(CleanJourney, GoesOnAfterNoAndStopsInTheMiddleAfterYes)
{
    constexpr int count = 12'000;  // enough to still be at work after two questions
    CleanWorld clean;
    loadMany(clean, count);
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    ASSERT_TRUE(clean.click("cleanupChoice", "choiceDelete"));
    ASSERT_TRUE(clean.click("cleanupSummary", "cleanupGo"));
    ASSERT_TRUE(waitUntil([&] { return !clean.exists("m1"); }));
    ASSERT_TRUE(clean.escape("cleanProgress"));
    ASSERT_TRUE(clean.answer("cleanupStop", QMessageBox::No));
    ASSERT_TRUE(clean.escape("cleanProgress"));
    ASSERT_TRUE(clean.answer("cleanupStop", QMessageBox::Yes));
    ASSERT_TRUE(clean.answer("cleanupDone", QMessageBox::Ok));
    ASSERT_TRUE(clean.isOver());
    auto* const left = clean.world.await<QDialog>("cleanupStays");
    ASSERT_TRUE(left) << "what was not reached is told";
    const auto rows =
        static_cast<std::size_t>(left->findChild<QTreeView*>(QStringLiteral("itemsTable"))->model()->rowCount());
    EXPECT_TRUE(clean.exists("m0"));
    EXPECT_TRUE(clean.exists("m" + std::to_string(count - 1)));
    const auto there = clean.inView();
    EXPECT_EQ(there.size(), rows + 1);
    for (const std::string& name : there)
        EXPECT_TRUE(clean.exists(name)) << name;
    EXPECT_EQ(clean.names([](const ResultItem& item) { return item.isSelected(); }).size(), rows);
}

}  // namespace
}  // namespace kelvane::testing
