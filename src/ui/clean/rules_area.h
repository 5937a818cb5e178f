// The rules of the mark wizard: as high as they are, and to be scrolled where that is more than the screen has room
// for.
#pragma once

#include <QScrollArea>

namespace kelvane {

class RulesArea final : public QScrollArea {
public:
    // Takes them over. They stand at least so wide, which says how high they are: long lines are wrapped.
    explicit RulesArea(QWidget& rules, int leastWidth);

    [[nodiscard]] QSize sizeHint() const override;

private:
    int leastWidth_;
};

}  // namespace kelvane
