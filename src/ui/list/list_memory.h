// What windows remember of their lists: columns, widths, the order, how pictures are shown.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ui/core/desktop_memory.h"
#include "ui/list/list_columns.h"

namespace kelvane {

// On the main thread. Each takes effect in the next list, of this window or another one, and in the next run.
class ListMemory {
public:
    explicit ListMemory(DesktopMemory& memory) : memory_(memory) {}

    [[nodiscard]] KeptColumns columns() const;
    // The person wants these from the left, of those in view and others; none: the first ones, as wide as at first.
    void choose(const std::vector<std::string>& names, const std::vector<ListColumn>& inView);

    // Of columns that somebody made wider or narrower, in pixels.
    [[nodiscard]] std::map<std::string, int> widths() const;
    void setWidth(const std::string& name, int width);

    [[nodiscard]] bool keepsGroups() const;
    void setKeepsGroups(bool on);

    // Whether lists of pictures and films, or all others, are shown as thumbnails: at first those of pictures are.
    [[nodiscard]] bool showsThumbnails(bool ofPictures) const;
    void setShowsThumbnails(bool ofPictures, bool on);

private:
    DesktopMemory& memory_;
};

}  // namespace kelvane
