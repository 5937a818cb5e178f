#include "platform/archive_listings.h"

#include <algorithm>

namespace kelvane {

Result<std::shared_ptr<const ArchiveListing>> ArchiveListings::of(const std::filesystem::path& archive)
{
    const auto details = files_.details(archive, Links::followed);
    if (!details)
        return details.error();
    const std::shared_ptr<Kept> kept = keep(archive, *details);
    const std::lock_guard lock(kept->reading);
    if (!kept->listing) {
        kept->listing = std::make_shared<const ArchiveListing>(ArchiveListing::read(archives_, archive));
        weigh(*kept);
    }
    return kept->listing;
}

std::shared_ptr<ArchiveListings::Kept> ArchiveListings::keep(const std::filesystem::path& archive, const FileInfo& info)
{
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const auto& one) {
        return one->path == archive && one->identity == info.identity && one->size == info.size &&
               one->modified == info.modified;
    });
    if (found != kept_.end()) {
        kept_.splice(kept_.begin(), kept_, found);
        return kept_.front();
    }
    auto added = std::make_shared<Kept>();
    added->path = archive;
    added->identity = info.identity;
    added->size = info.size;
    added->modified = info.modified;
    kept_.push_front(std::move(added));
    dropOldest();
    return kept_.front();
}

void ArchiveListings::weigh(Kept& kept)
{
    const std::lock_guard lock(mutex_);
    kept.weight = kept.listing->weight();
    dropOldest();
}

// With mutex_ held. Whoever still uses what is dropped here keeps it alive.
void ArchiveListings::dropOldest()
{
    std::size_t weight = 0;
    std::size_t count = 0;
    auto at = kept_.begin();
    while (at != kept_.end() && (count == 0 || (count < mostKept && weight + (*at)->weight <= mostWeight))) {
        weight += (*at)->weight;
        ++count;
        ++at;
    }
    kept_.erase(at, kept_.end());
}

}  // namespace kelvane
