// The rules of the mark wizard: as high as they are, and to be scrolled where that is more than the screen has room
// for.
#pragma once

#include <QScrollArea>

namespace kelvane {

class RulesArea final : public QScrollArea {
public:
    // Takes them over.
    explicit RulesArea(QWidget& rules);

    [[nodiscard]] QSize sizeHint() const override;
};

}  // namespace kelvane
