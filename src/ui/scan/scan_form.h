// The whole definition of a scan, to be filled in.
#pragma once

#include <QScrollArea>

#include "app/questions.h"
#include "ui/scan/order_check.h"

class QLabel;

namespace kelvane {

class CategoryBox;
class FolderList;
class WindowLink;

// Main thread. What it cannot know by itself (which folders are there) it is told by showCheck().
class ScanForm final : public QScrollArea {
    Q_OBJECT

public:
    explicit ScanForm(WindowLink& link, QWidget* parent = nullptr);

    [[nodiscard]] ScanOrder order() const;
    void show(const ScanOrder& order);
    void showCheck(const OrderCheck& check);
    [[nodiscard]] FolderList& folders() { return *folders_; }

Q_SIGNALS:
    void edited();

private:
    WindowLink& link_;
    FolderList* folders_;
    CategoryBox* category_;
    QLabel* check_;
    ScanOrder base_;  // what the form has no control for stays as it was
};

}  // namespace kelvane
