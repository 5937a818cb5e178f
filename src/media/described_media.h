// From a file to what it is compared by, out of the cache of earlier runs where it is known there.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "media/media_reading.h"
#include "platform/run_cache.h"
#include "platform/shell_namespace.h"
#include "props/preview_signature.h"
#include "text/latest_files.h"

namespace kelvane {

// Whether the outcome is the same however often a file is tried, as long as the file and the settings stay as they are.
[[nodiscard]] bool isLasting(MediaOutcome outcome);

// What other makes must not be taken for: change with the decoders and the descriptors.
inline constexpr std::uint32_t fingerprintVersion = 1;
inline constexpr std::uint32_t previewVersion = 1;
inline constexpr std::uint32_t mediaFactsVersion = 1;

struct SoundDescription {
    Ref<MP3Finger> fingerprint;  // null: there is none
    MediaFault fault;
};

// Of a picture or a film. The preview itself is given where it had to be made; where only the signature was in the
// cache it is null, and preview() gets it.
struct PreviewDescription {
    std::optional<PreviewSignature> signature;  // nothing: there is no preview
    Ref<CachedBitmap> preview;
    MediaFault fault;
};

// Whoever asks for a fingerprint or a film's preview gets facts for the same reading; they are kept for those who ask
// for them next. Thread-safe.
class MediaDescriber {
public:
    // cache may be null. All outlive it.
    MediaDescriber(ShellNamespace& shell, MediaReading& reading, RunCache* cache);

    [[nodiscard]] SoundDescription sound(const ShellItem& item, const CancelFlag& cancel) const;
    [[nodiscard]] PreviewDescription signature(const ShellItem& item, MediaKind kind, const CancelFlag& cancel) const;
    // Out of the cache, else made; null where there is none (any more).
    [[nodiscard]] Ref<CachedBitmap> preview(const ShellItem& item, MediaKind kind, const CancelFlag& cancel) const;
    [[nodiscard]] std::vector<NamedValue> facts(const ShellItem& item, const CancelFlag& cancel) const;

    [[nodiscard]] MediaReading& reading() const { return reading_; }

private:
    using Facts = std::shared_ptr<const std::vector<NamedValue>>;

    [[nodiscard]] MediaAnswer read(const ShellItem& item, MediaWish wish, const CancelFlag& cancel) const;
    [[nodiscard]] PreviewDescription makePreview(const ShellItem& item, MediaKind kind, const CancelFlag& cancel) const;
    // Null where the file has to be asked again.
    [[nodiscard]] Facts readFacts(const ShellItem& item, const CancelFlag& cancel) const;

    ShellNamespace& shell_;
    MediaReading& reading_;
    RunCache* cache_;
    mutable LatestFiles<Facts> latest_;
};

}  // namespace kelvane
