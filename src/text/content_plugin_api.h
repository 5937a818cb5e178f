// The public C interface of content plug-ins (WDX64, version 2.1), as far as it is used here: shared libraries that
// file managers ask for further facts about files. Field numbers count from 0; texts are in the system's own narrow
// encoding (UTF-8 on Linux) or UTF-16. Written from the interface's published description.
#pragma once

#include <cstdint>

namespace kelvane::content_plugin {

// What a field holds, and what a value that was read is; below, what ContentGetValue answers in place of a value.
enum FieldType : int {
    ft_nomorefields = 0,      // there is no field of this number, nor of a higher one
    ft_numeric_32 = 1,        // signed
    ft_numeric_64 = 2,        // signed
    ft_numeric_floating = 3,  // a double; a text to show may follow it
    ft_date = 4,              // PluginDate
    ft_time = 5,              // PluginTime
    ft_boolean = 6,           // 32 bits, any but 0 is true
    ft_multiplechoice = 7,    // a text, one of those that the field's units list
    ft_string = 8,            // ends with a zero
    ft_fulltext = 9,          // read piece by piece: the unit is the position in bytes
    ft_datetime = 10,         // 64 bits: 100-ns units since 1601 in UTC
    ft_stringw = 11,          // UTF-16, ends with a zero
    ft_comparecontent = 100,  // compares two files; not used here

    ft_delayed = 0,  // comes later, when asked again without delayIfSlow
    ft_nosuchfield = -1,
    ft_fileerror = -2,
    ft_fieldempty = -3,  // the file has none; of a full text: the end is reached
    ft_ondemand = -4,    // only when a person asks for it
    ft_notsupported = -5,
};

// Flags of ContentGetValue.
inline constexpr int delayIfSlow = 1;
// In place of a full text's position: no more of it is wanted.
inline constexpr int endOfFullText = -1;

struct PluginDate {
    std::uint16_t year, month, day;
};
struct PluginTime {
    std::uint16_t hour, minute, second;
};

struct DefaultParameters {
    std::int32_t size;
    std::uint32_t interfaceVersionLow;
    std::uint32_t interfaceVersionHigh;
    char iniName[260];  // where a plug-in may keep settings of its own
};
static_assert(sizeof(DefaultParameters) == 272);

// The functions that a library exports by these names. On 64-bit Windows there is one calling convention only.
using ContentGetDetectString = int (*)(char* detectString, int maxLength);
using ContentGetSupportedField = int (*)(int field, char* name, char* units, int maxLength);
using ContentGetValue = int (*)(char* fileName, int field, int unit, void* value, int maxLength, int flags);
using ContentGetValueW = int (*)(char16_t* fileName, int field, int unit, void* value, int maxLength, int flags);
using ContentSetDefaultParams = void (*)(DefaultParameters* parameters);
using ContentStopGetValue = void (*)(char* fileName);
using ContentStopGetValueW = void (*)(char16_t* fileName);
using ContentPluginUnloading = void (*)();

}  // namespace kelvane::content_plugin
