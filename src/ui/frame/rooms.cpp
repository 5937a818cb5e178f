#include "ui/frame/rooms.h"

#include "ui/frame/frame_commands.h"

namespace kelvane {

void installRooms(const FrameParts& parts)
{
    installFrameCommands(parts);
}

}  // namespace kelvane
