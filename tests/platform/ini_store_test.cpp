// Settings in an INI file: faults, damage, several writers.
#include "platform/ini_store.h"

#include <thread>

#include "platform/platform.h"
#include "support/faulty_output.h"
#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr auto done = SettingsCode::done;
constexpr auto reading = SettingsAccess::reading;
constexpr auto writing = SettingsAccess::writing;

class IniStoreTest : public ::testing::Test {
protected:
    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    FaultyOutput faulty_{platform_->output()};

    [[nodiscard]] std::unique_ptr<SettingsStore> store(IniOptions options = {})
    {
        return makeIniStore(platform_->files(), faulty_, platform_->folding(), tree_.path("kelvane.ini"), options);
    }

    [[nodiscard]] std::vector<std::string> entries() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(tree_.path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    // The two values that saveBatch() writes together; 0 where there is none.
    [[nodiscard]] std::pair<std::uint32_t, std::uint32_t> batch()
    {
        std::pair<std::uint32_t, std::uint32_t> values;
        const auto settings = store();
        if (const auto section = settings->open(u"general", reading))
            static_cast<void>(section->readNumber(u"nFirst", values.first));
        if (const auto section = settings->open(u"general\\list", reading))
            static_cast<void>(section->readNumber(u"nLast", values.second));
        return values;
    }

    static SettingsCode saveBatch(SettingsStore& settings, std::uint32_t value)
    {
        EXPECT_EQ(settings.begin(), done);
        EXPECT_EQ(settings.open(u"general", writing)->writeNumber(u"nFirst", value), done);
        EXPECT_EQ(settings.open(u"general\\list", writing)->writeNumber(u"nLast", value), done);
        return settings.commit();
    }
};

TEST_F(IniStoreTest, ReadsWhatAnotherProgramWrote)
{
    tree_.write("kelvane.ini", "[general]\nnHugeFileMB = 20 \nnMinus=-559038741\nnWords=words\nnEmpty=\n"
                               "binUpdate=0102\nbinEmpty=5A\nbinWrong=010204\n@=own\n[a\\b\\c]\nx=1\n");
    const auto settings = store();
    const auto section = settings->open(u"GENERAL", reading);
    ASSERT_NE(section, nullptr);
    std::uint32_t number = 7;
    EXPECT_EQ(section->readNumber(u"nMinus", number), SettingsCode::invalidData);
    EXPECT_EQ(section->readNumber(u"nEmpty", number), SettingsCode::invalidData);
    EXPECT_EQ(number, 7u);
    EXPECT_EQ(section->readNumber(u"nHugeFileMB", number), done);
    EXPECT_EQ(number, 20u);
    EXPECT_EQ(section->readNumber(u"nWords", number), done);
    EXPECT_EQ(number, 0u);
    std::vector<std::byte> block{std::byte{1}};
    EXPECT_EQ(section->readBlock(u"binWrong", block), SettingsCode::invalidData);
    EXPECT_EQ(section->readBlock(u"binEmpty", block), done);
    EXPECT_TRUE(block.empty());
    EXPECT_EQ(section->valueNames().back(), u"");
    EXPECT_THAT(settings->open(u"", reading)->subsectionNames(), ElementsAre(u"general", u"a"));
    EXPECT_THAT(settings->open(u"A", reading)->subsectionNames(), ElementsAre(u"b"));
    EXPECT_EQ(settings->open(u"a\\x", reading), nullptr);
}

TEST_F(IniStoreTest, RefusesOnlyWhatWouldNotComeBack)
{
    const std::vector<std::byte> block(32'768);
    const std::u16string text(32'761, u'x');
    const auto limitedStore = store({.limited = true});
    const auto section = limitedStore->open(u"s", writing);
    EXPECT_EQ(section->writeBlock(u"b", block), SettingsCode::tooLong);
    EXPECT_EQ(section->writeText(u"t", text), SettingsCode::tooLong);
    EXPECT_EQ(section->writeBlock(u"b", std::vector<std::byte>(32'767)), done);
    EXPECT_EQ(section->writeText(u"t", text.substr(1)), done);

    const auto free = store();
    EXPECT_EQ(free->open(u"s", writing)->writeBlock(u"b", block), done);
    EXPECT_EQ(free->open(u"s", writing)->writeText(u"t", text), done);
    // A file that no reader would take again is not written.
    const std::string before = tree_.read("kelvane.ini");
    EXPECT_EQ(free->open(u"s", writing)->writeText(u"t", std::u16string(8u << 20, u'x')), SettingsCode::tooLong);
    EXPECT_EQ(tree_.read("kelvane.ini"), before);
}

// The settings are whole whenever the process dies, and the next save clears up after it.
TEST_F(IniStoreTest, AKilledSaveLeavesTheOldSettingsOrTheNewOnes)
{
    for (int operation = 1, failed = 1; failed != 0; ++operation) {
        tree_.write("kelvane.ini", "; mine\n[general]\nnFirst=1\n[general\\list]\nnLast=1\n");
        faulty_.fail(FaultyOutput::Fault::killed, operation);
        const SettingsCode code = saveBatch(*store(), 2);
        failed = faulty_.failed();
        faulty_.fail(FaultyOutput::Fault::none, 0);
        EXPECT_EQ(code == done, failed == 0) << operation;
        const auto now = batch();
        EXPECT_TRUE(now == std::pair(2u, 2u) || (now == std::pair(1u, 1u) && failed != 0)) << operation;

        EXPECT_EQ(saveBatch(*store(), 3), done) << operation;
        EXPECT_EQ(batch(), std::pair(3u, 3u)) << operation;
        EXPECT_THAT(entries(), ElementsAre("kelvane.ini")) << operation;
        EXPECT_TRUE(failed != 0 || operation > 10) << operation;
    }
}

TEST_F(IniStoreTest, ADamagedFileIsNeverLost)
{
    const std::string garbage("[general]\nnFirst=1\n\0", 21);
    for (const auto fault : {FaultyOutput::Fault::once, FaultyOutput::Fault::killed}) {
        for (int operation = 1, failed = 1; failed != 0; ++operation) {
            for (const std::string& name : entries())
                tree_.remove(name);
            tree_.write("kelvane.ini", garbage);
            tree_.write("kelvane.ini.damaged", "kept before");
            faulty_.fail(fault, operation);
            static_cast<void>(saveBatch(*store(), 2));
            failed = faulty_.failed();
            faulty_.fail(FaultyOutput::Fault::none, 0);
            const auto now = batch();
            EXPECT_TRUE(now == std::pair(2u, 2u) || (now == std::pair(0u, 0u) && failed != 0)) << operation;
            EXPECT_EQ(tree_.read("kelvane.ini.damaged"), "kept before");
            const std::vector<std::string> names = entries();
            const auto isKept = [&](const std::string& name) { return tree_.read(name) == garbage; };
            EXPECT_EQ(std::count_if(names.begin(), names.end(), isKept), 1) << operation;
        }
    }
}

TEST_F(IniStoreTest, TellsOfDamageAndWhereTheFileWent)
{
    const std::string garbage("\xFF\xFE[", 3);
    tree_.write("kelvane.ini", garbage);
    const auto settings = store();
    EXPECT_EQ(settings->open(u"general", reading), nullptr);
    EXPECT_THAT(settings->complaint(), HasSubstr("kelvane.ini is damaged"));
    EXPECT_TRUE(settings->isWritable());
    EXPECT_EQ(tree_.read("kelvane.ini"), garbage);
    EXPECT_EQ(saveBatch(*settings, 1), done);
    EXPECT_THAT(settings->complaint(), HasSubstr("kept as " + tree_.path("kelvane.ini.damaged").string()));
    EXPECT_EQ(tree_.read("kelvane.ini.damaged"), garbage);
    EXPECT_EQ(store()->complaint(), "");
}

TEST_F(IniStoreTest, WritesNothingWhereItCannotReadOrWrite)
{
    tree_.folder("kelvane.ini");
    const auto settings = store();
    EXPECT_FALSE(settings->isWritable());
    EXPECT_THAT(settings->complaint(), HasSubstr("cannot be read"));
    EXPECT_NE(saveBatch(*settings, 1), done);
    EXPECT_EQ(settings->open(u"s", writing)->writeNumber(u"n", 1), SettingsCode::invalidData);
    EXPECT_EQ(settings->open(u"s", writing)->writeBlock(u"b", {}), SettingsCode::notFound);
    EXPECT_THAT(entries(), ElementsAre("kelvane.ini"));

    const auto nowhere = makeIniStore(platform_->files(), faulty_, platform_->folding(), tree_.path("no") / "x.ini");
    EXPECT_FALSE(nowhere->isWritable());
    EXPECT_EQ(nowhere->complaint(), "");
    EXPECT_NE(saveBatch(*nowhere, 1), done);
}

TEST_F(IniStoreTest, LooksForNothingToWrite)
{
    const auto settings = store();
    EXPECT_TRUE(settings->isWritable());
    EXPECT_EQ(settings->begin(), done);
    EXPECT_THROW(static_cast<void>(settings->begin()), std::logic_error);
    EXPECT_EQ(settings->commit(), done);
    EXPECT_TRUE(entries().empty());
    EXPECT_EQ(saveBatch(*settings, 1), done);
    faulty_.fail(FaultyOutput::Fault::none, 0);
    EXPECT_EQ(saveBatch(*settings, 1), done);
    EXPECT_LE(faulty_.operations(), 3);  // the lock and what lies about, but no write
}

TEST_F(IniStoreTest, WritersOfDifferentValuesLoseNothing)
{
    constexpr std::uint32_t turns = 40;
    {
        std::vector<std::jthread> threads;
        for (const char16_t* name : {u"a", u"b", u"c"}) {
            threads.emplace_back([this, name] {
                const auto settings = makeIniStore(platform_->files(), platform_->output(), platform_->folding(),
                                                   tree_.path("kelvane.ini"));
                for (std::uint32_t turn = 1; turn <= turns; ++turn)
                    ASSERT_EQ(
                        settings->open(u"general", writing)
                            ->writeNumber(name + std::u16string(1, static_cast<char16_t>(u'\u4E00' + turn)), turn),
                        done);
            });
        }
    }
    const auto settings = store();
    EXPECT_EQ(settings->open(u"general", reading)->valueNames().size(), 3 * turns);
}

// A batch was begun with what the file said then; only what it changes is written.
TEST_F(IniStoreTest, ABatchKeepsWhatOthersWroteMeanwhile)
{
    const auto mine = store();
    ASSERT_EQ(mine->begin(), done);
    ASSERT_EQ(mine->open(u"s", writing)->writeNumber(u"mine", 1), done);
    ASSERT_EQ(store()->open(u"s", writing)->writeNumber(u"theirs", 2), done);
    ASSERT_EQ(mine->commit(), done);
    EXPECT_THAT(mine->open(u"s", reading)->valueNames(), ElementsAre(u"theirs", u"mine"));
}

}  // namespace
}  // namespace kelvane::testing
