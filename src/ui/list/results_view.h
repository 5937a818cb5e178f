// The list of results: groups with headings, rows with tick boxes, as long as it may be.
#pragma once

#include <QAbstractScrollArea>
#include <optional>
#include <span>
#include <vector>

#include "ui/list/cell_cache.h"
#include "ui/list/list_layout.h"
#include "ui/list/row_painter.h"

class QHeaderView;

namespace kelvane {

class ListHeader;
class ThumbnailCache;

// Main thread. Draws what is in sight out of the link's rows; marks go to the window's thread and come back as patches.
class ResultsView final : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit ResultsView(WindowLink& link, QWidget* parent = nullptr);
    ~ResultsView() override;

    [[nodiscard]] WindowLink& link() const { return link_; }
    [[nodiscard]] ListHeader& header() const { return *header_; }
    [[nodiscard]] CellCache& cells() const { return *cells_; }
    [[nodiscard]] const ListLayout& layoutOfRows() const { return layout_; }

    // The row that the person is at; nothing in an empty list.
    [[nodiscard]] std::optional<Row> currentRow() const { return current_; }
    void setCurrentRow(Row row);
    // As a key does: with shift the selection grows to the row, with control nothing but the current row changes.
    void goTo(Row row, Qt::KeyboardModifiers modifiers);
    void selectAll();
    // Of the selected rows when the current one is among them, else of that one: the opposite of what it has.
    void toggleTicks();
    // The opposite of what the item has.
    void toggle(ItemId item, Mark mark);
    // What the heading says of the row's group; its number alone where groups are torn apart.
    [[nodiscard]] QString groupText(Row row) const;
    // Pictures side by side in place of rows with columns.
    void showThumbnails(bool on);
    [[nodiscard]] bool showsThumbnails() const { return thumbnails_; }
    // Where a row is shown, in the viewport's coordinates.
    [[nodiscard]] QRect rectOf(Row row) const;
    [[nodiscard]] QRect tickRectOf(Row row) const;
    [[nodiscard]] std::optional<Row> rowAt(const QPoint& point) const;
    void scrollTo(Row row);
    // The person is at the current row, however it became the current one: other rows do not take them back.
    void chooseCurrent();
    // The rows are about to be others, as the person wanted: the view goes to where the current one is then.
    void showCurrentOnceChanged();
    // The header has others now.
    void columnsChanged();

Q_SIGNALS:
    void opened();                                 // a double click, or Enter
    void menuAsked(const QPoint& globalPosition);  // a context menu
    void typed(const QString& text);               // to find by the beginning of names

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void measure();
    void placeHeader();
    void updateScrollBars();
    void wantCells();
    void patched();
    void showCurrent();
    [[nodiscard]] std::optional<int> heightOfCurrent() const;
    void figuresCame();
    void keepCurrent();

    void paintSections(RowPainter& painter, const QRect& area) const;
    void paintRow(RowPainter& painter, const std::vector<ColumnSpan>& spans, Row row, std::size_t section) const;
    [[nodiscard]] std::vector<ColumnSpan> spans() const;
    [[nodiscard]] int rowWidth() const;
    [[nodiscard]] int thumbnailWidth() const;
    [[nodiscard]] int offsetY() const;

    [[nodiscard]] std::optional<Row> rowForKey(const QKeyEvent& event) const;
    [[nodiscard]] Row rowInNextGroup(Row from, int step) const;
    [[nodiscard]] Row rowAPageAway(Row from, int step) const;
    void clicked(Row row, Qt::KeyboardModifiers modifiers);
    void select(Row first, Row last, bool keepOthers);
    [[nodiscard]] Row anchorRow(Row otherwise) const;
    void startDrag();
    [[nodiscard]] QPoint belowCurrent() const;
    void showPath(const QPoint& viewportPosition, const QPoint& globalPosition);

    WindowLink& link_;
    CellCache* cells_;
    ThumbnailCache* pictures_;
    ListHeader* header_;
    ListLayout layout_;
    std::vector<QColor> tagColors_;
    std::optional<Row> current_;
    std::optional<ItemId> anchor_;        // where a range of rows begins
    std::optional<ItemId> chosen_;        // where the person went: current again when it comes back into view
    std::optional<QPoint> pressed_;       // where a drag may begin
    std::optional<Row> pressedSelected_;  // a plain click on a selected row counts when the button is let go
    bool grouped_ = true;
    bool thumbnails_ = false;
    bool hadRows_ = false;  // this list, at any time
    bool shows_ = false;    // the next change of rows ends at the current one
};

}  // namespace kelvane
