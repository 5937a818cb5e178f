#include "ui/scan/order_check.h"

#include "app/checked_criteria.h"
#include "app/error_text.h"
#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"
#include "ui/scan/scan_modes.h"
#include "ui/scan/scan_runner.h"

namespace kelvane {
namespace {

QString pathText(const std::string& path)
{
    return toQt(displayFromNative(nativeFromBytes(path)));
}

QString reasonText(const DroppedRoot& root, const Settings& settings)
{
    const bool advanced = interfaceModeOf(settings) == InterfaceMode::advanced;
    switch (root.problem) {
    case RootProblem::isProtected:
        return shown(advanced ? desktop_text::folderProtected : desktop_text::folderProtectedStandard);
    case RootProblem::insideOther:
        return shown(TextId::rootInsideOther, {root.detail});
    case RootProblem::containerRoot:
        return shown(TextId::rootContainer);
    case RootProblem::notReadable:
        return root.detail.empty() ? shown(TextId::rootNotReadable) : toQt(root.detail);
    case RootProblem::notFound:
        break;
    }
    return root.detail.empty() ? shown(TextId::problemNotFound) : toQt(root.detail);
}

RootList normalised(Workbench& bench, const CScanNode& definition, std::string roots)
{
    RootListInput input;
    input.list = std::move(roots);
    input.protect = definition.has(scan_flag::protect);
    input.subfolders = definition.has(scan_flag::subfolders);
    return normaliseRoots(input, bench.platform().paths(), bench.platform().shell());
}

// A folder without a tick is no root of its own, which does not keep the walk of another one out of it.
QStringList coveredFolders(Workbench& bench, const CScanNode& definition, const std::vector<std::string>& searched,
                           const std::vector<std::string>& unticked)
{
    QStringList lines;
    for (const std::string& folder : unticked) {
        std::vector<std::string> roots = searched;
        roots.push_back(folder);
        for (const DroppedRoot& root : normalised(bench, definition, bench.platform().paths().joinRoots(roots)).dropped)
            if (root.root == folder && root.problem == RootProblem::insideOther)
                lines.append(
                    shown(desktop_text::folderDropped,
                          {pathText(folder).toStdString(),
                           shown(desktop_text::folderCovered, {pathText(root.detail).toStdString()}).toStdString()}));
    }
    return lines;
}

// Why the definition cannot be searched by. A list that is there has asked the plug-ins for their properties already.
QString criteriaProblem(Workbench& bench, const CScanNode& definition, const EngineOptions& options)
{
    const auto problemBy = [&](const PropertyAccess& access, SimilarSearch& similar) {
        const auto criteria = checkedCriteria(definition, options, access.catalogue, similar.content());
        return criteria ? QString() : toQt(errorText(criteria.error()));
    };
    if (ListSession* const session = bench.session())
        return problemBy(session->access, session->similar);
    const PropertyAccess access(bench.platform(), options);
    SimilarSearch similar(access, ProbeNumbers::perPair, options.threads, bench.platform());
    return problemBy(access, similar);
}

}  // namespace

QString OrderCheck::problem() const
{
    if (roots.isEmpty())
        return dropped.isEmpty() ? shown(desktop_text::foldersNone) : dropped.join(u'\n');
    return criteriaProblem;
}

QString droppedText(const DroppedRoot& root, const Settings& settings)
{
    return shown(desktop_text::folderDropped,
                 {pathText(root.root).toStdString(), reasonText(root, settings).toStdString()});
}

OrderCheck checkOrder(Workbench& bench, const ScanOrder& order, const std::vector<std::string>& unticked)
{
    const Settings settings = bench.desktop().settings();
    const RootList list = normalised(bench, order.definition, order.definition.roots);
    OrderCheck check;
    for (const std::string& root : list.roots)
        check.roots.append(pathText(root));
    for (const DroppedRoot& root : list.dropped)
        check.dropped.append(droppedText(root, settings));
    check.covered = coveredFolders(bench, order.definition, list.roots, unticked);
    check.criteriaProblem = criteriaProblem(bench, order.definition, optionsFor(order, settings, bench.desktop()));
    return check;
}

}  // namespace kelvane
