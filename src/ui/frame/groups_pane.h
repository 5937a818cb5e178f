// What the list holds in sum: its groups, what could be freed, and the biggest of them.
#pragma once

#include <QWidget>
#include <vector>

#include "results/results_model.h"

class QLabel;
class QTimer;
class QTreeWidget;

namespace kelvane {

class ShellNamespace;
class WindowLink;

struct GroupSummary {
    struct Big {
        std::uint32_t number = 0;
        std::uint64_t files = 0;
        std::uint64_t freed = 0;  // bytes, when its biggest file alone is kept
        ItemId first{};
        QString name;
    };
    std::uint64_t groups = 0;
    std::uint64_t files = 0;  // in them, as the status line counts duplicates
    std::uint64_t freed = 0;
    std::vector<Big> biggest;  // the biggest one first, at most mostBigGroups
};

inline constexpr std::size_t mostBigGroups = 100;

// Hidden items count, removed ones do not.
[[nodiscard]] GroupSummary summaryOf(ResultsModel& model, ShellNamespace& shell);

class GroupsPane final : public QWidget {
    Q_OBJECT

public:
    explicit GroupsPane(WindowLink& link);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void listChanged();
    void ask();
    void show(const GroupSummary& summary);

    WindowLink& link_;
    QLabel* sum_;
    QTreeWidget* biggest_;
    QTimer* timer_;
    std::uint32_t items_ = 0, groups_ = 0;  // as they were last looked at
    bool stale_ = true;
};

}  // namespace kelvane
