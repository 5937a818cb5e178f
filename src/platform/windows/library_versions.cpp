// The system itself does what other systems leave to libraries.
#include "platform/library_versions.h"

#include <xxhash.h>

namespace kelvane {

std::vector<LibraryVersion> libraryVersions()
{
    return {{"xxHash", std::to_string(XXH_VERSION_MAJOR) + '.' + std::to_string(XXH_VERSION_MINOR) + '.' +
                           std::to_string(XXH_VERSION_RELEASE)}};
}

}  // namespace kelvane
