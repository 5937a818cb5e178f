#include "ui/frame/rooms.h"

#include "ui/frame/frame_commands.h"
#include "ui/list/install_list.h"
#include "ui/options/install_options.h"
#include "ui/preview/install_preview.h"
#include "ui/scan/install_scan.h"

namespace kelvane {

void installRooms(const FrameParts& parts)
{
    installFrameCommands(parts);
    installList(parts);
    installScan(parts);
    installOptions(parts);
    installPreview(parts);
    installFramePanes(parts);
    installClosing(parts);
}

}  // namespace kelvane
