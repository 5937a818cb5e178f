// Where two pictures differ.
#pragma once

#include <QColor>
#include <QImage>

namespace kelvane {

struct PictureDifference {
    QImage image;        // the first picture faintly, and over it what differs
    double share = 0.0;  // of the pixels that differ visibly, 0 to 1
};

// The second picture is brought to the size of the first. strength: how many times a difference is made stronger.
[[nodiscard]] PictureDifference pictureDifference(const QImage& first, const QImage& second, QColor colour,
                                                  int strength);

}  // namespace kelvane
