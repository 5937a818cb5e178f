#include "support/linux_environment.h"
#include "support/own_trash.h"

namespace kelvane::testing {

struct OwnTrash::Impl {
    explicit Impl(const char* folder) : dataHome("XDG_DATA_HOME", folder) {}

    WithVariable dataHome;
};

OwnTrash::OwnTrash(const std::filesystem::path& folder) : impl_(std::make_unique<Impl>(folder.c_str())) {}

OwnTrash::~OwnTrash() = default;

}  // namespace kelvane::testing
