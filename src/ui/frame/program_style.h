// How controls are drawn: one style on every system, in the program's own icons.
#pragma once

#include <QProxyStyle>

namespace kelvane {

// Fusion, with the icons of boxes out of the program's set, no pictures on the buttons of dialogs, room around their
// labels, a line around what is chosen or preselected, and boxes, circles and frames whose lines are seen in dark
// colours too.
class ProgramStyle final : public QProxyStyle {
    Q_OBJECT

public:
    ProgramStyle();

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    // The rest of a list's header looks like its titles.
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace kelvane
