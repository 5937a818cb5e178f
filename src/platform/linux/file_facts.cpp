#include "platform/linux/file_facts.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {
namespace {

constexpr unsigned listing = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_INO | STATX_MNT_ID;

FileKind kindOf(unsigned mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileKind::regular;
    case S_IFDIR:
        return FileKind::folder;
    case S_IFLNK:
        return FileKind::link;
    default:
        return FileKind::other;
    }
}

std::uint32_t attributesOf(unsigned mode, std::string_view name)
{
    std::uint32_t attributes = 0;
    if (name.starts_with('.'))
        attributes |= attribute::hidden;
    if (S_ISDIR(mode))
        attributes |= attribute::directory;
    if (S_ISLNK(mode))
        attributes |= attribute::reparsePoint;  // its mode bits mean nothing
    else if ((mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        attributes |= attribute::readOnly;
    return attributes;
}

std::uint32_t storageAttributes(std::uint64_t statxAttributes)
{
    std::uint32_t attributes = 0;
    if ((statxAttributes & STATX_ATTR_COMPRESSED) != 0)
        attributes |= attribute::compressed;
    if ((statxAttributes & STATX_ATTR_ENCRYPTED) != 0)
        attributes |= attribute::encrypted;
    return attributes;
}

FileTime timeOf(const statx_timestamp& time)
{
    return fileTimeFromUnix(time.tv_sec, time.tv_nsec);
}

// 0 where the kernel is too old to tell.
std::uint64_t mountOf(const struct statx& facts)
{
    return (facts.stx_mask & STATX_MNT_ID) != 0 ? facts.stx_mnt_id : 0;
}

}  // namespace

unsigned listingMask()
{
    return listing;
}

unsigned detailsMask()
{
    return listing | STATX_BASIC_STATS | STATX_BTIME;
}

FileInfo FactReader::info(const struct statx& facts, std::string_view name)
{
    FileInfo info;
    info.kind = kindOf(facts.stx_mode);
    info.attributes = attributesOf(facts.stx_mode, name) | storageAttributes(facts.stx_attributes);
    info.size = {info.kind == FileKind::folder ? 0 : facts.stx_size};
    info.modified = timeOf(facts.stx_mtime);
    info.identity = {makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino};
    if (info.kind == FileKind::regular && fetchesOnRead(info.identity.volume, mountOf(facts)))
        info.attributes |= attribute::offline;
    return info;
}

FileDetails FactReader::details(const struct statx& facts, std::string_view name)
{
    FileDetails details;
    static_cast<FileInfo&>(details) = info(facts, name);
    // Some file systems claim to keep the time of birth and give 0 for it.
    if ((facts.stx_mask & STATX_BTIME) != 0 && facts.stx_btime.tv_sec != 0)
        details.created = timeOf(facts.stx_btime);
    details.accessed = timeOf(facts.stx_atime);
    details.changed = timeOf(facts.stx_ctime);
    details.links = facts.stx_nlink;
    details.allocated = {facts.stx_blocks * 512};  // the unit of stx_blocks whatever the file system's own is
    details.ownerId = facts.stx_uid;
    return details;
}

FileInfo FactReader::info(const struct stat& facts, std::string_view name)
{
    FileInfo info;
    info.kind = kindOf(facts.st_mode);
    info.attributes = attributesOf(facts.st_mode, name);
    info.size = {info.kind == FileKind::folder ? 0 : static_cast<std::uint64_t>(facts.st_size)};
    info.modified = fileTimeFromUnix(facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec);
    info.identity = {facts.st_dev, facts.st_ino};
    if (info.kind == FileKind::regular && fetchesOnRead(facts.st_dev, 0))
        info.attributes |= attribute::offline;
    return info;
}

VolumeFacts FactReader::volume(const struct statx& facts)
{
    return volumes_.facts(makedev(facts.stx_dev_major, facts.stx_dev_minor), mountOf(facts));
}

bool FactReader::fetchesOnRead(std::uint64_t device, std::uint64_t mount)
{
    if (device != lastDevice_) {
        lastFetchesOnRead_ = volumes_.facts(device, mount).fetchesOnRead;
        lastDevice_ = device;
    }
    return lastFetchesOnRead_;
}

bool readFacts(int folder, const char* path, Links links, unsigned mask, struct statx& facts)
{
    const int flags = AT_NO_AUTOMOUNT | (links == Links::asThemselves ? AT_SYMLINK_NOFOLLOW : 0);
    return uninterrupted([&] { return ::statx(folder, path, flags, mask, &facts); }) == 0;
}

bool readOpenFacts(int file, unsigned mask, struct statx& facts)
{
    return uninterrupted([&] { return ::statx(file, "", AT_EMPTY_PATH, mask, &facts); }) == 0;
}

}  // namespace kelvane::linux_os
