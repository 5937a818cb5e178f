#include "platform/linux/volumes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace kelvane::linux_os {
namespace {

namespace fs = std::filesystem;

// Made up by the kernel or by a program, with nothing on any disk.
constexpr auto pseudoTypes = std::to_array<std::string_view>(
    {"autofs",   "binfmt_misc", "bpf",        "cgroup",    "cgroup2", "configfs", "debugfs", "devpts", "devtmpfs",
     "efivarfs", "fusectl",     "hugetlbfs",  "lxcfs",     "mqueue",  "nfsd",     "nsfs",    "portal", "proc",
     "pstore",   "rpc_pipefs",  "securityfs", "selinuxfs", "sockfs",  "sysfs",    "tracefs"});

// On another computer of one's own network.
constexpr auto networkTypes =
    std::to_array<std::string_view>({"9p", "afs", "ceph", "cifs", "coda", "glusterfs", "lustre", "ncpfs", "nfs", "nfs4",
                                     "smb3", "smbfs", "smbnetfs", "sshfs"});

// In a store somewhere that hands contents out file by file, often against payment.
constexpr auto fetchingTypes = std::to_array<std::string_view>(
    {"curlftpfs", "davfs", "davfs2", "dbxfs", "gcsfuse", "google-drive-ocamlfuse", "goofys", "gvfsd-fuse", "jmtpfs",
     "mount-s3", "onedriver", "rclone", "s3fs", "simple-mtpfs"});

// That compare two files on their own and let them share blocks.
constexpr auto cloningTypes = std::to_array<std::string_view>({"bcachefs", "btrfs", "ocfs2", "xfs"});

template <std::size_t count>
bool holds(const std::array<std::string_view, count>& list, std::string_view word)
{
    return std::find(list.begin(), list.end(), word) != list.end();
}

std::vector<std::string_view> mountFields(std::string_view line)
{
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        if (end > 0)
            fields.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return fields;
}

std::optional<unsigned> toNumber(std::string_view text, int base = 10)
{
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

// The kernel writes space, tab, line feed and backslash as a backslash and three octal digits.
std::string unescaped(std::string_view text)
{
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto code = text[at] == '\\' && at + 3 < text.size() ? toNumber(text.substr(at + 1, 3), 8) : std::nullopt;
        plain += code ? static_cast<char>(*code) : text[at];
        at += code ? 3 : 0;
    }
    return plain;
}

std::optional<std::uint64_t> deviceNumber(std::string_view text)
{
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const auto major = toNumber(text.substr(0, colon));
    const auto minor = toNumber(text.substr(colon + 1));
    if (!major || !minor)
        return std::nullopt;
    return makedev(*major, *minor);
}

std::optional<Mount> parseLine(std::string_view line)
{
    const auto fields = mountFields(line);
    // A varying number of optional fields ends with "-"; type, source and options follow.
    const auto dash = std::find(fields.begin(), fields.end(), std::string_view("-"));
    if (dash - fields.begin() < 6 || fields.end() - dash < 3)
        return std::nullopt;
    const auto id = toNumber(fields[0]);
    const auto device = deviceNumber(fields[2]);
    if (!id || !device)
        return std::nullopt;
    return Mount{*id, *device, unescaped(fields[4]), unescaped(dash[1]), unescaped(dash[2]), unescaped(fields[3])};
}

std::string readWhole(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The block device that a volume lies on; the source knows it where the volume has a device number of its own.
std::uint64_t blockDeviceOf(const Mount& mount)
{
    struct stat facts {};
    if (mount.source.starts_with("/dev/") && ::stat(mount.source.c_str(), &facts) == 0 && S_ISBLK(facts.st_mode))
        return facts.st_rdev;
    return mount.device;
}

// Partitions have no "removable" of their own: their disk, one folder up, has it. Disks on USB call themselves fixed.
bool isBuiltIn(std::uint64_t blockDevice)
{
    std::error_code error;
    const fs::path link =
        "/sys/dev/block/" + std::to_string(major(blockDevice)) + ":" + std::to_string(minor(blockDevice));
    const fs::path device = fs::canonical(link, error);
    if (error || device.native().find("/usb") != std::string::npos)
        return false;
    std::string removable = readWhole(device / "removable");
    if (removable.empty())
        removable = readWhole(device.parent_path() / "removable");
    return !removable.starts_with('1');
}

VolumeFacts factsOf(const Mount& mount)
{
    VolumeFacts facts = factsOfType(mount.type);
    facts.mountPoint = mount.mountPoint;
    facts.fixed = !facts.pseudo && !facts.network && !facts.fetchesOnRead && isBuiltIn(blockDeviceOf(mount));
    return facts;
}

}  // namespace

std::vector<Mount> parseMountInfo(std::string_view text)
{
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (auto mount = parseLine(text.substr(0, end)))
            mounts.push_back(*std::move(mount));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return mounts;
}

VolumeFacts factsOfType(std::string_view type)
{
    std::string_view kind = type;
    for (const std::string_view prefix : std::initializer_list<std::string_view>{"fuse.", "fuseblk."}) {
        if (kind.starts_with(prefix))
            kind.remove_prefix(prefix.size());
    }
    VolumeFacts facts;
    facts.fileSystem = type;
    facts.pseudo = holds(pseudoTypes, kind);
    facts.fetchesOnRead = holds(fetchingTypes, kind);
    facts.network = facts.fetchesOnRead || holds(networkTypes, kind);
    facts.clones = holds(cloningTypes, kind);
    return facts;
}

VolumeFacts Volumes::facts(std::uint64_t device, std::uint64_t mount)
{
    {
        const std::shared_lock lock(mutex_);
        const auto known = byDevice_.find(device);
        if (known != byDevice_.end())
            return known->second;
    }
    const auto mounts = parseMountInfo(readWhole("/proc/self/mountinfo"));
    // A mount that shows the volume from its root says better where it is than one that shows a folder of it.
    auto found = std::find_if(mounts.begin(), mounts.end(),
                              [&](const Mount& one) { return one.device == device && one.root == "/"; });
    if (found == mounts.end())
        found = std::find_if(mounts.begin(), mounts.end(), [&](const Mount& one) { return one.device == device; });
    if (found == mounts.end())
        found = std::find_if(mounts.begin(), mounts.end(), [&](const Mount& one) { return one.id == mount; });
    VolumeFacts facts = found != mounts.end() ? factsOf(*found) : VolumeFacts{};
    facts.serial = device;
    const std::unique_lock lock(mutex_);
    return byDevice_.try_emplace(device, std::move(facts)).first->second;
}

}  // namespace kelvane::linux_os
