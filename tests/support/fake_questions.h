// A person whose answers a test decides, and what they were asked and told.
#pragma once

#include <string>
#include <vector>

#include "app/questions.h"

namespace kelvane::testing {

class FakeQuestions final : public Questions {
public:
    InterfaceMode askInterfaceMode() override
    {
        ++modeQuestions;
        return mode;
    }
    void showError(std::u16string_view text) override { errors.emplace_back(text); }
    bool askYesNo(std::u16string_view text) override
    {
        asked.emplace_back(text);
        return yes;
    }
    NoticeAnswer notify(std::u16string_view text) override
    {
        notices.emplace_back(text);
        return notice;
    }
    void showStatus(std::u16string_view text) override { statuses.emplace_back(text); }

    InterfaceMode mode = InterfaceMode::standard;
    bool yes = false;
    NoticeAnswer notice;

    int modeQuestions = 0;
    std::vector<std::u16string> errors;
    std::vector<std::u16string> asked;
    std::vector<std::u16string> notices;
    std::vector<std::u16string> statuses;
};

}  // namespace kelvane::testing
