// Dialogs of which a window has one at most.
#pragma once

#include "ui/core/window_link.h"

namespace kelvane {

// Opens it, or brings the one that is open to the front. `further`: what its constructor takes behind the link.
template <class Dialog, class... Further>
Dialog* showDialog(WindowLink& link, const Further&... further)
{
    auto* dialog = link.frame()->findChild<Dialog*>();
    if (dialog == nullptr)
        dialog = new Dialog(link, further...);  // its parent is the frame
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return dialog;
}

}  // namespace kelvane
