#include "ui/list/install_list.h"

#include "ui/list/results_pane.h"

namespace kelvane {

void installList(const FrameParts& parts)
{
    auto* const pane = new ResultsPane(parts.link);
    parts.window.setCentralWidget(pane);
    pane->setFocus();
}

}  // namespace kelvane
