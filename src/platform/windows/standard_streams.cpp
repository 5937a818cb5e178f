#include "platform/standard_streams.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <initializer_list>
#include <io.h>
#include <windows.h>

namespace kelvane {
namespace {

void reserve(DWORD which)
{
    const HANDLE handle = ::GetStdHandle(which);
    if (handle && handle != INVALID_HANDLE_VALUE && ::GetFileType(handle) != FILE_TYPE_UNKNOWN)
        return;
    // Opened the wrong way round, so that using it fails.
    const DWORD access = which == STD_INPUT_HANDLE ? GENERIC_WRITE : GENERIC_READ;
    ::SetStdHandle(
        which, ::CreateFileW(L"NUL", access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
}

// The console belongs to other programs as well and gets its code page back.
void showUtf8()
{
    static const UINT before = ::GetConsoleOutputCP();
    if (before == 0 || before == CP_UTF8 || ::SetConsoleOutputCP(CP_UTF8) == 0)
        return;
    std::atexit([] { ::SetConsoleOutputCP(before); });
}

}  // namespace

void reserveStandardStreams() noexcept
{
    for (const DWORD which : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
        reserve(which);
    // Results are bytes: a line feed stays one byte, and a 0x1A in the input is no end.
    for (std::FILE* stream : {stdin, stdout, stderr})
        ::_setmode(::_fileno(stream), _O_BINARY);
    showUtf8();
}

}  // namespace kelvane
