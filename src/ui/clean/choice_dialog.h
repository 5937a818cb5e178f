// The dialogs in which a clean-up's way is chosen, by buttons that say what they do.
#pragma once

#include <QDialog>
#include <functional>
#include <span>
#include <vector>

#include "cleanup/cleanup_questions.h"

class QComboBox;

namespace kelvane {

struct CleanupWay {
    CleanupChoice choice = CleanupChoice::nothing;
    LinkKind links = LinkKind::automatic;
};

// "What shall we do with these clones?". Deletes itself when it is closed.
class ChoiceDialog final : public QDialog {
    Q_OBJECT

public:
    // `done` is called once; Escape and the close button mean nothing.
    ChoiceDialog(QWidget* parent, bool linksOffered, std::function<void()> help, std::function<void(CleanupWay)> done);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addChoice(const char* name, TextId text, CleanupChoice choice);
    void addLinkKinds();

    CleanupWay chosen_;
    QComboBox* kinds_ = nullptr;
};

// What volumes without a trash hold.
struct TrashlessLine {
    QString place, reason;
    std::uint64_t items = 0, bytes = 0;
};

// What becomes of items that cannot go to a trash. Escape and the close button stop.
class TrashlessDialog final : public QDialog {
    Q_OBJECT

public:
    TrashlessDialog(QWidget* parent, const std::vector<TrashlessLine>& volumes, std::function<void(Trashless)> done);

private:
    void addAnswer(const char* name, TextId text, Trashless answer, bool isDefault);

    Trashless answer_ = Trashless::stop;
};

}  // namespace kelvane
