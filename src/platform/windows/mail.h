// Mail drafts through Simple MAPI, where a mail program offers it.
#pragma once

#include "platform/processes.h"

namespace kelvane::windows_os {

// Waits for the person to send or to close the draft.
[[nodiscard]] MailOutcome composeByMapi(const MailDraft& draft);

}  // namespace kelvane::windows_os
