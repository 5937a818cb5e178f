#include "support/linux_loop_volume.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace kelvane::testing {
namespace {

// What is mounted from now on is seen by this process and its children only.
bool haveMountsOfOurOwn()
{
    static const bool have =
        ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return have;
}

bool runQuietly(const std::vector<std::string>& words)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_RDWR);
        for (const int stream : {0, 1, 2})
            ::dup2(nowhere, stream);
        std::vector<char*> arguments;
        for (const std::string& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        ::setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace

LoopVolume::LoopVolume(const std::string& type, unsigned megabytes)
{
    const std::string place = tree_.folder("mounted");
    const std::string size = std::to_string(megabytes) + "M";
    const std::string image = tree_.path("image");
    if (!haveMountsOfOurOwn())
        reason_ = "this process may not mount anything";
    else if (type == "tmpfs")
        reason_ = runQuietly({"mount", "-t", type, "-o", "size=" + size, "none", place}) ? "" : "no tmpfs here";
    else if (!runQuietly({"truncate", "-s", size, image}) || !runQuietly({"mkfs." + type, image}))
        reason_ = "mkfs." + type + " is missing or fails";
    else if (!runQuietly({"mount", "-t", type, "-o", "loop", image, place}))
        reason_ = "no loop device, or the kernel knows no " + type;
}

LoopVolume::~LoopVolume()
{
    if (isMounted())
        ::umount2(path().c_str(), MNT_DETACH);
}

bool LoopVolume::makeReadOnly(bool on) const
{
    return runQuietly({"mount", "-o", on ? "remount,ro" : "remount,rw", path()});
}

}  // namespace kelvane::testing
