#include "ui/list/view_switch.h"

#include <QActionGroup>
#include <optional>

#include "base/desktop_texts/list.h"
#include "ui/core/window_link.h"
#include "ui/list/list_memory.h"
#include "ui/list/results_view.h"

namespace kelvane {
namespace {

// Nothing where the list does not say what was searched for, and as long as it does not.
std::optional<bool> isOfPictures(Workbench& bench)
{
    if (bench.session() == nullptr || !bench.session()->definition)
        return std::nullopt;
    const Category category = bench.session()->definition->category();
    return category == Category::images || category == Category::video;
}

}  // namespace

ViewSwitch::ViewSwitch(const FrameParts& parts, ResultsView& view) : QObject(&view), link_(parts.link), view_(view)
{
    namespace say = desktop_text;
    auto* const kinds = new QActionGroup(this);
    const auto add = [&](const char* name, TextId label, bool thumbnails) {
        QAction* const action = parts.commands.add({.name = name,
                                                    .label = label,
                                                    .menu = MenuId::view,
                                                    .run = [this, thumbnails] { choose(thumbnails); },
                                                    .checkable = true});
        kinds->addAction(action);
        return action;
    };
    details_ = add("list.details", say::listDetailsView, false);
    thumbnails_ = add("list.thumbnails", say::listThumbnailsView, true);
    show(ListMemory(link_.desktop().memory).showsThumbnails(false));
    connect(&link_, &WindowLink::listBegan, this, &ViewSwitch::listBegan);
}

// Across groups alike pictures do not stand side by side, so that there is nothing to be seen by it.
void ViewSwitch::listBegan()
{
    link_.fetch(this, isOfPictures, [this](std::optional<bool> ofPictures) {
        if (!ofPictures)
            return;
        ofPictures_ = *ofPictures;
        const ListMemory memory(link_.desktop().memory);
        show(memory.showsThumbnails(ofPictures_) && (!ofPictures_ || memory.keepsGroups()));
    });
}

void ViewSwitch::show(bool thumbnails)
{
    (thumbnails ? thumbnails_ : details_)->setChecked(true);
    if (view_.showsThumbnails() != thumbnails)
        view_.showThumbnails(thumbnails);
}

void ViewSwitch::choose(bool thumbnails)
{
    ListMemory(link_.desktop().memory).setShowsThumbnails(ofPictures_, thumbnails);
    show(thumbnails);
}

}  // namespace kelvane
