#include "engine/descend.h"

#include <algorithm>

#include "platform/native_text.h"

namespace kelvane {
namespace {

// The serial number that no list of excluded volumes reaches.
constexpr std::uint32_t neverExcluded = 0xF3364BA0;

}  // namespace

bool followsLinks(const ScanCriteria& criteria) noexcept
{
    return criteria.options.has(option_flag::followJunctions) && !criteria.has(scan_flag::skipLinks);
}

DescendTest::DescendTest(const ScanCriteria& criteria, const PathRules& paths, ShellNamespace& shell)
    : criteria_(criteria),
      paths_(paths),
      shell_(shell),
      followLinks_(followsLinks(criteria)),
      enterVirtual_(criteria.options.has(option_flag::enterVirtualFolders))
{
}

bool DescendTest::enters(const ShellItem& folder)
{
    const bool protect = criteria_.has(scan_flag::protect);
    if (protect && folder.isHiddenOrSystem())
        return false;
    if (shell_.typeCode(folder) == type_code::portableDevice)
        return false;
    if (folder.inFileSystem() ? !mayEnterPlain(folder) : !mayEnterVirtual(folder))
        return false;
    if (protect && folder.inFileSystem() && paths_.isProtectedFolder(bytesFromNative(folder.fullName())))
        return false;
    return mayEnterVolume(folder) && isNew(folder);
}

bool DescendTest::mayEnterPlain(const ShellItem& folder) const
{
    if (!enterVirtual_ && folder.place() == ShellItem::Place::archive)
        return false;
    if (!followLinks_ && folder.isReparsePoint() && !folder.isCloudPlaceholder())
        return false;
    // The shell's own listing cannot cope with such paths.
    if (!criteria_.options.has(option_flag::directEnumeration) &&
        paths_.isExtendedLength(bytesFromNative(folder.fullName())))
        return false;
    return !enterVirtual_ || !folder.isOffline();
}

bool DescendTest::mayEnterVirtual(const ShellItem& folder) const
{
    return enterVirtual_ || !criteria_.options.has(option_flag::skipSmallVirtual) ||
           shell_.typeCode(folder) >= type_code::smallVirtualLimit;
}

bool DescendTest::mayEnterVolume(const ShellItem& folder)
{
    if (!folder.inFileSystem())
        return true;
    const std::uint64_t volume = folder.info().identity.volume;
    const bool crosses = folder.parent() != nullptr && folder.parent()->info().identity.volume != volume;
    // With neither links nor virtual folders in play a walk leaves its volume through a mount point only, and someone
    // who chose a root on an excluded volume meant it.
    if (!crosses && !enterVirtual_ && !followLinks_ && criteria_.has(scan_flag::protect))
        return true;
    if (!folder.info().identity.known())
        return true;
    return !isExcludedVolume(volume) && !(crosses && isPseudo(folder));
}

bool DescendTest::isExcludedVolume(std::uint64_t volume) const
{
    const auto serial = static_cast<std::uint32_t>(volume);
    const auto& excluded = criteria_.options.excludedVolumes;
    return serial != neverExcluded && std::find(excluded.begin(), excluded.end(), serial) != excluded.end();
}

bool DescendTest::isPseudo(const ShellItem& item)
{
    if (!item.inFileSystem() || !item.info().identity.known())
        return false;
    const auto [known, isNewVolume] = pseudoVolumes_.try_emplace(item.info().identity.volume, false);
    if (isNewVolume) {
        const auto facts = shell_.files().volumeFacts(item.path());
        known->second = facts.ok() && facts->pseudo;
    }
    return known->second;
}

// Entries of archives are numbered within their archive, so that their identities tell nothing here; the archive
// itself is told apart by its file.
bool DescendTest::isNew(const ShellItem& folder)
{
    const FileIdentity identity = folder.info().identity;
    return !folder.inFileSystem() || !identity.known() || entered_.insert(identity).second;
}

// Indexes of one volume are dense and volumes few: a multiplication spreads both over all bits (Fibonacci hashing,
// The Art of Computer Programming 3, 6.4).
std::size_t DescendTest::IdentityHash::operator()(FileIdentity identity) const noexcept
{
    constexpr std::uint64_t golden = 0x9E3779B97F4A7C15;
    return static_cast<std::size_t>((identity.index ^ (identity.volume * golden)) * golden >> 7);
}

}  // namespace kelvane
