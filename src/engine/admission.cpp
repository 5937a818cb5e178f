#include "engine/admission.h"

#include <algorithm>

#include "engine/matcher.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// Below this a file is tiny whatever the settings say.
constexpr std::uint64_t leastTinyLimit = 2048;

}  // namespace

Admission::Admission(const ScanCriteria& criteria, ShellNamespace& shell, const PropertySource& properties,
                     SimilarContent* similar)
    : criteria_(criteria),
      shell_(shell),
      properties_(properties),
      similar_(similar),
      tinyLimit_(std::max(criteria.options.tinyFile.bytes, leastTinyLimit)),
      descriptorIsPrimary_(isDescribed(criteria, similar) &&
                           criteria.primary == properties.catalogue().stock(StockProperty::simDocDescriptor))
{
}

std::optional<Candidate> Admission::test(const Ref<ShellItem>& file)
{
    if (file->info().kind != FileKind::regular || !hasRightName(*file) || !hasRightSize(*file))
        return std::nullopt;
    if (isFetched(*file)) {
        ++offlineSkipped_;
        return std::nullopt;
    }
    if (!hasRightAttributes(*file))
        return std::nullopt;
    Candidate candidate(file);
    if (!hasRightContents(candidate))
        return std::nullopt;
    return candidate;
}

bool Admission::hasRightName(const ShellItem& file) const
{
    // A file that is a root of its own carries its full path as name.
    if (criteria_.masks.admitsAll())
        return true;
    if (file.parent())
        return criteria_.masks.admits(nameBytes(file.name()));
    return criteria_.masks.admits(nameBytes(file.path().filename().native()));
}

bool Admission::hasRightSize(const ShellItem& file) const
{
    const std::uint64_t bytes = file.info().size.bytes;
    return (!criteria_.has(scan_flag::ignoreSmall) || bytes > tinyLimit_) && criteria_.sizes.holds(bytes);
}

bool Admission::isFetched(const ShellItem& file) const
{
    return criteria_.skipOffline && file.isOffline() && file.inFileSystem() &&
           shell_.typeCode(file) != type_code::portableDevice;
}

bool Admission::hasRightAttributes(const ShellItem& file) const
{
    if (criteria_.has(scan_flag::skipLinks) && file.isReparsePoint() && !file.isCloudPlaceholder())
        return false;
    return !criteria_.has(scan_flag::protect) || !file.isHiddenOrSystem();
}

bool Admission::hasRightContents(Candidate& file)
{
    if (descriptorIsPrimary_)
        return mayHaveDescriptor(file);
    if (properties_.value(file, criteria_.primary).missing()) {
        ++withoutValue_;
        return false;
    }
    return !isDescribed(criteria_, similar_) || similar_->admits(criteria_, file);
}

// Whether it really has one is seen when its text was taken.
bool Admission::mayHaveDescriptor(const Candidate& file)
{
    const bool may = similar_->mayAdmit(criteria_, file);
    withoutValue_ += may ? 0 : 1;
    return may;
}

}  // namespace kelvane
