// A person whose answers about a clean-up a test decides, and what they were asked and told.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/utf.h"
#include "cleanup/cleanup_questions.h"

namespace kelvane::testing {

class FakeCleanupQuestions final : public CleanupQuestions {
public:
    bool includeHidden(std::u16string_view question) override { return ask(question), hiddenToo; }
    void warn(std::u16string_view text) override { warnings.push_back(toUtf8(text)); }
    CleanupChoice choose(bool linksOffered) override
    {
        ask(linksOffered ? u"choose, links offered" : u"choose");
        return choice;
    }
    void saveResults() override { ++saved; }
    Trashless withoutTrash(std::span<const TrashlessVolume> volumes) override
    {
        ask(u"without trash");
        trashless.assign(volumes.begin(), volumes.end());
        return trashlessAnswer;
    }
    bool confirm(const CleanupSummary& summary) override
    {
        summaries.push_back(summary.html);
        return confirmed;
    }
    ExternalLink linkToExternal(std::u16string_view question) override { return ask(question), external; }
    ElevationAnswer startElevated(std::u16string_view question) override { return ask(question), elevation; }
    bool quitAfterProblem(std::u16string_view question) override { return ask(question), quits; }
    bool confirmStop(std::u16string_view question) override
    {
        ask(question);
        if (!stops && carryOn)
            carryOn();
        return stops;
    }
    void showStatus(std::u16string_view text) override { statuses.push_back(toUtf8(text)); }
    bool notify(std::u16string_view text) override
    {
        notices.push_back(toUtf8(text));
        return notShownAgain;
    }

    // Answers.
    bool hiddenToo = false;
    CleanupChoice choice = CleanupChoice::nothing;
    Trashless trashlessAnswer = Trashless::leaveAlone;
    bool confirmed = true;
    ExternalLink external = ExternalLink::no;
    ElevationAnswer elevation;
    bool quits = false;
    bool stops = true;
    std::function<void()> carryOn;  // when the answer is not to stop: resets the test's flag
    bool notShownAgain = false;

    // What was asked and told, in UTF-8.
    std::vector<std::string> asked, warnings, summaries, statuses, notices;
    std::vector<TrashlessVolume> trashless;
    int saved = 0;

private:
    void ask(std::u16string_view question) { asked.push_back(toUtf8(question)); }
};

}  // namespace kelvane::testing
