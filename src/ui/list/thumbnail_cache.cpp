#include "ui/list/thumbnail_cache.h"

#include <QImage>
#include <algorithm>

#include "media/media_kinds.h"
#include "platform/native_text.h"
#include "props/cached_bitmap.h"

namespace kelvane {
namespace {

QImage thumbnailOf(Workbench& bench, ItemId id)
{
    if (bench.session() == nullptr || static_cast<std::uint32_t>(id) >= bench.results().idLimit())
        return {};
    const Ref<const ShellItem> item = bench.results().item(id).file.itemRef();
    const MediaKind kind = mediaKindOf(nameBytes(item->name()));
    if (kind != MediaKind::picture && kind != MediaKind::film)
        return {};
    const CancelFlag never;
    const auto bitmap = bench.session()->access.describer->preview(*item, kind, never);
    if (!bitmap)
        return {};
    const auto width = static_cast<int>(bitmap->width());
    return QImage(reinterpret_cast<const uchar*>(bitmap->pixels().data()), width, static_cast<int>(bitmap->height()),
                  4 * width, QImage::Format_RGB32)
        .copy();
}

}  // namespace

const QPixmap* ThumbnailCache::find(ItemId item) const
{
    const auto found = pictures_.find(item);
    return found != pictures_.end() ? &found->second : nullptr;
}

void ThumbnailCache::want(Row first, Row end)
{
    first_ = first;
    end_ = end;
    fetchNext();
}

void ThumbnailCache::clear()
{
    ++generation_;
    underWay_ = false;
    pictures_.clear();
    inOrder_.clear();
}

void ThumbnailCache::fetchNext()
{
    const Row end = std::min({end_, link_.rows().count(), first_ + static_cast<Row>(mostPictures)});
    for (Row row = first_; row < end && !underWay_; ++row) {
        const ItemId item = link_.rows().at(row).item;
        if (pictures_.contains(item))
            continue;
        underWay_ = true;
        link_.fetchOfList(
            this, [item](Workbench& bench) { return thumbnailOf(bench, item); },
            [this, item, generation = generation_](const QImage& image) { take(item, image, generation); });
    }
}

void ThumbnailCache::take(ItemId item, const QImage& image, unsigned generation)
{
    if (generation != generation_)
        return;
    underWay_ = false;
    if (pictures_.insert_or_assign(item, QPixmap::fromImage(image)).second)
        inOrder_.push_back(item);
    while (inOrder_.size() > mostPictures) {
        pictures_.erase(inOrder_.front());
        inOrder_.pop_front();
    }
    Q_EMIT arrived();
    fetchNext();
}

}  // namespace kelvane
