// What a scan keeps of a picture or a film: its signature always, its preview while there is room.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

#include "props/cached_bitmap.h"
#include "props/preview_signature.h"

namespace kelvane {

// The object of a candidate's value. Immutable; any number of threads may read it.
class DescribedPreview final : public RawObject {
public:
    explicit DescribedPreview(const PreviewSignature& signature);

    [[nodiscard]] const PreviewSignature& signature() const { return signature_; }
    // Equal for equal signatures.
    [[nodiscard]] std::uint64_t digest() const { return digest_; }
    [[nodiscard]] bool sameSize(const DescribedPreview& other) const;

private:
    PreviewSignature signature_;
    std::uint64_t digest_;
};

// The previews used last, within a bound. Thread-safe.
class RecentPreviews {
public:
    explicit RecentPreviews(std::uint64_t mostBytes) : mostBytes_(mostBytes) {}

    void put(Ref<const DescribedPreview> described, Ref<CachedBitmap> preview);
    // Null where it is not held any more.
    [[nodiscard]] Ref<CachedBitmap> find(const DescribedPreview& described);
    // The one that is held, else what `make` gives. Neighbours are scored at one time and share a picture: it is made
    // by one of the threads, and the others wait. What `make` throws goes to its thread alone.
    [[nodiscard]] Ref<CachedBitmap> obtain(const Ref<const DescribedPreview>& described,
                                           const std::function<Ref<CachedBitmap>()>& make);

private:
    class Making;
    struct Entry {
        Ref<const DescribedPreview> described;  // so that its address stays its own
        Ref<CachedBitmap> preview;
    };

    // All of these with the mutex held.
    [[nodiscard]] Ref<CachedBitmap> used(const DescribedPreview& described);
    void insert(Ref<const DescribedPreview> described, Ref<CachedBitmap> preview);
    void drop(std::list<Entry>::iterator entry);

    const std::uint64_t mostBytes_;
    std::mutex mutex_;         // over all that follows
    std::list<Entry> recent_;  // the one used last first
    std::unordered_map<const DescribedPreview*, std::list<Entry>::iterator> entries_;
    std::uint64_t bytes_ = 0;
    std::unordered_set<const DescribedPreview*> beingMade_;
    std::condition_variable made_;
};

}  // namespace kelvane
