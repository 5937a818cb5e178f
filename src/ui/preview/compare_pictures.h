// Pictures side by side, over one another, or in turn.
#pragma once

#include <QTimer>
#include <QWidget>

#include "ui/preview/compared_file.h"

class QCheckBox;
class QHBoxLayout;
class QLabel;
class QSlider;

namespace kelvane {

class PictureView;

class ComparePictures final : public QWidget {
    Q_OBJECT

public:
    explicit ComparePictures(QWidget* parent = nullptr);
    void show(const ComparedFiles& compared);

private:
    void addColumn(const ComparedFile& file);
    void paint();
    void blink();

    struct Column {
        QWidget* box;
        QLabel* title;
        PictureView* view;
        QImage image;
        QString name;
    };

    QHBoxLayout* columns_;
    QCheckBox* overlay_;
    QSlider* strength_;
    QCheckBox* blink_;
    QLabel* summary_;
    QTimer turns_;
    std::vector<Column> shown_;
    std::size_t turn_ = 0;  // of blinking
};

}  // namespace kelvane
