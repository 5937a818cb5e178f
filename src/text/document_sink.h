// Where a format's reader puts what it finds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/raw_value.h"
#include "text/extracted_document.h"
#include "text/extraction_options.h"

namespace kelvane {

// Collects text up to the sample, goes on weighing beyond it, and tells the reader when to stop.
class DocumentSink {
public:
    explicit DocumentSink(const ExtractionOptions& options) : options_(options) {}

    // Appends. False: enough, the reader may stop.
    bool text(std::u16string_view characters);
    bool text(std::string_view utf8);  // malformed bytes become U+FFFD
    // Parts what comes next from what is there: by a line break (paragraphs, rows, pages), unless there is nothing yet
    // or it ends with one. Nothing is written before there is something to part, so no document ends with one.
    bool lineBreak();
    // The same by a blank (cells, table columns, words that markup parts), unless it ends with white space.
    bool gap();
    [[nodiscard]] bool wantsMore() const { return characters_ < options_.weighedCharacters(); }
    // The reader leaves a part of the text out.
    void leavesMore() { document_.cut = true; }

    // The first value of a name stays. Empty texts are no values.
    void property(std::string_view name, RawValue value);
    void property(std::string_view name, std::string_view utf8);
    void property(std::string_view name, std::vector<std::u16string> texts);  // of a property with several values

    [[nodiscard]] ExtractedDocument take() &&;  // outcome `extracted`

private:
    void append(std::u16string_view characters);
    void flushParting();

    const ExtractionOptions& options_;
    ExtractedDocument document_;
    std::uint64_t characters_ = 0;  // gone through, beyond the sample too
    char16_t last_ = 0;             // of them
    char16_t parting_ = 0;          // to be written before the next text; 0: nothing
};

}  // namespace kelvane
