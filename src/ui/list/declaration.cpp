// "These are no duplicates of one another": remembered, so that further scans keep them apart.
#include <QMessageBox>
#include <map>

#include "app/error_text.h"
#include "app/ignored_list.h"
#include "base/desktop_texts/list.h"
#include "base/filled_text.h"
#include "platform/native_text.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/item_commands.h"
#include "ui/list/list_files.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

using ItemGroups = std::vector<std::vector<ItemId>>;
constexpr qsizetype mostNamed = 12;

// By group, those with two items at least.
ItemGroups selectedGroups(const ResultsView& view)
{
    std::map<std::uint32_t, std::vector<ItemId>> groups;
    const RowMirror& rows = view.link().rows();
    for (Row row = 0; row < rows.count(); ++row)
        if (rows.at(row).isSelected())
            groups[rows.at(row).group].push_back(rows.at(row).item);
    ItemGroups found;
    for (auto& [number, items] : groups)
        if (items.size() > 1)
            found.push_back(std::move(items));
    return found;
}

// Nothing where it failed, which was told.
std::optional<IgnoredGroup> declared(Workbench& bench, const std::vector<ItemId>& items)
{
    IgnoredGroup group{bench.platform().clock().now(), {}};
    for (const ItemId id : items) {
        const Ref<const ShellItem> item = bench.results().item(id).file.itemRef();
        auto file = ignoredFileOf(bench.platform().shell(), *item, bench.cancel());
        if (!file) {
            showProblem(bench, toUtf16(filledText(say::listDeclareFailed, {toUtf8(displayFromNative(item->fullName())),
                                                                           errorText(file.error())})));
            return std::nullopt;
        }
        group.files.push_back(*std::move(file));
        bench.serve();
        if (static_cast<std::uint32_t>(id) >= bench.results().idLimit())
            return std::nullopt;
    }
    return group;
}

void declare(Workbench& bench, const ItemGroups& groups)
{
    const auto running = bench.begin(Job::loading);
    if (!running)
        return showProblem(bench, std::u16string(text(say::listBusy)));
    std::size_t files = 0;
    for (const auto& items : groups) {
        auto group = declared(bench, items);
        if (!group)
            return;
        if (blockOfIgnored(*group).empty())
            return showProblem(bench, std::u16string(text(say::listDeclareTooMany)));
        files += group->files.size();
        bench.desktop().change([&](Settings& settings) { settings.ignoredGroups.push_back(*std::move(group)); });
    }
    bench.tell(toUtf16(filledText(say::listDeclared, {std::to_string(files)})));
}

QStringList namesOf(Workbench& bench, const ItemGroups& groups)
{
    QStringList names;
    for (const auto& items : groups)
        for (const ItemId id : items)
            names << shownInOneLine(toQt(displayFromNative(bench.results().item(id).file.item().fullName())));
    if (names.size() > mostNamed) {
        names.resize(mostNamed);
        names << QStringLiteral("...");
    }
    return names;
}

void ask(WindowLink& link, const ItemGroups& groups, const QStringList& names)
{
    auto* const box =
        new QMessageBox(QMessageBox::Question, QStringLiteral("Kelvane"),
                        shown(say::listNotDuplicatesQuestion, {names.join(QLatin1Char('\n')).toStdString()}),
                        QMessageBox::Ok | QMessageBox::Cancel, link.frame());
    box->setObjectName(QStringLiteral("declareQuestion"));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QMessageBox::accepted, &link,
                     [&link, groups] { link.run([groups](Workbench& bench) { declare(bench, groups); }); });
    box->open();
}

}  // namespace

void installDeclaration(const FrameParts& parts, ResultsView& view)
{
    WindowLink& link = parts.link;
    parts.commands.add({.name = "item.notDuplicates",
                        .label = say::listNotDuplicates,
                        .menu = MenuId::edit,
                        .run =
                            [&link, &view] {
                                const ItemGroups groups = selectedGroups(view);
                                if (groups.empty())
                                    Q_EMIT link.statusTold(shown(say::listDeclareTwo));
                                else
                                    link.fetch(
                                        &view, [groups](Workbench& bench) { return namesOf(bench, groups); },
                                        [&link, groups](const QStringList& names) { ask(link, groups, names); });
                            },
                        .when = when::idle | when::isSelected});
}

}  // namespace kelvane
