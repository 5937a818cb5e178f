#include "cli/clean_lines.h"

#include "base/filled_text.h"
#include "base/size_text.h"
#include "cli/printable.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

TextId lineOf(const CleanupCommand& command)
{
    if (command.action == CleanupAction::recycle)
        return TextId::planTrash;
    if (command.action == CleanupAction::deletePermanently)
        return TextId::planDelete;
    switch (command.link) {
    case LinkKind::hard:
        return TextId::planHardLink;
    case LinkKind::symbolic:
        return TextId::planSymbolicLink;
    case LinkKind::clone:
        return TextId::planClone;
    default:
        return TextId::planLink;
    }
}

}  // namespace

std::string pathOf(const ResultsModel& results, ItemId id)
{
    return bytesFromNative(results.item(id).file.item().fullName());
}

std::string commandLine(const ResultsModel& results, const CleanupCommand& command)
{
    return printable(filledText(
        lineOf(command), {pathOf(results, command.item), pathOf(results, command.kept), sizeText({command.frees})}));
}

std::string aloneLine(const ResultsModel& results, ItemId item, std::string_view why)
{
    return printable(filledText(TextId::planSkipped, {pathOf(results, item), why}));
}

Json pathJson(std::string_view bytes)
{
    Json object;
    addPath(object, bytes);
    return object;
}

Json skipJson(const ResultsModel& results, CleanupSkip skip)
{
    Json line = pathJson(pathOf(results, skip.item));
    line["why"] = nameOf(skip.why);
    return line;
}

}  // namespace kelvane
