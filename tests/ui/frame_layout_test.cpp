#include <QApplication>
#include <QDockWidget>
#include <QToolBar>

#include "app/settings_node.h"
#include "support/ui/desktop_world.h"
#include "ui/frame/theme.h"

namespace kelvane::testing {
namespace {

QDockWidget& pane(const DesktopWorld& world, const char* name)
{
    return *world.find<QDockWidget>(name);
}

TEST(FrameLayout, IsRememberedFromOneRunToTheNext)
{
    const auto kept = std::make_shared<MemorySettingsStore>();
    {
        DesktopWorld world({.kept = kept});
        EXPECT_EQ(world.window().dockWidgetArea(&pane(world, "log.pane")), Qt::BottomDockWidgetArea);
        world.window().addDockWidget(Qt::RightDockWidgetArea, &pane(world, "log.pane"));
        pane(world, "groups.pane").hide();
        world.window().close();
        EXPECT_TRUE(waitUntil([] { return DesktopWorld::windows().empty(); }));
    }
    {
        DesktopWorld world({.kept = kept});
        EXPECT_EQ(world.window().dockWidgetArea(&pane(world, "log.pane")), Qt::RightDockWidgetArea);
        EXPECT_TRUE(pane(world, "groups.pane").isHidden());
        EXPECT_TRUE(world.trigger("view.resetLayout"));
        EXPECT_EQ(world.window().dockWidgetArea(&pane(world, "log.pane")), Qt::BottomDockWidgetArea);
        EXPECT_FALSE(pane(world, "groups.pane").isHidden());
    }
}

TEST(FrameLayout, StartsAnewWhereTheSettingsSayIt)
{
    const auto kept = std::make_shared<MemorySettingsStore>();
    {
        DesktopWorld world({.kept = kept});
        pane(world, "groups.pane").hide();
        world.window().close();
        EXPECT_TRUE(waitUntil([] { return DesktopWorld::windows().empty(); }));
    }
    DesktopWorld world({.change = [](Settings& settings) { settings.resetWindowLayout = true; }, .kept = kept});
    EXPECT_FALSE(pane(world, "groups.pane").isHidden());
}

TEST(FrameLayout, HidesThePanesBelowFromBeginners)
{
    DesktopWorld world({.mode = InterfaceMode::beginner});
    EXPECT_TRUE(pane(world, "groups.pane").isHidden());
    EXPECT_TRUE(pane(world, "log.pane").isHidden());
}

TEST(FrameLayout, DamagedMemoryOpensTheWindowAsAtFirst)
{
    const auto kept = std::make_shared<MemorySettingsStore>();
    {
        const std::vector<std::byte> noise(64, std::byte{0xA5});
        SettingsNode node({kept.get(), registryLocation()}, u"Desktop", SettingsAccess::writing);
        for (const auto* name : {u"windowState", u"windowPlace", u"theme"})
            ASSERT_EQ(node.writeBinary(noise.data(), name, noise.size()), SettingsCode::done);
    }
    DesktopWorld world({.kept = kept});
    EXPECT_FALSE(pane(world, "groups.pane").isHidden());
    EXPECT_GE(world.window().width(), 600);
}

TEST(FrameTheme, DarkAndLightAreKeptAndReadable)
{
    DesktopWorld world;
    const auto contrast = [] {
        const QPalette palette = QApplication::palette();
        return std::abs(palette.color(QPalette::Base).lightness() - palette.color(QPalette::Text).lightness());
    };
    EXPECT_TRUE(world.trigger("view.themeDark"));
    EXPECT_TRUE(isDarkNow());
    EXPECT_GT(contrast(), 150);
    EXPECT_TRUE((world.desktop().settings().flags & settings_flag::darkTheme) != 0);
    EXPECT_EQ(QApplication::palette("QAbstractItemView").color(QPalette::Base), QColor(0x20, 0x20, 0x20));

    EXPECT_TRUE(world.trigger("view.themeLight"));
    EXPECT_FALSE(isDarkNow());
    EXPECT_GT(contrast(), 150);
    EXPECT_TRUE((world.desktop().settings().flags & settings_flag::darkTheme) == 0);
    world.desktop().change([](Settings& settings) { settings.viewBackground = 0x00D0FFFF; });
    Q_EMIT world.link().optionsChanged();
    EXPECT_EQ(QApplication::palette("QAbstractItemView").color(QPalette::Base), QColor(0xFF, 0xFF, 0xD0));
}

}  // namespace
}  // namespace kelvane::testing
