#include "platform/windows/mail.h"

#include <string>
#include <windows.h>

#include <mapi.h>

#include "platform/windows/wide_text.h"

namespace kelvane::windows_os {
namespace {

// The library of the mail program that is in charge; loaded once and kept, since unloading is known to hang.
LPMAPISENDMAIL findSendMail()
{
    static const HMODULE library = ::LoadLibraryExW(L"MAPI32.DLL", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr)
        return nullptr;
    return reinterpret_cast<LPMAPISENDMAIL>(reinterpret_cast<void*>(::GetProcAddress(library, "MAPISendMail")));
}

// Simple MAPI takes texts in the system's code page.
std::string systemBytes(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

}  // namespace

MailOutcome composeByMapi(const MailDraft& draft)
{
    const LPMAPISENDMAIL sendMail = findSendMail();
    if (sendMail == nullptr)
        return MailOutcome::unavailable;
    std::string address = "SMTP:" + systemBytes(toWide(draft.to));
    std::string subject = systemBytes(toWide(draft.subject));
    std::string body = systemBytes(toWide(draft.body));
    std::string attachment = systemBytes(draft.attachment.wstring());

    MapiRecipDesc recipient{};
    recipient.ulRecipClass = MAPI_TO;
    recipient.lpszName = recipient.lpszAddress = address.data();
    MapiFileDesc file{};
    file.nPosition = static_cast<ULONG>(-1);
    file.lpszPathName = attachment.data();
    MapiMessage message{};
    message.lpszSubject = subject.data();
    message.lpszNoteText = body.data();
    message.nRecipCount = 1;
    message.lpRecips = &recipient;
    message.nFileCount = attachment.empty() ? 0 : 1;
    message.lpFiles = attachment.empty() ? nullptr : &file;

    const ULONG code = sendMail(0, 0, &message, MAPI_LOGON_UI | MAPI_DIALOG, 0);
    if (code == SUCCESS_SUCCESS)
        return MailOutcome::handedOver;
    return code == MAPI_USER_ABORT ? MailOutcome::cancelled : MailOutcome::unavailable;
}

}  // namespace kelvane::windows_os
