#include "engine/scan_node.h"

namespace kelvane {

void CScanNode::setCategory(Category category)
{
    flags = (flags & ~scan_flag::categoryMask) | (static_cast<std::uint32_t>(category) & scan_flag::categoryMask);
}

}  // namespace kelvane
