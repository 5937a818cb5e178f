#include "app/registry_access.h"

#include <gmock/gmock.h>

#include "app/settings_loader.h"
#include "app/version_info.h"
#include "support/settings_world.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::FaultyOutput;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::SettingsComputer;
using ::testing::SizeIs;

constexpr auto done = SettingsCode::done;

class RegistryAccess : public ::testing::Test {
protected:
    // One run of the program: starts, does its work, saves.
    Settings run(const std::function<void(CRegistryAccess&)>& work = {}, const std::filesystem::path& argument = {})
    {
        CRegistryAccess access(computer_.ports());
        access.chooseLocation(argument);
        access.load(computer_.questions);
        Settings loaded = access.settings();
        if (work)
            work(access);
        EXPECT_EQ(access.save(), done);
        return loaded;
    }

    // A look at a place, without a run.
    [[nodiscard]] Settings look(const SettingsLocation& location)
    {
        CRegistryAccess access(computer_.ports());
        access.useLocation(location);
        access.loadForReading();
        return access.settings();
    }

    [[nodiscard]] SettingsNode general()
    {
        return {{&computer_.registry, registryLocation()}, u"general", SettingsAccess::writing};
    }

    SettingsComputer computer_;
    SettingsLocation personal_{{}, personalIniFile(computer_.places)};
};

TEST_F(RegistryAccess, TheFirstRunAsksForTheInterface)
{
    const struct {
        InterfaceMode answer;
        std::uint32_t bits;
    } answers[] = {{InterfaceMode::advanced, 0x80000800},
                   {InterfaceMode::beginner, 0x00100004},
                   {InterfaceMode::standard, 0x00100000}};
    for (const auto& [answer, bits] : answers) {
        static_cast<void>(computer_.registry.deleteSection(u""));
        computer_.questions.modeQuestions = 0;
        computer_.questions.mode = answer;
        const Settings first = run();
        EXPECT_TRUE(first.firstRun);
        EXPECT_EQ(first.flags, bits);
        EXPECT_EQ(first.useCount, 1u);
        const Settings second = run();
        EXPECT_EQ(second.flags, bits);
        EXPECT_FALSE(second.firstRun);
        EXPECT_EQ(second.useCount, 2u);
        EXPECT_EQ(computer_.questions.modeQuestions, 1);
    }
}

TEST_F(RegistryAccess, DefaultFlagsFollowTheSystem)
{
    SettingsContext context = computer_.context();
    const SettingsRoot root{&computer_.registry, registryLocation()};
    context.windowsRules = true;
    EXPECT_EQ(loadSettings(root, context).flags, 0u);
    computer_.facts.doubleByte = true;
    context.translation = TranslationState::active;
    computer_.facts.answers.major = 5;
    computer_.facts.answers.minor = 1;
    EXPECT_EQ(loadSettings(root, context).flags, 0x04000000u | 0x40000000u | 0x01000040u);
    context.windowsRules = false;
    EXPECT_EQ(loadSettings(root, context).flags, 0x44000000u) << "the versions of other systems count otherwise";
    ASSERT_EQ(general().writeNumber(0x100, u"binFlags"), done);
    EXPECT_EQ(loadSettings(root, context).flags, 0u) << "long paths are enabled";
    computer_.facts.longPaths = false;
    EXPECT_EQ(loadSettings(root, context).flags, 0x100u);
    context.windowsRules = true;
    computer_.facts.answers.minor = 0;
    EXPECT_EQ(loadSettings(root, context).flags, 0u) << "Windows 2000";
}

