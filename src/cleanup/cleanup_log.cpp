#include "cleanup/cleanup_log.h"

#include <algorithm>
#include <cstdio>
#include <span>

#include "base/filled_text.h"
#include "base/utf.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr unsigned mostLogNames = 100;

// A name may hold line ends; on a line of its own it could pass for another entry.
std::string oneLine(std::u16string text)
{
    const auto isControl = [](char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029; };
    std::replace_if(text.begin(), text.end(), isControl, u'\uFFFD');
    return toUtf8(text);
}

std::string pathText(const ShellItem& item)
{
    return oneLine(displayFromNative(item.fullName()));
}

char letterOf(const ItemOutcome& outcome)
{
    if (outcome.result != ItemResult::done)
        return '!';
    if (outcome.link == LinkKind::clone)
        return 'C';
    return outcome.link == LinkKind::symbolic ? 'S' : 'H';
}

std::string hexadecimal(std::uint32_t number)
{
    char digits[9];
    std::snprintf(digits, sizeof digits, "%x", static_cast<unsigned>(number));
    return digits;
}

std::filesystem::path logPath(std::uint32_t ticks, const Places& places)
{
    char name[32];
    std::snprintf(name, sizeof name, "kv_cleanupLog%08x.log", static_cast<unsigned>(ticks));
    return places.temporaryFolder() / name;
}

Status writeTo(OutputFile& file, std::string_view contents)
{
    const Status written = file.write(std::as_bytes(std::span(contents)));
    return written ? file.close() : written;
}

WrittenLog writeNew(std::string_view contents, FileOutput& output, const Places& places, const Clock& clock)
{
    const auto ticks = static_cast<std::uint32_t>(clock.ticks());
    for (std::uint32_t attempt = 0;; ++attempt) {
        const std::filesystem::path path = logPath(ticks + attempt, places);
        auto file = output.create(path);
        if (file) {
            const Status written = writeTo(**file, contents);
            return {path, written ? std::nullopt : std::optional(written.error())};
        }
        if (file.error().kind != ErrorKind::exists || attempt == mostLogNames)
            return {path, file.error()};
    }
}

}  // namespace

CleanupLog::CleanupLog(CleanupAction action, std::string_view criteria, std::string_view summary) : action_(action)
{
    line("*** search for ERROR to see any problems ***");
    line("");
    text_.append(criteria).append(summary);
    line("");
    line("FILES HANDLED ----");
    line("");
}

void CleanupLog::group(const ShellItem& original)
{
    line(pathText(original));
}

void CleanupLog::item(const ItemOutcome& outcome, const ShellItem& item)
{
    const bool failed = outcome.result == ItemResult::failed;
    if (!failed && outcome.result != ItemResult::done)
        return;
    const std::string prefix = action_ == CleanupAction::link ? std::string("\t[") + letterOf(outcome) + "] " : "";
    line(prefix + pathText(item));
    if (failed)
        failure(outcome);
}

// The code of the system says it all for a removal; what was refused by this program has none.
void CleanupLog::failure(const ItemOutcome& outcome)
{
    const CleanupFailure failure = outcome.failure.value_or(CleanupFailure{});
    const bool removal = action_ != CleanupAction::link;
    const auto code =
        static_cast<std::uint32_t>(removal && outcome.code != 0 ? outcome.code : failure.error.systemCode);
    std::string words = "\tERROR: x" + hexadecimal(code);
    if (!removal || code == 0 || failure.fault != CleanupFault::system)
        words += " " + oneLine(toUtf16(textOf(failure)));
    line(words);
}

void CleanupLog::leftAlone(const CleanupPlan& plan, const ResultsModel& model)
{
    if (plan.skipped.empty())
        return;
    line("");
    line("LEFT ALONE ----");
    line("");
    for (const CleanupSkip& skip : plan.skipped) {
        line(pathText(model.item(skip.item).file.item()));
        line("\t" + filledText(textOf(skip.why)));
    }
}

void CleanupLog::end(const PassOutcome& outcome, const CleanupPlan& plan, const ResultsModel& model)
{
    if (outcome.cancel == CancelState::linkRunSettled)
        line("!ESC!");
    leftAlone(plan, model);
    if (const std::uint64_t count = outcome.errors + plan.skipped.size(); count != 0)
        line("\r\nItems with errors or skipped: " + std::to_string(count));
}

WrittenLog writeCleanupLog(std::string_view text, const std::filesystem::path& wanted, FileOutput& output,
                           const Places& places, const Clock& clock)
{
    const std::string contents = std::string(utf8Mark) + std::string(text);
    if (wanted.empty())
        return writeNew(contents, output, places, clock);
    const Status written = replaceContents(output, wanted, std::as_bytes(std::span(contents)));
    return {wanted, written ? std::nullopt : std::optional(written.error())};
}

}  // namespace kelvane
