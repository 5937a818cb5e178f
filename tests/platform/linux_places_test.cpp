#include <filesystem>
#include <unistd.h>

#include "base/utf.h"
#include "platform/linux/adapters.h"
#include "platform/linux/os_release.h"
#include "support/linux_environment.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using testing::TempTree;
using testing::WithVariable;

TEST(LinuxPlaces, SettingsFollowXdgAndItsDefaults)
{
    const auto places = makeLinuxPlaces();
    const WithVariable home("HOME", "/home/somebody");
    for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
        const WithVariable config("XDG_CONFIG_HOME", unusable);
        EXPECT_EQ(places->settingsFolder(), "/home/somebody/.config");
    }
    const WithVariable config("XDG_CONFIG_HOME", "/elsewhere");
    EXPECT_EQ(places->settingsFolder(), "/elsewhere");
}

TEST(LinuxPlaces, HomeComesFromThePasswordFileWithoutAVariable)
{
    const WithVariable home("HOME", nullptr);
    const WithVariable config("XDG_CONFIG_HOME", nullptr);
    const auto folder = makeLinuxPlaces()->settingsFolder();
    EXPECT_TRUE(folder.is_absolute());
    EXPECT_EQ(folder.filename(), ".config");
}

TEST(LinuxPlaces, TemporaryFolderMustExist)
{
    const TempTree tree;
    const auto places = makeLinuxPlaces();
    const WithVariable own("TMPDIR", tree.path().c_str());
    EXPECT_EQ(places->temporaryFolder(), tree.path());
    const WithVariable missing("TMPDIR", tree.path("missing").c_str());
    EXPECT_EQ(places->temporaryFolder(), "/tmp");
    const WithVariable file("TMPDIR", tree.write("file", "").c_str());
    EXPECT_EQ(places->temporaryFolder(), "/tmp");
}

TEST(LinuxPlaces, ProgramIsTheOneThatRuns)
{
    const auto places = makeLinuxPlaces();
    EXPECT_EQ(places->programFile().filename(), "platform_test");
    EXPECT_TRUE(std::filesystem::exists(places->programFile()));
}

TEST(LinuxSystemFacts, NamesTheSystem)
{
    const SystemVersion version = makeLinuxSystemFacts()->version();
    EXPECT_GE(version.major, 3u);
    EXPECT_FALSE(version.productName.empty());
}

TEST(LinuxSystemFacts, ReadsTheDistributionsNameAsAShellWould)
{
    const std::pair<const char*, const char*> cases[] = {
        {"NAME=x\nPRETTY_NAME=\"Some Linux 12 (name)\"\nID=x\n", "Some Linux 12 (name)"},
        {"PRETTY_NAME='single \\ quotes'", "single \\ quotes"},
        {"PRETTY_NAME=\"a \\\"quoted\\\" word \\$\"\n", "a \"quoted\" word $"},
        {"PRETTY_NAME=bare", "bare"},
        {"PRETTY_NAME=first\nPRETTY_NAME=last\n", "last"},
        {"#PRETTY_NAME=no\nNAME=no\n", "Linux"},
        {"PRETTY_NAME=\"\"", "Linux"},
        {"PRETTY_NAME=\"", "\""},
        {"", "Linux"},
    };
    for (const auto& [text, name] : cases)
        EXPECT_EQ(linux_os::prettyName(text), name) << text;
}

TEST(LinuxSystemFacts, ScreenFollowsTheEnvironment)
{
    const auto facts = makeLinuxSystemFacts();
    const WithVariable qt("QT_FONT_DPI", nullptr);
    const std::pair<const char*, std::uint32_t> cases[] = {{nullptr, 96}, {"2", 192},  {"rubbish", 96},
                                                           {"-3", 96},    {"nan", 96}, {"1e9", 96}};
    for (const auto& [scale, dpi] : cases) {
        const WithVariable gdk("GDK_SCALE", scale);
        EXPECT_EQ(facts->screenDpi(), dpi);
    }
}

TEST(LinuxSystemFacts, FindsProgramsInThePath)
{
    const TempTree tree;
    tree.write("first/tool", "not executable");
    tree.folder("first/folder");
    std::filesystem::permissions(tree.write("second/tool", ""), std::filesystem::perms::owner_all);
    const WithVariable path("PATH",
                            (":relative:" + tree.path("first").string() + ":" + tree.path("second").string()).c_str());

    const auto facts = makeLinuxSystemFacts();
    EXPECT_EQ(facts->installedProgram("tool"), tree.path("second/tool"));
    for (const char* none : {"missing", "folder", "../second/tool", ""})
        EXPECT_EQ(facts->installedProgram(none), std::nullopt) << none;
}

}  // namespace
}  // namespace kelvane
