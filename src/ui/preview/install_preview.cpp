#include "ui/preview/install_preview.h"

#include "base/desktop_texts/preview.h"
#include "ui/preview/compare_window.h"
#include "ui/preview/preview_pane.h"

namespace kelvane {

void installPreview(const FrameParts& parts)
{
    namespace say = desktop_text;
    WindowLink& link = parts.link;
    parts.window.addPane(new PreviewPane(link), "pane.preview", say::previewPane, Qt::RightDockWidgetArea);
    parts.commands.add({.name = "view.sideBySide",
                        .label = say::commandSideBySide,
                        .menu = MenuId::view,
                        .run = [&link] { compareAroundCurrent(link); },
                        .keys = QKeySequence(Qt::CTRL | Qt::Key_D),
                        .when = when::hasCurrent,
                        .beginsSection = true});
    parts.commands.add({.name = "preview.compare",
                        .label = say::commandCompareSelected,
                        .menu = MenuId::view,
                        .run = [&link] { compareSelected(link); },
                        .when = when::isSelected});
}

}  // namespace kelvane
