#include "platform/fact_list.h"

#include <gtest/gtest.h>
#include <limits>

#include "platform/lenient_text.h"
#include "platform/property_table.h"

namespace kelvane {
namespace {

class FactListTest : public ::testing::Test {
protected:
    const RawValue* find(std::string_view name)
    {
        taken_ = facts_.take();
        for (const NamedValue& value : taken_)
            if (value.name == name)
                return &value.value;
        return nullptr;
    }

    std::unique_ptr<PropertySystem> properties_ = makePropertyTable();
    FactList facts_{*properties_};
    std::vector<NamedValue> taken_;
};

TEST_F(FactListTest, KeepsTheFirstValueOfAProperty)
{
    facts_.text("System.Title", u" \0");
    facts_.text("System.Title", u"first");
    facts_.text("System.Title", u"second");
    ASSERT_NE(find("System.Title"), nullptr);
    ASSERT_EQ(taken_.size(), 1u);
    EXPECT_EQ(std::get<std::u16string>(taken_[0].value.data), u"first");
}

TEST_F(FactListTest, GivesTextsAsThePropertyHasThem)
{
    const std::u16string names[] = {u"Anna ", u"", u"Ben\0\0", u"Anna"};
    facts_.texts("System.Author", names);
    facts_.texts("System.Title", names);
    const RawValue* title = find("System.Title");
    ASSERT_NE(title, nullptr);
    EXPECT_FALSE(title->isVector);
    EXPECT_EQ(std::get<std::u16string>(title->data), u"Anna; Ben");
    EXPECT_TRUE(taken_[0].value.isVector);
    EXPECT_EQ(std::get<std::vector<std::u16string>>(taken_[0].value.data),
              (std::vector<std::u16string>{u"Anna", u"Ben"}));
}

TEST_F(FactListTest, LeavesOutWhatAPropertyCannotHold)
{
    facts_.number("System.Photo.Flash", 256);
    facts_.number("System.Photo.ISOSpeed", -1);
    facts_.number("System.Title", 5);
    facts_.number("System.Photo.ExposureTime", 5);
    facts_.text("System.Media.Year", u"2004");
    facts_.real("System.Photo.FNumber", std::numeric_limits<double>::infinity());
    facts_.reals("System.GPS.Latitude", {});
    facts_.date("System.Photo.DateTaken", {});
    facts_.number("System.NoSuchThing", 1);
    EXPECT_TRUE(facts_.take().empty());
}

TEST_F(FactListTest, HoldsNegativeNumbersInTheBitsOfTheirType)
{
    facts_.number("System.Image.ResolutionUnit", -2);
    facts_.number("System.Music.IsCompilation", 1);
    const RawValue* unit = find("System.Image.ResolutionUnit");
    ASSERT_NE(unit, nullptr);
    EXPECT_EQ(std::get<std::uint64_t>(unit->data), 0xFFFEu);
    EXPECT_EQ(std::get<std::uint64_t>(taken_[1].value.data), 0xFFFFu);
}

TEST_F(FactListTest, CutsATextOfMegabytesBetweenCharacters)
{
    std::u16string text = u"x";
    for (int i = 0; i < 1'000'000; ++i)
        text += u"\U0001F600";
    facts_.text("System.Title", text);
    const RawValue* title = find("System.Title");
    ASSERT_NE(title, nullptr);
    const auto& kept = std::get<std::u16string>(title->data);
    EXPECT_LE(kept.size(), 65'536u);
    EXPECT_EQ(kept.back(), u"\U0001F600"[1]);
}

TEST(LenientText, TakesBytesForWhatTheyLookLike)
{
    EXPECT_EQ(lenientText("plain"), u"plain");
    EXPECT_EQ(lenientText("K\xC3\xB6ln"), u"Köln");
    EXPECT_EQ(lenientText("K\xF6ln \x96 \x80"), u"Köln – €");
    EXPECT_EQ(lenientText(std::string_view("cut\0off", 7)), u"cut");
    EXPECT_EQ(lenientText("Gr\xC3\xBC\xC3"), u"Grü") << "the end of a field cuts characters off";
    EXPECT_EQ(lenientText("caf\xE9"), u"café") << "but one byte above ASCII is a character of its own";
    EXPECT_EQ(lenientText(""), u"");
}

}  // namespace
}  // namespace kelvane
