// From pane to pane by keyboard.
#pragma once

class QMainWindow;

namespace kelvane {

// Gives the focus to the next (step 1) or previous (step -1) of the central widget and the panes that are open; a pane
// behind another tab comes to the front. What had the focus in a pane has it again. Main thread.
void goToNextPane(QMainWindow& window, int step);

}  // namespace kelvane
