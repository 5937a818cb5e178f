// A plain text on as many lines as it takes, however narrow: paths and names are broken wherever they have to be.
#pragma once

#include <QLabel>

class QTextLayout;

namespace kelvane {

class WrappedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit WrappedLabel(const char* name, QWidget* parent = nullptr);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    // Gives the size that the lines take.
    QSizeF layOut(QTextLayout& layout, int width) const;
};

}  // namespace kelvane
