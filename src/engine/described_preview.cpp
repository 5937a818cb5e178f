#include "engine/described_preview.h"

#include <utility>

#include "engine/mixed_bits.h"

namespace kelvane {
namespace {

std::uint64_t digestOf(const PreviewSignature& signature)
{
    std::uint64_t digest = signature.width * 256u + signature.height;
    const auto add = [&](std::uint8_t value) { digest = (digest ^ value) * 0x100000001B3u; };
    for (const std::uint8_t value : signature.brightness)
        add(value);
    for (const std::uint8_t value : signature.colours)
        add(value);
    return mixedBits(digest);
}

std::uint64_t bytesOf(const CachedBitmap& preview)
{
    return preview.pixels().size() + sizeof preview;
}

}  // namespace

DescribedPreview::DescribedPreview(const PreviewSignature& signature)
    : signature_(signature), digest_(digestOf(signature))
{
}

bool DescribedPreview::sameSize(const DescribedPreview& other) const
{
    return signature_.width == other.signature_.width && signature_.height == other.signature_.height;
}

void RecentPreviews::put(Ref<const DescribedPreview> described, Ref<CachedBitmap> preview)
{
    const std::lock_guard lock(mutex_);
    insert(std::move(described), std::move(preview));
}

Ref<CachedBitmap> RecentPreviews::find(const DescribedPreview& described)
{
    const std::lock_guard lock(mutex_);
    return used(described);
}

// Whatever comes of it: those who wait must not wait for ever.
class RecentPreviews::Making {
public:
    // The lock is held now, and may be at the end.
    Making(RecentPreviews& house, const DescribedPreview& described, std::unique_lock<std::mutex>& lock)
        : house_(house), described_(described), lock_(lock)
    {
        house_.beingMade_.insert(&described_);
    }
    ~Making()
    {
        if (!lock_.owns_lock())
            lock_.lock();
        house_.beingMade_.erase(&described_);
        house_.made_.notify_all();
    }
    Making(const Making&) = delete;
    Making& operator=(const Making&) = delete;

private:
    RecentPreviews& house_;
    const DescribedPreview& described_;
    std::unique_lock<std::mutex>& lock_;
};

Ref<CachedBitmap> RecentPreviews::obtain(const Ref<const DescribedPreview>& described,
                                         const std::function<Ref<CachedBitmap>()>& make)
{
    std::unique_lock lock(mutex_);
    made_.wait(lock, [&] { return !beingMade_.contains(described.get()); });
    if (Ref<CachedBitmap> held = used(*described))
        return held;
    const Making making(*this, *described, lock);
    lock.unlock();
    Ref<CachedBitmap> preview = make();
    lock.lock();
    if (preview)
        insert(described, preview);
    return preview;
}

Ref<CachedBitmap> RecentPreviews::used(const DescribedPreview& described)
{
    const auto entry = entries_.find(&described);
    if (entry == entries_.end())
        return {};
    recent_.splice(recent_.begin(), recent_, entry->second);
    return entry->second->preview;
}

void RecentPreviews::insert(Ref<const DescribedPreview> described, Ref<CachedBitmap> preview)
{
    const DescribedPreview* const key = described.get();
    if (entries_.contains(key))
        return;
    bytes_ += bytesOf(*preview);
    recent_.push_front({std::move(described), std::move(preview)});
    entries_[key] = recent_.begin();
    while (bytes_ > mostBytes_)
        drop(std::prev(recent_.end()));
}

void RecentPreviews::drop(std::list<Entry>::iterator entry)
{
    bytes_ -= bytesOf(*entry->preview);
    entries_.erase(entry->described.get());
    recent_.erase(entry);
}

}  // namespace kelvane
