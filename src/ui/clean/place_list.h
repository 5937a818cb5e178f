// A short list of folders that a person puts together.
#pragma once

#include <QGroupBox>
#include <string>
#include <vector>

class QListWidget;

namespace kelvane {

// Folders are texts as path rules hold them.
class PlaceList final : public QGroupBox {
    Q_OBJECT

public:
    PlaceList(const char* name, const QString& title);

    [[nodiscard]] std::vector<std::string> folders() const;
    void add(const std::string& folder);

Q_SIGNALS:
    void changed();

private:
    QListWidget* list_;
};

// Lets the person pick a folder, and calls `take` with it; nothing when they cancel. Does not wait.
void pickFolder(QWidget* parent, const QString& title, std::function<void(const std::string&)> take);

}  // namespace kelvane
