#include "ui/list/row_painter.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

#include "base/desktop_texts/list.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr int tagWidth = 5;

QColor mixed(const QColor& one, const QColor& other, double share)
{
    const auto part = [&](int a, int b) { return static_cast<int>(a * (1 - share) + b * share); };
    return {part(one.red(), other.red()), part(one.green(), other.green()), part(one.blue(), other.blue())};
}

}  // namespace

QString headingText(const RowEntry& first, Row members)
{
    namespace say = desktop_text;
    const std::string group = std::to_string(first.group), count = std::to_string(members);
    const QString text = members == 1 ? shown(say::headingOne, {group}) : shown(say::headingMany, {group, count});
    return first.approximate ? text + QStringLiteral("   ") + shown(say::comparedApproximately) : text;
}

RowPainter::RowPainter(QPainter& painter, const QWidget& widget, const std::vector<QColor>& tagColors)
    : painter_(painter), widget_(widget), tagColors_(tagColors)
{
}

void RowPainter::background(const QRect& rect, const RowLook& look)
{
    const QPalette& palette = widget_.palette();
    if (look.entry.isSelected())
        painter_.fillRect(rect, palette.highlight());
    else if (look.banded)
        painter_.fillRect(rect, palette.alternateBase());
    painter_.setPen(palette.color(look.entry.isSelected() ? QPalette::HighlightedText : QPalette::Text));
}

void RowPainter::tag(const QRect& rect, std::uint8_t tag)
{
    if (tag != noTag && tag <= tagColors_.size())
        painter_.fillRect(QRect(rect.left(), rect.top() + 1, tagWidth, rect.height() - 2), tagColors_[tag - 1u]);
}

void RowPainter::tickBox(const QRect& rect, const RowEntry& entry)
{
    QStyleOptionButton option;
    option.initFrom(&widget_);
    option.state = QStyle::State_Enabled | (entry.isTicked() ? QStyle::State_On : QStyle::State_Off);
    option.state.setFlag(QStyle::State_Selected, entry.isSelected());
    const QStyle& style = *widget_.style();
    const QSize size(style.pixelMetric(QStyle::PM_IndicatorWidth), style.pixelMetric(QStyle::PM_IndicatorHeight));
    option.rect = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, rect);
    style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &option, &painter_, &widget_);
}

void RowPainter::row(const QRect& rect, const QRect& tick, const std::vector<ColumnSpan>& columns, const RowLook& look)
{
    background(rect, look);
    tag(rect, look.entry.tag);
    for (const ColumnSpan& span : columns) {
        const auto index = static_cast<qsizetype>(span.column);
        if (look.texts == nullptr || index >= look.texts->size())
            continue;
        const QRect cell(span.left + cellMargin, rect.top(), span.width - 2 * cellMargin, rect.height());
        const QString text =
            painter_.fontMetrics().elidedText(look.texts->at(index), Qt::ElideMiddle, std::max(cell.width(), 0));
        painter_.drawText(
            cell, static_cast<int>(Qt::AlignVCenter | (span.rightAligned ? Qt::AlignRight : Qt::AlignLeft)), text);
    }
    if (look.tickBox)
        tickBox(tick, look.entry);
    frame(rect, look);
}

// The preview shows the current row, so it is told from the others wherever the keyboard is.
void RowPainter::frame(const QRect& rect, const RowLook& look)
{
    if (!look.current)
        return;
    const QPalette& palette = widget_.palette();
    const QColor line = look.entry.isSelected() ? palette.color(QPalette::HighlightedText)
                        : widget_.hasFocus()    ? palette.color(QPalette::Link)
                                             : mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.4);
    painter_.save();
    painter_.setPen(line);
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter_.restore();
}

void RowPainter::thumbnail(const QRect& rect, const QRect& tick, const QPixmap* picture, const RowLook& look)
{
    const QRect cell = rect.adjusted(2, 2, -2, -2);
    background(cell, look);
    tag(cell, look.entry.tag);
    const int textHeight = painter_.fontMetrics().height();
    const QRect room = cell.adjusted(10, 10, -10, -2 * textHeight - 4);
    const QString name = look.texts != nullptr && !look.texts->isEmpty() ? look.texts->front() : QString();
    if (picture != nullptr && !picture->isNull()) {
        const QSize size = picture->size().scaled(room.size(), Qt::KeepAspectRatio).boundedTo(picture->size());
        painter_.drawPixmap(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, room), *picture);
    } else {
        const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
        painter_.drawText(room, Qt::AlignCenter, dot > 0 ? name.mid(dot + 1, 5).toUpper() : QStringLiteral("?"));
    }
    const QRect line(cell.left() + 4, cell.bottom() - 2 * textHeight, cell.width() - 8, textHeight);
    const auto write = [&](const QRect& place, const QString& text, Qt::TextElideMode elided) {
        painter_.drawText(place, Qt::AlignCenter, painter_.fontMetrics().elidedText(text, elided, place.width()));
    };
    write(line, name, Qt::ElideMiddle);
    // Copies are often called the same: the second column, which has the folder unless somebody moved it, tells them
    // apart.
    if (!look.entry.isSelected())
        painter_.setPen(widget_.palette().color(QPalette::PlaceholderText));
    write(line.translated(0, textHeight), look.texts != nullptr ? look.texts->value(1) : QString(), Qt::ElideLeft);
    if (look.tickBox)
        tickBox(tick, look.entry);
    frame(cell, look);
}

void RowPainter::heading(const QRect& rect, const RowEntry& first, Row members)
{
    const QPalette& palette = widget_.palette();
    painter_.fillRect(rect, mixed(palette.color(QPalette::Base), palette.color(QPalette::Highlight), 0.12));
    painter_.fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1),
                      mixed(palette.color(QPalette::Base), palette.color(QPalette::Highlight), 0.35));
    QFont bold = widget_.font();
    bold.setBold(true);
    painter_.setFont(bold);
    painter_.setPen(palette.color(QPalette::Text));
    painter_.drawText(rect.adjusted(cellMargin + 1, 0, -cellMargin, 0), Qt::AlignVCenter | Qt::AlignLeft,
                      headingText(first, members));
    painter_.setFont(widget_.font());
}

}  // namespace kelvane
