#include "results/mark_wizard.h"

#include <gtest/gtest.h>

#include "results/marking_world.h"

namespace kelvane {
namespace {

using testing::MarkingWorld;

struct WizardWorld : MarkingWorld {
    WizardWorld() : MarkingWorld({{"/a/x", 1, 5, 1}, {"/b/x", 1, 9, 2}, {"/b/y", 2, 1, 1}, {"/b/z", 2, 1, 1}}) {}

    [[nodiscard]] CMarkWizardDlg dialog() { return {definition, *windowsPaths, {"C:\\", "D:\\"}, memory}; }
    [[nodiscard]] std::string enabled()
    {
        std::string letters;
        for (const MarkWizardRow& row : CMarkWizardDlg::rows()) {
            const auto label = text(row.label);
            letters += dialog().isEnabled(row.rule) ? static_cast<char>(label[label.find(u'&') + 1]) : '-';
        }
        return letters;
    }
    [[nodiscard]] std::string marked(KeepRule rule, bool answer, const std::string& folder = "/a")
    {
        const auto ask = [&](std::u16string_view) { return ++questions, answer; };
        return dialog().apply(model, {rule, folder, {}}, ports, ask) ? marks() : "refused";
    }

    CScanNode definition;
    MarkWizardMemory memory;
    int questions = 0;
};

TEST(MarkWizard, OffersWhatTellsTheItemsOfAGroupApart)
{
    WizardWorld world;
    EXPECT_EQ(world.enabled(), "bsnofl-") << "no folders";
    EXPECT_EQ(world.marked(KeepRule::under, true), "refused");
    world.definition.roots = "C:\\pictures|c:\\|::{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
    EXPECT_EQ(world.dialog().folders(),
              (std::vector<std::string>{"C:\\pictures", "c:\\", "::{20D04FE0-3AEA-1069-A2D8-08002B30309D}", "D:\\"}));
    world.definition.properties = "System.Title, System.Size";
    EXPECT_EQ(world.enabled(), "--noflu");
    world.definition.properties = "System.DateModified";
    EXPECT_EQ(world.enabled(), "bs--flu");
    world.definition.set(scan_flag::contents, true);
    EXPECT_EQ(world.enabled(), "----flu");
    world.definition = {};
    world.definition.setCategory(Category::folders);
    EXPECT_EQ(world.enabled(), "--nofl-");
}

TEST(MarkWizard, RemembersTheRuleAndTheAnswerAboutHiddenItems)
{
    WizardWorld world;
    const auto hideFirst = [&] { world.model.hide(world.model.order().first(1), hiding_flag::filter); };
    EXPECT_EQ(world.dialog().preselected(), KeepRule::biggest);
    EXPECT_EQ(world.marked(KeepRule::newest, true), "x- -x");
    EXPECT_EQ(world.questions, 0);
    EXPECT_EQ(world.dialog().preselected(), KeepRule::newest);
    hideFirst();
    EXPECT_EQ(world.marked(KeepRule::last, true), "x- x-") << "all were shown";
    hideFirst();
    EXPECT_EQ(world.marked(KeepRule::first, false), "- -x");
    EXPECT_EQ(world.marked(KeepRule::last, true), "- x-");
    EXPECT_EQ(world.questions, 2) << "not asked again after No";
    world.definition.properties = "System.DateModified";
    world.memory.rule = KeepRule::newest;
    EXPECT_EQ(world.dialog().preselected(), KeepRule::biggest);
}

TEST(MarkWizard, TellsBeforeAGroupLosesEveryCopy)
{
    WizardWorld world;
    world.definition.roots = "/a";
    const std::string before = world.marks();
    world.model.hide(world.model.order(), hiding_flag::filter);
    EXPECT_EQ(world.marked(KeepRule::under, true, "/nowhere"), "xx xx");
    EXPECT_EQ(world.questions, 2) << "about hidden items, and about groups that only then were in view";
    world.model.undo();
    EXPECT_EQ(world.marked(KeepRule::under, false, "/nowhere"), "refused");
    EXPECT_EQ(world.marked(KeepRule::under, true, ""), "refused") << "no folder was chosen";
    EXPECT_EQ(world.marks(), before);
    EXPECT_EQ(world.questions, 3);
    world.model.setOrder({world.model.order().begin(), world.model.order().end()}, false);
    EXPECT_EQ(world.marked(KeepRule::newest, true), "refused");
    EXPECT_NE(world.memory.rule, KeepRule::newest);
}

}  // namespace
}  // namespace kelvane
