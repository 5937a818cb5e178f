// The person on whose behalf the elevated helper acts.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <vector>

namespace kelvane::linux_os {

class Caller {
public:
    // The process that started this one: the system's word for the other end of `socket`, which must be our parent, and
    // be run by the user whom polkit names in PKEXEC_UID. Nothing when any of this does not fit together.
    [[nodiscard]] static std::optional<Caller> of(int socket);

    Caller(pid_t process, uid_t user, gid_t group, std::vector<gid_t> groups);

    [[nodiscard]] pid_t process() const { return process_; }
    [[nodiscard]] uid_t user() const { return user_; }
    [[nodiscard]] gid_t group() const { return group_; }

    // Runs the work with the caller's rights instead of ours, so that the kernel itself says what they may see. False,
    // and no work, when the rights cannot be taken on. A process that cannot have its own rights back ends at once.
    [[nodiscard]] bool act(const std::function<void()>& work) const;

private:
    [[nodiscard]] bool takeOn() const;
    static void putOff();

    pid_t process_;
    uid_t user_;
    gid_t group_;
    std::vector<gid_t> groups_;
};

}  // namespace kelvane::linux_os
