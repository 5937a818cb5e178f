#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "app/settings_table.h"
#include "base/utf.h"
#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using testing::ConsoleRun;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class SettingsVerb : public ::testing::Test {
protected:
    SettingsVerb() { platform_.ownPlaces = testing::FakePlaces(tree_.path("home")); }

    ConsoleRun run(Arguments arguments) { return testing::runCli(arguments, {}, platform_); }
    ConsoleRun settings(Arguments arguments)
    {
        arguments.insert(arguments.begin(), "settings");
        return run(std::move(arguments));
    }
    std::string get(const std::string& key) { return settings({"get", key}).out; }
    [[nodiscard]] std::string path(const std::string& name) const { return tree_.path(name).string(); }

    testing::TempTree tree_;
    testing::QuietPlatform platform_;
};

TEST_F(SettingsVerb, ListsEverySettingAndWhereTheyAre)
{
    const std::string text = settings({"list"}).out;
    const json document = json::parse(settings({"list", "--json"}).out);
    EXPECT_EQ(document.at("location").at("kind"), "registry");
    EXPECT_EQ(document.at("settings").size() + document.at("lists").size(), settingsTable().size());
    EXPECT_THAT(text, HasSubstr("Settings in the registry, Software\\Ostravenil Plc\\Kelvane\n"));
    for (const SettingRow& row : settingsTable())
        EXPECT_THAT(text, HasSubstr("\n" + toUtf8(row.key) + ' '));
    EXPECT_EQ(platform_.settings.commits, 0);
}

TEST_F(SettingsVerb, SaysWhatIsKeptFromRunToRunAndThrowsItAway)
{
    const auto cache = platform_.caches.open(1'000'000);
    ASSERT_TRUE(cache);
    RunCacheKey key;
    for (key.identity = {1, 1}; key.identity.index <= 3; ++key.identity.index)
        (*cache)->put(key, std::vector<std::byte>(5000));
    EXPECT_THAT(settings({"list"}).out, HasSubstr("\nKept of contents from run to run: 3 descriptors, 14.6 KB\n"));
    EXPECT_EQ(json::parse(settings({"list", "--json"}).out).at("cache").at("descriptors"), 3);
    EXPECT_FALSE(json::parse(settings({"get", "--json", "nHugeFileMB"}).out).contains("cache"));
    EXPECT_EQ(settings({"--clear-cache", "list"}).code, ExitCode::usage);

    platform_.caches.failure = Error{ErrorKind::accessDenied, 0, "descriptors.db: may not be removed"};
    const ConsoleRun failed = settings({"--clear-cache"});
    EXPECT_EQ(failed.code, ExitCode::incomplete);
    EXPECT_THAT(failed.err, HasSubstr("the cache cannot be cleared: descriptors.db: may not be removed"));
    platform_.caches.failure.reset();
    EXPECT_EQ(settings({"--clear-cache"}).out, "cache cleared: 3 descriptors, 14.6 KB\n");
    EXPECT_EQ(settings({"--clear-cache"}).out, "cache cleared: 0 descriptors, 0 bytes\n");
}

TEST_F(SettingsVerb, SetsWithinTheBoundsAndSaysSo)
{
    EXPECT_EQ(get("nHugeFileMB"), "10\n");
    const std::string bits = get("binFlags");
    EXPECT_EQ(settings({"set", "nhugefilemb", "20"}).code, ExitCode::done);
    EXPECT_EQ(get("nHugeFileMB"), "20\n");
    EXPECT_EQ(get("binFlags"), bits) << "what is not set stays, also the first time";
    const ConsoleRun clamped = settings({"set", "nHugeFileMB", "500"});
    EXPECT_EQ(clamped.code, ExitCode::done);
    EXPECT_THAT(clamped.err, HasSubstr("nHugeFileMB is now 50: 500 is out of its range, 1 to 50"));
    EXPECT_EQ(get("nHugeFileMB"), "50\n");
    EXPECT_EQ(settings({"set", "nMonitorPeekPC", "-100"}).code, ExitCode::done);
    EXPECT_EQ(get("nMonitorPeekPC"), "-100\n");
    EXPECT_EQ(settings({"set", "szFileCountRule", "*.ä"}).code, ExitCode::done);
    EXPECT_EQ(get("szFileCountRule"), "*.ä\n");
    EXPECT_EQ(settings({"set", "bin1OffNotify", "0x200"}).code, ExitCode::done);

    const json row = json::parse(settings({"get", "--json", "nHugeFileMB"}).out).at("settings").at(0);
    EXPECT_EQ(row.at("value"), 50);
    EXPECT_EQ(row.at("default"), 10);
    EXPECT_EQ(row.at("stored"), true);
    EXPECT_EQ(row.at("range").at("most"), 50);
}

