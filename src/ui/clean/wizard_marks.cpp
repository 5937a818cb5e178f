#include "ui/clean/wizard_marks.h"

#include <algorithm>

#include "base/desktop_texts/clean.h"
#include "base/utf.h"
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
    const auto preview = previewMarks(bench.results(), plan, portsOf(bench));
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
    const auto marked = wizard.apply(bench.results(), plan, portsOf(bench), ask);
    bench.toMain(
        [hidden = memory.hiddenStayHidden](WindowLink& link) { link.desktop().wizard.hiddenStayHidden = hidden; });
    if (marked)
        bench.tell(fromQt(shown(say::wizardMarked, {countedItems(marked->marked.items).toStdString(),
                                                    sizeShown(marked->marked.bytes).toStdString()})));
    else if (marked.error().kind != ErrorKind::cancelled)
        bench.tell(toUtf16(marked.error().detail));
}

}  // namespace kelvane
