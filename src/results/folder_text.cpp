#include "results/folder_text.h"

#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::size_t prefixLength = 4;  // "\\?\"

bool isShare(std::string_view path)
{
    return path.size() > 3 && path[1] != ':' && path[3] == '\\';
}

// Comparable forms lose separators at the end on some systems, and the location rule asks for them.
std::string comparableText(std::string_view folder, const PathRules& rules)
{
    std::string text = rules.comparable(withoutLongPrefix(folder, rules));
    if (folder.ends_with(rules.separator()) && !text.ends_with(rules.separator()))
        text += rules.separator();
    return text;
}

}  // namespace

std::string withoutLongPrefix(std::string_view path, const PathRules& rules)
{
    if (!rules.isExtendedLength(path))
        return std::string(path);
    path.remove_prefix(prefixLength);
    return isShare(path) ? "\\" + std::string(path.substr(3)) : std::string(path);
}

std::string comparablePath(const ShellItem& item, const PathRules& rules)
{
    return rules.comparable(withoutLongPrefix(bytesFromNative(item.fullName()), rules));
}

FolderText::FolderText(std::string_view folder, const PathRules& rules)
    : text_(comparableText(folder, rules)), folder_(text_), separator_(rules.separator())
{
    while (folder_.ends_with(separator_))
        folder_.pop_back();
}

bool FolderText::keeps(std::string_view path) const
{
    if (text_.empty() || path.find(text_) == std::string_view::npos)
        return false;
    return path.size() == text_.size() || text_.back() == separator_ || path[text_.size()] == separator_;
}

bool FolderText::holds(std::string_view path) const
{
    if (text_.empty() || !path.starts_with(folder_))
        return false;
    return path.size() == folder_.size() || path[folder_.size()] == separator_;
}

}  // namespace kelvane
