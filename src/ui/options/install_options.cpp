#include "ui/options/install_options.h"

#include "base/desktop_texts/options.h"
#include "ui/options/help_commands.h"
#include "ui/options/options_dialog.h"
#include "ui/options/window_dialogs.h"

namespace kelvane {

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
    installHelp(parts);
}

}  // namespace kelvane
