// Rules that tick all copies but one of each group, at one click.
#include "base/desktop_texts/list.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "results/mark_wizard.h"
#include "results/marking_rules.h"
#include "ui/core/shown_values.h"
#include "ui/core/window_link.h"
#include "ui/list/list_commands.h"

namespace kelvane {
namespace {

struct RuleRow {
    KeepRule rule;
    const char* name;
    TextId label;
    bool inToolbar;
};

void keepBy(WindowLink& link, KeepRule rule)
{
    link.run([rule](Workbench& bench) {
        if (bench.session() == nullptr)
            return;
        if (bench.job() != Job::none)  // a list that still grows has no oldest one
            return bench.tell(text(desktop_text::listBusy));
        MarkingPlan plan;
        plan.chain.push_back({rule, {}, {}});
        const auto marked =
            applyMarks(bench.results(), plan, {bench.session()->access.source, bench.platform().paths()});
        bench.tell(toUtf16(marked ? filledText(desktop_text::listRuleDone, {std::to_string(marked->marked.items),
                                                                            shownSizeText({marked->marked.bytes})})
                                  : marked.error().detail));
    });
}

}  // namespace

void installQuickRules(const FrameParts& parts)
{
    namespace say = desktop_text;
    QMenu* const menu = parts.commands.addSubmenu(MenuId::mark, "mark.quickRules", say::listQuickRules);
    for (const RuleRow& row : {RuleRow{KeepRule::newest, "mark.keepNewest", say::listKeepNewest, true},
                               RuleRow{KeepRule::oldest, "mark.keepOldest", say::listKeepOldest, true},
                               RuleRow{KeepRule::biggest, "mark.keepBiggest", say::listKeepBiggest, false},
                               RuleRow{KeepRule::first, "mark.keepFirst", say::listKeepFirst, false}})
        parts.commands.add({.name = row.name,
                            .label = row.label,
                            .menu = MenuId::mark,
                            .run = [&link = parts.link, rule = row.rule] { keepBy(link, rule); },
                            .when = when::hasItems | when::idle,
                            .inToolbar = row.inToolbar,
                            .submenu = menu});
}

}  // namespace kelvane
