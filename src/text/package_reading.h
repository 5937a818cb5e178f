// The parts of a package that a format's reader asks for.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "text/document_format.h"
#include "text/markup_handler.h"

namespace kelvane {

struct PartContent {
    std::vector<std::byte> bytes;
    bool cut = false;  // the part has more than may be read of one
};
using PackageParts = std::map<std::string, PartContent, std::less<>>;

// Most that is read of one stream of a document, settings without a limit included.
[[nodiscard]] std::size_t streamLimit(const ExtractionOptions& options);

// Reads the wanted parts, since their order in the package need not be the order in which they make sense. Parts that
// come after a generous amount of bytes are left out, which the sink is told. An outcome other than `extracted` leaves
// what was read.
[[nodiscard]] ReadOutcome readParts(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink,
                                    const std::function<bool(std::string_view name)>& wanted, PackageParts& parts);

// Tells the handler of the part. False when the part is no XML; one that was cut ends where it was.
[[nodiscard]] bool parsePart(const PartContent& part, const DocumentServices& services, MarkupHandler& handler);

// The outcome of a document of which something in the library or the system failed.
[[nodiscard]] ReadOutcome failedReading(const Error& error);

// "word/media/a.png" of "word" and "media/a.png": how one part names another. "../" is followed, a beginning "/" starts
// at the root.
[[nodiscard]] std::string resolvePart(std::string_view folder, std::string_view target);
[[nodiscard]] std::string_view folderOfPart(std::string_view name);

// The first number in a name, "12" of "ppt/slides/slide12.xml"; 0 without one.
[[nodiscard]] unsigned numberIn(std::string_view name);

// The names of the package's first parts, as far as the head goes; empty for what is no zip.
struct PackageHead {
    std::vector<std::string_view> names;
    std::string_view mimetype;  // the content of a first part of this name, where it is stored unpacked
};
[[nodiscard]] PackageHead packageHead(std::span<const std::byte> head);

}  // namespace kelvane
