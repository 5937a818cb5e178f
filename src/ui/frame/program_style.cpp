#include "ui/frame/program_style.h"

#include <QPainter>
#include <QStyleOptionHeader>
#include <algorithm>

#include "ui/frame/icons.h"

namespace kelvane {
namespace {

constexpr int labelMargin = 20;  // of both sides of a button together

QColor mixed(const QColor& one, const QColor& other, float share)
{
    const auto part = [share](float a, float b) { return a + (b - a) * share; };
    return QColor::fromRgbF(part(one.redF(), other.redF()), part(one.greenF(), other.greenF()),
                            part(one.blueF(), other.blueF()));
}

// At least 3 to 1 against its ground.
QColor lineOf(const QPalette& palette)
{
    return mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.6F);
}

struct Indicator {
    const QStyleOption& option;
    QPainter& painter;
    QRectF rect;
    bool on = false, partly = false;
};

// In a selected row, whose ground has the colour of filled boxes, the line alone tells a box from its ground.
QColor paintSelected(const Indicator& indicator, qreal radius)
{
    const QColor line = indicator.option.palette.color(QPalette::HighlightedText);
    indicator.painter.setRenderHint(QPainter::Antialiasing);
    indicator.painter.setPen(QPen(line, 1));
    indicator.painter.setBrush(indicator.option.palette.color(QPalette::Highlight));
    indicator.painter.drawRoundedRect(indicator.rect, radius, radius);
    return line;
}

// The ground and the line of a box or circle; what stands in it is painted in the colour that comes back.
QColor paintGround(const Indicator& indicator, qreal radius)
{
    if (indicator.option.state.testFlag(QStyle::State_Selected))
        return paintSelected(indicator, radius);
    const QPalette& palette = indicator.option.palette;
    const bool enabled = indicator.option.state.testFlag(QStyle::State_Enabled);
    const bool focused = indicator.option.state.testFlag(QStyle::State_HasFocus) ||
                         indicator.option.state.testFlag(QStyle::State_MouseOver);
    const bool filled = (indicator.on || indicator.partly) && enabled;
    const QColor line = !enabled            ? palette.color(QPalette::Disabled, QPalette::WindowText)
                        : filled || focused ? palette.color(QPalette::Highlight)
                                            : lineOf(palette);
    indicator.painter.setRenderHint(QPainter::Antialiasing);
    indicator.painter.setPen(QPen(line, 1));
    indicator.painter.setBrush(filled ? palette.color(QPalette::Highlight) : palette.color(QPalette::Base));
    indicator.painter.drawRoundedRect(indicator.rect, radius, radius);
    return filled ? palette.color(QPalette::HighlightedText) : line;
}

void paintBox(const Indicator& indicator)
{
    const QColor ink = paintGround(indicator, 2.5);
    const QRectF& rect = indicator.rect;
    const auto at = [&rect](qreal x, qreal y) { return rect.topLeft() + QPointF(x * rect.width(), y * rect.height()); };
    indicator.painter.setPen(QPen(ink, rect.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (indicator.partly)
        indicator.painter.drawLine(at(0.27, 0.5), at(0.73, 0.5));
    else if (indicator.on)
        indicator.painter.drawPolyline(QPolygonF({at(0.23, 0.52), at(0.43, 0.72), at(0.78, 0.3)}));
}

void paintCircle(const Indicator& indicator)
{
    const QColor ink = paintGround(indicator, indicator.rect.width() / 2);
    if (!indicator.on)
        return;
    indicator.painter.setPen(Qt::NoPen);
    indicator.painter.setBrush(ink);
    indicator.painter.drawEllipse(indicator.rect.center(), indicator.rect.width() / 5, indicator.rect.width() / 5);
}

bool isIndicator(QStyle::PrimitiveElement element)
{
    return element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorItemViewItemCheck ||
           element == QStyle::PE_IndicatorRadioButton;
}

void paintIndicator(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter)
{
    const qreal side =
        std::min(option.rect.width(), option.rect.height()) - 1;  // lines of one pixel lie between its edges
    QRectF rect(0, 0, side, side);
    rect.moveCenter(QRectF(option.rect).center());
    const Indicator indicator{option, painter, rect, option.state.testFlag(QStyle::State_On),
                              option.state.testFlag(QStyle::State_NoChange)};
    painter.save();
    element == QStyle::PE_IndicatorRadioButton ? paintCircle(indicator) : paintBox(indicator);
    painter.restore();
}

void paintLine(const QStyleOption& option, QPainter& painter, const QColor& color, qreal width)
{
    const qreal half = width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(half, half, -half, -half), 2, 2);
    painter.restore();
}

// Around fields, lists and menus: the style's own lines are darker than the window, and dark windows swallow them.
void paintFrame(const QStyleOption& option, QPainter& painter, bool focused)
{
    const QPalette& palette = option.palette;
    paintLine(option, painter,
              focused ? palette.color(QPalette::Link)  // lines of the highlight are too dim for a dark ground
                      : mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.3F),
              1);
}

// The style shows a button that is a line of text only below the pointer, and not that Enter would press it.
void paintPreselected(const QStyleOption& option, QPainter& painter)
{
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    if (button == nullptr || !button->features.testFlag(QStyleOptionButton::CommandLinkButton))
        return;
    if (button->features.testFlag(QStyleOptionButton::DefaultButton) || option.state.testFlag(QStyle::State_HasFocus))
        paintLine(option, painter, option.palette.color(QPalette::Link), 2);
}

}  // namespace

ProgramStyle::ProgramStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

QIcon ProgramStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const
{
    switch (icon) {
    case SP_MessageBoxInformation:
        return commandIcon(QStringLiteral("box.information"));
    case SP_MessageBoxQuestion:
        return commandIcon(QStringLiteral("box.question"));
    case SP_MessageBoxWarning:
        return commandIcon(QStringLiteral("box.warning"), QPalette::BrightText);
    case SP_MessageBoxCritical:
        return commandIcon(QStringLiteral("box.error"), QPalette::BrightText);
    default:
        return QProxyStyle::standardIcon(icon, option, widget);
    }
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    if (isIndicator(element)) {
        paintIndicator(element, *option, *painter);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_FrameLineEdit || element == PE_Frame)
        paintFrame(*option, *painter, option->state.testFlag(State_HasFocus));
    else if (element == PE_FrameMenu || element == PE_PanelMenu)
        paintFrame(*option, *painter, false);
    else if (element == PE_PanelButtonTool && option->state.testFlag(State_On))
        paintLine(*option, *painter, option->palette.color(QPalette::Link), 2);
}

// Longer labels than "OK" would touch the edges of their buttons.
QSize ProgramStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                     const QWidget* widget) const
{
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    return type == CT_PushButton ? size.expandedTo({contents.width() + labelMargin, 0}) : size;
}

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const
{
    if (element != CE_HeaderEmptyArea) {
        QProxyStyle::drawControl(element, option, painter, widget);
        if (element == CE_PushButton)
            paintPreselected(*option, *painter);
        return;
    }
    QStyleOptionHeader rest;
    static_cast<QStyleOption&>(rest) = *option;
    rest.version = QStyleOptionHeader::Version;
    rest.type = QStyleOptionHeader::Type;
    rest.orientation = Qt::Horizontal;
    rest.position = QStyleOptionHeader::End;
    QProxyStyle::drawControl(CE_HeaderSection, &rest, painter, widget);
}

}  // namespace kelvane
