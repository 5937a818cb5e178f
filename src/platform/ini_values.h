// Names and values as the lines of an INI file hold them. Sources: Microsoft's pages on the profile functions
// (GetPrivateProfileString, GetPrivateProfileInt, WritePrivateProfileStruct) and on RtlUnicodeStringToInteger.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// What the profile functions trim around names and values.
[[nodiscard]] bool isIniBlank(char16_t unit) noexcept;
[[nodiscard]] std::u16string_view trimIniBlanks(std::u16string_view text) noexcept;

// The name under which a value or a section is stored: characters that would end the name, or make the line something
// else, become "_". A value without a name is "@".
[[nodiscard]] std::u16string iniValueName(std::u16string_view name);
[[nodiscard]] std::u16string iniSectionName(std::u16string_view name);

// A text as it stands behind the "=" and back. Any text survives: in quotation marks where blanks or quotation marks
// at its ends would be lost, and with its control characters escaped (docs/formats/ini.md), so that no text ever leaves
// its line.
[[nodiscard]] std::u16string iniTextLine(std::u16string_view text);
[[nodiscard]] std::u16string textFromIniLine(std::u16string_view line);

// A sign, then digits up to the first other character; "0x", "0o" and "0b" begin another base. Wraps around at 32 bits
// and is 0 without digits.
[[nodiscard]] std::uint32_t numberFromIniText(std::u16string_view text) noexcept;
[[nodiscard]] std::u16string iniNumberText(std::uint32_t number);

// Two hexadecimal digits a byte, then the sum of all bytes modulo 256 in the same way. Two characters alone are an
// empty block; nothing when the digits or the sum are wrong.
[[nodiscard]] std::u16string iniBlockText(std::span<const std::byte> block);
[[nodiscard]] std::optional<std::vector<std::byte>> blockFromIniText(std::u16string_view text);

}  // namespace kelvane
