// The door through which everything about sound, films and pictures is asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "media/media_kinds.h"
#include "media/media_options.h"
#include "platform/media_decoding.h"
#include "platform/shell_item.h"
#include "props/cached_bitmap.h"
#include "props/mp3_finger.h"

namespace kelvane {

// What is wanted of a file; one reading gives all of it.
struct MediaWish {
    bool facts = false;        // what the file says of itself
    bool fingerprint = false;  // of its sound
    bool preview = false;
    MediaKind previewOf = MediaKind::picture;  // a film's is one of its frames

    friend bool operator==(const MediaWish&, const MediaWish&) = default;
};

struct MediaAnswer {
    MediaFault fault;               // of the fingerprint or the preview; `made` where facts alone were asked for
    std::vector<NamedValue> facts;  // empty where the file was not understood
    Ref<MP3Finger> fingerprint;     // null: there is none, see the fault
    Ref<CachedBitmap> preview;      // likewise
};

// Thread-safe: as many files are in work at once as there are callers (and workers).
class MediaReading {
public:
    virtual ~MediaReading() = default;
    // Of one file, or of an entry of an archive. Never fails otherwise than by the fault.
    [[nodiscard]] virtual MediaAnswer read(const ShellItem& item, const MediaWish& wish, const CancelFlag& cancel) = 0;
    // Whether a look at the record says that nothing will come of it (a folder, an empty file).
    [[nodiscard]] virtual bool hopeless(const ShellItem& item) const = 0;
    // Codecs and programs that were missing so far, each once.
    [[nodiscard]] virtual std::vector<std::string> missing() const = 0;
    // What a person should know of the workers that were started so far, in words; empty where nothing is to be told.
    [[nodiscard]] virtual std::string warning() const { return {}; }
    [[nodiscard]] virtual const MediaOptions& options() const = 0;
};

}  // namespace kelvane
