// What a scan keeps of a picture or a film: its signature always, its preview while there is room.
#pragma once

#include <cstdint>
#include <list>
#include <mutex>
#include <unordered_map>

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
    void clear();

private:
    struct Entry {
        Ref<const DescribedPreview> described;  // so that its address stays its own
        Ref<CachedBitmap> preview;
    };

    void drop(std::list<Entry>::iterator entry);

    const std::uint64_t mostBytes_;
    std::mutex mutex_;         // over all that follows
    std::list<Entry> recent_;  // the one used last first
    std::unordered_map<const DescribedPreview*, std::list<Entry>::iterator> entries_;
    std::uint64_t bytes_ = 0;
};

}  // namespace kelvane
