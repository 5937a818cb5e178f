// The pane that shows the file which the person is at.
#pragma once

#include <QTimer>
#include <QWidget>

#include "ui/preview/file_facts.h"
#include "ui/preview/preview_content.h"
#include "ui/preview/preview_worker.h"
#include "ui/preview/previewed_file.h"

class QLabel;
class QSplitter;
class QStackedWidget;
class QTabWidget;

namespace kelvane {

class EntriesView;
class FactsView;
class HexView;
class PictureView;
class TextView;
class WhyView;
class WindowLink;

// Everything is read by a thread of its own; an answer about a file that the person has left is dropped.
class PreviewPane final : public QWidget {
    Q_OBJECT

public:
    explicit PreviewPane(WindowLink& link);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void makeViews();
    void connectViews();
    void itemChanged();
    void ask();
    void takeFile(PreviewedFile file);
    void takeContent(const PreviewContent& content);
    void showMessage(const QString& message);
    void showState(const PreviewContent& content);
    void askChunk(std::uint64_t position);
    void openText();
    void askWhy();
    // Reads on the worker's thread, and takes the answer unless the person has gone on meanwhile.
    template <class Read, class Take>
    void read(PreviewWorker& worker, Read question, Take take);

    WindowLink& link_;
    PreviewWorker worker_;
    PreviewWorker comparing_;  // apart: contents may be large
    QTimer settling_;          // so that a key held down reads nothing on its way
    unsigned generation_ = 0;  // of the file that is shown; answers about others are dropped
    PreviewedFile file_;
    QLabel* name_;
    QLabel* state_;
    QLabel* note_;
    QStackedWidget* views_;
    QLabel* message_;
    TextView* text_;
    PictureView* picture_;
    EntriesView* entries_;
    HexView* bytes_;
    QTabWidget* tabs_;
    FactsView* facts_;
    WhyView* why_;
    bool whyAsked_ = false;  // of the file that is shown
};

}  // namespace kelvane
