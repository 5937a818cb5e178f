#include "app/file_comparison_tool.h"

#include <algorithm>
#include <vector>

#include "app/text_lists.h"
#include "base/words.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr bool programsHaveExtension = std::filesystem::path::preferred_separator == '\\';
constexpr std::string_view toolMask = programsHaveExtension ? "*diff*.exe" : "*diff*";

bool isExecutable(const std::filesystem::path& file)
{
    using std::filesystem::perms;
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    return programsHaveExtension || (!error && (status.permissions() & perms::owner_exec) != perms::none);
}

}  // namespace

std::u16string findComparisonTool(const std::filesystem::path& folder, FileSystem& files)
{
    std::vector<NativeString> names;
    static_cast<void>(files.enumerate(folder, Links::followed, [&](const DirectoryEntry& entry) {
        const bool matches = wildcardMatch(toolMask, asciiLower(nameBytes(entry.name)));
        if (matches && entry.info.kind == FileKind::regular)
            names.emplace_back(entry.name);
        return true;
    }));
    std::sort(names.begin(), names.end());
    const auto tool =
        std::find_if(names.begin(), names.end(), [&](const NativeString& name) { return isExecutable(folder / name); });
    return tool != names.end() ? textOfPath(folder / *tool) : std::u16string{};
}

}  // namespace kelvane
