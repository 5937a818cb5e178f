// What a person is asked about links.
#pragma once

#include <filesystem>
#include <optional>

#include "cleanup/cleanup_fault.h"
#include "cleanup/cleanup_questions.h"
#include "platform/shell_item.h"

namespace kelvane {

class LinkQuestions {
public:
    explicit LinkQuestions(CleanupQuestions& questions) : questions_(questions) {}

    // Whether items may be linked to files on external drives; one answer holds for the whole run.
    [[nodiscard]] ExternalLink mayLeadOut(const ShellItem& kept);
    // After a problem: true ends the run.
    [[nodiscard]] bool quits(const ShellItem& item, const CleanupFailure& problem);

private:
    CleanupQuestions& questions_;
    std::optional<ExternalLink> leadOut_;
};

}  // namespace kelvane
