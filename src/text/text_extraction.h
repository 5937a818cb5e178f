// The door through which texts of documents are asked for.
#pragma once

#include <string>
#include <vector>

#include "base/cancel.h"
#include "platform/shell_item.h"
#include "text/extracted_document.h"
#include "text/extraction_options.h"

namespace kelvane {

// Thread-safe: as many documents are in work at once as there are callers (and workers).
class TextExtraction {
public:
    virtual ~TextExtraction() = default;
    // Text and properties of one file, or of an entry of an archive. Never fails otherwise than by the outcome; reads
    // the file once.
    [[nodiscard]] virtual ExtractedDocument extract(const ShellItem& item, const CancelFlag& cancel) = 0;
    // Whether a look at the name says that nothing will come of it: such files need not be opened.
    [[nodiscard]] virtual bool hopeless(const ShellItem& item) const = 0;
    // Programs and libraries that were missing so far, each once.
    [[nodiscard]] virtual std::vector<std::string> missingTools() const = 0;
    // What a person should know of the workers that were started so far, in words; empty where nothing is to be told.
    [[nodiscard]] virtual std::string warning() const { return {}; }
    [[nodiscard]] virtual const ExtractionOptions& options() const = 0;
};

}  // namespace kelvane
