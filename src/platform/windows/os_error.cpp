#include "platform/windows/os_error.h"

#include <string>
#include <windows.h>

#include <sherrors.h>

#include "platform/windows/wide_text.h"

namespace kelvane::windows_os {
namespace {

ErrorKind kindOf(DWORD code)
{
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_NOT_FOUND:
    case ERROR_CANT_RESOLVE_FILENAME:  // links that lead in a circle lead nowhere
    case ERROR_DIRECTORY:              // a component on the way is a file: what is asked for cannot exist
        return ErrorKind::notFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_PRIVILEGE_NOT_HELD:
    case ERROR_NETWORK_ACCESS_DENIED:
        return ErrorKind::accessDenied;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return ErrorKind::exists;
    case ERROR_DELETE_PENDING:
    case ERROR_FILE_INVALID:
        return ErrorKind::changed;
    case ERROR_TOO_MANY_OPEN_FILES:
    case ERROR_NO_SYSTEM_RESOURCES:
        return ErrorKind::tooManyOpen;
    case ERROR_NOT_SUPPORTED:
    case ERROR_INVALID_FUNCTION:
    case ERROR_CALL_NOT_IMPLEMENTED:
        return ErrorKind::notSupported;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_PARAMETER:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_REPARSE_TAG_INVALID:
        return ErrorKind::invalid;
    case ERROR_CANCELLED:
    case ERROR_OPERATION_ABORTED:
        return ErrorKind::cancelled;
    default:
        return ErrorKind::io;
    }
}

ErrorKind kindOfResult(HRESULT result)
{
    switch (result) {
    case COPYENGINE_E_PATH_NOT_FOUND_SRC:
    case COPYENGINE_E_PATH_NOT_FOUND_DEST:
        return ErrorKind::notFound;
    case COPYENGINE_E_ACCESS_DENIED_SRC:
    case COPYENGINE_E_ACCESS_DENIED_DEST:
    case COPYENGINE_E_SHARING_VIOLATION_SRC:
    case COPYENGINE_E_SHARING_VIOLATION_DEST:
    case COPYENGINE_E_REQUIRES_ELEVATION:
        return ErrorKind::accessDenied;
    case COPYENGINE_E_USER_CANCELLED:
    case COPYENGINE_E_CANCELLED:
    case E_ABORT:
        return ErrorKind::cancelled;
    case E_NOTIMPL:
    case COPYENGINE_E_PATH_TOO_DEEP_SRC:
    case COPYENGINE_E_PATH_TOO_DEEP_DEST:
        return ErrorKind::notSupported;
    case E_INVALIDARG:
        return ErrorKind::invalid;
    default:
        return ErrorKind::io;
    }
}

std::string systemText(DWORD code)
{
    wchar_t text[512];
    constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    DWORD length = ::FormatMessageW(flags, nullptr, code, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
    while (length > 0 && (text[length - 1] == L' ' || text[length - 1] == L'.'))
        --length;
    return length > 0 ? wtf8FromWide({text, length}) : "error " + std::to_string(code);
}

}  // namespace

Error osError(unsigned long code)
{
    return {kindOf(code), static_cast<int>(code), systemText(code)};
}

Error lastError()
{
    return osError(::GetLastError());
}

Error resultError(long result)
{
    if (HRESULT_FACILITY(result) == FACILITY_WIN32)
        return osError(static_cast<DWORD>(HRESULT_CODE(result)));
    return {kindOfResult(result), static_cast<int>(result), systemText(static_cast<DWORD>(result))};
}

long resultOf(const Error& error)
{
    if (error.systemCode == 0)
        return E_FAIL;
    return HRESULT_FROM_WIN32(static_cast<DWORD>(error.systemCode));
}

}  // namespace kelvane::windows_os
