#include <QListWidget>
#include <QTabWidget>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>

#include "base/desktop_texts/preview.h"
#include "support/ui/preview_world.h"
#include "ui/preview/picture_difference.h"

namespace kelvane::testing {
namespace {

class PreviewCompare : public ::testing::Test {
protected:
    // Opens the window for the first file, and waits until both texts are there.
    void open()
    {
        preview.load({{"a.txt", "same\nthe quick fox\n"}, {"b.txt", "same\nthe slow fox\n"}, {"c.txt", "same\n"}});
        preview.select(0);
        ASSERT_TRUE(preview.world.trigger("view.sideBySide"));
        ASSERT_NE(preview.world.await<QPlainTextEdit>("compare.text1"), nullptr);
    }
    PreviewWorld preview;
};

TEST_F(PreviewCompare, MarksTheChangedWordsOfTwoTexts)
{
    open();
    const auto marks = preview.world.find<QPlainTextEdit>("compare.text1")->extraSelections();
    ASSERT_EQ(marks.size(), 2);
    EXPECT_EQ(marks[0].cursor.block().text(), QStringLiteral("the slow fox"));
    EXPECT_EQ(marks[1].cursor.selectedText(), QStringLiteral("slow"));
    EXPECT_TRUE(marks[1].format.fontUnderline()) << "not told by colour alone";
    EXPECT_TRUE(preview.says("compare.summary", shown(desktop_text::compareTextsOnePlace)));
}

TEST_F(PreviewCompare, SetsPropertiesThatDifferInBold)
{
    open();
    const auto* const table = preview.world.find<QTreeWidget>("compare.facts");
    const auto isBold = [&](const QString& value) {
        const auto rows = table->findItems(value, Qt::MatchExactly, 1);
        return !rows.empty() && rows.front()->font(1).bold();
    };
    EXPECT_TRUE(isBold(QStringLiteral("a.txt")));
    EXPECT_TRUE(isBold(QStringLiteral("19 bytes")));
    const QString folder = QString::fromStdString(preview.world.tree.path("files").string());
    ASSERT_FALSE(table->findItems(folder, Qt::MatchExactly, 1).empty());
    EXPECT_FALSE(isBold(folder));
}

TEST_F(PreviewCompare, TakesAThirdFileThatIsTicked)
{
    open();
    preview.world.find<QListWidget>("compare.members")->item(2)->setCheckState(Qt::Checked);
    EXPECT_NE(preview.world.await<QPlainTextEdit>("compare.text2"), nullptr);
}

TEST_F(PreviewCompare, SaysThatRowsOfOneGroupAreToBeSelected)
{
    preview.load({{"a.txt", "1"}, {"b.txt", "2"}});
    QString told;
    QObject::connect(&preview.world.link(), &WindowLink::statusTold, &preview.world.window(),
                     [&told](const QString& text) { told = text; });
    preview.world.onWindowThread(
        [](Workbench& bench) { bench.results().mark(std::vector{bench.results().itemAt(0)}, Mark::selected, true); });
    ASSERT_TRUE(preview.world.trigger("preview.compare"));
    EXPECT_TRUE(waitUntil([&] { return told == shown(desktop_text::compareNeedsTwo); }));
}

TEST(PreviewWhy, ShowsTheStagesOfTheComparison)
{
    PreviewWorld preview;
    preview.load({{"a.bin", "the same"}, {"b.bin", "the same"}});
    preview.select(1);
    preview.world.find<QTabWidget>("preview.tabs")->setCurrentIndex(1);
    auto* const stages = preview.world.find<QTreeWidget>("preview.why");
    ASSERT_TRUE(waitUntil([&] { return stages->topLevelItemCount() > 0; }));
    const auto* const last = stages->topLevelItem(stages->topLevelItemCount() - 1);
    EXPECT_EQ(last->text(1), QStringLiteral("Contents"));
    EXPECT_EQ(last->text(7), shown(TextId::stageEqual));
    EXPECT_TRUE(preview.says("preview.whyLines", shown(TextId::filesMatch)));
    EXPECT_TRUE(preview.says("preview.whyAgainst", QStringLiteral("a.bin")));
}

TEST(PreviewPictures, DifferenceIsShownWhereItIsAndCounted)
{
    QImage first(10, 10, QImage::Format_RGB32), second(10, 10, QImage::Format_RGB32);
    first.fill(qRgb(90, 90, 90));
    second.fill(qRgb(92, 90, 90));  // too little to be seen
    second.setPixel(3, 4, qRgb(255, 255, 255));
    const PictureDifference apart = pictureDifference(first, second, Qt::red, 16);
    EXPECT_DOUBLE_EQ(apart.share, 0.01);
    EXPECT_EQ(apart.image.pixel(3, 4), qRgb(255, 0, 0));
    EXPECT_NE(apart.image.pixel(0, 0), qRgb(255, 0, 0));
    EXPECT_TRUE(pictureDifference(first, {}, Qt::red, 1).image.isNull());
}

}  // namespace
}  // namespace kelvane::testing
