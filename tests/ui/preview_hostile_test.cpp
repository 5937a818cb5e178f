// Files that would keep a preview busy for ever, or the window with it.
#include <QTextBlock>
#include <QTreeWidget>
#include <filesystem>
#include <future>

#include "base/desktop_texts/preview.h"
#include "support/ui/preview_world.h"
#include "ui/preview/preview_worker.h"

namespace kelvane::testing {
namespace {

// A line of 200,000 letters once kept the main thread from its events for many seconds.
TEST(PreviewHostile, ShowsALongLineInPieces)
{
    PreviewWorld preview;
    std::string line;
    for (int i = 0; i < 200'000; ++i)
        line += static_cast<char>('a' + i % 26);
    preview.load({{"long.txt", line}, {"longer.txt", line + "z"}});
    preview.select(0);
    EXPECT_TRUE(preview.says("preview.charset", shown(desktop_text::previewLinesBroken)));
    const auto longest = [&](const char* view) {
        int most = 0;
        const QTextDocument& document = *preview.world.find<QPlainTextEdit>(view)->document();
        for (QTextBlock block = document.firstBlock(); block.isValid(); block = block.next())
            most = std::max(most, block.length());
        return most;
    };
    EXPECT_LE(longest("preview.text"), 501);
    ASSERT_TRUE(preview.world.trigger("view.sideBySide"));
    ASSERT_NE(preview.world.await<QPlainTextEdit>("compare.text1"), nullptr);
    EXPECT_LE(longest("compare.text1"), 501);
}

// What takes the place of a file after the scan is not waited for.
TEST(PreviewHostile, WaitsForNoPipeAndReadsNoDevice)
{
    PreviewWorld preview;
    const std::vector<std::string> ends{"txt", "bin", "jpg", "mp3", "mp4", "zip", "docx", "pdf", "cue"};
    std::vector<NamedFile> files;
    for (const std::string& end : ends)
        for (const char* const kind : {"pipe.", "device."})
            files.push_back({kind + end, "a file"});
    preview.load(files);
    for (const NamedFile& file : files) {
        const auto path = preview.world.tree.path("files/" + file.name);
        std::filesystem::remove(path);
        if (file.name.starts_with("device"))
            std::filesystem::create_symlink("/dev/zero", path);
        else
            ASSERT_EQ(std::system(("mkfifo '" + path.string() + "'").c_str()), 0);
    }
    auto* const facts = preview.world.find<QTreeWidget>("preview.facts");
    auto* const message = preview.world.find<QLabel>("preview.message");
    for (Row row = 0; row < files.size(); ++row) {
        preview.select(row);
        EXPECT_TRUE(waitUntil([&] {
            return facts->topLevelItemCount() > 2 &&
                   facts->topLevelItem(0)->text(1) == QString::fromStdString(files[row].name);
        })) << files[row].name;
        EXPECT_TRUE(message->isVisible()) << files[row].name << ": there is nothing to show";
        EXPECT_NE(message->text(), shown(desktop_text::previewReading)) << files[row].name;
    }
}

// A window that goes once waited for the slow disk that its preview was reading from.
TEST(PreviewHostile, TheEndOfAWindowWaitsForNoRead)
{
    DesktopWorld world;
    std::promise<void> disk;
    const std::shared_future<void> answers = disk.get_future().share();
    {
        PreviewWorker worker(world.desktop());
        worker.post([answers](PreviewTools&) { answers.wait(); });
        worker.post([](PreviewTools&) { ADD_FAILURE() << "what has not begun is dropped"; });
    }
    disk.set_value();
}

}  // namespace
}  // namespace kelvane::testing
