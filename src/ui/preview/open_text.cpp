#include "ui/preview/open_text.h"

#include <filesystem>

#include "app/error_text.h"
#include "base/desktop_texts/preview.h"
#include "base/filled_text.h"
#include "base/utf.h"

namespace kelvane {

std::u16string openInTextViewer(const ShellItem& item, const std::u16string& viewer, Processes& processes)
{
    const Status opened = viewer.empty() ? processes.openFile(item.path())
                                         : processes.start(std::filesystem::path(viewer), {item.fullName()});
    return opened ? std::u16string()
                  : toUtf16(filledText(desktop_text::previewOpenFailed, {errorText(opened.error())}));
}

}  // namespace kelvane
