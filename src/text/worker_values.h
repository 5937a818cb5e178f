// Texts and property values as bytes between processes. Nothing that is read is trusted: no memory is taken for what a
// length claims before as many bytes are there, and a value that is read back always has the data of its type.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_stream.h"
#include "platform/named_value.h"

namespace kelvane {

// Whether the value can be written: its data is that of its type, and no object.
[[nodiscard]] bool isPortable(const RawValue& value);

// A length in 32 bits, then the bytes or units.
void writeBytes(ByteWriter& out, std::string_view bytes);
void writeUnits(ByteWriter& out, std::u16string_view units);
void writeValue(ByteWriter& out, const RawValue& value);  // a portable one
// Those that are portable.
void writeNamedValues(ByteWriter& out, const std::vector<NamedValue>& values);

// Nothing for malformed bytes; the reader is of no use then.
[[nodiscard]] std::optional<std::string> readBytes(ByteReader& in);
[[nodiscard]] std::optional<std::u16string> readUnits(ByteReader& in);
[[nodiscard]] std::optional<RawValue> readValue(ByteReader& in);
[[nodiscard]] std::optional<std::vector<NamedValue>> readNamedValues(ByteReader& in);
[[nodiscard]] std::optional<bool> readFlag(ByteReader& in);  // a byte that may be 0 or 1 only

}  // namespace kelvane
