// By which columns the list is sorted, and that further lists are sorted likewise.
#pragma once

#include <QObject>
#include <memory>
#include <string>
#include <vector>

#include "app/sort_order.h"
#include "base/cancel.h"
#include "ui/frame/frame_parts.h"
#include "ui/list/list_header.h"

namespace kelvane {

// Main thread; the work is done on the window's. A click on a title sorts by it, another one turns the order round;
// with shift the column is a further key. A list that was filled is put in the order that is remembered.
class ListSorting final : public QObject {
    Q_OBJECT

public:
    struct Key {
        std::string column;
        bool ascending = true;
    };

    ListSorting(WindowLink& link, ListHeader& header);

    void addCommands(const FrameParts& parts);
    void sortBy(const std::string& column, bool further);
    // The first key in that direction; nothing without one.
    void turn(bool ascending);
    // By which the list is sorted at first; null: by group numbers.
    [[nodiscard]] const Key* firstKey() const { return keys_.empty() ? nullptr : &keys_.front(); }
    // Back to the order of group numbers.
    void unsort();
    void keepGrouped(bool on);

private:
    void useKeys();
    void sort();
    void sortAsKept();
    void rememberOrder();
    [[nodiscard]] std::shared_ptr<CancelFlag> beginSorting();
    void showKeys();
    [[nodiscard]] static std::vector<Key> keysOf(const PropertyCatalogue& catalogue,
                                                 const std::vector<StoredSortKey>& stored);
    static void sortBy(Workbench& bench, const std::vector<Key>& keys, bool grouped, const CancelFlag& cancel);

    WindowLink& link_;
    ListHeader& header_;
    std::vector<Key> keys_;
    std::shared_ptr<CancelFlag> cancel_;  // of the sorting that is under way: a newer one ends it
    bool grouped_ = true;
    bool fresh_ = false;  // the list has begun, and its job has not ended yet
};

}  // namespace kelvane
