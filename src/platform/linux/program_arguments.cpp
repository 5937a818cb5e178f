#include "platform/program_arguments.h"

#include <algorithm>

namespace kelvane {

std::vector<std::string> programArguments(int count, char** words)
{
    return {words + std::min(count, 1), words + count};
}

}  // namespace kelvane
