// How far the running scan has come, with what holds or ends it.
#pragma once

#include <QWidget>

#include "ui/core/row_mirror.h"
#include "ui/scan/scan_reports.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace kelvane {

class ProgressPanel final : public QWidget {
    Q_OBJECT

public:
    explicit ProgressPanel(QWidget* parent = nullptr);

    void begin();
    void setCaption(const QString& text);
    void show(const ScanTick& tick);
    void setGroups(std::uint32_t groups);
    void setPaused(bool paused);

Q_SIGNALS:
    void pauseWanted(bool paused);
    void cancelWanted();

private:
    [[nodiscard]] QWidget* makeButtons();
    void showBar(const ScanProgress& progress);
    void showFigures();

    QLabel* caption_;
    QProgressBar* bar_;
    QLabel* figures_;
    QPushButton* pause_ = nullptr;
    QString captionText_, figuresText_, groupsText_;
};

}  // namespace kelvane
