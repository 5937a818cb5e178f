// What all windows of the program have in common, beside their colours.
#pragma once

namespace kelvane {

// Name, icon, and the words on Qt's own buttons. Once, after the QApplication is made.
void prepareLook();

}  // namespace kelvane
