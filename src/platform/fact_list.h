// What a reader found in a file, put together as values of the types that their properties are published with.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_time.h"
#include "platform/named_value.h"
#include "platform/property_system.h"

namespace kelvane {

// Without what means nothing at either end: blanks, control characters, zeros that fill up a field.
[[nodiscard]] std::u16string_view trimmedFact(std::u16string_view text);

// The parts between semicolons, where a format keeps several names or keywords in one text.
[[nodiscard]] std::vector<std::u16string> separatedFacts(std::u16string_view text);

// The first value of a property stays: readers begin with the source that knows best. What a property cannot hold (an
// empty text, a number out of the range of its type, a value of another kind) is left out.
class FactList {
public:
    // properties outlives it.
    explicit FactList(const PropertySystem& properties) : properties_(properties) {}

    [[nodiscard]] bool has(std::string_view name) const;

    void text(std::string_view name, std::u16string_view value);
    // Each once; joined by "; " where the property is a single text.
    void texts(std::string_view name, std::span<const std::u16string> values);
    // A whole number; a truth is 0 or not.
    void number(std::string_view name, std::int64_t value);
    void real(std::string_view name, double value);
    void reals(std::string_view name, std::vector<double> values);
    void date(std::string_view name, FileTime time);

    [[nodiscard]] std::vector<NamedValue> take() { return std::move(values_); }

private:
    const PropertyInfo* wanted(std::string_view name) const;
    void add(const PropertyInfo& property, RawValue value);

    const PropertySystem& properties_;
    std::vector<NamedValue> values_;
};

}  // namespace kelvane
