#include "app/notices.h"

#include "base/text_table.h"

namespace kelvane {
namespace {

constexpr std::uint32_t crashesPerOffer = 5;
constexpr std::int64_t ticksPerDay = 864'000'000'000;
constexpr std::int64_t daysBetweenReminders = 90;

bool notify(TextId question, std::uint32_t offBit, Settings& settings, Questions& questions)
{
    if ((settings.noticesOff & offBit) != 0)
        return false;
    const NoticeAnswer answer = questions.notify(text(question));
    if (answer.doNotShowAgain)
        settings.noticesOff |= offBit;
    return answer.yes;
}

}  // namespace

bool countCrash(Settings& settings, Questions& questions)
{
    ++settings.crashes;
    return settings.crashes % crashesPerOffer == 0 &&
           notify(TextId::crashMailOffer, notice_off::crashMail, settings, questions);
}

bool remindOfUpdates(Settings& settings, FileTime now, Questions& questions)
{
    return now.ticks - settings.lastUpdateCheck.ticks > daysBetweenReminders * ticksPerDay &&
           notify(TextId::updateReminder, notice_off::updateReminder, settings, questions);
}

}  // namespace kelvane
