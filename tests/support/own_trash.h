// A trash for tests instead of the person's own, as far as the system lets one choose.
#pragma once

#include <filesystem>
#include <memory>

namespace kelvane::testing {

// While it lives, what lies on the temporary folder's volume goes to a trash below this folder. On Windows it goes to
// the recycle bin of whoever runs the tests, there being only that one.
class OwnTrash {
public:
    explicit OwnTrash(const std::filesystem::path& folder);
    ~OwnTrash();
    OwnTrash(const OwnTrash&) = delete;
    OwnTrash& operator=(const OwnTrash&) = delete;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace kelvane::testing
