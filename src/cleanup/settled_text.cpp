#include "cleanup/settled_text.h"

#include "base/filled_text.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

std::string pathText(const std::filesystem::path& path)
{
    return bytesFromNative(path.native());
}

std::string unsettledLine(const std::string& number, const Unsettled& item)
{
    const std::string reason = textOf(item.failure);
    return item.left.empty()
               ? filledText(TextId::unsettledItem, {number, pathText(item.item), reason})
               : filledText(TextId::unsettledBeside, {number, pathText(item.item), reason, pathText(item.left)});
}

}  // namespace

std::vector<std::string> settledLines(const SettledRun& run)
{
    std::vector<std::string> lines;
    const std::string number = std::to_string(static_cast<std::uint32_t>(run.number));
    if (run.completed + run.takenBack > 0)
        lines.push_back(
            filledText(TextId::settledRun, {number, std::to_string(run.completed), std::to_string(run.takenBack)}));
    for (const Unsettled& item : run.unsettled)
        lines.push_back(unsettledLine(number, item));
    if (run.damaged)
        lines.push_back(filledText(TextId::settledDamaged, {number}));
    return lines;
}

}  // namespace kelvane
