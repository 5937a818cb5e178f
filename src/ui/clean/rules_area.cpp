#include "ui/clean/rules_area.h"

#include <QScreen>
#include <QScrollBar>
#include <algorithm>

namespace kelvane {
namespace {

constexpr int aroundThem = 320;  // pixels of the dialog and of its frame

}  // namespace

RulesArea::RulesArea(QWidget& rules, int leastWidth) : leastWidth_(leastWidth)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setWidget(&rules);
    setMinimumWidth(RulesArea::sizeHint().width());
}

QSize RulesArea::sizeHint() const
{
    QSize wanted = widget()->sizeHint();
    if (const int width = std::max(wanted.width(), leastWidth_); widget()->hasHeightForWidth())
        wanted.setHeight(widget()->heightForWidth(width));
    const int most = screen()->availableGeometry().height() - aroundThem;
    return {wanted.width() + verticalScrollBar()->sizeHint().width(), std::min(wanted.height(), most)};
}

}  // namespace kelvane
