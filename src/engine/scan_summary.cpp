#include "engine/scan_summary.h"

#include "base/text_table.h"
#include "base/utf.h"
#include "engine/criteria.h"
#include "engine/message_text.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::size_t longestRoot = 30;

std::u16string trueOrFalse(bool value)
{
    return std::u16string(text(value ? TextId::wordTrue : TextId::wordFalse));
}

std::u16string modeText(const CScanNode& definition, const EngineOptions& options)
{
    const auto index = static_cast<std::size_t>(definition.category());
    if (index >= options.categories.size())
        return {};
    const auto& name = options.categories[index].name;
    return definition.category() == Category::folders ? u"(" + name + u")" : name;
}

// Drives and shell folders have parsing names that say little; their display names are what people know them by.
std::u16string rootText(const std::string& root, const PathRules& rules, ShellNamespace& shell)
{
    if (rules.isDriveRoot(root) || root.starts_with("::")) {
        if (const auto item = shell.parse(nativeFromBytes(root)))
            return shell.displayName(**item);
    }
    return std::u16string(cutTo(toUtf16(root), longestRoot));
}

std::u16string pathsText(const CScanNode& definition, const PathRules& rules, ShellNamespace& shell)
{
    std::u16string lines = toUtf16(definition.extraRootsLine);
    for (const auto& root : rules.splitRoots(definition.roots)) {
        if (!lines.empty())
            lines += u"<br>";
        if (definition.has(scan_flag::subfolders))
            lines += u"[+] ";
        lines += rootText(root, rules, shell);
    }
    return lines;
}

std::u16string propertiesText(std::string names)
{
    constexpr std::string_view prefix = "System.";
    for (auto at = names.find(prefix); at != std::string::npos; at = names.find(prefix, at))
        names.erase(at, prefix.size());
    return toUtf16(names);
}

}  // namespace

std::vector<std::pair<std::string, std::u16string>>
scanSummary(const CScanNode& definition, const EngineOptions& options, const PathRules& rules, ShellNamespace& shell)
{
    return {
        {"<%MODE%>", modeText(definition, options)},
        {"<%WILD%>", toUtf16(masksInForce(definition, options))},
        {"<%FUZZY%>", decimal(definition.effectiveSimilarity()) + u" %"},
        {"<%OPTSYS%>", trueOrFalse(definition.has(scan_flag::protect))},
        {"<%OPTYPE%>", trueOrFalse(definition.has(scan_flag::sameType))},
        {"<%OPTSML%>", trueOrFalse(definition.has(scan_flag::ignoreSmall))},
        {"<%GREP%>", trueOrFalse(definition.has(scan_flag::contents))},
        {"<%PATHS%>", pathsText(definition, rules, shell)},
        {"<%PROPS%>", propertiesText(definition.properties)},
    };
}

}  // namespace kelvane
