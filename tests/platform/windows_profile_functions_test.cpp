// The INI store against the system's own profile functions, both ways.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/ini_store.h"
#include "platform/windows/adapters.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using Block = std::vector<std::byte>;
constexpr auto done = SettingsCode::done;

std::wstring wide(std::u16string_view text)
{
    return {text.begin(), text.end()};
}

class ProfileFunctionsTest : public ::testing::Test {
protected:
    // The system keeps the last file that it read in memory, and lets it go when it is asked to.
    void forget() const { ::WritePrivateProfileStringW(nullptr, nullptr, nullptr, file_.c_str()); }

    [[nodiscard]] std::u16string systemText(const wchar_t* section, std::u16string_view key) const
    {
        forget();
        std::wstring text(40'000, L'\0');
        text.resize(::GetPrivateProfileStringW(section, wide(key).c_str(), L"<none>", text.data(),
                                               static_cast<DWORD>(text.size()), file_.c_str()));
        return {text.begin(), text.end()};
    }

    testing::TempTree tree_;
    std::filesystem::path file_ = tree_.path("kelvane.ini");
    std::unique_ptr<FileSystem> files_ = makeWindowsFileSystem();
    std::unique_ptr<FileOutput> output_ = makeWindowsFileOutput();
    std::unique_ptr<TextFolding> folding_ = makeTextFolding();
    std::unique_ptr<SettingsStore> store_ = makeIniStore(*files_, *output_, *folding_, file_);
};

TEST_F(ProfileFunctionsTest, TheSystemReadsWhatTheProgramWrites)
{
    const std::u16string texts[] = {u"plain", u"", u"  blanks ", u"\"quoted\"", u"a=b;c", u"größer 日本"};
    const std::uint32_t numbers[] = {0, 32'000, 0x7FFFFFFF, 0xFFFFFFFF, 0x80000000};
    const Block block = {std::byte{0}, std::byte{0x12}, std::byte{0xAB}, std::byte{0xFF}};
    {
        const auto section = store_->open(u"general", SettingsAccess::writing);
        for (std::size_t i = 0; i < std::size(texts); ++i)
            ASSERT_EQ(section->writeText(u"sz" + std::u16string(1, char16_t(u'a' + i)), texts[i]), done);
        for (std::size_t i = 0; i < std::size(numbers); ++i)
            ASSERT_EQ(section->writeNumber(u"n" + std::u16string(1, char16_t(u'a' + i)), numbers[i]), done);
        ASSERT_EQ(section->writeBlock(u"binUpdate", block), done);
        ASSERT_EQ(store_->open(u"Tag colors", SettingsAccess::writing)->writeNumber(u"a=b", 255), done);
    }

    for (std::size_t i = 0; i < std::size(texts); ++i)
        EXPECT_EQ(systemText(L"general", u"sz" + std::u16string(1, char16_t(u'a' + i))), texts[i]);
    for (std::size_t i = 0; i < std::size(numbers); ++i) {
        const std::wstring key = {L'n', wchar_t(L'a' + i)};
        EXPECT_EQ(::GetPrivateProfileIntW(L"general", key.c_str(), 77, file_.c_str()), numbers[i]);
    }
    Block read(block.size());
    EXPECT_TRUE(::GetPrivateProfileStructW(L"general", L"binUpdate", read.data(), static_cast<UINT>(read.size()),
                                           file_.c_str()));
    EXPECT_EQ(read, block);
    EXPECT_EQ(systemText(L"Tag colors", u"a_b"), u"255");
}

TEST_F(ProfileFunctionsTest, TheProgramReadsWhatTheSystemWrites)
{
    const Block block = {std::byte{1}, std::byte{0xFE}, std::byte{0x7F}};
    const std::pair<const wchar_t*, const wchar_t*> written[] = {
        {L"szA", L"plain"}, {L"szB", L""},          {L"szC", L"\" kept blanks \""}, {L"szD", L"a=b;c"},
        {L"nE", L"-12"},    {L"nF", L"4000000000"}, {L"nG", L"17 apples"},          {L"nH", L"none"}};
    for (const auto& [key, text] : written)
        ASSERT_TRUE(::WritePrivateProfileStringW(L"general", key, text, file_.c_str()));
    Block source = block;
    ASSERT_TRUE(::WritePrivateProfileStructW(L"general", L"binI", source.data(), static_cast<UINT>(source.size()),
                                             file_.c_str()));
    forget();

    const auto section = store_->open(u"general", SettingsAccess::reading);
    ASSERT_NE(section, nullptr);
    for (const auto* key : {L"szA", L"szB", L"szC", L"szD"}) {
        const std::u16string name(key, key + 3);
        std::u16string text;
        EXPECT_EQ(section->readText(name, text), done);
        EXPECT_EQ(text, systemText(L"general", name));
    }
    for (const auto* key : {L"nE", L"nF", L"nG", L"nH"}) {
        std::uint32_t number = 0;
        EXPECT_EQ(section->readNumber(std::u16string(key, key + 2), number), done);
        EXPECT_EQ(number, ::GetPrivateProfileIntW(L"general", key, 77, file_.c_str()));
    }
    Block read;
    EXPECT_EQ(section->readBlock(u"binI", read), done);
    EXPECT_EQ(read, block);
}

TEST_F(ProfileFunctionsTest, BothCanTakeTurnsWithOneFile)
{
    for (std::uint32_t round = 1; round <= 3; ++round) {
        ASSERT_EQ(store_->open(u"ours", SettingsAccess::writing)->writeNumber(u"n", round), done);
        ASSERT_TRUE(::WritePrivateProfileStringW(L"theirs", L"n", std::to_wstring(round).c_str(), file_.c_str()));
        forget();
        std::uint32_t number = 0;
        EXPECT_EQ(store_->open(u"theirs", SettingsAccess::reading)->readNumber(u"n", number), done);
        EXPECT_EQ(number, round);
        EXPECT_EQ(::GetPrivateProfileIntW(L"ours", L"n", 0, file_.c_str()), round);
    }
}

}  // namespace
}  // namespace kelvane
