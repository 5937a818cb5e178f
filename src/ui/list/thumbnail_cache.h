// Small pictures of the files in sight, made on the window's thread.
#pragma once

#include <QObject>
#include <QPixmap>
#include <deque>
#include <unordered_map>

#include "ui/core/window_link.h"

namespace kelvane {

// Main thread. One picture is under way at a time, so that what is done with the list comes in between, and what
// scrolled by meanwhile is never asked for.
class ThumbnailCache final : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t mostPictures = 600;

    ThumbnailCache(WindowLink& link, QObject* parent) : QObject(parent), link_(link) {}

    // Null as long as it is not there; a null pixmap for a file that has none.
    [[nodiscard]] const QPixmap* find(ItemId item) const;
    // Which rows are in sight.
    void want(Row first, Row end);
    void clear();

Q_SIGNALS:
    void arrived();

private:
    void fetchNext();
    void take(ItemId item, const QImage& image, unsigned generation);

    WindowLink& link_;
    std::unordered_map<ItemId, QPixmap> pictures_;
    std::deque<ItemId> inOrder_;  // the oldest one first
    Row first_ = 0, end_ = 0;
    unsigned generation_ = 0;
    bool underWay_ = false;
};

}  // namespace kelvane
