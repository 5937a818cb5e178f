#include "ui/preview/install_preview.h"

#include "ui/preview/preview_pane.h"

namespace kelvane {

void installPreview(const FrameParts& parts)
{
    parts.window.addPane(new PreviewPane(parts.link), "pane.preview", desktop_text::previewPane,
                         Qt::RightDockWidgetArea);
}

}  // namespace kelvane
