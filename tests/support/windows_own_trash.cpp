#include "support/own_trash.h"

namespace kelvane::testing {

struct OwnTrash::Impl {};

OwnTrash::OwnTrash(const std::filesystem::path& /*folder*/) {}

OwnTrash::~OwnTrash() = default;

}  // namespace kelvane::testing
