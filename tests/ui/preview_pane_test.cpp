#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>
#include <filesystem>

#include "base/desktop_texts/preview.h"
#include "support/ui/preview_world.h"
#include "ui/preview/hex_view.h"

namespace kelvane::testing {
namespace {

TEST(PreviewPane, ShowsTextInItsOwnCharset)
{
    PreviewWorld preview;
    // "Привет, мир! ..." in windows-1251.
    const std::string russian =
        "\xCF\xF0\xE8\xE2\xE5\xF2, \xEC\xE8\xF0! \xDD\xF2\xEE \xEF\xF0\xEE\xF1\xF2\xEE\xE9 \xF2\xE5\xEA\xF1\xF2 "
        "\xED\xE0 \xF0\xF3\xF1\xF1\xEA\xEE\xEC \xFF\xE7\xFB\xEA\xE5.\n";
    preview.load({{"a.txt", russian}, {"b.txt", std::string("\xFF\xFEH\0i\0", 6)}});
    preview.select(0);
    EXPECT_TRUE(preview.shows(QString::fromUtf16(u"Привет, мир!")));
    EXPECT_TRUE(preview.says("preview.charset", QStringLiteral("windows-1251")));
    preview.select(1);
    EXPECT_TRUE(preview.shows(QStringLiteral("Hi")));
    EXPECT_TRUE(preview.says("preview.charset", QStringLiteral("utf-16le")));
}

TEST(PreviewPane, SaysWhatBecameOfAFileSinceTheScan)
{
    PreviewWorld preview;
    preview.load({{"gone.txt", "one"}, {"changed.txt", "two"}, {"empty.txt", ""}});
    std::filesystem::remove(preview.world.tree.path("files/gone.txt"));
    preview.world.tree.write("files/changed.txt", "two and more");
    preview.select(0);
    EXPECT_TRUE(preview.says("preview.message", shown(desktop_text::previewGone)));
    preview.select(1);
    EXPECT_TRUE(preview.says("preview.state", shown(desktop_text::previewChanged)));
    EXPECT_TRUE(preview.shows(QStringLiteral("two and more")));
    preview.select(2);
    EXPECT_TRUE(preview.says("preview.message", shown(desktop_text::previewEmpty)));
    EXPECT_FALSE(preview.world.find<QLabel>("preview.state")->isVisible());
}

TEST(PreviewPane, ShowsOnlyTheLastOfManyFilesPassedQuickly)
{
    PreviewWorld preview;
    std::vector<NamedFile> files;
    for (int i = 0; i < 40; ++i)
        files.push_back({"f" + std::to_string(i) + ".txt", "text " + std::to_string(i) + "\n"});
    preview.load(files);
    auto* const text = preview.world.find<QPlainTextEdit>("preview.text");
    QStringList seen;
    QObject::connect(text, &QPlainTextEdit::textChanged, text, [&] { seen += text->toPlainText().trimmed(); });
    for (Row row = 0; row < 40; ++row)
        preview.select(row);
    EXPECT_TRUE(preview.shows(QStringLiteral("text 39")));
    EXPECT_EQ(seen, QStringList{QStringLiteral("text 39")});
}

// The view once asked for what it shows in its painting alone, and stayed blank where that came too early.
TEST(PreviewPane, ShowsBytesOfWhatIsNoTextToTheirEnd)
{
    PreviewWorld preview;
    std::string bytes(100'000, '\0');
    bytes.replace(bytes.size() - 10, 10, "the end ->");
    preview.load({{"a.bin", bytes}, {"large.bin", bytes}});
    preview.select(0);
    auto* const view = preview.world.find<HexView>("preview.bytes");
    ASSERT_TRUE(waitUntil([&] { return view->isVisible(); }));
    EXPECT_EQ(view->visibleLines().front().left(21), QStringLiteral("00000000  00 00 00 00"));
    const QSignalSpy chunks(view, &HexView::chunkWanted);
    QTest::keyClick(view, Qt::Key_End);
    EXPECT_TRUE(waitUntil([&] { return view->visibleLines().back().endsWith(QStringLiteral("e end ->")); }))
        << view->visibleLines().back().toStdString();
    EXPECT_LE(chunks.count(), 2) << "what was passed on the way is not read";

    // More lines than a scroll bar has steps.
    std::filesystem::resize_file(preview.world.tree.path("files/large.bin"), 0x5'0000'000F);
    preview.select(1);
    const auto last = [&] { return view->visibleLines().back().left(17); };
    EXPECT_TRUE(waitUntil([&] {
        QTest::keyClick(view, Qt::Key_End);
        return last() == QStringLiteral("000500000000  00 ");
    })) << last().toStdString();
}

TEST(PreviewPane, ListsWhatLiesInAnArchiveAndFactsOfTheFile)
{
    PreviewWorld preview;
    preview.load({{"a.tar", ""}});
    const auto folder = preview.world.tree.folder("packed");
    preview.world.tree.write("packed/inside.txt", "hello");
    const std::string command =
        "tar -C '" + folder.string() + "' -cf '" + preview.world.tree.path("files/a.tar").string() + "' inside.txt";
    ASSERT_EQ(std::system(command.c_str()), 0);
    preview.select(0);
    auto* const entries = preview.world.find<QTreeWidget>("preview.entries");
    ASSERT_TRUE(waitUntil([&] { return entries->isVisible() && entries->topLevelItemCount() == 1; }));
    EXPECT_EQ(entries->topLevelItem(0)->text(0), QStringLiteral("inside.txt"));
    EXPECT_EQ(entries->topLevelItem(0)->text(1), QStringLiteral("5 bytes"));
    auto* const facts = preview.world.find<QTreeWidget>("preview.facts");
    ASSERT_TRUE(waitUntil([&] { return facts->topLevelItemCount() > 3; }));
    EXPECT_EQ(facts->topLevelItem(0)->text(1), QStringLiteral("a.tar"));
}

}  // namespace
}  // namespace kelvane::testing
