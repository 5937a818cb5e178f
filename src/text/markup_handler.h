// What the readers of XML documents have in common.
#pragma once

#include <span>
#include <string_view>

#include "platform/xml_parsing.h"
#include "text/document_sink.h"

namespace kelvane {

// "t" of "w:t": writers choose prefixes as they like, and no format here has two meanings for one name.
[[nodiscard]] std::string_view localName(std::string_view name);
[[nodiscard]] bool isOneOf(std::span<const std::string_view> names, std::string_view name);

using XmlAttributes = std::span<const XmlHandler::Attribute>;
// By its local name; empty where there is none.
[[nodiscard]] std::string_view attributeOf(XmlAttributes attributes, std::string_view name);

// Hears of elements by their local names, and of nothing inside of those that it leaves out.
class MarkupHandler : public XmlHandler {
public:
    bool elementBegins(std::string_view name, std::span<const Attribute> attributes) final;
    bool elementEnds(std::string_view name) final;
    bool characters(std::string_view text) final;
    // Whether there was any element.
    [[nodiscard]] bool heard() const { return heard_; }

protected:
    // Whether an element is left out with all that it holds.
    virtual bool leavesOut(std::string_view name, XmlAttributes attributes);
    virtual void begins(std::string_view name, XmlAttributes attributes) = 0;
    virtual void ends(std::string_view name) = 0;
    virtual void text(std::string_view characters) = 0;
    [[nodiscard]] virtual bool wantsMore() const { return true; }

private:
    std::size_t leftOut_ = 0;  // elements that are open, from the one that is left out
    bool heard_ = false;
};

// One that fills a sink.
class TextHandler : public MarkupHandler {
public:
    explicit TextHandler(DocumentSink& sink) : sink_(sink) {}

protected:
    [[nodiscard]] bool wantsMore() const override { return sink_.wantsMore(); }
    DocumentSink& sink_;
};

}  // namespace kelvane
