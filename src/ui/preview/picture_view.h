// A picture, as large as there is room for it.
#pragma once

#include <QImage>
#include <QWidget>

#include "props/cached_bitmap.h"

namespace kelvane {

// A copy; null for none.
[[nodiscard]] QImage imageOf(const Ref<CachedBitmap>& bitmap);

class PictureView final : public QWidget {
    Q_OBJECT

public:
    explicit PictureView(QWidget* parent = nullptr);

    void show(QImage image);
    // Stands in the place of a picture that there is none of.
    void showMessage(const QString& message);
    [[nodiscard]] const QImage& image() const { return image_; }
    [[nodiscard]] QSize sizeHint() const override { return {240, 200}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image_;
    QString message_;
};

}  // namespace kelvane
