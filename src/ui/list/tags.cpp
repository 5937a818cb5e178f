// Colour tags of items.
#include <QMenu>

#include "base/desktop_texts/list.h"
#include "results/quick_filter.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/item_choice.h"
#include "ui/list/item_commands.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QIcon iconOf(std::uint32_t color)
{
    QPixmap square(16, 16);
    square.fill(QColor(static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
                       static_cast<int>(color >> 16 & 0xFF)));
    return square;
}

// The tags as they are in the settings at this moment; their first one is 1.
void fill(QMenu& menu, const WindowLink& link, const std::function<void(std::uint8_t)>& chosen)
{
    menu.clear();
    std::uint8_t number = noTag;
    QObject::connect(menu.addAction(shown(say::listNoTag)), &QAction::triggered, &menu, [chosen] { chosen(noTag); });
    for (const TagColor& tag : link.desktop().settings().tagColors) {
        if (number == UINT8_MAX)
            break;
        ++number;
        QAction* const action = menu.addAction(iconOf(tag.color), toQt(tag.name));
        QObject::connect(action, &QAction::triggered, &menu, [chosen, number] { chosen(number); });
    }
    if (number == noTag)
        menu.addAction(shown(say::listNoTagColors))->setEnabled(false);
}

}  // namespace

void installTags(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    QMenu* const set = parts.commands.addSubmenu(MenuId::mark, "item.tag", say::listTag);
    QObject::connect(set, &QMenu::aboutToShow, set, [set, &link] {
        fill(*set, link, [&link](std::uint8_t tag) {
            link.runOnList([tag, current = link.currentItem()](Workbench& bench) {
                bench.results().setTag(itemsInQuestion(bench.results(), current), tag);
            });
        });
    });
    QMenu* const show = parts.commands.addSubmenu(MenuId::view, "view.tag", say::listShowTag);
    QObject::connect(show, &QMenu::aboutToShow, show, [show, &link] {
        fill(*show, link, [&link](std::uint8_t tag) {
            link.run([tag](Workbench& bench) { showOnlyTags(bench.results(), {tag}); });
        });
    });
}

}  // namespace kelvane
