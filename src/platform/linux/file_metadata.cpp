#include "platform/linux/file_metadata.h"

#include <algorithm>
#include <linux/limits.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/linux/file_access.h"
#include "platform/linux/growing_reads.h"

namespace kelvane::linux_os {
namespace {

using Attribute = std::pair<std::string, std::vector<std::byte>>;

constexpr std::int64_t perSecond = 1'000'000'000;
constexpr std::uint32_t modeBits = 07777;
// How XFS shows the access lists to an administrator once more.
constexpr std::string_view listsInOtherForm = "trusted.SGI_ACL_";

std::int64_t nanoseconds(const timespec& time)
{
    return time.tv_sec * perSecond + time.tv_nsec;
}

// Nanoseconds are counted upwards also before 1970.
timespec timeOf(std::int64_t nanoseconds)
{
    std::int64_t seconds = nanoseconds / perSecond;
    std::int64_t rest = nanoseconds % perSecond;
    if (rest < 0) {
        --seconds;
        rest += perSecond;
    }
    return {static_cast<time_t>(seconds), static_cast<long>(rest)};
}

Result<std::vector<std::byte>> readAttribute(int file, const std::string& name)
{
    return readGrowing<std::vector<std::byte>>(XATTR_SIZE_MAX, [&](std::byte* buffer, std::size_t size) {
        return ::fgetxattr(file, name.c_str(), buffer, size);
    });
}

// Gone since it was listed, or not for everyone's eyes.
bool isUnreadable(int code)
{
    return code == ENODATA || code == ENOTSUP || code == EACCES || code == EPERM;
}

// One after the other, each with a 0 behind it.
Result<std::string> attributeNames(int file)
{
    auto list = readGrowing<std::string>(
        XATTR_LIST_MAX, [&](char* buffer, std::size_t size) { return ::flistxattr(file, buffer, size); });
    return list || list.error().kind != ErrorKind::notSupported ? list : Result<std::string>(std::string());
}

Result<std::vector<std::string>> splitNames(const Result<std::string>& list)
{
    if (!list)
        return list.error();
    std::vector<std::string> names;
    for (std::string_view rest = *list; !rest.empty();) {
        const std::string_view name = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(name.size() + 1, rest.size()));
        if (!name.starts_with(listsInOtherForm))
            names.emplace_back(name);
    }
    return names;
}

Result<std::vector<Attribute>> readAttributes(int file)
{
    const auto names = splitNames(attributeNames(file));
    if (!names)
        return names.error();
    std::vector<Attribute> attributes;
    for (const std::string& name : *names) {
        auto value = readAttribute(file, name);
        if (value)
            attributes.emplace_back(name, std::move(*value));
        else if (!isUnreadable(value.error().systemCode))
            return value.error();
    }
    std::sort(attributes.begin(), attributes.end());
    return attributes;
}

// Goes on after a failure and remembers the first.
class Giving {
public:
    bool note(int result)
    {
        if (result != 0 && status_)
            status_ = osError(errno);
        return result == 0;
    }
    [[nodiscard]] const Status& status() const { return status_; }

private:
    Status status_;
};

// A value that is there already (a label that the system gives to every new file) needs no right to set it.
int giveAttribute(int file, const Attribute& attribute)
{
    const auto there = readAttribute(file, attribute.first);
    if (there && *there == attribute.second)
        return 0;
    return ::fsetxattr(file, attribute.first.c_str(), attribute.second.data(), attribute.second.size(), 0);
}

// A folder may give every new file an access list, which lets people read whom the file itself does not name. Labels of
// the system's own security are left alone.
void removeForeignAttributes(int file, const std::vector<Attribute>& wanted, Giving& giving)
{
    const auto names = splitNames(attributeNames(file));
    for (const std::string& name : names ? *names : std::vector<std::string>()) {
        const bool isWanted =
            std::any_of(wanted.begin(), wanted.end(), [&](const auto& one) { return one.first == name; });
        if (!isWanted && (name.starts_with("system.") || name.starts_with("user.")))
            giving.note(::fremovexattr(file, name.c_str()));
    }
}

struct Ownership {
    bool owner = false;
    bool group = false;
};

// Set apart: a member of the group may give the file to it, but only the system's administrator to another owner.
Ownership giveOwner(int file, const FileMetadata& metadata, Giving& giving)
{
    struct stat now {};
    if (!giving.note(::fstat(file, &now)))
        return {};
    Ownership given{now.st_uid == metadata.owner, now.st_gid == metadata.group};
    given.group = given.group || giving.note(::fchown(file, static_cast<uid_t>(-1), metadata.group));
    given.owner = given.owner || giving.note(::fchown(file, metadata.owner, static_cast<gid_t>(-1)));
    return given;
}

mode_t modeFor(std::uint32_t permissions, const Ownership& given)
{
    mode_t mode = permissions & modeBits;
    if (!given.group)
        mode &= ~static_cast<mode_t>(S_ISGID | S_IRWXG);
    if (!given.owner)
        mode &= ~static_cast<mode_t>(S_ISUID);
    return mode;
}

}  // namespace

Result<FileMetadata> readMetadata(int file)
{
    struct stat facts {};
    if (::fstat(file, &facts) != 0)
        return osError(errno);
    auto attributes = readAttributes(file);
    if (!attributes)
        return attributes.error();
    return FileMetadata{facts.st_uid,
                        facts.st_gid,
                        facts.st_mode & modeBits,
                        nanoseconds(facts.st_mtim),
                        nanoseconds(facts.st_atim),
                        std::move(*attributes)};
}

// The order matters: a new owner clears the set-user bits, and every change but that of the times moves a time.
Status giveMetadata(int file, const FileMetadata& metadata)
{
    Giving giving;
    const Ownership given = giveOwner(file, metadata, giving);
    std::vector<Attribute> wanted = metadata.attributes;
    if (!given.owner || !given.group)
        std::erase_if(wanted, [](const Attribute& one) { return one.first == accessListAttribute; });
    removeForeignAttributes(file, wanted, giving);
    for (const Attribute& attribute : wanted)
        giving.note(giveAttribute(file, attribute));
    giving.note(::fchmod(file, modeFor(metadata.permissions, given)));
    const timespec times[] = {timeOf(metadata.accessed), timeOf(metadata.modified)};
    giving.note(::futimens(file, times));
    return giving.status();
}

}  // namespace kelvane::linux_os
