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
    const WithVariable noCache("XDG_CACHE_HOME", nullptr);
    EXPECT_EQ(places->cacheFolder(), "/home/somebody/.cache");
    const WithVariable cache("XDG_CACHE_HOME", "/quick");
    EXPECT_EQ(places->cacheFolder(), "/quick");
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

}  // namespace
}  // namespace kelvane
