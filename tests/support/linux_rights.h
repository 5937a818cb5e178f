// The rights of an ordinary user for tests that an administrator may run.
#pragma once

#include <sys/types.h>
#include <unistd.h>

namespace kelvane::testing {

[[nodiscard]] inline bool isAdministrator()
{
    return ::geteuid() == 0;
}

// While it lives the whole process acts as this user, who need not exist. Only for an administrator.
class ActingAs {
public:
    explicit ActingAs(uid_t user) { worked_ = ::seteuid(user) == 0; }
    ~ActingAs() { static_cast<void>(::seteuid(0) == 0); }
    ActingAs(const ActingAs&) = delete;
    ActingAs& operator=(const ActingAs&) = delete;
    [[nodiscard]] bool worked() const { return worked_; }

private:
    bool worked_;
};

}  // namespace kelvane::testing
