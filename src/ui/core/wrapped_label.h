// A plain text on as many lines as it takes, however narrow: paths and names are broken wherever they have to be.
#pragma once

#include <QLabel>

class QTextLayout;

namespace kelvane {

// What it says can be selected by the mouse and copied. It gets the focus by a click alone: nothing stops there by Tab.
class WrappedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit WrappedLabel(const char* name, QWidget* parent = nullptr);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    // What is selected; nothing once the text has changed.
    [[nodiscard]] QString selection() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    // Gives the size that the lines take.
    QSizeF layOut(QTextLayout& layout, int width) const;
    // Where the first line begins.
    [[nodiscard]] QPointF originOf(const QSizeF& lines) const;
    [[nodiscard]] int positionAt(const QPoint& point) const;
    [[nodiscard]] bool hasSelection() const { return from_ != to_ && selectedIn_ == text(); }
    void select(int from, int to);
    void copy() const;

    QString selectedIn_;     // the text that the two stand in
    int from_ = 0, to_ = 0;  // in units; where the mouse went down, and where it is
};

}  // namespace kelvane