TEST_F(RegistryAccess, SomeSettingsDecideOverOthers)
{
    ASSERT_EQ(general().writeNumber(0, u"bSantasLittleHelper"), done);
    ASSERT_EQ(general().writeNumber(0x10410000, u"binFlags"), done);
    ASSERT_EQ(general().writeNumber(0x123456, u"rgbViewBgcol"), done);
    const Settings settings = look(registryLocation());
    EXPECT_EQ(settings.flags, 0x10000u);
    EXPECT_EQ(settings.extractionTimeoutMs, 0u);
    EXPECT_TRUE(settings.resetWindowLayout);
    EXPECT_EQ(settings.viewBackground, 0x202020u);
    run();
    EXPECT_TRUE(look(registryLocation()).resetWindowLayout) << "until a window has done it";
    run([](CRegistryAccess& access) { access.settings().resetWindowLayout = false; });
    EXPECT_FALSE(look(registryLocation()).resetWindowLayout);
}

TEST_F(RegistryAccess, ContentPluginsStandInTheSettingsOrInAFileOfTheirOwn)
{
    const auto program = computer_.places.programFolder();
    const auto full = computer_.tree.path("b.wdx");
    SettingsNode own({&computer_.registry, registryLocation()}, u"ContentPlugins", SettingsAccess::writing);
    ASSERT_EQ(own.writeString(u"a.wdx", u"10"), done);
    ASSERT_EQ(own.writeString(toUtf16(full.string()), u"2"), done);
    ASSERT_EQ(own.writeString(u"EXT=\"B\"", u"2_detect"), done);
    ASSERT_EQ(own.writeString(u"passed over", u"02"), done);
    const auto entries = [&] {
        CRegistryAccess access(computer_.ports());
        access.useLocation(registryLocation());
        access.loadForReading();
        return access.contentPlugins(access.settings());
    };
    EXPECT_THAT(*entries(),
                ElementsAre(ContentPluginEntry{full, "EXT=\"B\""}, ContentPluginEntry{program / "a.wdx", ""}));

    ASSERT_EQ(general().writeString(u"list.ini", u"szPluginINI"), done);
    ASSERT_FALSE(entries());
    EXPECT_THAT(entries().error().detail, HasSubstr("list.ini"));
    computer_.tree.write("program/list.ini", "[ContentPlugins]\n0=own.wdx\n0_detect=EXT=\"C\" | EXT=\"D\"\n");
    EXPECT_THAT(*entries(), ElementsAre(ContentPluginEntry{program / "own.wdx", "EXT=\"C\" | EXT=\"D\""}));

    ASSERT_EQ(general().writeString(u"Own, other.wdx", u"msPluginsOff"), done);
    EXPECT_THAT(*entries(), IsEmpty()) << "switched off by its name";
    ASSERT_EQ(general().writeString(u"", u"szPluginINI"), done);
    ASSERT_EQ(general().writeString(u"A.WDX", u"msPluginsOff"), done);
    EXPECT_THAT(*entries(), ElementsAre(ContentPluginEntry{full, "EXT=\"B\""}));
}

TEST_F(RegistryAccess, ProgramsAreFoundBesideTheProgramOrInstalled)
{
    computer_.tree.write("program/a-diff.txt", "");
    const auto tool = computer_.tree.write("program/xDiffy.exe", "");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    ASSERT_EQ(general().writeString(u"plugins.ini", u"szPluginINI"), done);
    computer_.facts.programs["notepad.exe"] = "/opt/notepad";
    Settings settings = run();
    EXPECT_EQ(std::filesystem::path(settings.comparisonTool), tool);
    EXPECT_EQ(std::filesystem::path(settings.pluginList), computer_.places.programFolder() / "plugins.ini");
    EXPECT_EQ(settings.textViewer, u"/opt/notepad");
    computer_.facts.programs["notorix2.exe"] = "/opt/notorix";
    EXPECT_EQ(run().textViewer, u"/opt/notorix");
    ASSERT_EQ(general().writeString(u"viewer", u"szTextViewerPath"), done);
    EXPECT_EQ(std::filesystem::path(run().textViewer), computer_.places.programFolder() / "viewer");
}

