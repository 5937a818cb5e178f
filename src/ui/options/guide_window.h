// The user guide in a window of its own: chapters, search, back and forward.
#pragma once

#include <QDialog>

#include "ui/options/guide_pages.h"

class QLineEdit;
class QListWidget;
class QPushButton;
class QTextBrowser;
class QUrl;

namespace kelvane {

class WindowLink;

// Owned by the frame of the window.
class GuideWindow final : public QDialog {
    Q_OBJECT

public:
    explicit GuideWindow(WindowLink& link);

    // A place by its name ("toc_clean"); the beginning where the guide has none of that name, and for an empty one.
    void goTo(const QString& name);

protected:
    // Read also while a question of the frame waits, which would keep the person from everything below the frame.
    void showEvent(QShowEvent* event) override;

private:
    struct Place {
        int page = 0;
        QString name;
        friend bool operator==(const Place&, const Place&) = default;
    };

    [[nodiscard]] QWidget* makeBar();
    void makeChapters();
    void visit(const Place& place);  // and remembers it
    void display(const Place& place);
    void step(int by);
    void follow(const QUrl& link);
    void search(const QString& typed);
    void findNext();
    void markFound();

    const std::vector<GuidePage> pages_;
    std::vector<Place> visited_;
    std::size_t at_ = 0;  // in visited_
    int page_ = -1;       // that is shown
    QPushButton* back_;
    QPushButton* forward_;
    QLineEdit* search_;
    QListWidget* chapters_;
    QTextBrowser* text_;
};

}  // namespace kelvane
