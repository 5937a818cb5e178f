#include "ui/options/install_options.h"

#include "ui/core/window_link.h"
#include "ui/options/options_dialog.h"

namespace kelvane {
namespace {

// One a window; asked for again it comes to the front.
template <class Dialog>
void showDialog(WindowLink& link)
{
    auto* dialog = link.frame()->findChild<Dialog*>();
    if (dialog == nullptr)
        dialog = new Dialog(link);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

}  // namespace

void installOptions(const FrameParts& parts)
{
    namespace say = desktop_text;
    WindowLink& link = parts.link;
    parts.commands.add({.name = "tools.options",
                        .label = say::commandOptions,
                        .menu = MenuId::tools,
                        .run = [&link] { showDialog<OptionsDialog>(link); },
                        .keys = QKeySequence(Qt::CTRL | Qt::Key_Comma),
                        .beginsSection = true});
}

}  // namespace kelvane
