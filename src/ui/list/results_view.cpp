#include "ui/list/results_view.h"

#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "base/desktop_texts/list.h"
#include "ui/core/text.h"
#include "ui/list/list_header.h"
#include "ui/list/results_table.h"
#include "ui/list/thumbnail_cache.h"

namespace kelvane {
namespace {

std::vector<QColor> colorsOf(const Settings& settings)
{
    std::vector<QColor> colors;
    for (const TagColor& tag : settings.tagColors)
        colors.emplace_back(static_cast<int>(tag.color & 0xFF), static_cast<int>(tag.color >> 8 & 0xFF),
                            static_cast<int>(tag.color >> 16 & 0xFF));
    return colors;
}

}  // namespace

ResultsView::ResultsView(WindowLink& link, QWidget* parent)
    : QAbstractScrollArea(parent),
      link_(link),
      cells_(new CellCache(link, this)),
      pictures_(new ThumbnailCache(link, this)),
      header_(new ListHeader(this))
{
    setObjectName(QStringLiteral("resultsView"));
    setAccessibleName(shown(desktop_text::listName));
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    tagColors_ = colorsOf(link.desktop().settings());
    connect(&link, &WindowLink::rowsPatched, this, [this](Row first, Row before, Row after) {
        patched();
        if (before != after)
            showCurrent();
        tellRows(*this, first, before, after);
    });
    connect(&link, &WindowLink::figuresChanged, this, &ResultsView::figuresCame);
    connect(&link, &WindowLink::optionsChanged, this, [this] {
        tagColors_ = colorsOf(link_.desktop().settings());
        measure();
        columnsChanged();
    });
    connect(cells_, &CellCache::arrived, viewport(), qOverload<>(&QWidget::update));
    connect(cells_, &CellCache::arrived, this, [this] { tellTexts(*this); });
    connect(pictures_, &ThumbnailCache::arrived, viewport(), qOverload<>(&QWidget::update));
    connect(&link, &WindowLink::listBegan, pictures_, &ThumbnailCache::clear);
    connect(&link, &WindowLink::listBegan, this, [this] {
        hadRows_ = link_.rows().count() > 0;
        chosen_.reset();
    });
    connect(header_, &QHeaderView::sectionResized, this, &ResultsView::columnsChanged);
    connect(header_, &QHeaderView::sectionMoved, this, &ResultsView::columnsChanged);
    measure();
    patched();
}

ResultsView::~ResultsView() = default;

void ResultsView::measure()
{
    const int line = std::max(fontMetrics().height(), style()->pixelMetric(QStyle::PM_IndicatorHeight)) + 6;
    const int picture = static_cast<int>(link_.desktop().settings().thumbnailSize);
    if (thumbnails_)
        layout_.measure({picture + 2 * line + 8, line + 2, std::max(1, viewport()->width() / thumbnailWidth())});
    else
        layout_.measure({line, line + 2, 1});
    verticalScrollBar()->setSingleStep(line);
    placeHeader();
}

int ResultsView::thumbnailWidth() const
{
    return static_cast<int>(link_.desktop().settings().thumbnailSize) + 24;
}

void ResultsView::showThumbnails(bool on)
{
    thumbnails_ = on;
    header_->setVisible(!on);
    measure();
    updateScrollBars();
    if (current_)
        scrollTo(*current_);
    viewport()->update();
}

void ResultsView::placeHeader()
{
    const int height = thumbnails_ ? 0 : header_->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    const QRect area = viewport()->geometry();
    header_->setGeometry(area.left(), area.top() - height, area.width(), height);
}

void ResultsView::updateScrollBars()
{
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, layout_.height() - viewport()->height()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0, thumbnails_ ? 0 : std::max(0, header_->length() - viewport()->width()));
    wantCells();
}

int ResultsView::offsetY() const
{
    return verticalScrollBar()->value();
}

int ResultsView::rowWidth() const
{
    return std::max(viewport()->width(), header_->length());
}

void ResultsView::wantCells()
{
    if (layout_.rowCount() == 0)
        return;
    const auto rowAtHeight = [this](int y) {
        const std::size_t section = layout_.sectionAt(y);
        const int line =
            std::max(0, y - layout_.topOf(section) - layout_.headingHeight()) / layout_.measures().lineHeight;
        return std::min(layout_.firstRow(section) + static_cast<Row>(line * layout_.measures().perLine),
                        layout_.endRow(section) - 1);
    };
    const Row last = rowAtHeight(offsetY() + viewport()->height());
    const Row first = rowAtHeight(offsetY());
    const Row end = std::min(last + static_cast<Row>(layout_.measures().perLine), layout_.rowCount());
    cells_->want(first, end);
    if (thumbnails_)
        pictures_->want(first, end);
}

QString ResultsView::groupText(Row row) const
{
    const RowEntry& entry = link_.rows().at(row);
    if (!layout_.hasHeadings())
        return QString::number(entry.group);
    const std::size_t section = layout_.sectionOf(row);
    return headingText(entry, layout_.endRow(section) - layout_.firstRow(section));
}

void ResultsView::columnsChanged()
{
    updateScrollBars();
    viewport()->update();
}

void ResultsView::figuresCame()
{
    const bool grouped = link_.rows().figures().grouped;
    if (grouped != grouped_)
        patched();
    grouped_ = grouped;
}

// Within the view; nothing while the current row is out of it.
std::optional<int> ResultsView::heightOfCurrent() const
{
    if (!current_ || *current_ >= layout_.rowCount())
        return std::nullopt;
    const int height = layout_.lineTop(*current_) - offsetY();
    const bool inView = height >= 0 && height + layout_.measures().lineHeight <= viewport()->height();
    return inView ? std::optional(height) : std::nullopt;
}

