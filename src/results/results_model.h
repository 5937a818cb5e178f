// The groups that a scan found, as the list that a person works on.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engine/group_sink.h"
#include "platform/shell_item.h"

namespace kelvane {

struct ResultGroup;

struct ResultItem {
    static constexpr std::uint16_t ticked = 0x8;  // marked for clean-up; other bits belong to the view

    Ref<const ShellItem> file;
    std::uint32_t groupNumber = 0;
    std::uint16_t state = 0;
    ResultGroup* group = nullptr;

    [[nodiscard]] bool isTicked() const { return (state & ticked) != 0; }
};

struct ResultGroup {
    std::uint32_t number = 0;
    bool approximate = false;
    std::vector<ResultItem*> items;  // in the order handed over
};

// Owns items and groups for the life of a results window; used by that window's thread. Items of one group stand next
// to one another. Addresses of items and groups stay valid until they are removed.
class ResultsModel final : public GroupSink {
public:
    [[nodiscard]] Status add(const Candidate& file, std::uint32_t flags) override;
    void clear();

    [[nodiscard]] const std::vector<std::unique_ptr<ResultGroup>>& groups() const { return groups_; }
    [[nodiscard]] const std::vector<std::unique_ptr<ResultItem>>& items() const { return items_; }

private:
    std::vector<std::unique_ptr<ResultItem>> items_;
    std::vector<std::unique_ptr<ResultGroup>> groups_;
};

}  // namespace kelvane
