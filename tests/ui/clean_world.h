// A window with groups of equal files, for tests of marking and clean-up.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QTest>

#include "support/paths.h"
#include "support/ui/desktop_world.h"

namespace kelvane::testing {

// Two groups, of three and of two files; all are links to nothing and hold the same.
class CleanWorld {
public:
    explicit CleanWorld(bool expert = true) : world(planFor(expert)) { load({{"a1", "a2", "a3"}, {"b1", "b2"}}); }

    void load(const std::vector<std::vector<std::string>>& groups)
    {
        world.loadList(groups);
        world.onWindowThread([this](Workbench& bench) {
            CScanNode definition;
            definition.properties = "System.Size";
            definition.set(scan_flag::contents, true);
            definition.roots = bytesFromNative(world.tree.path("files").native());
            bench.session()->definition = definition;
        });
    }

    void tick(const std::vector<std::string>& names)
    {
        world.onWindowThread([&](Workbench& bench) {
            std::vector<ItemId> items;
            bench.results().forEachItem([&](ItemId id) {
                if (std::find(names.begin(), names.end(), nameOf(bench, id)) != names.end())
                    items.push_back(id);
            });
            bench.results().mark(items, Mark::ticked, true);
        });
    }

    std::vector<std::string> names(const std::function<bool(const ResultItem&)>& wanted)
    {
        return world.ask<std::vector<std::string>>([&](Workbench& bench) {
            std::vector<std::string> found;
            bench.results().forEachRow([&](ItemId id) {
                if (wanted(bench.results().item(id)))
                    found.push_back(nameOf(bench, id));
            });
            return found;
        });
    }
    std::vector<std::string> ticked()
    {
        return names([](const ResultItem& item) { return item.isTicked(); });
    }
    std::vector<std::string> inView()
    {
        return names([](const ResultItem&) { return true; });
    }

    // Waits for a dialog and clicks one of its buttons.
    bool click(const char* dialog, const char* button)
    {
        auto* const shown = world.await<QWidget>(dialog);
        auto* const found = shown ? shown->findChild<QAbstractButton*>(QString::fromLatin1(button)) : nullptr;
        if (found == nullptr || !found->isEnabled())
            return false;
        found->click();
        return true;
    }
    bool answer(const char* box, QMessageBox::StandardButton button)
    {
        auto* const shown = world.await<QMessageBox>(box);
        if (shown == nullptr)
            return false;
        shown->button(button)->click();
        return true;
    }
    bool escape(const char* dialog)
    {
        auto* const shown = world.await<QWidget>(dialog);
        if (shown == nullptr)
            return false;
        QTest::keyClick(shown, Qt::Key_Escape);
        return true;
    }
    // The job that was begun is over, and the list known as it stands.
    bool isOver()
    {
        const bool over = waitUntil([&] { return world.link().job() == Job::none; });
        world.onWindowThread([](Workbench&) {});
        return over;
    }
    [[nodiscard]] bool exists(const std::string& name) const
    {
        return std::filesystem::exists(world.tree.path("files/" + name));
    }
    [[nodiscard]] bool allExist() const
    {
        return exists("a1") && exists("a2") && exists("a3") && exists("b1") && exists("b2");
    }

    DesktopWorld world;

private:
    static WorldPlan planFor(bool expert)
    {
        WorldPlan plan;
        plan.change = [expert](Settings& settings) {
            settings.flags = expert ? settings.flags | settings_flag::expert : settings.flags & ~settings_flag::expert;
            settings.flags |= settings_flag::cleanupLog;
        };
        return plan;
    }
    static std::string nameOf(Workbench& bench, ItemId id)
    {
        return bytesFromNative(bench.results().item(id).file.item().path().filename().native());
    }
};

}  // namespace kelvane::testing
