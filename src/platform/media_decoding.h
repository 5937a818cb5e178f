// Ports: what is taken out of sound, films and pictures. Their libraries have had holes before, so that they serve in a
// worker process alone (see worker_processes.h); each reads nothing but the file that it is given.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/named_value.h"
#include "platform/random_access_file.h"

namespace kelvane {

// Why there is nothing, or that there is something. In the order in which a summary names them.
enum class MediaOutcome : std::uint8_t {
    made,
    unknownFormat,  // nothing reads files of this kind
    nothingThere,   // no sound, or no moving picture, in the file
    tooShort,       // of a sound: the opening has fewer samples than are compared
    lowRate,        // of a sound: fewer samples a second than are compared
    featureless,    // of a sound: silence or one unchanging tone; nothing tells it from any other
    tooLarge,       // more pixels than are decoded
    unreadable,     // the file could not be opened or read
    encrypted,
    damaged,        // not what its kind promises
    codecMissing,   // nothing that is installed decodes what is in it
    workerMissing,  // the program that decodes is not installed, or this system has none
    timedOut,
    tooMuchMemory,
    crashed,
    cancelled,
};

// Why a decoder gave nothing.
struct MediaFault {
    MediaOutcome outcome = MediaOutcome::made;
    std::string codec;   // of codecMissing: its name
    std::string detail;  // for a person who asks why, in UTF-8; may be empty
};

struct DecodedSound {
    MediaFault fault;
    std::vector<float> samples;  // one channel, `rate` samples a second, -1 to 1 as a rule
};

// Pixels of four bytes: blue, green, red, and one that says nothing. Rows from top to bottom, without gaps.
struct DecodedPicture {
    MediaFault fault;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::byte> pixels;
};

// Used by one thread at a time, as are all of these. fileName: the last part, in UTF-8 as far as it is text.
class SoundDecoding {
public:
    virtual ~SoundDecoding() = default;
    static constexpr std::uint32_t rate = 11'025;
    // The opening of the first sound of the file: all channels mixed into one, brought to `rate`, at most so long;
    // shorter where the file is. Only that much is decoded, and nothing has to be sought. A file of fewer samples a
    // second is `lowRate`. A file that breaks off gives what could be decoded.
    [[nodiscard]] virtual DecodedSound opening(RandomAccessFile& file, std::string_view fileName,
                                               std::chrono::milliseconds longest) = 0;
};

struct PreviewBounds {
    std::uint32_t width = 200;
    std::uint32_t height = 200;
    std::uint64_t pixels = 400'000'000;  // a larger picture is not decoded
};

class PictureDecoding {
public:
    virtual ~PictureDecoding() = default;
    // The whole picture, the way it is meant to be seen (its orientation applied, on white where it is transparent, in
    // sRGB), made smaller until it fits into the bounds; never made larger. Made the same way for every file, so that
    // pictures of the same shape give previews of the same size. Of an animation or a document the first picture.
    [[nodiscard]] virtual DecodedPicture preview(RandomAccessFile& file, std::string_view fileName,
                                                 const PreviewBounds& bounds) = 0;
};

class FilmDecoding {
public:
    virtual ~FilmDecoding() = default;
    // One frame of the first moving picture, at a place that depends on the film's length alone, and the next such
    // place where it is black; turned as it is meant to be seen, with square pixels, within the bounds as above.
    [[nodiscard]] virtual DecodedPicture preview(RandomAccessFile& file, std::string_view fileName,
                                                 const PreviewBounds& bounds) = 0;
};

// Reads what a file says of itself. Values have the published types and units of their properties.
class FactReading {
public:
    virtual ~FactReading() = default;
    // What could be read; nothing of a file that is not of the reader's kind.
    [[nodiscard]] virtual std::vector<NamedValue> read(RandomAccessFile& file, std::string_view fileName) = 0;
};

}  // namespace kelvane
