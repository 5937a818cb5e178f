#include "ui/frame/theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QVariant>

namespace kelvane {
namespace {

const QString memoryName = QStringLiteral("theme");
constexpr const char* systemProperty = "kelvaneSystemIsDark";

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

struct Colours {
    QColor window, base, alternate, text, dim, button, highlight, highlighted, link, tip;
};

QPalette paletteOf(const Colours& colours)
{
    QPalette palette(colours.text, colours.button, colours.button.lighter(150), colours.button.darker(160),
                     colours.button.darker(120), colours.text, Qt::white, colours.base, colours.window);
    palette.setColor(QPalette::AlternateBase, colours.alternate);
    palette.setColor(QPalette::Highlight, colours.highlight);
    palette.setColor(QPalette::HighlightedText, colours.highlighted);
    palette.setColor(QPalette::Link, colours.link);
    palette.setColor(QPalette::LinkVisited, colours.link);
    palette.setColor(QPalette::ToolTipBase, colours.tip);
    palette.setColor(QPalette::ToolTipText, colours.text);
    palette.setColor(QPalette::PlaceholderText, colours.dim);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colours.dim);
    return palette;
}

// Text against its ground: at least 7 to 1, what is disabled at least 3 to 1.
QPalette lightPalette()
{
    return paletteOf({.window = QColor(0xf3, 0xf4, 0xf6),
                      .base = Qt::white,
                      .alternate = QColor(0xf6, 0xf8, 0xfa),
                      .text = QColor(0x1b, 0x1f, 0x24),
                      .dim = QColor(0x75, 0x7b, 0x83),
                      .button = QColor(0xec, 0xee, 0xf1),
                      .highlight = QColor(0x1a, 0x5f, 0xb4),
                      .highlighted = Qt::white,
                      .link = QColor(0x1a, 0x5f, 0xb4),
                      .tip = QColor(0xff, 0xff, 0xf0)});
}

QPalette darkPalette()
{
    return paletteOf({.window = QColor(0x2a, 0x2d, 0x31),
                      .base = QColor(0x20, 0x20, 0x20),
                      .alternate = QColor(0x27, 0x29, 0x2c),
                      .text = QColor(0xe8, 0xea, 0xed),
                      .dim = QColor(0x8f, 0x96, 0x9e),
                      .button = QColor(0x35, 0x39, 0x3e),
                      .highlight = QColor(0x2f, 0x6f, 0xc4),
                      .highlighted = Qt::white,
                      .link = QColor(0x7f, 0xb4, 0xff),
                      .tip = QColor(0x3a, 0x3e, 0x44)});
}

// Settings keep a colour as 0x00BBGGRR.
QColor colourOf(std::uint32_t value)
{
    return QColor(static_cast<int>(value & 0xff), static_cast<int>(value >> 8 & 0xff),
                  static_cast<int>(value >> 16 & 0xff));
}

// Asked once, before colours of our own are in force.
bool isSystemDark()
{
    QVariant known = qApp->property(systemProperty);
    if (!known.isValid()) {
        known = isDark(QApplication::palette());
        qApp->setProperty(systemProperty, known);
    }
    return known.toBool();
}

}  // namespace

Theme themeOf(const Settings& settings, const DesktopMemory& memory)
{
    if ((settings.flags & settings_flag::darkTheme) != 0)
        return Theme::dark;
    return memory.value(memoryName) == "light" ? Theme::light : Theme::system;
}

void chooseTheme(Theme theme, Settings& settings)
{
    if (theme == Theme::dark) {
        settings.flags |= settings_flag::darkTheme;
        settings.viewBackground = view_color::dark;
        return;
    }
    settings.flags &= ~settings_flag::darkTheme;
    if (settings.viewBackground == view_color::dark)
        settings.viewBackground = view_color::ofSystem;
}

void rememberTheme(Theme theme, DesktopMemory& memory)
{
    memory.setValue(memoryName, theme == Theme::light ? QByteArray("light") : QByteArray());
}

void applyTheme(Theme theme, const Settings& settings)
{
    const bool systemIsDark = isSystemDark();
    const bool dark = theme == Theme::dark || (theme == Theme::system && systemIsDark);
    if (qApp->style()->objectName() != QStringLiteral("fusion"))
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QPalette palette = dark ? darkPalette() : lightPalette();
    QApplication::setPalette(palette);
    QPalette views = palette;
    const bool own = settings.viewBackground != view_color::ofSystem && settings.viewBackground != view_color::dark;
    if (own && !dark)
        views.setColor(QPalette::Base, colourOf(settings.viewBackground));
    QApplication::setPalette(views, "QAbstractItemView");
}

bool isDarkNow()
{
    return isDark(QApplication::palette());
}

}  // namespace kelvane
