// Texts of cells, fetched from the window's thread for the rows in sight and a page around them.
#pragma once

#include <QObject>
#include <QStringList>
#include <deque>
#include <unordered_map>
#include <vector>

#include "ui/core/window_link.h"

namespace kelvane {

// Main thread. One request is under way at a time; what scrolled by meanwhile is never asked for. Texts of a row that
// went to another group are shown until newer ones have come.
class CellCache final : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t mostCells = 20'000;

    explicit CellCache(WindowLink& link, QObject* parent);

    // Of the columns in view, from the left; null as long as they are not there.
    [[nodiscard]] const QStringList* find(ItemId item) const;
    // Which rows are in sight. Rows of a page before and after them are fetched as well.
    void want(Row first, Row end);
    // A row that is out of sight is asked about: its texts come next. Only the latest few are kept in mind.
    void wantAlso(ItemId item);
    // Nothing that was fetched holds any more.
    void clear();
    [[nodiscard]] std::size_t rowsHeld() const { return cells_.size(); }

Q_SIGNALS:
    void arrived();

private:
    struct Cells {
        QStringList texts;
        std::uint32_t group = 0;  // that it was in then: a column may say so
    };
    using Texts = std::vector<Cells>;

    [[nodiscard]] static Texts textsOf(Workbench& bench, const std::vector<ItemId>& items);
    [[nodiscard]] std::vector<ItemId> missing() const;
    void collect(std::vector<ItemId>& items, Row first, Row end) const;
    void fetchMissing();
    void take(const std::vector<ItemId>& items, Texts texts, unsigned generation);
    void dropFarOnes();

    WindowLink& link_;
    std::unordered_map<ItemId, Cells> cells_;
    Row first_ = 0, end_ = 0;
    std::deque<ItemId> also_;
    unsigned generation_ = 0;
    bool underWay_ = false;
};

// Fit for one line of a list, whatever is in it: line breaks, other control characters and those that turn the
// direction of writing are replaced by signs that can be seen.
[[nodiscard]] QString shownInOneLine(QString text);

}  // namespace kelvane
