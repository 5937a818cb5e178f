#include "ui/clean/wizard_marks.h"

#include <algorithm>

#include "app/folder_forms.h"
#include "base/desktop_texts/clean.h"
#include "base/utf.h"
#include "platform/native_text.h"
#include "ui/clean/boxes.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// Only asked for where the whole computer was searched, which systems with drive letters have.
std::vector<std::string> drivesOf(Workbench& bench, const std::string& roots)
{
    std::vector<std::string> drives;
    const PathRules& paths = bench.platform().paths();
    const auto searched = paths.splitRoots(roots);
    if (std::none_of(searched.begin(), searched.end(),
                     [&](const std::string& root) { return paths.isComputerRoot(root); }))
        return drives;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const std::string root = std::string(1, letter) + ":\\";
        if (bench.platform().files().volumeFacts(root))
            drives.push_back(root);
    }
    return drives;
}

MarkingPorts portsOf(Workbench& bench)
{
    return {bench.session()->access.source, bench.platform().paths()};
}

// A folder is known to the list by one of its names only, and a person may have picked it by another one.
MarkingPlan asListed(Workbench& bench, MarkingPlan plan)
{
    const PathRules& paths = bench.platform().paths();
    const auto& definition = bench.session()->definition;
    const auto roots = definition ? paths.splitRoots(definition->roots) : std::vector<std::string>();
    const auto formsOf = [&](const std::string& folder) { return folderForms(nativeFromBytes(folder), roots); };
    for (auto* const folders : {&plan.preferredFolders, &plan.protectedFolders}) {
        std::vector<std::string> all;
        for (const std::string& folder : *folders)
            for (std::string& form : formsOf(folder))
                all.push_back(std::move(form));
        *folders = std::move(all);
    }
    for (MarkingRule& rule : plan.chain) {
        if (rule.rule != KeepRule::under || rule.folder.empty())
            continue;
        auto forms = formsOf(rule.folder);
        forms.front() = rule.folder;  // as it is: a separator at its end means something to the rule
        rule.folder = formInList(forms, bench.results(), paths);
    }
    return plan;
}

QString protectedText(std::uint32_t items)
{
    return items == 0 ? QString() : toQt(countedText(items, TextId::oneProtectedStays, TextId::manyProtectedStay));
}

}  // namespace

WizardFacts wizardFacts(Workbench& bench)
{
    WizardFacts facts;
    if (const ListSession* const session = bench.session(); session != nullptr && session->definition)
        facts.definition = *session->definition;
    facts.drives = drivesOf(bench, facts.definition.roots);
    return facts;
}

WizardEffect previewOf(Workbench& bench, const MarkingPlan& plan)
{
    if (bench.session() == nullptr)
        return {shown(say::wizardMarksNothing), {}, false};
    const auto preview = previewMarks(bench.results(), asListed(bench, plan), portsOf(bench));
    if (!preview)
        return {toQt(preview.error().detail), {}, false};
    WizardEffect effect{{}, toQt(lossWarning(*preview)), true};
    if (preview->marked.items == 0)
        effect.text = shown(say::wizardMarksNothing);
    else
        effect.text = shown(say::wizardMarks, {countedItems(preview->marked.items).toStdString(),
                                               sizeShown(preview->marked.bytes).toStdString(),
                                               countedGroups(preview->groups).toStdString()});
    if (const QString kept = protectedText(preview->protectedItems); !kept.isEmpty())
        effect.text += QLatin1Char('\n') + kept;
    return effect;
}

void markBy(Workbench& bench, const MarkingPlan& plan, const WizardFacts& facts, MarkWizardMemory memory)
{
    if (bench.session() == nullptr || bench.job() != Job::none)
        return bench.tell(text(say::otherWorkRuns));
    CMarkWizardDlg wizard(facts.definition, bench.platform().paths(), facts.drives, memory);
    const auto ask = [&](std::u16string_view question) {
        return askYesNo(bench, "wizardQuestion", toQt(CMarkWizardDlg::title()), toQt(question));
    };
    const auto marked = wizard.apply(bench.results(), asListed(bench, plan), portsOf(bench), ask);
    bench.toMain(
        [hidden = memory.hiddenStayHidden](WindowLink& link) { link.desktop().wizard.hiddenStayHidden = hidden; });
    if (marked)
        bench.tell(fromQt(shown(say::wizardMarked, {countedItems(marked->marked.items).toStdString(),
                                                    sizeShown(marked->marked.bytes).toStdString()})));
    else if (marked.error().kind != ErrorKind::cancelled)
        bench.tell(toUtf16(marked.error().detail));
}

}  // namespace kelvane
