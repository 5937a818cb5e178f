// Port: XML documents, element by element.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

#include "base/result.h"

namespace kelvane {

// Hears of a document in its order. Names are as written, prefix included ("w:t"); texts are UTF-8 with entities
// resolved. Each call returning false ends the parsing with success.
class XmlHandler {
public:
    using Attribute = std::pair<std::string_view, std::string_view>;
    virtual ~XmlHandler() = default;
    virtual bool elementBegins(std::string_view name, std::span<const Attribute> attributes) = 0;
    virtual bool elementEnds(std::string_view name) = 0;
    virtual bool characters(std::string_view text) = 0;
};

// Thread-safe.
class XmlParsing {
public:
    virtual ~XmlParsing() = default;
    // `invalid` for what is no XML; what was well-formed before the fault may have been told already. Never fetches
    // anything, never expands entities that the document declares itself; any depth of nesting is safe.
    [[nodiscard]] virtual Status parse(std::span<const std::byte> document, XmlHandler& handler) = 0;
};

}  // namespace kelvane
