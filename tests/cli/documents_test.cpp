// Similar documents from the command line, on real files of plain text.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "base/utf.h"
#include "console_run.h"
#include "engine/document_world.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::runCli;

class Documents : public ::testing::Test {
protected:
    Documents()
    {
        const std::string text = toUtf8(testing::madeUpText(1, 4000));
        std::string edited = text;
        edited.replace(1000, 30, "here somebody wrote other words");
        tree_.write("a.txt", text);
        tree_.write("b.txt", edited);
        tree_.write("c.txt", toUtf8(testing::madeUpText(2, 4100)));
        tree_.write("short.txt", "hardly any text");
    }
    testing::ConsoleRun scan(Arguments more)
    {
        more.insert(more.begin(), {"scan", "--category", "documents", "--similar", "85", tree_.path().string()});
        return runCli(more, {}, platform_);
    }
    testing::ConsoleRun compare(const char* a, const char* b, const char* seed)
    {
        return runCli({"compare", "--category", "documents", "--similar", "85", "--seed", seed, "--json",
                       tree_.path(a).string(), tree_.path(b).string()},
                      {}, platform_);
    }

    testing::TempTree tree_;
    testing::QuietPlatform platform_;
};

TEST_F(Documents, SimilarOnesAreGroupedWithTheirScores)
{
    const auto run = scan({"--json"});
    EXPECT_EQ(run.code, ExitCode::done);
    const json groups = json::parse(run.out).at("groups");
    ASSERT_EQ(groups.size(), 1u);
    const json& files = groups.at(0).at("files");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_FALSE(files.at(0).contains("score")) << "the one that the group began with";
    EXPECT_GT(files.at(1).at("score"), 85);
    EXPECT_EQ(json::parse(run.out).at("stats").at("files"), 3);
    EXPECT_EQ(run.err, "kelvane-cli: 1 file took no part: too little text\n");
    EXPECT_THAT(scan({"--format", "csv"}).out, HasSubstr("path_bytes,score\r\n"));
    EXPECT_THAT(scan({}).out, Not(HasSubstr("score")));
    const auto verbose = scan({"--verbose"});
    EXPECT_THAT(verbose.out, HasSubstr("\tscore "));
    EXPECT_THAT(verbose.err, HasSubstr("short.txt: too little text"));
}

TEST_F(Documents, ASecondRunTakesTheDescriptorsFromTheCache)
{
    const std::string first = scan({"--format", "csv", "--seed", "1"}).out;
    EXPECT_EQ(platform_.caches.found, 0);
    EXPECT_EQ(scan({"--format", "csv", "--seed", "1"}).out, first);
    EXPECT_EQ(platform_.caches.found, 4) << "those that have no descriptor too";
    EXPECT_EQ(scan({"--format", "csv", "--seed", "1", "--no-cache"}).out, first);
    EXPECT_EQ(platform_.caches.found, 4);
    const int opened = platform_.caches.opened;
    EXPECT_EQ(runCli({"scan", tree_.path().string()}, {}, platform_).code, ExitCode::done);
    EXPECT_EQ(platform_.caches.opened, opened) << "an exact search needs none";
}

TEST_F(Documents, ComparingTwoTellsTheScore)
{
    tree_.write("copy.md", toUtf8(testing::madeUpText(1, 4000)));
    const json equal = json::parse(compare("a.txt", "copy.md", "1").out);
    EXPECT_EQ(equal.at("score"), 697);
    EXPECT_EQ(equal.at("result"), 0);
    EXPECT_EQ(equal.at("stages").at(0).at("a"), json::parse(R"({"length": 4000, "size": 4000})"));
    const auto edited = compare("a.txt", "b.txt", "1");
    EXPECT_EQ(edited.code, ExitCode::done);
    EXPECT_EQ(compare("a.txt", "b.txt", "1").out, edited.out) << "the same seed, the same probes";
    EXPECT_EQ(json::parse(compare("a.txt", "c.txt", "1").out).at("match"), false);

    tree_.write("longer.txt", toUtf8(testing::madeUpText(1, 5000)));
    const json apart = json::parse(compare("a.txt", "longer.txt", "1").out);
    EXPECT_EQ(apart.at("result"), 1);
    EXPECT_EQ(apart.at("score"), -12345);

    const auto none = compare("a.txt", "short.txt", "1");
    EXPECT_EQ(none.code, ExitCode::incomplete);
    EXPECT_THAT(none.err, HasSubstr("short.txt: nothing to compare: too little text"));
    EXPECT_EQ(json::parse(none.out).at("score"), nullptr);
}

