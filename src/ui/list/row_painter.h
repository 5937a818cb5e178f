// How one row, one thumbnail and one heading of the list look.
#pragma once

#include <QColor>
#include <QRect>
#include <QStringList>
#include <QWidget>
#include <vector>

#include "ui/core/row_mirror.h"
#include "ui/list/list_columns.h"

class QPainter;

namespace kelvane {

// Left and right of the text of a cell, in pixels.
inline constexpr int cellMargin = 5;

// One column in view, from the left: where it stands, and which of the row's texts it shows.
struct ColumnSpan {
    int left = 0, width = 0;
    std::size_t column = 0;
    bool rightAligned = false;
};

struct RowLook {
    RowEntry entry;
    const QStringList* texts = nullptr;  // null: not there yet
    bool current = false;
    bool banded = false;  // every other group
    bool tickBox = true;
};

// Borrowed for one paint event.
class RowPainter {
public:
    RowPainter(QPainter& painter, const QWidget& widget, const std::vector<QColor>& tagColors);

    // `tick` is the room of the tick box, in the row.
    void row(const QRect& rect, const QRect& tick, const std::vector<ColumnSpan>& columns, const RowLook& look);
    // A null picture is not there yet, or there is none.
    void thumbnail(const QRect& rect, const QRect& tick, const QPixmap* picture, const RowLook& look);
    void heading(const QRect& rect, const RowEntry& first, Row members);

private:
    void background(const QRect& rect, const RowLook& look);
    void tag(const QRect& rect, std::uint8_t tag);
    void frame(const QRect& rect, const RowLook& look);
    void tickBox(const QRect& rect, const RowEntry& entry);

    QPainter& painter_;
    const QWidget& widget_;
    const std::vector<QColor>& tagColors_;
};

// "Group 12: 3 files", and that it was compared approximately.
[[nodiscard]] QString headingText(const RowEntry& first, Row members);

}  // namespace kelvane
