// Sorting without a mouse.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

class ListHeader;
class ListSorting;

// "Sort by" with the columns in view, in the menu "View"; its keys open it at the list. Owned by the window.
void addSortMenu(const FrameParts& parts, ListSorting& sorting, const ListHeader& header);

}  // namespace kelvane
