// The whole definition of a scan, to be filled in.
#pragma once

#include <QScrollArea>

#include "app/questions.h"
#include "ui/core/desktop_memory.h"
#include "ui/scan/order_check.h"
#include "ui/scan/property_rows.h"

class QLabel;

namespace kelvane {

class CategoryBox;
class CompareBox;
class FolderList;
class OptionsBox;
class WindowLink;

// Main thread. What it cannot know by itself (which folders are there) it is told by showCheck().
// In the memory of the desktop: see recallLeftOut().
inline const QString leftOutMemory = QString(DesktopMemory::beside) + QStringLiteral("leftOut");

class ScanForm final : public QScrollArea {
    Q_OBJECT

public:
    explicit ScanForm(WindowLink& link, QWidget* parent = nullptr);

    [[nodiscard]] ScanOrder order() const;
    // Folders in sight that no order holds.
    [[nodiscard]] std::vector<std::string> unticked() const;
    void show(const ScanOrder& order);
    // Folders that stood in the latest form without a tick, in this window or an earlier one: no order holds them.
    void recallLeftOut(const QByteArray& folders);
    void showCheck(const OrderCheck& check);
    void setProperties(std::vector<PropertyRow> rows);
    void setMode(InterfaceMode mode);

Q_SIGNALS:
    void edited();

private:
    void makeLayout();
    [[nodiscard]] QWidget* makeFolders();

    WindowLink& link_;
    FolderList* folders_;
    CategoryBox* category_;
    CompareBox* compare_;
    OptionsBox* options_;
    QLabel* check_;
    ScanOrder base_;  // what the form has no control for stays as it was
    InterfaceMode mode_ = InterfaceMode::standard;
};

}  // namespace kelvane
