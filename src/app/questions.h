// What the application core asks and tells a person. The desktop program shows windows, the console program prints, and
// tests answer.
#pragma once

#include <string_view>

namespace kelvane {

enum class InterfaceMode { advanced, standard, beginner };

struct NoticeAnswer {
    bool yes = false;
    bool doNotShowAgain = false;
};

// Called on the thread that needs the answer; may wait for the person.
class Questions {
public:
    virtual ~Questions() = default;

    // The first run's choice; `standard` when the person closes it, or when nobody can be asked.
    [[nodiscard]] virtual InterfaceMode askInterfaceMode() = 0;

    // Tells of a failure; the texts come from the string table with their %1 filled in.
    virtual void showError(std::u16string_view text) = 0;

    [[nodiscard]] virtual bool askYesNo(std::u16string_view text) = 0;

    // A question that can be put off for ever.
    [[nodiscard]] virtual NoticeAnswer notify(std::u16string_view text) = 0;

    // A short text for the status line.
    virtual void showStatus(std::u16string_view text) = 0;
};

}  // namespace kelvane