TEST_F(SettingsVerb, RefusesWhatCannotBeSet)
{
    const struct {
        Arguments arguments;
        const char* message;
    } cases[] = {
        {{"get", "nHugeFile"}, "did you mean nHugeFileMB"},
        {{"set", "nTextSample", "131073"}, "nTextSample takes 48000 to 131072, not 131073"},
        {{"set", "nTinyFile", "many"}, "nTinyFile takes a number, 2048 and more, not \"many\""},
        {{"set", "nTinyFile", "4294967296"}, "takes a number"},
        {{"set", "nDeduped", "-5"}, "nDeduped takes a number, not \"-5\""},
        {{"set", "nTinyFile", "0x"}, "takes a number"},
        {{"set", "File types", "x"}, "is no single number or text"},
        {{"set", "szFileCountRule", "\xFF"}, "no valid UTF-8"},
        {{"set", "nTinyFile"}, "needs a key and a value"},
        {{"lst"}, "unknown action \"lst\" (did you mean list"},
        {{"list", "--settings", path("none.ini")}, "none.ini: "},
    };
    for (const auto& [arguments, message] : cases) {
        const ConsoleRun refused = settings(arguments);
        EXPECT_EQ(refused.code, ExitCode::usage) << message;
        EXPECT_THAT(refused.err, HasSubstr(message));
    }
    EXPECT_EQ(platform_.settings.commits, 0);
    platform_.settings.writable = false;
    const ConsoleRun failed = settings({"set", "nTinyFile", "4096"});
    EXPECT_EQ(failed.code, ExitCode::incomplete);
    EXPECT_THAT(failed.err, HasSubstr("Kelvane: cannot be written: permission denied"));
}

TEST_F(SettingsVerb, ExportsAndImportsEverything)
{
    EXPECT_EQ(settings({"export", path("a.ini")}).code, ExitCode::usage) << "nothing was saved yet";
    ASSERT_EQ(settings({"set", "nTinyFile", "4096"}).code, ExitCode::done);
    ASSERT_EQ(settings({"set", "szGrepExcludeTypes", "a,b"}).code, ExitCode::done);
    EXPECT_EQ(settings({"export", path("a.ini")}).code, ExitCode::done);
    ASSERT_EQ(settings({"set", "nTinyFile", "9999"}).code, ExitCode::done);
    EXPECT_EQ(settings({"export", path("a.ini")}).code, ExitCode::usage) << "the file is there";
    EXPECT_EQ(settings({"get", "nTinyFile", "--settings", path("a.ini")}).out, "4096\n");
    EXPECT_EQ(settings({"import", path("a.ini")}).code, ExitCode::done);
    EXPECT_EQ(get("nTinyFile"), "4096\n");
    EXPECT_EQ(get("szGrepExcludeTypes"), "a,b\n");
}

TEST_F(SettingsVerb, AnImportNamesWhatItSkipsAndIsNeverHalfDone)
{
    tree_.write("odd.ini", "[general]\r\nnTinyFile=7777\r\nbinUpdate=nonsense\r\nbPersistSettings=2\r\n"
                           "[SavedScans]\r\nScan0=00\r\n");
    tree_.write("other.ini", "[boot loader]\r\ntimeout=30\r\n");
    EXPECT_THAT(settings({"import", path("other.ini")}).err, HasSubstr("holds no settings of this program"));
    ASSERT_EQ(settings({"set", "nTinyFile", "4096"}).code, ExitCode::done);
    platform_.settings.fault = SettingsCode::accessDenied;
    EXPECT_EQ(settings({"import", path("odd.ini")}).code, ExitCode::incomplete);
    platform_.settings.fault = SettingsCode::done;
    EXPECT_EQ(get("nTinyFile"), "4096\n");
    const ConsoleRun imported = settings({"import", path("odd.ini")});
    EXPECT_EQ(imported.code, ExitCode::incomplete);
    EXPECT_THAT(imported.err, AllOf(HasSubstr("skipped: general\\binUpdate"), HasSubstr("skipped: SavedScans")));
    EXPECT_EQ(get("nTinyFile"), "7777\n");
    EXPECT_EQ(get("bPersistSettings"), "1\n") << "where the settings are is not imported";
}

// A scan goes by the numbers, never by what would change which files are duplicates.
TEST_F(SettingsVerb, ScansGoByTheSettings)
{
    tree_.write("files/a.dat", "same");
    tree_.write("files/b.txt", "same");
    tree_.write("numbers.ini", "[general]\r\nnTinyFile=9999\r\nbinLastScan=0\r\nbinFlags=1\r\n"
                               "[File types]\r\nName0=Sounds\r\nText0=dat,txt\r\nName1=\r\nName2=\r\nName3=\r\n"
                               "Name4=\r\nName5=All\r\nText5=jpg\r\n");
    const Arguments scan = {"scan", path("files"), "--settings", path("numbers.ini")};
    const auto with = [&](std::initializer_list<std::string> more) {
        Arguments arguments = scan;
        arguments.insert(arguments.end(), more);
        return run(arguments);
    };
    EXPECT_THAT(with({}).out, HasSubstr("a.dat"));
    EXPECT_THAT(with({"--ignore-small"}).out, IsEmpty());
    EXPECT_THAT(with({"--category", "audio"}).out, HasSubstr("a.dat"));
    EXPECT_THAT(run({"scan", path("files"), "--category", "audio"}).out, IsEmpty());
    EXPECT_THAT(run({"describe", path("files/a.dat"), "--settings", path("numbers.ini")}).out, HasSubstr("Sounds"));
    EXPECT_EQ(run({"compare", path("files/a.dat"), path("files/b.txt"), "--settings", path("none.ini")}).code,
              ExitCode::usage);
}

TEST_F(SettingsVerb, ADamagedFileIsNamedInAWarning)
{
    tree_.write("files/a", "same");
    tree_.write("files/b", "same");
    tree_.write("bad.ini", std::string("[general]\0nTinyFile", 18));
    const ConsoleRun scan = run({"scan", path("files"), "--settings", path("bad.ini")});
    EXPECT_THAT(scan.err, HasSubstr("warning: "));
    EXPECT_THAT(scan.err, HasSubstr("bad.ini"));
    EXPECT_THAT(scan.out, HasSubstr("Group 1: 2 files"));
}

}  // namespace
}  // namespace kelvane
