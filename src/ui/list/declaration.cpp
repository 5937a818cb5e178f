// "These are no duplicates of one another": remembered, so that further scans keep them apart.

#include "app/error_text.h"
#include "app/ignored_list.h"
#include "base/desktop_texts/list.h"
#include "base/filled_text.h"
#include "platform/native_text.h"
#include "ui/core/message_box.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/item_choice.h"
#include "ui/list/item_commands.h"
#include "ui/list/list_files.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

using ItemGroups = std::vector<std::vector<ItemId>>;
constexpr qsizetype mostNamed = 12;

struct Declared {
    ItemGroups groups;
    QStringList names;
};

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
    }
    return group;
}

// The number of files; the first group that fails, which is told, is the last one.
std::size_t declareEach(Workbench& bench, const ItemGroups& groups)
{
    std::size_t files = 0;
    for (const auto& items : groups) {
        auto group = declared(bench, items);
        if (!group)
            return files;
        if (blockOfIgnored(*group).empty()) {
            showProblem(bench, std::u16string(text(say::listDeclareTooMany)));
            return files;
        }
        files += group->files.size();
        bench.desktop().change([&](Settings& settings) { settings.ignoredGroups.push_back(*std::move(group)); });
    }
    return files;
}

void declare(Workbench& bench, const ItemGroups& groups)
{
    const auto running = bench.begin(Job::loading);
    if (!running)
        return showProblem(bench, std::u16string(text(say::listBusy)));
    const std::size_t files = declareEach(bench, groups);
    if (files == 0)
        return;
    bench.tell(toUtf16(filledText(say::listDeclared, {std::to_string(files)})));
    // At once: a program that crashes later forgets nothing that was asked for.
    if (const std::u16string failure = bench.desktop().saveSettings(); !failure.empty())
        showProblem(bench, toUtf16(filledText(say::listDeclareNotKept, {toUtf8(failure)})));
}

Declared whatIsSelected(Workbench& bench)
{
    Declared wanted{selectedGroups(bench.results()), {}};
    for (const auto& items : wanted.groups)
        for (const ItemId id : items) {
            if (wanted.names.size() == mostNamed) {
                wanted.names << QStringLiteral("...");
                return wanted;
            }
            wanted.names << shownInOneLine(toQt(displayFromNative(bench.results().item(id).file.item().fullName())));
        }
    return wanted;
}

void ask(WindowLink& link, const Declared& wanted)
{
    if (wanted.groups.empty()) {
        Q_EMIT link.statusTold(shown(say::listDeclareTwo));
        return;
    }
    QMessageBox* const box =
        makePlainBox(link.frame(), "declareQuestion", QMessageBox::Question,
                     shown(say::listNotDuplicatesQuestion, {wanted.names.join(QLatin1Char('\n')).toStdString()}),
                     QMessageBox::Ok | QMessageBox::Cancel);
    // Another list may have begun while the question stood there.
    QObject::connect(box, &QMessageBox::accepted, &link, [&link, list = link.list(), groups = wanted.groups] {
        link.runOn(list, [groups](Workbench& bench) { declare(bench, groups); });
    });
    link.boxes().open(box);
}

}  // namespace

void installDeclaration(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    parts.commands.add({.name = "item.notDuplicates",
                        .label = say::listNotDuplicates,
                        .menu = MenuId::edit,
                        .run =
                            [&link] {
                                link.fetchOfList(&link, whatIsSelected,
                                                 [&link](const Declared& wanted) { ask(link, wanted); });
                            },
                        .when = when::idle | when::isSelected});
}

}  // namespace kelvane
