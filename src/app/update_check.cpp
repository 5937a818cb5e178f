#include "app/update_check.h"

#include "app/makers.h"
#include "app/version_info.h"
#include "base/text_table.h"
#include "base/utf.h"

namespace kelvane {

std::string updateLink(std::string_view page, std::u16string_view version)
{
    const char joint = page.find('?') == std::string_view::npos ? '?' : '&';
    return std::string(page) + joint + "v=" + percentEncode(toUtf8(version));
}

void checkForUpdates(Settings& settings, Processes& processes, const Clock& clock, Questions& questions)
{
    if (processes.isOnline())
        settings.lastUpdateCheck = clock.now();
    else
        questions.showError(text(TextId::notOnline));
    // The system may be wrong about the connection, so the browser is tried in any case; it tells of its own failures.
    static_cast<void>(processes.openLink(updateLink(makers::updatePage(), CAppVersionInfo::versionText())));
}

}  // namespace kelvane
