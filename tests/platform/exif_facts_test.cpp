#include "platform/exif_facts.h"

#include <gtest/gtest.h>

#include "platform/camera_time.h"
#include "platform/iptc_facts.h"
#include "platform/property_table.h"
#include "support/bytes_file.h"
#include "support/tiff_maker.h"

namespace kelvane {
namespace {

using testing::TiffMaker;

std::string takenAt(std::string_view text, std::string_view fraction = {})
{
    const auto time = cameraTime(text, fraction);
    return time ? toIso8601(*time) : "none";
}

TEST(CameraTime, IsWhatTheClockShowed)
{
    EXPECT_EQ(takenAt("2024:05:17 10:20:30"), "2024-05-17T10:20:30Z");
    EXPECT_EQ(takenAt("2024:05:17 10:20:30", "123"), "2024-05-17T10:20:30.123Z");
    EXPECT_EQ(takenAt("2024:05:17 10:20:30", "12345678901 "), "2024-05-17T10:20:30.1234567Z");
    EXPECT_EQ(takenAt("2024-05-17T10:20:30.5+02:00"), "2024-05-17T10:20:30.5Z") << "zones are not looked at";
    EXPECT_EQ(takenAt("2024: 5: 7  9:20: 3"), "2024-05-07T09:20:03Z") << "some fill up with blanks";
    EXPECT_EQ(takenAt("2024-05-17"), "2024-05-17T00:00:00Z");
    for (const char* none : {"", "0000:00:00 00:00:00", "    :  :     :  :  ", "2023:02:29 10:00:00", "2024:05",
                             "2024:05:17 25:00:00", "nonsense"})
        EXPECT_EQ(takenAt(none), "none") << none;
}

class ExifFactsTest : public ::testing::Test {
protected:
    const RawValue* value(std::string_view name)
    {
        taken_ = facts_.take();
        for (const NamedValue& fact : taken_)
            if (fact.name == name)
                return &fact.value;
        return nullptr;
    }
    static TiffTags tags(const TiffMaker& maker)
    {
        testing::BytesFile file(maker.made());
        return readTiffTags(file);
    }

    std::unique_ptr<PropertySystem> properties_ = makePropertyTable();
    FactList facts_{*properties_};
    std::vector<NamedValue> taken_;
};

TEST_F(ExifFactsTest, GiveAnglesAsThreeNumbersAndTheirHemisphereBeside)
{
    addCameraFacts(tags(testing::usualExif()), facts_);
    const RawValue* longitude = value("System.GPS.Longitude");
    ASSERT_NE(longitude, nullptr);
    EXPECT_EQ(std::get<std::vector<double>>(longitude->data), (std::vector<double>{7, 12.345, 0}));
    for (const NamedValue& fact : taken_)
        if (fact.name == "System.GPS.Date") {
            EXPECT_EQ(toIso8601({static_cast<std::int64_t>(std::get<std::uint64_t>(fact.value.data))}),
                      "2024-05-17T08:20:30Z");
        }
}

TEST_F(ExifFactsTest, ReadCommentsInTheCharsetThatTheyName)
{
    const auto comment = [this](std::string_view bytes, bool bigEndian) {
        FactList facts(*properties_);
        TiffMaker maker(bigEndian);
        maker.shorts(TiffMaker::picture, 274, {1}).bytes(TiffMaker::exif, 0x9286, bytes);
        addExifWords(tags(maker), facts);
        const auto taken = facts.take();
        return taken.empty() ? u"none" : std::get<std::u16string>(taken.front().value.data);
    };
    EXPECT_EQ(comment(std::string_view("UNICODE\0H\0i\0", 12), false), u"Hi");
    EXPECT_EQ(comment(std::string_view("UNICODE\0\0H\0i", 12), true), u"Hi");
    EXPECT_EQ(comment(std::string_view("UNICODE\0\xFF\xFEH\0i\0", 14), true), u"Hi");
    EXPECT_EQ(comment(std::string_view("\0\0\0\0\0\0\0\0K\xF6ln   ", 15), false), u"Köln");
    EXPECT_EQ(comment(std::string_view("JIS\0\0\0\0\0\x1B$B", 11), false), u"none");
    EXPECT_EQ(comment("short", false), u"none");
}

std::string dataSet(char number, std::string_view text)
{
    std::string bytes{'\x1C', '\x02', number, static_cast<char>(text.size() >> 8), static_cast<char>(text.size())};
    return bytes.append(text);
}

TEST_F(ExifFactsTest, TakeEveryKeywordOfAnAgency)
{
    addIptcFacts(dataSet(25, "sea") + dataSet(25, "K\xC3\xB6ln") + dataSet(55, "20240517") +
                     dataSet(60, "102030+0200") + std::string("\x1C\x02\x05\x80\x04\0\0\0\1T", 10) +
                     dataSet(120, "cut off").substr(0, 9),
                 facts_);
    const RawValue* keywords = value("System.Keywords");
    ASSERT_NE(keywords, nullptr);
    EXPECT_EQ(std::get<std::vector<std::u16string>>(keywords->data), (std::vector<std::u16string>{u"sea", u"Köln"}));
    ASSERT_EQ(taken_.size(), 3u);
    EXPECT_EQ(taken_[0].name, "System.Title") << "its length is written the long way";
    EXPECT_EQ(taken_[2].name, "System.Photo.DateTaken");
}

TEST_F(ExifFactsTest, FindNothingInResourcesThatEndTooEarly)
{
    const std::string block =
        std::string("Photoshop 3.0\08BIM\4\x0C\0\0\0\0\0\3abc\08BIM\4\4\3xyz\0\0\0\x0A", 44) + dataSet(5, "title");
    for (std::size_t length = 0; length < block.size(); ++length)
        addIptcFacts(std::string_view(block).substr(0, length), facts_);
    addIptcFacts("Photoshop 3.0", facts_);
    EXPECT_EQ(value("System.Title"), nullptr);
    FactList whole(*properties_);
    addIptcFacts(block, whole);
    EXPECT_EQ(whole.take().size(), 1u);
}

}  // namespace
}  // namespace kelvane
