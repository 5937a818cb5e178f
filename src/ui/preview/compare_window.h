// Two to four files of a group side by side.
#pragma once

#include <QDialog>

#include "ui/preview/compared_file.h"
#include "ui/preview/group_members.h"
#include "ui/preview/preview_worker.h"

class QListWidget;
class QTabWidget;

namespace kelvane {

class CompareFacts;
class ComparePictures;
class CompareTexts;
class WindowLink;

// Goes when it is closed. What it shows is read by a thread of its own.
class CompareWindow final : public QDialog {
    Q_OBJECT

public:
    CompareWindow(WindowLink& link, GroupMembers members);

private:
    void fillList();
    void choose();
    void read();
    void take(const ComparedFiles& compared);
    [[nodiscard]] std::vector<Ref<const ShellItem>> chosen() const;

    GroupMembers members_;
    PreviewWorker worker_;
    unsigned generation_ = 0;
    bool filling_ = false;
    QListWidget* list_;
    QTabWidget* tabs_;
    CompareTexts* texts_;
    ComparePictures* pictures_;
    CompareFacts* facts_;
};

// The commands that open it.
void compareAroundCurrent(WindowLink& link);
void compareSelected(WindowLink& link);

}  // namespace kelvane
