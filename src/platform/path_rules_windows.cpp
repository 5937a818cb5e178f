#include <algorithm>

#include "base/words.h"
#include "base/wtf8.h"
#include "platform/path_rules.h"

namespace kelvane {
namespace {

// The 40 characters that every parsing name in the computer's own container begins with.
constexpr std::string_view computerPrefix = "::{20d04fe0-3aea-1069-a2d8-08002b30309d}";
static_assert(computerPrefix.size() == 40);

constexpr std::size_t longestPlainPath = 259;  // MAX_PATH without its terminating zero
constexpr std::string_view extendedPrefix = R"(\\?\)";

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isDrive(std::string_view path)
{
    const auto letter = path.empty() ? '\0' : asciiLower(path.substr(0, 1))[0];
    return letter >= 'a' && letter <= 'z' && path.substr(1, 1) == ":";
}

class WindowsPathRules final : public PathRules {
public:
    WindowsPathRules(const TextFolding& folding, const WindowsFolders& folders)
        : folding_(folding), windows_(protectedForm(folders.windows)), programs_(protectedForm(folders.programFiles))
    {
    }

    std::vector<std::string> splitRoots(std::string_view list) const override { return splitWords(list, '|'); }

    std::string joinRoots(const std::vector<std::string>& roots) const override
    {
        std::string list;
        for (const auto& root : roots)
            list += (list.empty() ? "" : "|") + root;
        return list;
    }

    std::string comparable(std::string_view path) const override
    {
        return isAscii(path) ? asciiLower(path) : wtf8FromUnits(folding_.lower(unitsFromWtf8(path)));
    }

    bool rootIsProtected(std::string_view path) const override
    {
        const std::string lower = comparable(path);
        const auto holds = [&](const std::string& folder) {
            return !folder.empty() && lower.find(folder) != std::string::npos;
        };
        return holds(windows_) || holds(programs_);
    }

    bool isProtectedFolder(std::string_view path) const override
    {
        const std::string lower = comparable(path);
        return !lower.empty() && (lower == windows_ || lower == programs_);
    }

    int compareRoots(std::string_view a, std::string_view b) const override
    {
        return comparable(a).compare(comparable(b));
    }

    // The earlier root is looked for anywhere in the later one, so that a drive's root also swallows the parsing names
    // and extended-length paths that lead onto the drive. Lengths are counted in UTF-16 units.
    bool covers(std::string_view a, std::string_view b) const override
    {
        if (a.empty() || b.find(a) == std::string_view::npos)
            return false;
        const std::u16string outer = unitsFromWtf8(a);
        const std::u16string inner = unitsFromWtf8(b);
        return outer.size() < 4 || inner.size() <= outer.size() || inner[outer.size()] == u'\\';
    }

    bool isComputerRoot(std::string_view root) const override { return asciiLower(root).starts_with(computerPrefix); }

    bool isExtendedLength(std::string_view path) const override
    {
        if (!path.starts_with(extendedPrefix))
            return false;
        path.remove_prefix(extendedPrefix.size());
        return isDrive(path) || asciiLower(path.substr(0, 3)) == "unc";
    }

    std::string toExtendedLength(std::string_view path) const override
    {
        if (path.starts_with(':') || unitsFromWtf8(path).size() <= longestPlainPath)
            return std::string(path);
        if (isDrive(path))
            return std::string(extendedPrefix) += path;
        const bool share =
            path.starts_with(R"(\\)") && !path.starts_with(extendedPrefix) && !path.starts_with(R"(\\.\)");
        return share ? (std::string(extendedPrefix) += "UNC") += path.substr(1) : std::string(path);
    }

    bool isDriveRoot(std::string_view path) const override
    {
        return path.size() == 3 && isDrive(path) && path[2] == '\\';
    }

    char separator() const override { return '\\'; }

    bool samePath(std::string_view a, std::string_view b) const override
    {
        return a == b || comparable(a) == comparable(b);
    }

private:
    std::string protectedForm(const std::string& folder) const
    {
        std::string lower = comparable(folder);
        while (lower.ends_with('\\'))
            lower.pop_back();
        return lower;
    }

    const TextFolding& folding_;
    std::string windows_;
    std::string programs_;
};

}  // namespace

std::unique_ptr<PathRules> makeWindowsPathRules(const TextFolding& folding, WindowsFolders folders)
{
    return std::make_unique<WindowsPathRules>(folding, folders);
}

}  // namespace kelvane
