// Ports that Windows has no adapter for yet. Each says so to whoever asks.
#include "platform/windows/adapters.h"

namespace kelvane {
namespace {

Error notAvailable()
{
    return {ErrorKind::notSupported, 0, "not available on Windows yet"};
}

class NoTextModules final : public TextModules {
public:
    bool anyIn(const std::filesystem::path& /*folder*/) override { return false; }
    Result<TextsByNumber> load(const std::filesystem::path& /*folder*/) override { return notAvailable(); }
    Result<TextsByNumber> loadForPerson(const std::filesystem::path& /*folder*/) override { return notAvailable(); }
};

}  // namespace

std::unique_ptr<TextModules> makeWindowsTextModules()
{
    return std::make_unique<NoTextModules>();
}

}  // namespace kelvane
