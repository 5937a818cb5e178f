// Keys and mouse of the list.
#include <QApplication>
#include <QDrag>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QToolTip>
#include <QUrl>
#include <algorithm>

#include "platform/native_text.h"
#include "ui/core/text.h"
#include "ui/list/item_choice.h"
#include "ui/list/list_header.h"
#include "ui/list/results_table.h"
#include "ui/list/results_view.h"

namespace kelvane {
namespace {

// Percent-encoded, so that names that are no valid text stay what they are.
[[maybe_unused]] QUrl urlOf(std::string_view path)
{
    const QByteArray bytes(path.data(), static_cast<qsizetype>(path.size()));
    return QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"));
}
[[maybe_unused]] QUrl urlOf(std::wstring_view path)
{
    return QUrl::fromLocalFile(QString::fromWCharArray(path.data(), static_cast<qsizetype>(path.size())));
}

// Of files that have a path of their own.
QList<QUrl> urlsOfSelection(Workbench& bench)
{
    QList<QUrl> urls;
    for (const ItemId id : selectedRows(bench.results())) {
        const ShellItem& item = bench.results().item(id).file.item();
        if (item.inFileSystem())
            urls.append(urlOf(item.fullName()));
    }
    return urls;
}

}  // namespace

void ResultsView::setCurrentRow(Row row)
{
    if (row >= layout_.rowCount())
        return;
    current_ = row;
    chosen_ = link_.rows().at(row).item;
    link_.setCurrentItem(*chosen_);
    tellCurrent(*this);
    scrollTo(row);
    viewport()->update();
}

void ResultsView::goTo(Row row, Qt::KeyboardModifiers modifiers)
{
    if (row >= layout_.rowCount())
        return;
    setCurrentRow(row);
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        select(anchorRow(row), row, false);
        return;
    }
    anchor_ = link_.rows().at(row).item;
    select(row, row, false);
}

void ResultsView::selectAll()
{
    if (layout_.rowCount() > 0)
        select(0, layout_.rowCount() - 1, false);
}

void ResultsView::select(Row first, Row last, bool keepOthers)
{
    std::vector<ItemId> items;
    const auto [from, to] = std::minmax(first, last);
    items.reserve(to - from + 1);
    for (Row row = from; row <= to; ++row)
        items.push_back(link_.rows().at(row).item);
    link_.runOnList([items = std::move(items), keepOthers](Workbench& bench) {
        if (!keepOthers)
            bench.results().clearSelection();
        bench.results().mark(items, Mark::selected, true);
    });
}

// Turned round where it is known what they have: two fast clicks are two.
void ResultsView::toggle(ItemId item, Mark mark)
{
    link_.runOnList([item, mark](Workbench& bench) { bench.results().toggle(std::span(&item, 1), mark); });
}

void ResultsView::toggleTicks()
{
    if (current_)
        link_.runOnList([item = link_.rows().at(*current_).item](Workbench& bench) {
            kelvane::toggleTicks(bench.results(), item);
        });
}

// Where a range begins: an item, which may have gone elsewhere since.
Row ResultsView::anchorRow(Row otherwise) const
{
    if (!anchor_ || otherwise >= link_.rows().count())
        return otherwise;
    return link_.rows().find(*anchor_).value_or(otherwise);
}

Row ResultsView::rowInNextGroup(Row from, int step) const
{
    const std::size_t section = layout_.sectionOf(from);
    if (step > 0)
        return section + 1 < layout_.sectionCount() ? layout_.firstRow(section + 1) : layout_.rowCount() - 1;
    if (from != layout_.firstRow(section) || section == 0)
        return layout_.firstRow(section);
    return layout_.firstRow(section - 1);
}

Row ResultsView::rowAPageAway(Row from, int step) const
{
    const int y = layout_.lineTop(from) + step * std::max(viewport()->height() - layout_.measures().lineHeight, 1);
    const std::size_t section = layout_.sectionAt(y);
    const int line = std::max(0, y - layout_.topOf(section) - layout_.headingHeight()) / layout_.measures().lineHeight;
    const Row row = layout_.firstRow(section) + static_cast<Row>(line * layout_.measures().perLine);
    return std::min(row, layout_.endRow(section) - 1);
}

std::optional<Row> ResultsView::rowForKey(const QKeyEvent& event) const
{
    if (layout_.rowCount() == 0)
        return std::nullopt;
    const Row row = current_.value_or(0), last = layout_.rowCount() - 1;
    const bool byGroup = event.modifiers().testFlag(Qt::ControlModifier);
    const auto line = static_cast<Row>(layout_.measures().perLine);
    switch (event.key()) {
    case Qt::Key_Up:
        return byGroup ? rowInNextGroup(row, -1) : row - std::min(row, line);
    case Qt::Key_Down:
        return byGroup ? rowInNextGroup(row, 1) : std::min(row + line, last);
    case Qt::Key_Left:
        return thumbnails_ ? std::optional(row - std::min(row, Row{1})) : std::nullopt;
    case Qt::Key_Right:
        return thumbnails_ ? std::optional(std::min(row + 1, last)) : std::nullopt;
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    case Qt::Key_PageUp:
        return rowAPageAway(row, -1);
    case Qt::Key_PageDown:
        return rowAPageAway(row, 1);
    default:
        return std::nullopt;
    }
}

