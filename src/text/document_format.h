// What a kind of document is to the extraction: how it is known, and who reads it. One file a format.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "platform/filter_programs.h"
#include "platform/packaged_files.h"
#include "platform/random_access_file.h"
#include "platform/text_decoding.h"
#include "platform/xml_parsing.h"
#include "text/document_sink.h"

namespace kelvane {

// What readers work with. All of it outlives them.
struct DocumentServices {
    const TextDecoding& decoding;
    XmlParsing& xml;
    PackagedFiles& packages;
    FilterPrograms& filters;
    const ExtractionOptions& options;
};

// How reading one document ended. `text` keeps what was found before the end, whatever that is.
struct ReadOutcome {
    TextOutcome outcome = TextOutcome::extracted;
    std::string detail;
    std::string missingTool;
    // Of a plain format: the file is not in UTF-8, so that its size is not what its text weighs.
    bool reencoded = false;
};

// One row of the registry.
struct DocumentFormat {
    std::string_view name;   // "PDF", for messages
    std::string_view masks;  // "htm,html,xhtml": extensions by which a file is taken for it, `*` allowed
    bool plain = false;      // the file is its text and nothing else
    // Files are made of characters (markup, mail), so that the name is believed where bytes do not tell. Of all other
    // formats the bytes do tell: text under such a name is plain text.
    bool textual = false;
    // Read by tools that open their input by its name ("/dev/stdin"): out of a confined process that works with a copy
    // in memory alone.
    bool asCopy = false;
    // Whether the first bytes (up to 4096) are those of this format; null where bytes do not tell. A file whose bytes
    // are those of another format is read as that one, whatever its name says.
    bool (*recognises)(std::span<const std::byte> head) = nullptr;
    // Reads at most options.largestStream bytes of any one stream, unpacks no more than that from any part, and stops
    // when the sink wants no more. Malformed input of any kind gives an outcome, never a crash or a hang.
    ReadOutcome (*read)(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink) = nullptr;
};

}  // namespace kelvane
