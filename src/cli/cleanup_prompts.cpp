#include "cli/cleanup_prompts.h"

#include <algorithm>
#include <ostream>

#include "base/filled_text.h"
#include "base/utf.h"
#include "base/words.h"
#include "cli/printable.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// A question may have several lines, and names of files in them.
std::string printableLines(std::u16string_view text)
{
    std::string lines;
    for (const std::string& line : splitWords(toUtf8(text), '\n'))
        lines += (lines.empty() ? "" : "\n") + printable(line);
    return lines;
}

}  // namespace

bool meansYes(std::string_view answer)
{
    std::string word = asciiLower(answer);
    std::erase_if(word, [](char c) { return c == ' ' || c == '\t' || c == '\r'; });
    const std::vector<std::string> known = splitWords(filledText(TextId::answersYes), ' ');
    return word == "y" || word == "yes" || std::find(known.begin(), known.end(), word) != known.end();
}

void tellTrashless(std::span<const TrashlessVolume> volumes, const Console& console)
{
    for (const TrashlessVolume& volume : volumes)
        complain(console,
                 filledText(TextId::trashlessVolume, {bytesFromNative(volume.place.native()), volume.reason,
                                                      countedText(volume.items, TextId::oneFile, TextId::manyFiles)}));
}

ConsoleCleanupQuestions::ConsoleCleanupQuestions(const Console& console, bool answeredAhead, Hooks hooks)
    : console_(console), answeredAhead_(answeredAhead), hooks_(std::move(hooks))
{
}

Trashless ConsoleCleanupQuestions::withoutTrash(std::span<const TrashlessVolume> volumes)
{
    hooks_.beforeWriting();
    tellTrashless(volumes, console_);
    return Trashless::leaveAlone;
}

bool ConsoleCleanupQuestions::confirm(const CleanupSummary& summary)
{
    hooks_.planned(summary.plan);
    if (!canAsk() || summary.plan.commands.empty())
        return true;
    hooks_.beforeWriting();
    hooks_.tellPlan(summary.plan);
    declined_ = !ask(filledText(TextId::goOnQuestion));
    return !declined_;
}

ExternalLink ConsoleCleanupQuestions::linkToExternal(std::u16string_view question)
{
    if (!canAsk())
        return ExternalLink::no;
    const bool yes = ask(printableLines(question));
    return console_.cancel.cancelled() ? ExternalLink::cancel : yes ? ExternalLink::yes : ExternalLink::no;
}

ElevationAnswer ConsoleCleanupQuestions::startElevated(std::u16string_view question)
{
    return {.start = canAsk() && ask(printableLines(question)), .doNotAskAgain = false};
}

bool ConsoleCleanupQuestions::quitAfterProblem(std::u16string_view question)
{
    if (!canAsk() || wentOn_)
        return false;
    wentOn_ = !ask(printableLines(question));
    return !wentOn_;
}

bool ConsoleCleanupQuestions::ask(const std::string& question) const
{
    hooks_.beforeWriting();
    const auto answer = console_.ask(filledText(TextId::askedYesNo, {question}));
    if (!answer)
        console_.err << '\n';
    return answer && !console_.cancel.cancelled() && meansYes(*answer);
}

}  // namespace kelvane
