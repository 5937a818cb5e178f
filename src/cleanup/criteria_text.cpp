#include "cleanup/criteria_text.h"

#include <map>

#include "base/filled_text.h"
#include "base/utf.h"
#include "engine/scan_summary.h"

namespace kelvane {
namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view lineBreak = "<br>";

constexpr std::pair<const char*, TextId> lines[] = {
    {"<%MODE%>", TextId::criteriaCategory},    {"<%WILD%>", TextId::criteriaMasks},
    {"<%FUZZY%>", TextId::criteriaSimilarity}, {"<%OPTSYS%>", TextId::criteriaProtect},
    {"<%OPTYPE%>", TextId::criteriaSameType},  {"<%OPTSML%>", TextId::criteriaSmall},
    {"<%GREP%>", TextId::criteriaContents},    {"<%PROPS%>", TextId::criteriaProperties},
};

std::string withLineEnds(std::string text)
{
    for (auto at = text.find(lineBreak); at != std::string::npos; at = text.find(lineBreak, at))
        text.replace(at, lineBreak.size(), lineEnd);
    return text;
}

}  // namespace

std::string criteriaText(const CScanNode& definition, const EngineOptions& options, const PathRules& rules,
                         ShellNamespace& shell)
{
    std::map<std::string, std::string> values;
    for (const auto& [tag, value] : scanSummary(definition, options, rules, shell))
        values[tag] = toUtf8(value);
    std::string text;
    for (const auto& [tag, line] : lines)
        text.append(filledText(line, {values[tag]})).append(lineEnd);
    return text.append(filledText(TextId::criteriaFolders))
        .append(lineEnd)
        .append(withLineEnds(values["<%PATHS%>"]))
        .append(lineEnd);
}

}  // namespace kelvane
