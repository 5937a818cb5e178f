// Every row of the table, through every back end that this system has.
#include "app/settings_table.h"

#include <gmock/gmock.h>

#include <set>

#include "app/settings_loader.h"
#include "app/settings_saver.h"
#include "settings_back_ends.h"
#include "support/settings_world.h"

namespace kelvane {
namespace {

using testing::SettingsComputer;

constexpr auto done = SettingsCode::done;

// A stored number and what the setting takes it for, both in stored units.
struct Taken {
    std::uint32_t stored;
    std::uint32_t taken;
};

// What is known of a number beforehand, apart from the table: the default and the values about its bounds.
struct NumberCase {
    std::u16string_view key;
    std::uint32_t standard;
    std::vector<Taken> taken;
};

constexpr std::uint32_t most = UINT32_MAX;  // and -1
constexpr auto minus = [](std::int32_t number) { return static_cast<std::uint32_t>(-number); };

const std::vector<NumberCase> numberCases = {
    {u"bPersistSettings", 1, {{0, 0}, {1, 1}, {2, 2}, {3, 1}, {most, 1}}},
    {u"bUseTrans", 1, {{0, 0}, {1, 1}}},
    {u"nIconSize", 24, {{0, 0}, {16, 16}, {most, most}}},
    {u"binMoreOptions", 2, {{0, 0}, {most, most}}},
    {u"binFlags", settings_flag::translated, {{0, 0}, {0x80000801, 0x80000801}, {0x100, 0}}},
    {u"nTipOfTheDay", 1, {{0, 0}, {most, most}}},
    {u"nDeduped", 0, {{0, 0}, {most, most}}},
    {u"bin1OffNotify", 0, {{0x200, 0x200}, {most, most}}},
    {u"nUsecount", 0, {{41, 41}, {most, most}}},
    {u"nCrashes", 0, {{3, 3}, {most, most}}},
    {u"binVer", 0, {{7, 7}, {most, most}}},
    {u"nThumbSize", 120, {{31, 120}, {32, 32}, {800, 800}, {801, 120}, {most, 120}}},
    {u"nMonitorPeekPC",
     75,
     {{minus(101), 75}, {minus(100), minus(100)}, {minus(1), minus(1)}, {0, 0}, {100, 100}, {101, 75}}},
    {u"nPeekTextWidth", 800, {{99, 800}, {100, 100}, {4000, 4000}, {4001, 800}, {most, 800}}},
    {u"bSantasLittleHelper", 1, {{0, 0}, {1, 1}, {7, 1}}},
    {u"nMaxStreamExtractSize", 6'291'456, {{9'999, 0}, {10'000, 10'000}, {0, 0}, {most, most}}},
    {u"nTextSample", 65'536, {{47'999, 65'536}, {48'000, 48'000}, {131'072, 131'072}, {131'073, 65'536}}},
    {u"nHugeFileMB", 10, {{0, 1}, {1, 1}, {50, 50}, {51, 50}, {500, 50}, {most, 50}}},
    {u"nTinyFile", 50'000, {{0, 2'048}, {2'047, 2'048}, {2'048, 2'048}, {most, most}}},
    {u"msDateTolerance", 1'000, {{0, 0}, {most, most}}},
    {u"msSongStart", 14'900, {{0, 5'000}, {4'999, 5'000}, {5'000, 5'000}, {60'000, 60'000}, {60'001, 60'000}}},
    {u"nHours1PCdiff", 240, {{0, 240}, {1, 1}, {10'000, 10'000}, {10'001, 240}, {most, 240}}},
    {u"binLastScan", 32'000, {{0, 0}, {most, most}}},
    {u"bDescriptorCache", 1, {{0, 0}, {1, 1}, {7, 1}}},
    {u"nDescriptorCacheMB", 1024, {{0, 8}, {8, 8}, {65'536, 65'536}, {65'537, 65'536}, {most, 65'536}}},
    {u"bPictureGate", 1, {{0, 0}, {1, 1}, {7, 1}}},
    {u"binFileOpFlags", 0, {{0xFF, 0xDE}, {0x21, 0}}},
    {u"msBGTextTimeout", 12'000, {{999, 0}, {1'000, 1'000}, {0, 0}, {most, most}}},
    {u"nCharsAutoFilter", 3, {{0, 0}, {12, 12}, {13, 12}, {most, 12}}},
    {u"nDefCategory", 0, {{6, 6}, {most, most}}},
    {u"rgbViewBgcol", most, {{0x123456, 0x123456}, {0x202020, most}}},
};

struct TextCase {
    std::u16string_view key;
    std::u16string_view standard;
    std::u16string_view stored;
    std::u16string_view taken;
};

const std::vector<TextCase> textCases = {
    {u"szFileCountRule", u"*", u"", u"*"},
    {u"szFileCountRule", u"*", u"*.jpg", u"*.jpg"},
    {u"msExtraColumns", u"", u" System.Title ,,System.Size", u"System.Title,System.Size"},
    {u"msPluginsOff", u"", u" One,, two.wdx", u"One,two.wdx"},
    {u"szGrepExcludeTypes", u"", u"JPG, Äx", u"jpg,äx"},
    {u"szGrepWhiteListTypes", u"pdf,docx,doc,xls,ppt,azw,xlsx,pptx", u"", u""},
    {u"szGrepWhiteListTypes", u"pdf,docx,doc,xls,ppt,azw,xlsx,pptx", u"ODT", u"odt"},
    {u"szTextViewerPath", u"", u"/opt/view", u"/opt/view"},
    {u"szPluginINI", u"", u"c:\\plugins.ini", u"c:\\plugins.ini"},
};

class SettingsRows : public ::testing::TestWithParam<testing::SettingsBackEnd> {
protected:
    SettingsRows()
    {
        computer_.facts.longPaths = true;
        root_ = {store_.get(), {isIni() ? u"" : std::u16string(settingsKeyPath), isIni() ? "/kelvane.ini" : ""}};
        context_.windowsRules = false;
        context_.translation = TranslationState::active;
        context_.interfaceBits = 0;
    }

    [[nodiscard]] static bool isIni() { return !GetParam().knowsTypes; }
    [[nodiscard]] SettingsNode general() { return {root_, generalSection, SettingsAccess::writing}; }
    [[nodiscard]] Settings load() { return loadSettings(root_, context_); }

    // What the setting is now, in stored units.
    [[nodiscard]] std::uint32_t number(std::u16string_view key)
    {
        return storedNumber(std::get<NumberRule>(findSetting(key)->rule), load());
    }
    [[nodiscard]] std::u16string text(std::u16string_view key)
    {
        return storedText(std::get<TextRule>(findSetting(key)->rule), load());
    }

    SettingsComputer computer_;
    std::unique_ptr<testing::SettingsWorld> world_ = GetParam().make();
    std::unique_ptr<SettingsStore> store_ = world_->open();
    SettingsRoot root_;
    SettingsContext context_ = computer_.context();
};

TEST_P(SettingsRows, NumbersHaveTheirDefaultsAndBounds)
{
    ASSERT_EQ(store_->begin(), done);
    for (const NumberCase& one : numberCases) {
        const std::string key = toUtf8(one.key);
        ASSERT_NE(findSetting(one.key), nullptr) << key;
        EXPECT_EQ(number(one.key), one.standard) << key << " is missing";
        for (const auto& [stored, taken] : one.taken) {
            ASSERT_EQ(general().writeNumber(stored, one.key), done);
            EXPECT_EQ(number(one.key), taken) << key << " = " << stored;
        }
        if (GetParam().knowsTypes) {
            ASSERT_EQ(general().writeString(u"31", one.key), done);
            EXPECT_EQ(number(one.key), one.standard) << key << " is a text";
        }
        ASSERT_EQ(general().deleteValue(one.key), done);
    }
}

TEST_P(SettingsRows, TextsHaveTheirDefaultsAndForms)
{
    ASSERT_EQ(store_->begin(), done);
    for (const TextCase& one : textCases) {
        const std::string key = toUtf8(one.key);
        EXPECT_EQ(text(one.key), one.standard) << key << " is missing";
        ASSERT_EQ(general().writeString(one.stored, one.key), done);
        EXPECT_EQ(text(one.key), one.taken) << key << " = " << toUtf8(one.stored);
        if (GetParam().knowsTypes) {
            ASSERT_EQ(general().writeNumber(31, one.key), done);
            EXPECT_EQ(text(one.key), one.standard) << key << " is a number";
        }
        ASSERT_EQ(general().deleteValue(one.key), done);
    }
}

// What a case takes is what a save keeps: nothing is scaled twice or forgotten.
TEST_P(SettingsRows, WhatWasLoadedComesBackAfterASave)
{
    ASSERT_EQ(store_->begin(), done);
    std::set<std::u16string_view> tested{u"binUpdate", u"binLastScanNode"};
    for (const NumberCase& one : numberCases) {
        tested.insert(one.key);
        const SettingRow& row = *findSetting(one.key);
        for (const auto& [stored, taken] : one.taken) {
            if (row.saved == SavedWhen::never || one.key == u"binVer" || (one.key == u"bPersistSettings" && taken == 0))
                continue;
            ASSERT_EQ(general().writeNumber(stored, one.key), done);
            ASSERT_EQ(writeSettings(root_, load(), context_), done);
            std::uint32_t kept = 0;
            ASSERT_EQ(general().readNumber(one.key, kept), done) << toUtf8(one.key);
            EXPECT_EQ(kept, one.key == u"bUseTrans" ? 1 : taken) << toUtf8(one.key) << " = " << stored;
            EXPECT_EQ(number(one.key), kept) << toUtf8(one.key);
        }
        ASSERT_THAT(general().deleteValue(one.key), ::testing::AnyOf(done, SettingsCode::notFound));
    }
    for (const TextCase& one : textCases) {
        tested.insert(one.key);
        ASSERT_EQ(general().writeString(one.stored, one.key), done);
        ASSERT_EQ(writeSettings(root_, load(), context_), done);
        EXPECT_EQ(text(one.key), one.taken) << toUtf8(one.key);
    }
    const Settings last = load();
    ASSERT_EQ(store_->commit(), done);
    if (GetParam().reopens) {
        store_ = world_->open();
        root_.store = store_.get();
    }
    EXPECT_EQ(load().folderMask, last.folderMask);
    EXPECT_EQ(load().tinyFile, last.tinyFile);
    for (const SettingRow& row : settingsTable())
        EXPECT_TRUE(std::holds_alternative<ListRule>(row.rule) || tested.contains(row.key)) << toUtf8(row.key);
}

INSTANTIATE_TEST_SUITE_P(BackEnds, SettingsRows, ::testing::ValuesIn(testing::settingsBackEnds()),
                         [](const auto& place) { return place.param.name; });

}  // namespace
}  // namespace kelvane
