#include "ui/preview/picture_view.h"

#include <QPainter>
#include <cstring>

#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

// Enlarged further, a preview shows nothing but its own pixels.
constexpr int mostEnlarged = 3;

}  // namespace

QImage imageOf(const Ref<CachedBitmap>& bitmap)
{
    if (!bitmap)
        return {};
    const auto width = static_cast<int>(bitmap->width()), height = static_cast<int>(bitmap->height());
    QImage image(width, height, QImage::Format_RGB32);
    const std::size_t rowBytes = std::size_t{4} * bitmap->width();
    for (int y = 0; y < height; ++y)
        std::memcpy(image.scanLine(y), bitmap->pixels().data() + static_cast<std::size_t>(y) * rowBytes, rowBytes);
    return image;
}

PictureView::PictureView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("preview.picture"));
    setAccessibleName(shown(desktop_text::previewPictureName));
    setMinimumSize(80, 60);
}

void PictureView::show(QImage image)
{
    image_ = std::move(image);
    message_.clear();
    update();
}

void PictureView::showMessage(const QString& message)
{
    image_ = {};
    message_ = message;
    update();
}

void PictureView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (image_.isNull()) {
        painter.drawText(rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, message_);
        return;
    }
    QSize size = image_.size().scaled(rect().size(), Qt::KeepAspectRatio);
    size = size.boundedTo(image_.size() * mostEnlarged);
    QRect place(QPoint(), size);
    place.moveCenter(rect().center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, image_);
}

}  // namespace kelvane
