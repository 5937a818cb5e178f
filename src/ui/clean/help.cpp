#include "ui/clean/help.h"

#include "ui/core/window_link.h"

namespace kelvane {

void openCleanupHelp(WindowLink& link)
{
    Q_EMIT link.helpWanted(QStringLiteral("toc_clean"));
}

}  // namespace kelvane
