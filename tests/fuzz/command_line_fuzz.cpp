#include <filesystem>
#include <span>

#include "app/command_line.h"
#include "require.h"

namespace kelvane {
namespace {

constexpr std::uint32_t everyFlag = command_flag::optionM | command_flag::ownProcess | command_flag::helperMode |
                                    command_flag::optionJ | command_flag::afterCrash;

void tryAs(std::span<const std::byte> bytes, CommandSyntax syntax)
{
    const auto text = decodeHandOver(bytes, syntax);
    if (!text.ok())
        return;
    const auto again = decodeHandOver(encodeHandOver(*text), syntax);
    require(again.ok() && *again == *text);
    const auto exists = [](const std::filesystem::path& path) { return path.native().size() % 2 == 0; };
    (void)forbidsHandOver(*text, exists);
    const auto line = parseCommandLine(*text, 0, false, exists);
    require((line.flags & ~everyFlag) == 0 && !line.has(command_flag::helperMode) && line.helperRequest.empty());
    auto words = argumentsOf(*text);
    words.insert(words.begin(), "k");
    require(splitWindowsArguments(joinWindowsArguments(words)) == words);
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const auto bytes = std::as_bytes(std::span(data, size));
    kelvane::tryAs(bytes, kelvane::CommandSyntax::posix);
    kelvane::tryAs(bytes, kelvane::CommandSyntax::windows);
    return 0;
}
