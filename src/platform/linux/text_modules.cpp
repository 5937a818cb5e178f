#include <cstdlib>

#include "platform/linux/adapters.h"
#include "platform/mo_text_modules.h"

namespace kelvane {
namespace {

std::string environmentText(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

std::unique_ptr<TextModules> makeLinuxTextModules(FileSystem& files)
{
    return makeMoTextModules(files, {environmentText("LANGUAGE"), environmentText("LC_ALL"),
                                     environmentText("LC_MESSAGES"), environmentText("LANG")});
}

}  // namespace kelvane
