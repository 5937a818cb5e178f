// A content plug-in for tests: one field of each type, some that misbehave, and files that it breaks down on.
// What it does when it goes is appended to the settings file that it was told of, so that a test sees the order.
#include "text/content_plugin_api.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#ifdef _WIN32
#define PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace kelvane::content_plugin::sample {
namespace {

struct Field {
    const char* name;
    FieldType type;
};

constexpr Field fields[] = {
    {"Number", ft_numeric_32},
    {"Large", ft_numeric_64},
    {"Ratio", ft_numeric_floating},
    {"Day", ft_date},
    {"Clock", ft_time},
    {"Flag", ft_boolean},
    {"Colour", ft_multiplechoice},
    {"Name", ft_string},
    {"Text", ft_fulltext},
    {"Stamp", ft_datetime},
    {"Wide", ft_stringw},
    {"Endless", ft_string},
    {"Overrun", ft_string},
    {"Nothing", ft_numeric_32},
    {"Two.words", ft_string},
    {"No day", ft_date},
    {"Compared", ft_comparecontent},
};
constexpr int fieldCount = static_cast<int>(std::size(fields));

struct State {
    std::string settings, lastFile;
    void note(const char* what) const
    {
        if (std::FILE* file = settings.empty() ? nullptr : std::fopen(settings.c_str(), "ab")) {
            std::fprintf(file, "%s %s\n", what, lastFile.c_str());
            std::fclose(file);
        }
    }
    ~State() { note("gone"); }
};

State state;

std::string lastPart(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

template <class Value>
int give(void* room, int type, const Value& value)
{
    std::memcpy(room, &value, sizeof value);
    return type;
}

int giveText(void* room, int maxLength, const std::string& text)
{
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(maxLength) - 1);
    std::memcpy(room, text.data(), length);
    static_cast<char*>(room)[length] = '\0';
    return ft_string;
}

// Four bytes of the file at a time, so that more than one piece is needed.
int givePiece(const char* fileName, void* room, int position)
{
    if (position == endOfFullText) {
        state.note("enough");
        return ft_fieldempty;
    }
    char piece[5] = {};
    std::FILE* file = std::fopen(fileName, "rb");
    if (file == nullptr)
        return ft_fileerror;
    std::fseek(file, position, SEEK_SET);
    const std::size_t got = std::fread(piece, 1, 4, file);
    std::fclose(file);
    std::memcpy(room, piece, sizeof piece);
    return got > 0 ? ft_fulltext : ft_fieldempty;
}

}  // namespace

PLUGIN_EXPORT int ContentGetDetectString(char* detectString, int maxLength)
{
    std::snprintf(detectString, static_cast<std::size_t>(maxLength), "EXT=\"SMP\" | EXT=\"TXT\"");
    return 0;
}

PLUGIN_EXPORT int ContentGetSupportedField(int field, char* name, char* units, int maxLength)
{
    if (field < 0 || field >= fieldCount)
        return ft_nomorefields;
    std::snprintf(name, static_cast<std::size_t>(maxLength), "%s", fields[field].name);
    std::snprintf(units, static_cast<std::size_t>(maxLength), "%s", field == 6 ? "red|green" : "");
    return fields[field].type;
}

PLUGIN_EXPORT int ContentGetValue(char* fileName, int field, int unit, void* room, int maxLength, int /*flags*/)
{
    state.lastFile = lastPart(fileName);
    if (state.lastFile.find("crash") != std::string::npos)
        std::abort();
    if (state.lastFile.find("hang") != std::string::npos)
        std::this_thread::sleep_for(std::chrono::hours(1));
    switch (field) {
    case 0:
        return give(room, ft_numeric_32, std::int32_t{-7});
    case 1:
        return give(room, ft_numeric_64, std::int64_t{5'000'000'000});
    case 2:
        return give(room, ft_numeric_floating, 0.25);
    case 3:
        return give(room, ft_date, PluginDate{2021, 3, 4});
    case 4:
        return give(room, ft_time, PluginTime{5, 6, 7});
    case 5:
        return give(room, ft_boolean, std::int32_t{2});
    case 6:
        giveText(room, maxLength, "green");
        return ft_multiplechoice;
    case 7:
        return giveText(room, maxLength, "caf\xE9 " + state.lastFile);
    case 8:
        return givePiece(fileName, room, unit);
    case 9:
        return give(room, ft_datetime, std::int64_t{132'592'032'000'000'000});
    case 10:
        std::memcpy(room, u"weit", sizeof u"weit");
        return ft_stringw;
    case 11:
        std::memset(room, 'x', static_cast<std::size_t>(maxLength));
        return ft_string;
    case 12:
        std::memset(room, 'x', static_cast<std::size_t>(maxLength) + 1);
        return ft_string;
    case 13:
        return ft_fieldempty;
    case 14:
        return giveText(room, maxLength, "dotted");
    case 15:
        return give(room, ft_date, PluginDate{2021, 2, 30});
    default:
        return ft_nosuchfield;
    }
}

PLUGIN_EXPORT void ContentSetDefaultParams(DefaultParameters* parameters)
{
    state.settings = parameters->iniName;
}

PLUGIN_EXPORT void ContentPluginUnloading()
{
    state.note("unloading");
}

}  // namespace kelvane::content_plugin::sample
