// What the quick filter looks into: a folded text an item, all in one buffer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "props/property_source.h"
#include "results/results_model.h"

namespace kelvane {

// Texts are made on first use and kept until forget(). The source must outlive this.
class SearchTexts {
public:
    SearchTexts(ResultsModel& model, const PropertySource& properties) : model_(model), properties_(properties) {}

    // One column is searched as it is; of several, each text is preceded by a blank. Whether these are others than
    // before.
    bool use(std::vector<PropRef> columns);
    void forget();

    // The views hold until the next call that is not const.
    void makeAll();
    [[nodiscard]] std::string_view of(ItemId id) const;  // empty before makeAll()

private:
    void append(ItemId id);

    ResultsModel& model_;
    const PropertySource& properties_;
    std::vector<PropRef> columns_;
    std::string bytes_;
    std::vector<std::size_t> ends_;  // by id
    Ref<const ShellItem> first_;     // of the list that the texts are of
};

}  // namespace kelvane
