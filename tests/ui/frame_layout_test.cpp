#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QCommandLinkButton>
#include <QDialog>
#include <QDockWidget>
#include <QPainter>
#include <QRadioButton>
#include <QScreen>
#include <QStyleOptionButton>
#include <QToolBar>
#include <cmath>

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
        // Its title and frame come on top, and have room on a small screen as well.
        EXPECT_LT(world.window().height(), world.window().screen()->availableSize().height() - 20);
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

TEST(FrameLayout, FollowsTheInterfaceAtOnce)
{
    DesktopWorld world;
    world.window().addDockWidget(Qt::RightDockWidgetArea, &pane(world, "pane.scan"));
    EXPECT_TRUE(world.trigger("view.beginner"));
    EXPECT_TRUE(pane(world, "groups.pane").isHidden());
    EXPECT_TRUE(pane(world, "pane.preview").isHidden());
    EXPECT_EQ(world.window().dockWidgetArea(&pane(world, "pane.scan")), Qt::LeftDockWidgetArea);
    EXPECT_TRUE(world.trigger("view.standard"));
    EXPECT_FALSE(pane(world, "groups.pane").isHidden());
    EXPECT_FALSE(pane(world, "pane.preview").isHidden());
}

TEST(FrameLayout, KeysLeadFromPaneToPane)
{
    DesktopWorld world;
    pane(world, "groups.pane").hide();
    const auto paneOfFocus = [&]() -> QString {
        for (const QWidget* at = world.window().focusWidget(); at != nullptr; at = at->parentWidget())
            if (at == world.window().centralWidget() || qobject_cast<const QDockWidget*>(at) != nullptr)
                return at == world.window().centralWidget() ? QStringLiteral("middle") : at->objectName();
        return {};
    };
    world.window().centralWidget()->setFocus();
    QStringList way;
    for (int step = 0; step < 5; ++step) {
        EXPECT_TRUE(world.trigger("view.nextPane"));
        way.push_back(paneOfFocus());
    }
    EXPECT_EQ(way.join(u' ').toStdString(), "pane.preview pane.marking log.pane pane.scan middle");
    EXPECT_TRUE(world.trigger("view.previousPane"));
    EXPECT_EQ(paneOfFocus().toStdString(), "pane.scan");
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

// Relative luminance and contrast as accessibility guidelines define them.
double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& text, const QColor& ground)
{
    const double one = luminance(text) + 0.05, other = luminance(ground) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

double contrast(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole ground)
{
    return contrast(palette.color(text), palette.color(ground));
}

TEST(FrameTheme, EveryTextStandsOutInBothThemes)
{
    DesktopWorld world;
    for (const char* const theme : {"view.themeLight", "view.themeDark"}) {
        SCOPED_TRACE(theme);
        EXPECT_TRUE(world.trigger(theme));
        const QPalette palette = QApplication::palette();
        for (const auto ground : {QPalette::Window, QPalette::Base, QPalette::AlternateBase}) {
            EXPECT_GT(contrast(palette, QPalette::WindowText, ground), 7);
            EXPECT_GT(contrast(palette, QPalette::BrightText, ground), 4.5);  // of warnings
            EXPECT_GT(contrast(palette, QPalette::Link, ground), 4.5);
            EXPECT_GT(contrast(palette, QPalette::PlaceholderText, ground), 3);
        }
        EXPECT_GT(contrast(palette, QPalette::HighlightedText, QPalette::Highlight), 4.5);
        EXPECT_GT(contrast(palette, QPalette::ButtonText, QPalette::Button), 7);
    }
}

TEST(FrameTheme, BoxesThatAreNotTickedAreSeen)
{
    DesktopWorld world;
    for (const char* const theme : {"view.themeLight", "view.themeDark"}) {
        SCOPED_TRACE(theme);
        EXPECT_TRUE(world.trigger(theme));
        for (QAbstractButton* const button : {static_cast<QAbstractButton*>(new QCheckBox(&world.window())),
                                              static_cast<QAbstractButton*>(new QRadioButton(&world.window()))}) {
            button->resize(button->sizeHint());
            const QImage seen = button->grab().toImage();
            double best = 0;
            for (int x = 0; x < seen.width(); ++x)
                best = std::max(best, contrast(seen.pixelColor(x, seen.height() / 2), seen.pixelColor(0, 0)));
            EXPECT_GT(best, 3);
            delete button;
        }
    }
}

TEST(FrameTheme, BoxesOfSelectedRowsAreSeenWhetherTickedOrNot)
{
    DesktopWorld world;
    for (const QStyle::State tick : {QStyle::State_On, QStyle::State_Off}) {
        QStyleOptionButton option;
        option.initFrom(&world.window());
        option.state = QStyle::State_Enabled | QStyle::State_Selected | tick;
        option.rect = QRect(0, 0, 16, 16);
        QImage seen(option.rect.size(), QImage::Format_RGB32);
        seen.fill(option.palette.color(QPalette::Highlight));
        QPainter painter(&seen);
        qApp->style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &option, &painter, nullptr);
        painter.end();
        EXPECT_GT(contrast(seen.pixelColor(8, 0), option.palette.color(QPalette::Highlight)), 3) << tick;
        EXPECT_LT(contrast(seen.pixelColor(12, 12), option.palette.color(QPalette::Highlight)), 1.5) << tick;
    }
}

TEST(FrameTheme, OfLinesToChooseFromTheOneThatEnterPressesIsSeen)
{
    DesktopWorld world;
    for (const char* const theme : {"view.themeLight", "view.themeDark"}) {
        SCOPED_TRACE(theme);
        EXPECT_TRUE(world.trigger(theme));
        QDialog dialog;
        QCommandLinkButton line(QStringLiteral("Delete"), QStringLiteral("For good"), &dialog);
        line.resize(line.sizeHint());
        const auto edge = [&line] {
            const QImage seen = line.grab().toImage();
            return contrast(seen.pixelColor(seen.width() / 2, 1), seen.pixelColor(seen.width() - 10, 10));
        };
        EXPECT_LT(edge(), 1.5);
        line.setDefault(true);
        EXPECT_GT(edge(), 3);
    }
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