TEST_F(Documents, ADescriptorIsDescribed)
{
    const auto describe = [&](const char* word, const char* file) {
        return runCli({"describe", "--as", word, "--json", tree_.path(file).string()}, {}, platform_);
    };
    tree_.write("same.txt", std::string(2000, 'a'));
    const json text = json::parse(describe("text", "same.txt").out).at("text");
    EXPECT_EQ(text.at("length"), 2000);
    EXPECT_EQ(text.at("size"), 2000);
    const auto statistics = text.at("statistics").get<std::vector<double>>();
    ASSERT_EQ(statistics.size(), 4u);
    EXPECT_DOUBLE_EQ(statistics[0], 97.0 / 255);
    EXPECT_DOUBLE_EQ(statistics[1], 0);
    const auto none = describe("text", "short.txt");
    EXPECT_EQ(none.code, ExitCode::incomplete);
    EXPECT_TRUE(json::parse(none.out).at("text").is_null());
    EXPECT_EQ(json::parse(none.out).at("reason"), "too little text");
    EXPECT_THAT(none.err, HasSubstr("too little text"));
    EXPECT_THAT(describe("txet", "a.txt").err, AllOf(HasSubstr("did you mean text?"), HasSubstr("audio, image")));
}

TEST_F(Documents, ASavedSearchIsShownWithoutScores)
{
    const std::string saved = tree_.path("saved.ikvs").string();
    EXPECT_EQ(scan({"--save", saved.c_str()}).code, ExitCode::done);
    const auto shown = runCli({"show", "--json", saved}, {}, platform_);
    EXPECT_EQ(shown.code, ExitCode::done);
    EXPECT_EQ(json::parse(shown.out).at("groups").size(), 1u);
    EXPECT_THAT(shown.out, Not(HasSubstr("score")));
}

TEST_F(Documents, CategoriesWithoutDescriptorsAreRefused)
{
    const auto run = runCli({"scan", "--category", "ebooks", "--similar", "85", tree_.path().string()}, {}, platform_);
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_THAT(run.err, HasSubstr("similar contents cannot be compared"));
}

// Books are told by the words of their titles and authors, in any order.
TEST_F(Documents, BooksAreFoundByTitleAndAuthor)
{
    // By names alone: what stands above them is written as each system likes it.
    class Books final : public PropertyReaders {
    public:
        RawValue read(const PropertyInfo& property, const ShellItem& item) override
        {
            const auto found = values.find(bytesFromNative(item.name()) + std::string(property.name));
            return found != values.end() ? found->second : RawValue{};
        }
        std::map<std::string, RawValue> values;
    };
    class Platform final : public testing::QuietPlatform {
    public:
        PropertyReaders& readers() override { return books; }
        Books books;
    } platform;
    const auto add = [&](const std::string& name, const char16_t* title, const char16_t* author) {
        tree_.write(name, name);
        platform.books.values[name + "System.Title"] = RawValue::text(title);
        platform.books.values[name + "System.ItemAuthors"] = RawValue::texts({author});
    };
    add("one.epub", u"The Castle of Otranto", u"Horace Walpole");
    add("two.fb2", u"the castle of otranto", u"Horace Walpole");
    add("three.epub", u"The Monk", u"Matthew Lewis");
    const auto run = runCli({"scan", "--match", "Stock.BookList", "--similar", "90", "--category", "ebooks", "--json",
                             tree_.path().string()},
                            {}, platform);
    const json groups = json::parse(run.out).at("groups");
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups.at(0).at("files").size(), 2u);
}

}  // namespace
}  // namespace kelvane
