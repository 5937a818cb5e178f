#include "platform/desktop_session.h"

#include "platform/windows/adapters.h"

namespace kelvane {

bool displayIsThere()
{
    return true;
}

std::unique_ptr<DesktopActivation> makeDesktopActivation()
{
    return makeDdeActivation();
}

}  // namespace kelvane
