// Names and values of properties in the windows of another place and language.
#include "ui/core/shown_values.h"

#include <gtest/gtest.h>

#include <QLocale>

#include "base/desktop_texts/file_properties.h"
#include "base/desktop_texts/frame.h"
#include "base/desktop_texts/media_properties.h"
#include "base/size_text.h"
#include "support/ui/desktop_world.h"
#include "ui/core/property_titles.h"
#include "ui/core/text.h"

namespace kelvane::testing {
namespace {

class ShownValues : public ::testing::Test {
protected:
    ShownValues() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    ~ShownValues() override
    {
        QLocale::setDefault(QLocale::c());
        releaseTranslation();
    }

    std::unique_ptr<Platform> platform = makePlatform();
    PropertyCatalogue catalogue{platform->properties()};
};

QString of(const PropRef& property, std::u16string_view cell)
{
    return shownCell(property, cell);
}

TEST_F(ShownValues, HaveTheDecimalPointOfThePlaceInWindowsAlone)
{
    EXPECT_EQ(shownSize(1), QStringLiteral("1 byte"));
    EXPECT_EQ(shownSize(9728), QStringLiteral("9728 bytes"));
    EXPECT_EQ(shownSize(3'000'000), QStringLiteral("2,9 MB"));
    EXPECT_EQ(shownExactSize(9728), QStringLiteral("9728 bytes"));
    EXPECT_EQ(shownExactSize(3'000'000), QStringLiteral("2,9 MB (3.000.000 bytes)"));
    EXPECT_EQ(sizeText({3'000'000}), "2.9 MB") << "for programs that read tables";

    const PropRef size = catalogue.byName("System.Size");
    EXPECT_EQ(of(size, u"2.9 MB"), QStringLiteral("2,9 MB"));
    EXPECT_EQ(shownValue(size, u"3000000"), shownExactSize(3'000'000));
    EXPECT_EQ(of(catalogue.byName("System.Photo.FNumber"), u"2.8"), QStringLiteral("2,8"));
    EXPECT_EQ(of(catalogue.byName("System.FileVersion"), u"2.8"), QStringLiteral("2.8")) << "that is no number";
}

TEST_F(ShownValues, GiveRatesTheirUnits)
{
    const PropRef frames = catalogue.byName("System.Video.FrameRate");
    EXPECT_EQ(of(frames, u"25000"), QStringLiteral("25 frames/s"));
    EXPECT_EQ(of(frames, u"23976"), QStringLiteral("23,976 frames/s"));
    EXPECT_EQ(of(frames, u"500"), QStringLiteral("0,5 frames/s"));
    EXPECT_EQ(shownValue(frames, u"29970"), QStringLiteral("29,97 frames/s"));
    EXPECT_EQ(of(frames, u""), QString());
    EXPECT_EQ(of(catalogue.byName("System.Audio.EncodingBitrate"), u"64000"), QStringLiteral("64 kbit/s"));
    EXPECT_EQ(of(catalogue.byName("System.Video.EncodingBitrate"), u"39954"), QStringLiteral("39,954 kbit/s"));
    EXPECT_EQ(of(catalogue.byName("System.Video.TotalBitrate"), u"2000005"), QStringLiteral("2000,005 kbit/s"));
    EXPECT_EQ(of(catalogue.byName("System.Audio.SampleRate"), u"22050"), QStringLiteral("22,05 kHz"));
    EXPECT_EQ(of(catalogue.byName("System.Audio.SampleRate"), u"quick"), QStringLiteral("quick"));
    EXPECT_EQ(of(catalogue.byName("System.Video.FrameWidth"), u"1920"), QStringLiteral("1920"));
}

TEST_F(ShownValues, SayAttributesAndTypesInWords)
{
    ASSERT_TRUE(installTranslation({{static_cast<std::uint16_t>(TextId::languageName), u"Deutsch"},
                                    {static_cast<std::uint16_t>(desktop_text::typeOfExtension), u"%1-Datei"}}));
    const PropRef type = catalogue.byName("System.ItemTypeText");
    EXPECT_EQ(of(type, u"JPG file"), QStringLiteral("JPG-Datei"));
    EXPECT_EQ(of(type, u"Folder"), QStringLiteral("Folder"));
    const PropRef attributes = catalogue.byName("Stock.FileAttributes");
    EXPECT_EQ(of(attributes, u"------------"), QString());
    EXPECT_EQ(of(attributes, u"RH----------"), QStringLiteral("read-only, hidden"));
    EXPECT_EQ(of(attributes, u"-----------T"), QStringLiteral("temporary"));
}

TEST_F(ShownValues, HaveTitlesThatDifferAndCanAllBeTranslated)
{
    TextsByNumber texts{{static_cast<std::uint16_t>(TextId::languageName), u"Deutsch"}};
#define TEXT_ROW(number, name, english) texts[number] = u"~" english;
#include "base/desktop_texts/file_properties.inc"
#include "base/desktop_texts/media_properties.inc"
#undef TEXT_ROW
    ASSERT_TRUE(installTranslation(texts));
    std::map<QString, std::string> named;
    for (const std::string& name : catalogue.names()) {
        const PropRef property = catalogue.byName(name);
        if (!isForPeople(property))
            continue;
        const QString title = propertyTitle(property), description = propertyDescription(property);
        EXPECT_TRUE(title.startsWith(u'~')) << name << " is missing in the texts";
        EXPECT_TRUE(property.info->description.empty() || description.startsWith(u'~')) << name;
        const auto [same, isNew] = named.emplace(title, name);
        EXPECT_TRUE(isNew || same->second == name) << name << " is called as " << same->second << " is";
    }
    EXPECT_GT(named.size(), 200u);
}

}  // namespace
}  // namespace kelvane::testing
