// Text of XML documents in which any run of white space means one blank.
#pragma once

#include <string>
#include <string_view>

namespace kelvane {

class SpaceCollapser {
public:
    // White space that comes next is left out: a paragraph begins, or a blank was written.
    void begin() { spaced_ = true; }
    // The characters as they are to be written; valid until the next call.
    [[nodiscard]] std::string_view operator()(std::string_view utf8)
    {
        collapsed_.clear();
        for (const char c : utf8) {
            const bool space = c == ' ' || c == '\t' || c == '\n' || c == '\r';
            if (!space || !spaced_)
                collapsed_ += space ? ' ' : c;
            spaced_ = space;
        }
        return collapsed_;
    }

private:
    bool spaced_ = true;
    std::string collapsed_;
};

}  // namespace kelvane
