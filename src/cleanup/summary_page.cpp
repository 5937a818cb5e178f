#include "cleanup/summary_page.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/filled_text.h"
#include "base/utf.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view picture = "<img ";

constexpr std::pair<char, std::string_view> entities[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}};

void replaceAll(std::string& text, std::string_view what, std::string_view with)
{
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

std::string escaped(std::string text)
{
    for (const auto& [character, entity] : entities)
        replaceAll(text, std::string_view(&character, 1), entity);
    return text;
}

std::string paragraph(std::string_view text)
{
    return "<p>" + std::string(text) + "</p>\r\n";
}

std::string words(TextId id)
{
    return escaped(filledText(id));
}

std::string trueOrFalse(bool value)
{
    return words(value ? TextId::wordTrue : TextId::wordFalse);
}

std::string countedFiles(std::uint64_t count)
{
    return countedText(count, TextId::oneFile, TextId::manyFiles);
}

// The tags stand for themselves: no row of text is filled in before it is escaped.
std::string pageTemplate(const std::string& notes)
{
    std::string page = "<html><body><h3>" + words(TextId::cleanupSummaryTitle) + "</h3>\r\n";
    for (const auto& [row, tag] : {std::pair(TextId::summaryMode, "<%MODE%>"),
                                   {TextId::summaryItems, "<%NDUP%>"},
                                   {TextId::summarySize, "<%FSIZE%>"},
                                   {TextId::summaryInFiles, "<%ISFS%>"},
                                   {TextId::summaryUndo, "<%UNDO%>"}})
        page += paragraph(filledText(row, {tag}));
    return page + notes + "<img src=\"question\">\r\n" + paragraph(words(TextId::summaryAsk)) + "</body></html>\r\n";
}

std::string skippedNotes(const CleanupPlan& plan)
{
    std::map<CleanupObstacle, std::uint64_t> counts;
    for (const CleanupSkip& skip : plan.skipped)
        ++counts[skip.why];
    std::string notes;
    for (const auto& [why, count] : counts)
        notes += paragraph(escaped(filledText(TextId::summarySkipped, {countedFiles(count), filledText(textOf(why))})));
    return notes;
}

std::string lossNote(const CleanupPlan& plan)
{
    const auto losing = std::count_if(plan.commands.begin(), plan.commands.end(),
                                      [](const CleanupCommand& command) { return command.loses != 0; });
    if (losing == 0)
        return {};
    return paragraph(escaped(filledText(TextId::summaryLoses, {countedFiles(static_cast<std::uint64_t>(losing))})));
}

std::string notesOn(const CleanupPlan& plan, std::span<const TrashlessVolume> deletedForGood, const SizeWords& size)
{
    const bool later = plan.action == CleanupAction::recycle && deletedForGood.empty();
    std::string notes =
        paragraph(escaped(filledText(later ? TextId::summaryFreesLater : TextId::summaryFrees, {size({plan.frees})})));
    for (const TrashlessVolume& volume : deletedForGood)
        notes += paragraph(escaped(filledText(
            TextId::summaryForGood, {countedFiles(volume.items), toUtf8(displayFromNative(volume.place.native()))})));
    return notes + lossNote(plan) + skippedNotes(plan);
}

}  // namespace

std::string summaryPage(const CleanupPlan& plan, std::span<const TrashlessVolume> deletedForGood, const SizeWords& size)
{
    std::string page = pageTemplate(notesOn(plan, deletedForGood, size));
    const bool links = plan.action == CleanupAction::link;
    replaceAll(page, "<%MODE%>", words(links ? TextId::modeLink : TextId::modeDelete));
    replaceAll(page, "<%NDUP%>", std::to_string(plan.marked.items));
    replaceAll(page, "<%FSIZE%>", size({plan.marked.bytes}));
    replaceAll(page, "<%ISFS%>", trueOrFalse(plan.allInFileSystem));
    replaceAll(page, "<%UNDO%>", trueOrFalse(plan.canBeUndone()));
    return page;
}

std::string plainTextOf(std::string_view page)
{
    std::string text;
    const std::string_view read = page.substr(0, page.find(picture));
    for (std::size_t at = 0; at < read.size(); ++at) {
        if (read[at] != '<') {
            text += read[at];
            continue;
        }
        at = read.find('>', at);
        if (at == std::string_view::npos)
            break;
    }
    for (const auto& [character, entity] : entities)
        if (character != '&')
            replaceAll(text, entity, std::string_view(&character, 1));
    replaceAll(text, "&amp;", "&");
    return text;
}

}  // namespace kelvane
