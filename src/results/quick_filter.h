// Narrowing the results to the items whose text contains what was typed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "results/search_texts.h"

namespace kelvane {

enum class FilterOutcome {
    done,
    nothingLeft,  // a beep is due: no item is visible
};

// Kept as long as the list; used by its thread. The model and the source must outlive it.
class QuickFilter {
public:
    QuickFilter(ResultsModel& model, const PropertySource& properties);

    // Which columns are searched: the first one of the list, or all. A change forgets the texts that were made, and
    // the next text is another filter.
    void searchIn(std::vector<PropRef> columns);

    // Hides what does not contain the text, case aside. When the text holds the active one, only what is in view is
    // looked at; otherwise everything is shown first. An empty text shows everything.
    FilterOutcome apply(std::u16string_view text);

    // Everything comes back, whyever it is hidden.
    void showAll();

    // The texts are read anew at the next use: for a list whose values changed.
    void forgetTexts() { texts_.forget(); }

private:
    [[nodiscard]] bool isActive() const { return (model_.hidingFlags() & hiding_flag::filter) != 0; }

    ResultsModel& model_;
    const PropertySource& properties_;
    SearchTexts texts_;
    std::string active_;    // folded; in force while the model says that a filter is
    bool narrows_ = false;  // the active text went by the columns in use
};

// Whether so many typed characters are enough to filter by: from the number in the settings on, and none always.
[[nodiscard]] bool filterApplies(std::u16string_view typed, std::uint32_t charactersToFilter);

// Leaves only items with one of these tags in view (noTag: those without); gives the number of items that went.
std::uint32_t showOnlyTags(ResultsModel& model, const std::vector<std::uint8_t>& tags);

}  // namespace kelvane
