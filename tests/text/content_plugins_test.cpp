#include "text/content_plugins.h"

#include <gmock/gmock.h>

#include "support/scripted_plugins.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::plainFile;
using testing::ScriptedPlugins;

class ContentPluginsTest : public ::testing::Test {
protected:
    [[nodiscard]] ContentPlugins listed(const std::vector<ContentPluginEntry>& entries)
    {
        return ContentPlugins(std::make_unique<ScriptedPlugins>(script_), entries, 1000, never_);
    }

    ScriptedPlugins::Script script_;
    const CancelFlag never_;
    const PluginField number_{0, "Number", VarType::int32};
    const PluginField text_{1, "Text", VarType::empty};
};

TEST_F(ContentPluginsTest, KeepsTheOrderOfTheListAndGivesEachANameOfItsOwn)
{
    script_.plugins["a.wdx"] = {"", {number_, {4, "a.b, c", VarType::wideText}, {5, "a_b_ c", VarType::wideText}}};
    script_.plugins["b.wdx"] = {"", {number_}};
    ContentPlugins plugins = listed({{"/x/b.wdx", ""}, {"/x/a.wdx", ""}, {"/y/a.wdx", ""}});
    ASSERT_EQ(plugins.plugins().size(), 3u);
    EXPECT_EQ(plugins.plugins()[0].name, "b");
    EXPECT_EQ(plugins.plugins()[1].name, "a");
    EXPECT_EQ(plugins.plugins()[2].name, "a_2");
    EXPECT_NE(plugins.plugins()[1].format, plugins.plugins()[2].format);
    EXPECT_EQ(plugins.plugins()[1].fields[1].name, "a_b_ c");
    EXPECT_EQ(plugins.plugins()[1].fields[2].name, "a_b_ c_2");
    EXPECT_THAT(plugins.takeComplaints(), IsEmpty());
}

TEST_F(ContentPluginsTest, NamesOnceWhatIsMissingOrHasNothingToOffer)
{
    script_.plugins["good.wdx"] = {"", {number_}};
    script_.plugins["empty.wdx"] = {"", {}};
    ContentPlugins plugins = listed({{"/x/gone.wdx", ""}, {"/x/empty.wdx", ""}, {"/x/good.wdx", ""}});
    EXPECT_EQ(plugins.plugins().size(), 1u);
    EXPECT_THAT(plugins.takeComplaints(), ElementsAre(HasSubstr("gone.wdx is not used: not there"),
                                                      HasSubstr("empty.wdx is not used: it offers no fields")));
    EXPECT_THAT(plugins.takeComplaints(), IsEmpty());
}

TEST_F(ContentPluginsTest, AsksOnlyAboutFilesThatTheDetectStringAdmits)
{
    script_.plugins["own.wdx"] = {"EXT=\"A\"", {number_}};
    script_.values[0] = RawValue::number(VarType::int32, 7);
    ContentPlugins plugins = listed({{"/own.wdx", ""}, {"/own.wdx", "EXT=\"B\""}});
    EXPECT_FALSE(plugins.value(0, 0, *plainFile("/f.a")).empty());
    EXPECT_TRUE(plugins.value(0, 0, *plainFile("/f.b")).empty());
    EXPECT_FALSE(plugins.value(1, 0, *plainFile("/f.b")).empty()) << "the list's own detect string counts";
    EXPECT_TRUE(plugins.value(0, 0, *plainFile("/f.a", ShellItem::Place::insideArchive)).empty());
    EXPECT_THAT(script_.asked, ElementsAre("own.wdx 0 f.a", "own.wdx 0 f.b"));
}

TEST_F(ContentPluginsTest, GivesUpOnOneThatBreaksDownAgainAndAgain)
{
    script_.plugins["a.wdx"] = {"", {number_}};
    ContentPlugins plugins = listed({{"/a.wdx", ""}});
    const auto ask = [&](int times) {
        for (int i = 0; i < times; ++i)
            static_cast<void>(plugins.value(0, 0, *plainFile("/f")));
    };
    script_.broken = true;
    ask(9);
    script_.broken = false;
    ask(1);  // a good answer starts the count anew
    script_.broken = true;
    ask(9);
    EXPECT_THAT(plugins.takeComplaints(), IsEmpty());
    ask(11);
    EXPECT_EQ(script_.asked.size(), 20u);
    EXPECT_THAT(plugins.takeComplaints(), ElementsAre(HasSubstr("10 times in a row")));
}

TEST_F(ContentPluginsTest, TakesTheFirstFullTextThatThereIs)
{
    ExtractedDocument damaged, good;
    damaged.outcome = TextOutcome::damaged;
    good.outcome = TextOutcome::extracted;
    good.text = u"words";
    script_.plugins["a.wdx"] = {"EXT=\"A\"", {number_, text_, {2, "More", VarType::empty}}};
    script_.texts = {{1, damaged}, {2, good}};
    ContentPlugins plugins = listed({{"/a.wdx", ""}});
    EXPECT_TRUE(plugins.mayRead(*plainFile("/f.a")));
    EXPECT_FALSE(plugins.mayRead(*plainFile("/f.b")));
    EXPECT_EQ(plugins.extract(*plainFile("/f.a"), never_).text, u"words");
    script_.texts.erase(2);
    EXPECT_EQ(plugins.extract(*plainFile("/f.a"), never_).outcome, TextOutcome::damaged);
    EXPECT_EQ(plugins.extract(*plainFile("/f.b"), never_).outcome, TextOutcome::unknownFormat);
}

}  // namespace
}  // namespace kelvane
