#include "ui/core/wrapped_label.h"

#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace kelvane {
namespace {

constexpr int leastWidth = 60, usualWidth = 260;

}  // namespace

WrappedLabel::WrappedLabel(const char* name, QWidget* parent) : QLabel(parent)
{
    setObjectName(QString::fromLatin1(name));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

QSizeF WrappedLabel::layOut(QTextLayout& layout, int width) const
{
    QTextOption option(alignment() & Qt::AlignHorizontal_Mask);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(layoutDirection());
    layout.setTextOption(option);
    layout.setFont(font());
    layout.setText(text().replace(QLatin1Char('\n'), QChar::LineSeparator));
    layout.beginLayout();
    QSizeF size;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, size.height()});
        size = {std::max(size.width(), line.naturalTextWidth()), size.height() + line.height()};
    }
    layout.endLayout();
    return size;
}

int WrappedLabel::heightForWidth(int width) const
{
    QTextLayout layout;
    return static_cast<int>(std::ceil(layOut(layout, std::max(width, leastWidth)).height()));
}

QSize WrappedLabel::sizeHint() const
{
    QTextLayout layout;
    const QSizeF size = layOut(layout, usualWidth);
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

QSize WrappedLabel::minimumSizeHint() const
{
    return {leastWidth, fontMetrics().lineSpacing()};
}

void WrappedLabel::paintEvent(QPaintEvent*)
{
    QTextLayout layout;
    const QSizeF size = layOut(layout, contentsRect().width());
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    QPointF at = contentsRect().topLeft();
    if ((alignment() & Qt::AlignVCenter) != 0)
        at.ry() += std::max(0.0, (contentsRect().height() - size.height()) / 2);
    layout.draw(&painter, at);
}

}  // namespace kelvane
