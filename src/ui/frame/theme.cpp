#include "ui/frame/theme.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QVariant>

#include "ui/frame/program_style.h"

namespace kelvane {
namespace {

const QString memoryName = QStringLiteral("theme");
constexpr const char* systemProperty = "kelvaneSystemIsDark";

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

struct Colours {
    QRgb window, base, alternate, text, dim, button, highlight, link, tip, warning;
};

// Text against its ground: at least 7 to 1, what is disabled at least 3 to 1.
constexpr Colours lightColours{.window = 0xf3f4f6,
                               .base = 0xffffff,
                               .alternate = 0xf6f8fa,
                               .text = 0x1b1f24,
                               .dim = 0x686e76,
                               .button = 0xeceef1,
                               .highlight = 0x1a5fb4,
                               .link = 0x1a5fb4,
                               .tip = 0xfffff0,
                               .warning = 0xa81b1b};
constexpr Colours darkColours{.window = 0x2a2d31,
                              .base = 0x202020,
                              .alternate = 0x27292c,
                              .text = 0xe8eaed,
                              .dim = 0x8f969e,
                              .button = 0x35393e,
                              .highlight = 0x2f6fc4,
                              .link = 0x7fb4ff,
                              .tip = 0x3a3e44,
                              .warning = 0xff9e94};

// The bright text is that of warnings: the style itself does not use it.
QPalette paletteOf(const Colours& colours)
{
    const QColor text(colours.text), button(colours.button), dim(colours.dim);
    QPalette palette(text, button, button.lighter(150), button.darker(160), button.darker(120), text,
                     QColor(colours.warning), QColor(colours.base), QColor(colours.window));
    palette.setColor(QPalette::AlternateBase, colours.alternate);
    palette.setColor(QPalette::Highlight, colours.highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, colours.link);
    palette.setColor(QPalette::LinkVisited, colours.link);
    palette.setColor(QPalette::ToolTipBase, colours.tip);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, dim);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dim);
    return palette;
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
    if (qobject_cast<ProgramStyle*>(qApp->style()) == nullptr)
        QApplication::setStyle(new ProgramStyle);
    const QPalette palette = paletteOf(dark ? darkColours : lightColours);
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

void makeWarning(QLabel& label)
{
    QFont font = label.font();
    font.setBold(true);
    label.setFont(font);
    label.setForegroundRole(QPalette::BrightText);
}

}  // namespace kelvane
