#include "engine/same_file.h"

#include "platform/native_text.h"

namespace kelvane {

bool hasIdentity(const ShellItem& item) noexcept
{
    return item.inFileSystem() && item.info().identity.known();
}

bool sameFile(const ShellItem& a, const ShellItem& b, const PathRules& rules)
{
    if (hasIdentity(a) && hasIdentity(b) && a.info().kind == b.info().kind && a.info().identity == b.info().identity)
        return true;
    return rules.samePath(bytesFromNative(a.fullName()), bytesFromNative(b.fullName()));
}

}  // namespace kelvane
