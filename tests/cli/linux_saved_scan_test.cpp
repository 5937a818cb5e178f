// A saved scan of a tree with all that Linux allows.
#include "saved_scan_world.h"
#include "support/linux_archive_maker.h"

namespace kelvane {
namespace {

using nlohmann::json;

class SavedScan : public testing::SavedScanWorld {
protected:
    // Without what no two scans have in common.
    static json withoutTimes(const std::string& text)
    {
        json document = json::parse(text);
        document.at("stats").merge_patch({{"seconds", nullptr}, {"phases", nullptr}});
        return document;
    }

    // Above the size up to which files are compared in full.
    void writeHuge(const char* name) const { std::filesystem::resize_file(tree_.write(name, "x"), 12u << 20); }
};

TEST_F(SavedScan, IsShownAsItsScanWasPrinted)
{
    for (const char* name :
         {"in/new\nline \"q\", \xFF", "in/tab\tand %0A", "in/sub/plain.txt", "in/\xC3\xA4.txt", "in/|\\"})
        tree_.write(name, "same");
    testing::makeArchive(file("in/one.zip"), {{"deep/inner", "same"}, {"other\xFF", "unlike"}});
    testing::makeArchive(file("in/two.tar.gz"), {{"other", "unlike"}});
    tree_.write("in/unlike", "unlike");
    tree_.symlink("in/link", file("in/sub"));
    writeHuge("in/huge 1");
    writeHuge("in/huge 2");
    for (const Arguments& how : {Arguments{}, Arguments{"--archives"}, Arguments{"--masks", "txt", "--min-size", "2"},
                                 Arguments{"--match", "System.ItemType,System.Size", "--category", "all"},
                                 Arguments{"--follow-links", file("in/sub"), file("none")}}) {
        Arguments scan = how;
        scan.insert(scan.end(), {"--json"});
        const json scanned = withoutTimes(save("one.ikvs", scan).out);
        EXPECT_EQ(withoutTimes(show("one.ikvs", {"--json"}).out), scanned) << ::testing::PrintToString(how);
        ASSERT_GT(scanned.at("groups").size(), 0u);
        for (const char* format : {"text", "csv", "null"}) {
            scan.back() = std::string("--format=") + format;
            EXPECT_EQ(show("one.ikvs", {"--format", format}).out, save("two.ikvs", scan).out) << format;
        }
    }
    const json last = withoutTimes(save("one.ikvs", {"--archives", "--json"}).out);
    ASSERT_EQ(last.at("groups").size(), 3u);
    EXPECT_EQ(last.at("groups").at(2).at("approximate"), true);
}

}  // namespace
}  // namespace kelvane
