// From the names under which documents keep what is known of them, to properties.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "text/markup_handler.h"

namespace kelvane {

enum class ValueShape {
    text,
    texts,     // several, each by itself or parted by ";"
    keywords,  // several, parted by ";" or ","
    date,      // ISO 8601
    count,
    minutes,   // a number of minutes, as an amount of time
    duration,  // ISO 8601: "PT1H30M"
};

struct PropertyRule {
    std::string_view source;    // an element or a field of the document
    std::string_view property;  // canonical
    ValueShape shape = ValueShape::text;
};

// Collects values by the names that documents give them; earlier rules win where several have one property.
class PropertyCollector {
public:
    explicit PropertyCollector(std::span<const PropertyRule> rules) : rules_(rules), values_(rules.size()) {}
    void add(std::string_view source, std::string_view utf8);
    void give(DocumentSink& sink) const;

private:
    std::span<const PropertyRule> rules_;  // constant tables
    std::vector<std::vector<std::string>> values_;
};

// Elements that hold one value each.
class PropertyHandler : public MarkupHandler {
public:
    explicit PropertyHandler(std::span<const PropertyRule> rules) : collector_(rules) {}
    void give(DocumentSink& sink) const { collector_.give(sink); }

protected:
    void begins(std::string_view name, XmlAttributes attributes) override;
    void ends(std::string_view name) override;
    void text(std::string_view characters) override;
    PropertyCollector collector_;

private:
    std::string value_;
};

}  // namespace kelvane
