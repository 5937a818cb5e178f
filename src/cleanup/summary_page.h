// The page that a person sees before anything happens.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/size_text.h"
#include "cleanup/cleanup_plan.h"
#include "cleanup/cleanup_questions.h"

namespace kelvane {

// HTML in UTF-8, in the language in force, from a template whose tags are filled in everywhere: "<%MODE%>", "<%NDUP%>",
// "<%FSIZE%>", "<%ISFS%>", "<%UNDO%>". Below them stands what else the plan holds: what comes free, what is left alone,
// what links do not keep, and the volumes where deletion is final.
[[nodiscard]] std::string summaryPage(const CleanupPlan& plan, std::span<const TrashlessVolume> deletedForGood,
                                      const SizeWords& size = sizeText);

// The page as plain text: up to its first picture, without tags.
[[nodiscard]] std::string plainTextOf(std::string_view page);

}  // namespace kelvane
