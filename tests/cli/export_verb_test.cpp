#include "saved_scan_world.h"

namespace kelvane {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// The same options choose and order the files of `show` and of `export`.
class ExportVerb : public testing::SavedScanWorld {
protected:
    ExportVerb()
    {
        tree_.write("in/B,x.txt", "same");
        tree_.write("in/a.jpg", "same");
        tree_.write("in/sub/z.jpg", "longer");
        tree_.write("in/c.txt", "longer");
        (void)save("one.ikvs");
    }

    testing::ConsoleRun table(Arguments more) const
    {
        Arguments arguments = {"export", file("one.ikvs")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return testing::runCli(arguments);
    }
};

TEST_F(ExportVerb, SortsAndFiltersLikeShow)
{
    struct Case {
        Arguments view;
        std::string shown;  // in a flat list
    };
    const Case cases[] = {
        {{"--sort", "path", "--ungrouped"}, "1  a.jpg\n1  B,x.txt\n2  c.txt\n2  sub/z.jpg\n"},
        {{"--sort=-size,name", "--ungrouped"}, "2  c.txt\n2  sub/z.jpg\n1  a.jpg\n1  B,x.txt\n"},
        {{"--sort", "type,System.Size", "--ungrouped"}, "1  a.jpg\n2  sub/z.jpg\n1  B,x.txt\n2  c.txt\n"},
        {{"--sort", "-name,-group", "--ungrouped", "--filter", "JPG"}, "2  sub/z.jpg\n1  a.jpg\n"},
        {{"--filter", "SUB", "--all-columns", "--ungrouped"}, "2  sub/z.jpg\n"},
        {{"--sort=-size,name"},
         "Group 2: 2 files, 6 bytes each\nc.txt\nsub/z.jpg\n\nGroup 1: 2 files, 4 bytes each\na.jpg\nB,x.txt\n"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(below(show("one.ikvs", row.view).out), row.shown) << ::testing::PrintToString(row.view);
    }
    const auto none = show("one.ikvs", {"--filter", "sub"});
    EXPECT_EQ(none.code, ExitCode::incomplete);
    EXPECT_EQ(none.err, "kelvane-cli: no file has \"sub\" in its name\n");
}

TEST_F(ExportVerb, WritesTheTableOfTheListAndReplacesNothingUnasked)
{
    const Arguments view = {"--columns", "System.FileName,System.Size", "--sort", "name", "--filter", "x"};
    const std::string folder = makePlatform()->paths().comparable(file("in"));
    const std::string csv = "Name,Folder path,Filename,Size\r\n\"B,x.txt\"," + folder +
                            ",\"B,x.txt\",4 bytes\r\nc.txt," + folder + ",c.txt,6 bytes\r\n";
    EXPECT_EQ(table(view).out, csv);
    Arguments more = view;
    more.insert(more.end(), {"--output", file("t.csv")});
    EXPECT_THAT(table(more).err, HasSubstr(": 2 files written to "));
    EXPECT_EQ(tree_.read("t.csv"), csv);
    EXPECT_EQ(table(more).code, ExitCode::usage);
    more.insert(more.end(), {"--overwrite", "--format", "tsv"});
    EXPECT_EQ(table(more).code, ExitCode::done);
    EXPECT_THAT(tree_.read("t.csv"), StartsWith("Name\tFolder path\tFilename\tSize\r\nB,x.txt\t"));
    EXPECT_EQ(table({"--output", file("no/t.csv")}).code, ExitCode::usage);
}

TEST_F(ExportVerb, ColumnsOfShowAreValuesForPrograms)
{
    const Arguments one = {"--filter", "z.", "--columns", "System.Size,System.FileExtension,System.Title"};
    const auto with = [&](const char* format) {
        Arguments all = one;
        all.insert(all.end(), {"--format", format});
        return show("one.ikvs", all).out;
    };
    EXPECT_THAT(below(with("text")), HasSubstr("sub/z.jpg\t6 bytes\t.jpg\t\n"));
    EXPECT_THAT(with("csv"), HasSubstr(",path_bytes,System.Size,System.FileExtension,System.Title\r\n"));
    EXPECT_THAT(with("csv"), HasSubstr(",6,.jpg,\r\n"));
    const auto file = nlohmann::json::parse(with("json")).at("groups").at(0).at("files").at(0);
    EXPECT_EQ(file.at("properties").dump(), R"({"System.FileExtension":".jpg","System.Size":6,"System.Title":null})");
}

}  // namespace
}  // namespace kelvane
