#include "ui/preview/picture_difference.h"

#include <algorithm>
#include <cstdlib>

namespace kelvane {
namespace {

// Below this, of 255, two pixels look the same: what a JPEG saved twice shows nearly everywhere.
constexpr int visible = 12;

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

int blended(int from, int to, int weight)
{
    return from + (to - from) * weight / 255;
}

QRgb overlaid(QRgb pixel, const QColor& colour, int weight)
{
    const int faint = 128 + (qGray(pixel) - 128) / 3;
    return qRgb(blended(faint, colour.red(), weight), blended(faint, colour.green(), weight),
                blended(faint, colour.blue(), weight));
}

}  // namespace

PictureDifference pictureDifference(const QImage& first, const QImage& second, QColor colour, int strength)
{
    if (first.isNull() || second.isNull())
        return {};
    const QImage a = first.convertToFormat(QImage::Format_RGB32);
    const QImage b =
        second.convertToFormat(QImage::Format_RGB32).scaled(a.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    PictureDifference made{QImage(a.size(), QImage::Format_RGB32), 0.0};
    qsizetype different = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const int apart = distance(a.pixel(x, y), b.pixel(x, y));
            different += apart >= visible ? 1 : 0;
            made.image.setPixel(x, y, overlaid(a.pixel(x, y), colour, std::min(255, apart * strength)));
        }
    }
    made.share = static_cast<double>(different) / (static_cast<double>(a.width()) * a.height());
    return made;
}

}  // namespace kelvane
