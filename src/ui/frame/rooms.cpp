#include "ui/frame/rooms.h"

#include "ui/clean/install_clean.h"
#include "ui/frame/frame_commands.h"
#include "ui/frame/room_links.h"
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
    installPreview(parts);
    installClean(parts);
    installOptions(parts);
    installFramePanes(parts);
    installClosing(parts);
    parts.commands.arrangeToolbar({"scan.start", "scan.stop", "", "list.open", "list.save", "", "mark.wizard",
                                   "mark.keepNewest", "mark.keepOldest", "", "clean.start"});
    linkRooms(parts);
}

}  // namespace kelvane
