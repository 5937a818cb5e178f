// Details or thumbnails: chosen by the person, and by itself for lists of pictures and films.
#pragma once

#include <QAction>
#include <QObject>

#include "ui/frame/frame_parts.h"

namespace kelvane {

class ResultsView;

// Main thread. What was chosen for lists of pictures holds for all of them, and likewise for all others.
class ViewSwitch final : public QObject {
    Q_OBJECT

public:
    ViewSwitch(const FrameParts& parts, ResultsView& view);

private:
    void listBegan();
    void show(bool thumbnails);
    void choose(bool thumbnails);

    WindowLink& link_;
    ResultsView& view_;
    QAction* details_;
    QAction* thumbnails_;
    bool ofPictures_ = false;
};

}  // namespace kelvane
