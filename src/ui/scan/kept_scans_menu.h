// The menus of the scans that are kept: those saved by name, and the history.
#pragma once

#include <QObject>

#include "app/kept_scans.h"
#include "ui/scan/scan_order.h"

class QMenu;
class QWidget;

namespace kelvane {

class Desktop;

// On the main thread; fills the menus anew whenever they are opened.
class KeptScansMenu final : public QObject {
    Q_OBJECT

public:
    // The desktop outlives it; questions are opened over the widget, which owns it.
    KeptScansMenu(const Desktop& desktop, QMenu& saved, QMenu& history, QWidget& over);

    // Asks for a name and saves the order's definition by it.
    void saveAs(const ScanOrder& order);

Q_SIGNALS:
    void opened(const kelvane::ScanOrder& order);
    void runWanted(const kelvane::ScanOrder& order);
    void saved(const QString& name);

private:
    void fillSaved(QMenu& menu);
    void addSaved(QMenu& menu, const KeptScan& scan);
    void fillHistory(QMenu& menu);
    void rename(const std::u16string& name);

    const Desktop& desktop_;
    QWidget& over_;
};

}  // namespace kelvane
