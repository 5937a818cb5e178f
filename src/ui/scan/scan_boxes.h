// What a scan asks and tells in boxes of their own. None is waited for.
#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace kelvane {

class Desktop;

// "scan.revise": nothing was found. `revise` is called when the person wants to change what is searched for.
void askToRevise(QWidget& over, std::function<void()> revise);

// "scan.notice": with a tick that keeps it away for ever. It does not keep the scan.
void showScanNotice(QWidget& over, const Desktop& desktop, const QString& text);

}  // namespace kelvane