TEST_F(RegistryAccess, ANewVersionStartsItsCountsAnew)
{
    const std::uint32_t version = CAppVersionInfo::versionNumber();
    run();
    ASSERT_EQ(general().writeNumber(9, u"nCrashes"), done);
    ASSERT_EQ(general().writeNumber(41, u"nUsecount"), done);
    const FileTime firstCheck = look(registryLocation()).lastUpdateCheck;
    computer_.clock.milliseconds += 1'000;
    for (const std::uint32_t same : {version, version + 1}) {
        ASSERT_EQ(general().writeNumber(same, u"binVer"), done);
        ASSERT_EQ(general().writeNumber(41, u"nUsecount"), done);
        const Settings settings = run();
        EXPECT_EQ(settings.crashes, 9u);
        EXPECT_EQ(settings.useCount, 42u);
        EXPECT_EQ(settings.lastUpdateCheck, firstCheck);
    }
    ASSERT_EQ(general().writeNumber(version - 1, u"binVer"), done);
    const Settings settings = run();
    EXPECT_EQ(settings.crashes, 0u);
    EXPECT_EQ(settings.useCount, 1u);
    EXPECT_EQ(settings.lastUpdateCheck, computer_.clock.now());
    EXPECT_EQ(look(registryLocation()).savedVersion, version);
}