void ResultsView::keyPressEvent(QKeyEvent* event)
{
    const QString text = event->text();
    if (const auto row = rowForKey(*event))
        goTo(*row, event->modifiers() & Qt::ShiftModifier);
    else if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier)
        toggleTicks();
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && event->modifiers() == Qt::NoModifier)
        Q_EMIT opened();
    else if (current_ && event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier)
        Q_EMIT menuAsked(belowCurrent());  // for keyboards without a key for menus
    else if (!text.isEmpty() && text.at(0).isPrint() &&
             (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0)
        Q_EMIT typed(text);
    else
        QAbstractScrollArea::keyPressEvent(event);
}

void ResultsView::clicked(Row row, Qt::KeyboardModifiers modifiers)
{
    if (!modifiers.testFlag(Qt::ControlModifier)) {
        goTo(row, modifiers);
        return;
    }
    setCurrentRow(row);
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        select(anchorRow(row), row, true);
        return;
    }
    anchor_ = link_.rows().at(row).item;
    toggle(*anchor_, Mark::selected);
}

void ResultsView::mousePressEvent(QMouseEvent* event)
{
    const QPoint point = event->pos();
    const auto row = rowAt(point);
    pressed_.reset();
    pressedSelected_.reset();
    if (!row)
        return;
    const RowEntry& entry = link_.rows().at(*row);
    if (event->button() == Qt::LeftButton && link_.rows().figures().tickBoxes && tickRectOf(*row).contains(point)) {
        setCurrentRow(*row);
        anchor_ = entry.item;
        toggle(entry.item, Mark::ticked);
        return;
    }
    if (event->button() == Qt::LeftButton)
        pressed_ = point;
    const bool plain = (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) == 0;
    if (plain && entry.isSelected()) {
        if (event->button() == Qt::LeftButton)
            pressedSelected_ = row;  // it may be the begin of a drag of all that is selected
        setCurrentRow(*row);
        return;
    }
    clicked(*row, event->modifiers());
}

void ResultsView::mouseMoveEvent(QMouseEvent* event)
{
    if (pressed_ && (event->buttons() & Qt::LeftButton) != 0 &&
        (event->pos() - *pressed_).manhattanLength() >= QApplication::startDragDistance()) {
        pressed_.reset();
        pressedSelected_.reset();
        startDrag();
    }
}

void ResultsView::mouseReleaseEvent(QMouseEvent*)
{
    if (pressedSelected_)
        goTo(*pressedSelected_, Qt::NoModifier);
    pressed_.reset();
    pressedSelected_.reset();
}

void ResultsView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const auto row = rowAt(event->pos());
    if (row && tickRectOf(*row).contains(event->pos()))
        mousePressEvent(event);  // two fast clicks on a box are two
    else if (row && event->button() == Qt::LeftButton)
        Q_EMIT opened();
}

void ResultsView::contextMenuEvent(QContextMenuEvent* event)
{
    if (!current_)
        return;
    Q_EMIT menuAsked(event->reason() == QContextMenuEvent::Keyboard ? belowCurrent() : event->globalPos());
}

// On the screen; there must be a current row.
QPoint ResultsView::belowCurrent() const
{
    return viewport()->mapToGlobal(rectOf(*current_).bottomLeft() + QPoint(header_->tickWidth(), 0));
}

// The paths come from the window's thread, so that the drag begins a moment after the mouse moved.
void ResultsView::startDrag()
{
    link_.fetch(
        this, [](Workbench& bench) { return urlsOfSelection(bench); },
        [this](const QList<QUrl>& urls) {
            if (urls.isEmpty() || (QApplication::mouseButtons() & Qt::LeftButton) == 0)
                return;
            auto* const drag = new QDrag(this);
            auto* const dragged = new QMimeData;
            dragged->setUrls(urls);
            drag->setMimeData(dragged);
            drag->exec(Qt::CopyAction);
        });
}

void ResultsView::showPath(const QPoint& viewportPosition, const QPoint& globalPosition)
{
    const auto row = rowAt(viewportPosition);
    if (!row)
        return;
    const ItemId item = link_.rows().at(*row).item;
    const QRect rect = rectOf(*row);
    link_.fetchOfList(
        this,
        [item](Workbench& bench) { return toQt(displayFromNative(bench.results().item(item).file.item().fullName())); },
        [this, globalPosition, rect](const QString& path) {
            QToolTip::showText(globalPosition, plainTip(shownInOneLine(path)), viewport(), rect);
        });
}

}  // namespace kelvane
