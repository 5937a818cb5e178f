// Text of markup, where any run of white space means one blank.
#pragma once

#include <string>
#include <string_view>

#include "text/document_sink.h"

namespace kelvane {

[[nodiscard]] constexpr bool isMarkupLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

[[nodiscard]] constexpr bool isMarkupSpace(char16_t unit)
{
    return unit == u' ' || unit == u'\n' || unit == u'\t' || unit == u'\r' || unit == u'\f';
}

// Writes into a sink with white space collapsed, across pieces as well.
class CollapsedText {
public:
    explicit CollapsedText(DocumentSink& sink) : sink_(sink) {}

    void put(std::u16string_view characters);

private:
    void blank();

    DocumentSink& sink_;
    std::u16string run_;
};

}  // namespace kelvane
