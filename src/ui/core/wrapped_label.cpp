#include "ui/core/wrapped_label.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "base/desktop_texts/frame.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr int leastWidth = 60, usualWidth = 260;

}  // namespace

WrappedLabel::WrappedLabel(const char* name, QWidget* parent) : QLabel(parent)
{
    setObjectName(QString::fromLatin1(name));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setCursor(Qt::IBeamCursor);
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

QPointF WrappedLabel::originOf(const QSizeF& lines) const
{
    QPointF at = contentsRect().topLeft();
    if ((alignment() & Qt::AlignVCenter) != 0)
        at.ry() += std::max(0.0, (contentsRect().height() - lines.height()) / 2);
    return at;
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
    QList<QTextLayout::FormatRange> marked;
    if (hasSelection()) {
        QTextCharFormat format;
        format.setBackground(palette().highlight());
        format.setForeground(palette().highlightedText());
        marked.append({std::min(from_, to_), std::abs(to_ - from_), format});
    }
    layout.draw(&painter, originOf(size), marked);
}

int WrappedLabel::positionAt(const QPoint& point) const
{
    QTextLayout layout;
    const QPointF at = point - originOf(layOut(layout, contentsRect().width()));
    for (int number = 0; number < layout.lineCount(); ++number) {
        const QTextLine line = layout.lineAt(number);
        if (at.y() < line.y() + line.height())
            return line.xToCursor(at.x());
    }
    return static_cast<int>(text().size());
}

QString WrappedLabel::selection() const
{
    return hasSelection() ? text().mid(std::min(from_, to_), std::abs(to_ - from_)) : QString();
}

void WrappedLabel::select(int from, int to)
{
    selectedIn_ = text();
    from_ = from;
    to_ = to;
    update();
}

void WrappedLabel::copy() const
{
    QGuiApplication::clipboard()->setText(selection());
}

// Keys of the window's own commands wait while there is something to be copied here.
bool WrappedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && hasSelection()) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::SelectAll)) {
            event->accept();
            return true;
        }
    }
    return QLabel::event(event);
}

void WrappedLabel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || text().isEmpty())
        return QLabel::mousePressEvent(event);
    setFocus(Qt::MouseFocusReason);
    const int at = positionAt(event->pos());
    select(at, at);
}

void WrappedLabel::mouseMoveEvent(QMouseEvent* event)
{
    if ((event->buttons() & Qt::LeftButton) != 0 && selectedIn_ == text())
        select(from_, positionAt(event->pos()));
}

// Where the system has it, what is selected is there for the middle button of the mouse.
void WrappedLabel::mouseReleaseEvent(QMouseEvent* event)
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (event->button() == Qt::LeftButton && hasSelection() && clipboard.supportsSelection())
        clipboard.setText(selection(), QClipboard::Selection);
}

void WrappedLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, text());
    words.setPosition(positionAt(event->pos()));
    const auto end = static_cast<int>(std::max<qsizetype>(words.toNextBoundary(), 0));
    const auto begin = static_cast<int>(std::max<qsizetype>(words.toPreviousBoundary(), 0));
    select(begin, end);
}

void WrappedLabel::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy) && hasSelection())
        copy();
    else if (event->matches(QKeySequence::SelectAll))
        select(0, static_cast<int>(text().size()));
    else
        QLabel::keyPressEvent(event);
}

void WrappedLabel::focusOutEvent(QFocusEvent* event)
{
    QLabel::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        select(0, 0);
}

void WrappedLabel::contextMenuEvent(QContextMenuEvent* event)
{
    if (text().isEmpty())
        return;
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* const copying = menu->addAction(shown(desktop_text::labelCopy), this, &WrappedLabel::copy);
    copying->setEnabled(hasSelection());
    menu->addAction(shown(desktop_text::labelSelectAll), this, [this] { select(0, static_cast<int>(text().size())); });
    menu->popup(event->globalPos());
}

}  // namespace kelvane
