#include "props/value_convert.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/file_time.h"

namespace kelvane {
namespace {

// The node that a raw value makes under a declared type. Nodes stay where they are made, hence the pointer.
std::unique_ptr<PROPCACHE> converted(VarType declared, RawValue raw, std::uint16_t flags = 0)
{
    PropertyInfo info;
    info.type = declared;
    info.flags = flags;
    auto node = std::make_unique<PROPCACHE>();
    convertValue(*node, {&info, 0x1234}, std::move(raw));
    return node;
}

std::int64_t numberFrom(VarType raw, std::uint64_t bits)
{
    return converted(VarType::uint64, RawValue::number(raw, bits))->number();
}

TEST(ValueConvert, everyShorterIntegerIsSignExtended)
{
    for (const VarType type : {VarType::int8, VarType::uint8}) {
        EXPECT_EQ(numberFrom(type, 0x7F), 127);
        EXPECT_EQ(numberFrom(type, 0x80), -128);
    }
    for (const VarType type : {VarType::int16, VarType::uint16, VarType::boolean}) {
        EXPECT_EQ(numberFrom(type, 0x7FFF), 32767);
        EXPECT_EQ(numberFrom(type, 0xFFFF), -1);
    }
    for (const VarType type : {VarType::int32, VarType::uint32, VarType::error, VarType::machineInt,
                               VarType::machineUint, VarType::result}) {
        EXPECT_EQ(numberFrom(type, 0x7FFFFFFF), 0x7FFFFFFF);
        EXPECT_EQ(numberFrom(type, 0x80000000), -0x80000000LL);
    }
    for (const VarType type : {VarType::int64, VarType::uint64, VarType::currency})
        EXPECT_EQ(numberFrom(type, 0xFFFFFFFF00000000), -0x100000000LL);
    EXPECT_EQ(numberFrom(VarType::fileTime, 77), 0) << "a date is no number";
    EXPECT_EQ(converted(VarType::uint32, RawValue::text(u"77"))->number(), 0);
    EXPECT_EQ(converted(VarType::uint32, RawValue::float64(77))->number(), 0);
}

TEST(ValueConvert, datesAreFileTimes)
{
    const auto date = [](RawValue raw) { return converted(VarType::fileTime, std::move(raw))->number(); };
    const auto oleDate = [&date](double days) { return date({VarType::oleDate, false, days}); };
    EXPECT_EQ(date(RawValue::number(VarType::fileTime, 123456789)), 123456789);
    EXPECT_EQ(oleDate(25569.0), fileTimeFromUnix(0, 0).ticks);
    EXPECT_EQ(oleDate(44197.75), fileTimeFromUnix(1609459200 + 64800, 0).ticks);
    EXPECT_EQ(oleDate(44197.0 + 1.0 / 86'400'000), fileTimeFromUnix(1609459200, 1'000'000).ticks);
    EXPECT_EQ(oleDate(-1.25), fileTimeFromUnix(-2209161600 - 86400 + 21600, 0).ticks)
        << "the time of day counts forward before 1899-12-30 too";
    EXPECT_EQ(oleDate(-109206.0), 0) << "before 1601";
    EXPECT_EQ(oleDate(2958466.0), 0) << "after 9999";
    EXPECT_EQ(oleDate(std::nan("")), 0);
    EXPECT_EQ(date(RawValue::number(VarType::uint64, 123)), 0);
}

TEST(ValueConvert, sexagesimalVectorsBecomeDegrees)
{
    const RawValue degrees{VarType::float64, true, std::vector<double>{51, 30, 36}};
    const auto node = converted(VarType::float64, degrees, property_flag::sexagesimal);
    EXPECT_DOUBLE_EQ(node->real(), 51.51);
    EXPECT_EQ(node->flags, PROPCACHE::flagSexagesimal);
    EXPECT_DOUBLE_EQ(sexagesimal({VarType::float32, true, std::vector<float>{1, 30}}).value(), 1.5);
    EXPECT_EQ(sexagesimal(RawValue::float64(51.5)), 51.5);
    EXPECT_EQ(sexagesimal(RawValue::texts({u"51", u"30"})), std::nullopt);
    EXPECT_EQ(sexagesimal(RawValue::number(VarType::uint32, 51)), std::nullopt);
}

TEST(ValueConvert, directionMarksGoOnlyWhenTheyComeFirst)
{
    const auto text = [](std::u16string raw) {
        return converted(VarType::wideText, RawValue::text(std::move(raw)))->text;
    };
    EXPECT_EQ(text(u"\u200E42\u200E"), u"42");
    EXPECT_EQ(text(u"\u200F1\u202A2\u202E3"), u"123");
    EXPECT_EQ(text(u"\u202Aab\u202C"), u"ab");
    EXPECT_EQ(text(u"a\u200Eb"), u"a\u200Eb");
    EXPECT_EQ(text(u"\u202Bab"), u"\u202Bab") << "not one of the marks that formatting puts first";
}

TEST(ValueFormat, valuesReadAsText)
{
    EXPECT_EQ(formatRaw({}), u"");
    EXPECT_EQ(formatRaw(RawValue::texts({u"Ann", u"Bob"})), u"Ann; Bob");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::boolean, 0xFFFF)), u"True");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::boolean, 0)), u"False");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::uint32, 0xFFFFFFFF)), u"4294967295");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::int32, 0xFFFFFFFF)), u"-1");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::uint64, UINT64_MAX)), u"18446744073709551615");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::currency, 120500)), u"12.05");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::currency, static_cast<std::uint64_t>(-5))), u"-0.0005");
    EXPECT_EQ(formatRaw(RawValue::float64(2.5)), u"2.5");
    EXPECT_EQ(formatRaw({VarType::float64, true, std::vector<double>{51, 30.5}}), u"51; 30.5");
    EXPECT_EQ(formatRaw(RawValue::number(VarType::fileTime, static_cast<std::uint64_t>(fileTimeFromUnix(0, 0).ticks))),
              u"1970-01-01T00:00:00Z");
    EXPECT_EQ(formatRaw({VarType::oleDate, false, 25569.5}), u"1970-01-01T12:00:00Z");
}

}  // namespace
}  // namespace kelvane
