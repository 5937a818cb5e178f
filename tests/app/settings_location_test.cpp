#include "app/settings_location.h"

#include <gmock/gmock.h>

#include "support/settings_world.h"

namespace kelvane {
namespace {

using testing::SettingsComputer;

TEST(SettingsLocation, IsTheFirstPlaceThatIsThere)
{
    SettingsComputer computer;
    const auto chosen = [&](const std::filesystem::path& argument = {}) {
        return chooseSettingsLocation(argument, computer.places, computer.platform->files());
    };
    EXPECT_EQ(chosen(), registryLocation());
    computer.tree.folder("settings/morlix/kelvane.ini");
    EXPECT_EQ(chosen(), registryLocation()) << "a folder is no file";
    computer.tree.remove("settings");
    const auto portable = computer.tree.write("program/kelvane.ini", "");
    EXPECT_EQ(chosen().iniPath, portable);
    EXPECT_TRUE(chosen().keyPath.empty());
    const auto personal = computer.tree.write("settings/morlix/kelvane.ini", "");
    EXPECT_EQ(chosen().iniPath, personal);
    EXPECT_EQ(chosen(computer.tree.path("new.ini")).iniPath, computer.tree.path("new.ini")) << "it need not exist";
}

TEST(SettingsLocation, CompletesTheNameOfTheSwitch)
{
    SettingsComputer computer;
    const auto program = computer.places.programFolder();
    const auto full = computer.tree.path();
    EXPECT_EQ(namedIniFile("my", computer.places), program / "my.ini");
    EXPECT_EQ(namedIniFile("my.txt", computer.places), program / "my.txt.ini");
    EXPECT_EQ(namedIniFile("sub/my.INI", computer.places), program / "sub/my.INI");
    EXPECT_EQ(namedIniFile(full / "my", computer.places), full / "my.ini");
}

}  // namespace
}  // namespace kelvane
