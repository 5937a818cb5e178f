// Where a format's reader puts what it finds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

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
    // A line break, unless the text is empty or ends with one: paragraphs, rows, pages.
    bool lineBreak();
    // A blank, unless the text is empty or ends with white space: cells, table columns, words that markup parts.
    bool gap();
    [[nodiscard]] bool wantsMore() const;

    // The first value of a name stays. Empty texts are no values.
    void property(std::string_view name, RawValue value);
    void property(std::string_view name, std::string_view utf8);

    [[nodiscard]] ExtractedDocument take() &&;  // outcome `extracted`

private:
    const ExtractionOptions& options_;
    ExtractedDocument document_;
    std::uint64_t characters_ = 0;  // gone through, beyond the sample too
    bool endsWithBreak_ = false, endsWithSpace_ = false;
};

}  // namespace kelvane
