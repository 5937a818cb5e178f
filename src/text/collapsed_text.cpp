#include "text/collapsed_text.h"

namespace kelvane {

void CollapsedText::put(std::u16string_view characters)
{
    run_.clear();
    bool space = false;
    for (const char16_t unit : characters) {
        if (isMarkupSpace(unit)) {
            space = true;
        } else if (unit != 0) {
            if (space)
                blank();
            space = false;
            run_ += unit;
        }
    }
    sink_.text(run_);
    if (space)
        sink_.gap();
}

void CollapsedText::blank()
{
    if (run_.empty())
        sink_.gap();
    else
        run_ += u' ';
}

}  // namespace kelvane
