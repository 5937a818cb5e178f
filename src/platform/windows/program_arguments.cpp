#include "platform/program_arguments.h"

#include <memory>
#include <windows.h>

#include <shellapi.h>

#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

struct FreeLocal {
    void operator()(wchar_t** words) const { ::LocalFree(words); }
};

}  // namespace

std::vector<std::string> programArguments(int /*count*/, char** /*words*/)
{
    int count = 0;
    const std::unique_ptr<wchar_t*, FreeLocal> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; words && i < count; ++i)
        arguments.push_back(windows_os::wtf8FromWide(words.get()[i]));
    return arguments;
}

}  // namespace kelvane
