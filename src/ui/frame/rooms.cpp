#include "ui/frame/rooms.h"

#include "ui/frame/frame_commands.h"
#include "ui/list/install_list.h"

namespace kelvane {

void installRooms(const FrameParts& parts)
{
    installFrameCommands(parts);
    installList(parts);
}

}  // namespace kelvane
