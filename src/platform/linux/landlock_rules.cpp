#include "platform/linux/landlock_rules.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {
namespace {

// As newer kernels than the headers that this is built with have it (Documentation/userspace-api/landlock.rst).
struct RulesetAttributes {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scoped = 0;
};

constexpr std::uint64_t bits(unsigned count)
{
    return (std::uint64_t{1} << count) - 1;
}

// How many rights over files each version knows, from version 1 on; later versions added none so far.
constexpr std::array<unsigned, 5> fileRights = {13, 14, 15, 15, 16};
constexpr int versionWithNetwork = 4;
constexpr int versionWithScopes = 6;

std::uint64_t rightsFor(const WorkerLimits& limits, bool isFolder)
{
    std::uint64_t rights = LANDLOCK_ACCESS_FS_READ_FILE;
    if (limits.program != WorkerProgram::media)
        rights |= LANDLOCK_ACCESS_FS_EXECUTE;
    return isFolder ? rights | LANDLOCK_ACCESS_FS_READ_DIR : rights;
}

// What programs and their libraries need in order to run.
constexpr const char* programPlaces[] = {"/usr",
                                         "/lib",
                                         "/lib32",
                                         "/lib64",
                                         "/bin",
                                         "/etc",
                                         "/dev/null",
                                         "/dev/urandom",
                                         "/dev/zero"
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
                                         ,
                                         "/proc"
#endif
};
constexpr const char* everyPlace[] = {"/"};
constexpr const char* knownFonts = "/var/cache/fontconfig";  // for letters in drawings

int landlockVersion()
{
    return static_cast<int>(::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION));
}

RulesetAttributes attributesFor(int version)
{
    const auto known = std::min<std::size_t>(static_cast<std::size_t>(version), fileRights.size());
    RulesetAttributes attributes;
    attributes.files = bits(fileRights[known - 1]);
    attributes.network = version >= versionWithNetwork ? bits(2) : 0;  // binding, connecting
    attributes.scoped = version >= versionWithScopes ? bits(2) : 0;    // abstract sockets, signals
    return attributes;
}

// A place that is not there needs no rule.
bool allowReading(int ruleset, const char* place, const WorkerLimits& limits)
{
    const FileHandle opened(::open(place, O_PATH | O_CLOEXEC));
    struct stat facts {};
    if (!opened.valid() || ::fstat(opened.get(), &facts) != 0)
        return true;
    landlock_path_beneath_attr rule{};
    rule.allowed_access = rightsFor(limits, S_ISDIR(facts.st_mode));
    rule.parent_fd = opened.get();
    return ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

}  // namespace

LandlockWalls raiseLandlock(const WorkerLimits& limits)
{
    const int version = landlockVersion();
    if (version < 1)
        return {};
    const RulesetAttributes attributes = attributesFor(version);
    const FileHandle ruleset(static_cast<int>(
        ::syscall(SYS_landlock_create_ruleset, &attributes, version < versionWithNetwork ? 8 : sizeof attributes, 0)));
    if (!ruleset.valid())
        return {};
    const auto allow = [&](const char* place) { return allowReading(ruleset.get(), place, limits); };
    const bool allowed = limits.reach == WorkerReach::givenFile
                             ? std::all_of(std::begin(programPlaces), std::end(programPlaces), allow)
                             : std::all_of(std::begin(everyPlace), std::end(everyPlace), allow);
    const bool fonts = limits.program != WorkerProgram::media || allow(knownFonts);
    if (!allowed || !fonts || ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0) != 0)
        return {};
    return {true, attributes.scoped != 0};
}

}  // namespace kelvane::linux_os
