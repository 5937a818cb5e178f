#include "props/plugin_properties.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "props/property_catalogue.h"
#include "support/fakes.h"
#include "support/scripted_plugins.h"
#include "support/small_catalogue.h"

namespace kelvane {
namespace {

using testing::plainFile;

class PluginPropertiesTest : public ::testing::Test {
protected:
    PluginPropertiesTest()
    {
        script_.plugins["book.wdx"] = {
            "", {{0, "Pages", VarType::int32}, {1, "Text", VarType::empty}, {2, "Shelf", VarType::wideText}}};
        script_.values[2] = RawValue::text(u"upper");
        plugins_.emplace(std::make_unique<testing::ScriptedPlugins>(script_),
                         std::vector<ContentPluginEntry>{{"/book.wdx", ""}}, 1000, CancelFlag());
        properties_.emplace(system_, *plugins_);
    }

    testing::ScriptedPlugins::Script script_;
    testing::SmallPropertySystem system_;
    std::optional<ContentPlugins> plugins_;
    std::optional<PluginProperties> properties_;
};

TEST_F(PluginPropertiesTest, StandBehindThoseOfTheSystemUnderKeysOfTheirOwn)
{
    const PropertyCatalogue catalogue(*properties_);
    const PropRef pages = catalogue.byName("Plugin.book.Pages"), shelf = catalogue.byName("Plugin.book.Shelf");
    ASSERT_TRUE(pages && shelf);
    EXPECT_EQ(pages.kind(), PropKind::number);
    EXPECT_EQ(shelf.kind(), PropKind::text);
    EXPECT_EQ(pages.info->key.number, 2u);
    EXPECT_EQ(shelf.info->key.number, 4u);
    EXPECT_EQ(pages.info->key.format, shelf.info->key.format);
    EXPECT_FALSE(catalogue.byName("Plugin.book.Text")) << "a full text is no column";
    EXPECT_TRUE(catalogue.byName("System.Title"));
    EXPECT_TRUE(catalogue.byName("Stock.GroupID"));
    const auto names = catalogue.names();
    EXPECT_EQ(std::count(names.begin(), names.end(), "Plugin.book.Shelf"), 1);
}

// A result list that was kept names its columns, and a sort order keeps keys.
TEST_F(PluginPropertiesTest, KeysStayFromRunToRun)
{
    EXPECT_EQ(propertyIdentifier(properties_->byName("Plugin.book.Shelf")->key), 2508479705u);
}

TEST_F(PluginPropertiesTest, ValuesOfOthersAreReadByOthers)
{
    testing::FakeReaders next;
    next.set("/f", "System.Title", RawValue::text(u"title"));
    const auto readers = makePluginReaders(*properties_, *plugins_, next);
    const auto item = plainFile("/f");
    EXPECT_EQ(std::get<std::u16string>(readers->read(*properties_->byName("Plugin.book.Shelf"), *item).data), u"upper");
    EXPECT_EQ(next.reads, 0);
    EXPECT_EQ(std::get<std::u16string>(readers->read(*properties_->byName("System.Title"), *item).data), u"title");
}

}  // namespace
}  // namespace kelvane
