// What a scan asks and tells in boxes of their own. None is waited for.
#pragma once

#include <QString>
#include <cstdint>
#include <functional>

class QMessageBox;
class QWidget;

namespace kelvane {

class Desktop;
class WindowLink;

// "scan.revise": nothing was found. `revise` is called when the person wants to change what is searched for. `notice`:
// the one below, which the person is to read first; null when it is closed.
void askToRevise(WindowLink& link, QMessageBox* notice, std::function<void()> revise);

// "scan.forgetMarks": the list of so many marked items is to be replaced. `search` is called when it may be.
void askToForgetMarks(WindowLink& link, std::uint64_t marked, std::function<void()> search);

// "scan.notice": with a tick that keeps it away for ever. It keeps neither the scan nor, before that has ended, the
// keys of the window, where Escape stops it.
[[nodiscard]] QMessageBox* showScanNotice(QWidget& over, const Desktop& desktop, const QString& text);

}  // namespace kelvane