TEST_F(RegistryAccess, WithCountersOnlyChangesOfOptionsAreLost)
{
    run([](CRegistryAccess& access) {
        access.settings().persistence = PersistenceMode::bookkeepingOnly;
        access.settings().tinyFile = {9'999};
        access.settings().deduped = 3;
    });
    const Settings settings = run();
    EXPECT_EQ(settings.persistence, PersistenceMode::bookkeepingOnly);
    EXPECT_EQ(settings.useCount, 2u);
    EXPECT_EQ(settings.deduped, 3u);
    EXPECT_EQ(settings.tinyFile, FileSize{50'000});
    EXPECT_THAT(general().valueNames(), ElementsAre(u"nUsecount", u"nDeduped", u"bPersistSettings"));
}

TEST_F(RegistryAccess, AnIniFileOfTheSwitchIsUsedAndMade)
{
    const SettingsLocation mine{{}, computer_.tree.path("mine.ini")};
    EXPECT_EQ(run({}, mine.iniPath).persistence, PersistenceMode::iniFile);
    run([](CRegistryAccess& access) { access.settings().tinyFile = {9'999}; }, mine.iniPath);
    EXPECT_EQ(look(mine).tinyFile, FileSize{9'999});
    EXPECT_EQ(look(registryLocation()).useCount, 0u);
}

TEST_F(RegistryAccess, ALookChangesNothing)
{
    CRegistryAccess access(computer_.ports());
    access.chooseLocation(computer_.tree.path("none.ini"));
    access.loadForReading();
    access.useLocation(registryLocation());
    access.loadForReading();
    EXPECT_EQ(access.settings().useCount, 0u);
    EXPECT_EQ(computer_.questions.modeQuestions, 0);
    EXPECT_FALSE(std::filesystem::exists(computer_.tree.path("none.ini")));
    EXPECT_EQ(computer_.registry.commits, 0);
}

TEST_F(RegistryAccess, AFailedSaveChangesNothingAndNamesThePlace)
{
    run();
    CRegistryAccess access(computer_.ports());
    access.chooseLocation({});
    access.load(computer_.questions);
    access.settings().tinyFile = {9'999};
    computer_.registry.writable = false;
    const SettingsCode code = access.save();
    EXPECT_NE(code, done);
    computer_.registry.writable = true;
    EXPECT_EQ(look(registryLocation()).useCount, 1u);
    EXPECT_THAT(toUtf8(access.failureText(code)),
                AllOf(HasSubstr("cannot be written\n"), HasSubstr("Kelvane: permission denied\nUse the /I")));
}

TEST_F(RegistryAccess, ADamagedPlaceIsToldOf)
{
    computer_.registry.complaintText = "the registry was kept as registry.bad";
    run();
    EXPECT_THAT(computer_.questions.errors, ElementsAre(u"the registry was kept as registry.bad"));
}

// What a person has, in every kind of value; the ones that the saver leaves alone too.
void fill(CRegistryAccess& access)
{
    Settings& settings = access.settings();
    settings.tinyFile = {9'999};
    settings.folderSets = {{u"set", u"/a|/b"}};
    settings.lastScan.emplace();
    settings.lastScan->roots = "/home";
    SettingsNode general(access.root(), u"general", SettingsAccess::writing);
    EXPECT_EQ(general.writeNumber(32, u"nIconSize"), done);
    EXPECT_EQ(general.writeString(u"/my/viewer", u"szTextViewerPath"), done);
    EXPECT_EQ(general.writeNumber(77, u"nUnknown"), done);
    SettingsNode tags(access.root(), u"Tag colors", SettingsAccess::writing);
    EXPECT_EQ(tags.writeNumber(0xABCDEF, u"mine"), done);
    SettingsNode plugins(access.root(), u"Of another program\\inner", SettingsAccess::writing);
    EXPECT_EQ(plugins.writeString(u"plugin.wdx", u"0"), done);
}

void expectFilled(CRegistryAccess& access)
{
    const Settings& settings = access.settings();
    EXPECT_EQ(settings.tinyFile, FileSize{9'999});
    EXPECT_THAT(settings.folderSets, ElementsAre(NamedText{u"set", u"/a|/b"}));
    ASSERT_TRUE(settings.lastScan);
    EXPECT_EQ(settings.lastScan->roots, "/home");
    EXPECT_EQ(settings.iconSize, 32u);
    EXPECT_EQ(settings.textViewer, u"/my/viewer");
    EXPECT_THAT(settings.tagColors, ElementsAre(TagColor{u"mine", 0xABCDEF}));
    std::uint32_t unknown = 0;
    EXPECT_EQ(SettingsNode(access.root(), u"general", SettingsAccess::reading).readNumber(u"nUnknown", unknown), done);
    EXPECT_EQ(unknown, 77u);
    std::u16string plugin;
    const SettingsNode plugins(access.root(), u"Of another program\\inner", SettingsAccess::reading);
    EXPECT_EQ(plugins.readString(plugin, u"0"), done);
    EXPECT_EQ(plugin, u"plugin.wdx");
}

TEST_F(RegistryAccess, MovesToAnIniFileAndBackWithEverything)
{
    computer_.tree.write("settings/morlix/kelvane.ini.bak", "an older one");
    run(fill);
    run([](CRegistryAccess& access) { EXPECT_TRUE(access.switchTo(PersistenceMode::iniFile).ok()); });
    run([&](CRegistryAccess& access) {
        EXPECT_EQ(access.location(), personal_);
        EXPECT_EQ(access.settings().persistence, PersistenceMode::iniFile);
        expectFilled(access);
        ASSERT_EQ(computer_.registry.deleteSection(u""), done);
        EXPECT_TRUE(access.switchTo(PersistenceMode::registry).ok());
    });
    EXPECT_FALSE(std::filesystem::exists(personal_.iniPath));
    EXPECT_THAT(computer_.tree.read("settings/morlix/kelvane.ini.bak").size(), ::testing::Gt(1'000u));
    const Settings settings = run(expectFilled);
    EXPECT_EQ(settings.persistence, PersistenceMode::registry);
    EXPECT_EQ(settings.useCount, 4u);
}

// Each step of a move fails in turn; whatever the next start finds is everything there was.
TEST_F(RegistryAccess, AMoveThatFailsLeavesTheSettingsWhereTheyWere)
{
    run(fill);
    for (const PersistenceMode mode : {PersistenceMode::iniFile, PersistenceMode::registry}) {
        bool moved = false;
        for (int step = 1; !moved; ++step) {
            run([&](CRegistryAccess& access) {
                const SettingsLocation before = access.location();
                const PersistenceMode modeBefore = access.settings().persistence;
                computer_.output.fail(FaultyOutput::Fault::once, step);
                const Status status = access.switchTo(mode);
                const bool faulted = computer_.output.failed();
                computer_.output.fail(FaultyOutput::Fault::none, 0);
                moved = status.ok();
                EXPECT_TRUE(moved || faulted);
                if (moved)
                    return;
                EXPECT_EQ(access.location(), before) << step;
                EXPECT_EQ(access.settings().persistence, modeBefore) << step;
                EXPECT_THAT(status.error().detail, HasSubstr(toUtf8(personal_.iniPath.u16string())));
            });
            run([&](CRegistryAccess& access) {
                expectFilled(access);
                EXPECT_EQ(access.location().isIni(), moved == (mode == PersistenceMode::iniFile)) << step;
            });
            ASSERT_LT(step, 100);
        }
    }
    computer_.registry.writable = false;
    computer_.tree.write("settings/morlix/kelvane.ini", "[general]\r\nnTinyFile=9999\r\n");
    CRegistryAccess access(computer_.ports());
    access.chooseLocation({});
    access.load(computer_.questions);
    EXPECT_FALSE(access.switchTo(PersistenceMode::registry).ok());
    EXPECT_EQ(access.location(), personal_);
}

// The process ends at each operation of a save in turn: the settings that the next one finds are all old or all new.
TEST_F(RegistryAccess, ASaverThatIsKilledLeavesTheOldOrTheNewSettings)
{
    const auto path = computer_.tree.path("mine.ini");
    const auto put = [](std::uint32_t value) {
        return [value](CRegistryAccess& access) {
            access.settings().tinyFile = {value};
            access.settings().tipOfTheDay = value;
            access.settings().folderSets = {value / 5'000, {u"set", u"/a"}};
            access.settings().viewBackground = value;
        };
    };
    run(put(5'000), path);
    bool saved = false;
    for (int step = 1; !saved; ++step) {
        CRegistryAccess access(computer_.ports());
        access.chooseLocation(path);
        access.load(computer_.questions);
        put(10'000)(access);
        computer_.output.fail(FaultyOutput::Fault::killed, step);
        saved = access.save() == done;
        EXPECT_EQ(saved, !computer_.output.failed());
        computer_.output.fail(FaultyOutput::Fault::none, 0);
        const Settings settings = look({{}, path});
        const std::uint32_t found = settings.tipOfTheDay;
        EXPECT_TRUE(found == 10'000 || (found == 5'000 && !saved)) << step << ": " << found;
        EXPECT_EQ(settings.tinyFile, FileSize{found});
        EXPECT_THAT(settings.folderSets, SizeIs(found / 5'000));
        EXPECT_EQ(settings.viewBackground, found);
        run(put(5'000), path);
        ASSERT_LT(step, 100);
    }
}

TEST_F(RegistryAccess, ErasesEverything)
{
    for (const bool ini : {false, true}) {
        CRegistryAccess access(computer_.ports());
        access.chooseLocation(ini ? computer_.tree.path("mine.ini") : std::filesystem::path{});
        access.load(computer_.questions);
        fill(access);
        ASSERT_EQ(access.save(), done);
        ASSERT_EQ(access.eraseAll(), done);
        const SettingsNode root(access.root(), {}, SettingsAccess::reading);
        EXPECT_THAT(root.subsectionNames(), IsEmpty());
        EXPECT_THAT(root.valueNames(), IsEmpty());
        EXPECT_TRUE(isFirstRun(access.root()));
    }
    EXPECT_TRUE(std::filesystem::exists(computer_.tree.path("mine.ini")));
}

}  // namespace
}  // namespace kelvane
