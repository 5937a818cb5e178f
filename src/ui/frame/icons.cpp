#include "ui/frame/icons.h"

#include <QApplication>
#include <QImage>
#include <QPalette>
#include <QPixmap>

namespace kelvane {
namespace {

// As src/ui/CMakeLists.txt rasterises them; twice the size for high-density screens.
constexpr int commandSizes[] = {16, 24, 32, 48, 64, 96};
constexpr int programSizes[] = {16, 24, 32, 48, 64, 128, 256};

QString fileOf(const QString& name, int size)
{
    return QStringLiteral(":/icons/%1/%2.png").arg(size).arg(name);
}

int between(int from, int to, int part)
{
    return from + (to - from) * part / 255;
}

// Black in the drawing is the colour of lines, white the accent, and a pixel between is a mixture.
QRgb inColours(QRgb pixel, QRgb line, QRgb accent)
{
    const int part = qGray(pixel);
    return qRgba(between(qRed(line), qRed(accent), part), between(qGreen(line), qGreen(accent), part),
                 between(qBlue(line), qBlue(accent), part), qAlpha(pixel));
}

QPixmap recoloured(QImage image, QColor line, QColor accent)
{
    image = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = inColours(row[x], line.rgb(), accent.rgb());
    }
    return QPixmap::fromImage(image);
}

}  // namespace

QIcon commandIcon(const QString& name, QPalette::ColorRole accent)
{
    QIcon icon;
    const QPalette palette = QApplication::palette();
    const QColor dim = palette.color(QPalette::Disabled, QPalette::WindowText);
    for (const int size : commandSizes) {
        const QImage image(fileOf(name, size));
        if (image.isNull())
            return {};
        icon.addPixmap(recoloured(image, palette.color(QPalette::WindowText), palette.color(accent)));
        icon.addPixmap(recoloured(image, dim, dim), QIcon::Disabled);
    }
    return icon;
}

QIcon programIcon()
{
    QIcon icon;
    for (const int size : programSizes)
        icon.addFile(fileOf(QStringLiteral("kelvane"), size));
    return icon;
}

}  // namespace kelvane
