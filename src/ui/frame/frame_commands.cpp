#include "ui/frame/frame_commands.h"

#include "ui/core/window_link.h"

namespace kelvane {

void installFrameCommands(const FrameParts& parts)
{
    namespace say = desktop_text;
    WindowLink& link = parts.link;
    parts.commands.add({"file.newWindow", say::commandNewWindow, MenuId::file,
                        [&link] { link.desktop().application().post(OpenWindow{}); }, QKeySequence::New});
    parts.commands.add({.name = "file.close",
                        .label = say::commandClose,
                        .menu = MenuId::file,
                        .run = [&link] { link.requestClose(); },
                        .keys = QKeySequence::Close,
                        .beginsSection = true});
}

}  // namespace kelvane