// Rows that come and go leave the current one where it was, if it could be seen: whoever takes a filter away again
// looks at the file that was found by it.
void ResultsView::patched()
{
    const std::optional<int> height = heightOfCurrent();
    layout_.rebuild(link_.rows());
    hadRows_ = hadRows_ || link_.rows().count() > 0;
    keepCurrent();
    updateScrollBars();
    if (current_ && height && (offsetY() > 0 || !heightOfCurrent()))
        verticalScrollBar()->setValue(layout_.lineTop(*current_) - *height);
    viewport()->update();
}

void ResultsView::chooseCurrent()
{
    if (current_)
        chosen_ = link_.rows().at(*current_).item;
}

void ResultsView::showCurrentOnceChanged()
{
    shows_ = true;
}

void ResultsView::showCurrent()
{
    if (std::exchange(shows_, false) && current_)
        scrollTo(*current_);
}

// The current item stays the current one wherever it went; one that left makes way for its neighbour.
void ResultsView::keepCurrent()
{
    const RowMirror& rows = link_.rows();
    if (rows.count() == 0) {
        current_.reset();
        anchor_.reset();
        link_.setCurrentItem(std::nullopt);
        return;
    }
    const auto item = link_.currentItem();
    if (!current_ || !item) {
        current_ = 0;
    } else if (*current_ >= rows.count() || rows.at(*current_).item != *item) {
        current_ = rows.find(*item).value_or(std::min(*current_, rows.count() - 1));
    }
    if (!chosen_)
        chosen_ = rows.at(*current_).item;
    if (rows.at(*current_).item != *chosen_)
        current_ = rows.find(*chosen_).value_or(*current_);
    link_.setCurrentItem(rows.at(*current_).item);
}

QRect ResultsView::rectOf(Row row) const
{
    if (thumbnails_)
        return {layout_.placeInLine(row) * thumbnailWidth(), layout_.lineTop(row) - offsetY(), thumbnailWidth(),
                layout_.measures().lineHeight};
    return {-horizontalScrollBar()->value(), layout_.lineTop(row) - offsetY(), rowWidth(),
            layout_.measures().lineHeight};
}

QRect ResultsView::tickRectOf(Row row) const
{
    const QRect rect = rectOf(row);
    if (thumbnails_)
        return {rect.left() + 4, rect.top() + 4, header_->tickWidth() - 4, fontMetrics().height() + 6};
    return {rect.left() + 4, rect.top(), header_->tickWidth() - 4, rect.height()};
}

std::optional<Row> ResultsView::rowAt(const QPoint& point) const
{
    const auto spot = layout_.at(point.y() + offsetY(), thumbnails_ ? point.x() / thumbnailWidth() : 0);
    return spot ? spot->row : std::nullopt;
}

void ResultsView::scrollTo(Row row)
{
    int top = layout_.lineTop(row);
    const int bottom = top + layout_.measures().lineHeight;
    if (row == layout_.firstRow(layout_.sectionOf(row)))
        top -= layout_.headingHeight();  // a group is told by its heading
    QScrollBar& bar = *verticalScrollBar();
    if (top < bar.value())
        bar.setValue(top);
    else if (bottom > bar.value() + viewport()->height())
        bar.setValue(bottom - viewport()->height());
}

void ResultsView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    if (layout_.rowCount() == 0) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        const bool filtered = link_.rows().figures().items > 0;
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         shown(filtered   ? desktop_text::allHidden
                               : hadRows_ ? desktop_text::listNothingLeft
                                          : desktop_text::listEmpty));
        return;
    }
    RowPainter rows(painter, *this, tagColors_);
    paintSections(rows, event->rect());
}

void ResultsView::paintSections(RowPainter& painter, const QRect& area) const
{
    const std::vector<ColumnSpan> columns = header_->spans();
    const int bottom = std::min(area.bottom() + offsetY(), layout_.height() - 1);
    for (std::size_t section = layout_.sectionAt(area.top() + offsetY());
         section < layout_.sectionCount() && layout_.topOf(section) <= bottom; ++section) {
        const Row first = layout_.firstRow(section), end = layout_.endRow(section);
        const QRect heading(0, layout_.topOf(section) - offsetY(), viewport()->width(), layout_.headingHeight());
        if (!heading.isEmpty() && heading.intersects(area))
            painter.heading(heading, link_.rows().at(first), end - first);
        const int above = std::max(0, area.top() + offsetY() - layout_.lineTop(first)) / layout_.measures().lineHeight;
        for (Row row = first + static_cast<Row>(above * layout_.measures().perLine);
             row < end && layout_.lineTop(row) <= bottom; ++row)
            paintRow(painter, columns, row, section);
    }
}

void ResultsView::paintRow(RowPainter& painter, const std::vector<ColumnSpan>& columns, Row row,
                           std::size_t section) const
{
    RowLook look;
    look.entry = link_.rows().at(row);
    look.texts = cells_->find(look.entry.item);
    look.current = current_ == row;
    look.banded = (layout_.hasHeadings() ? section : row) % 2 == 1;
    look.tickBox = link_.rows().figures().tickBoxes;
    if (thumbnails_)
        return painter.thumbnail(rectOf(row), tickRectOf(row), pictures_->find(look.entry.item), look);
    painter.row(rectOf(row), tickRectOf(row), columns, look);
}

bool ResultsView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        showPath(help->pos(), help->globalPos());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void ResultsView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    measure();
    updateScrollBars();
}

void ResultsView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measure();
        updateScrollBars();
    }
}

void ResultsView::scrollContentsBy(int, int)
{
    header_->setOffset(horizontalScrollBar()->value());
    wantCells();
    viewport()->update();
}

}  // namespace kelvane
