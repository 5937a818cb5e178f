#include "platform/linux/adapters.h"
#include "settings_back_ends.h"
#include "support/fakes.h"

namespace kelvane::testing {
namespace {

class RegistryPlace final : public SettingsWorld {
public:
    std::unique_ptr<SettingsStore> open() override
    {
        return makeSqliteSettingsStore(tree_.path("config/registry.db"), folding_);
    }

private:
    TempTree tree_;
    SimpleFolding folding_;
};

}  // namespace

SettingsBackEnd registryBackEnd()
{
    return {.name = "Registry", .make = std::make_unique<RegistryPlace>};
}

}  // namespace kelvane::testing
