#include "engine/admission.h"

#include <algorithm>

#include "engine/matcher.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// Below this a file is tiny whatever the settings say.
constexpr std::uint64_t leastTinyLimit = 2048;

// A file that is a root of its own carries its full path as name.
bool testName(const ShellItem& file, const auto& test)
{
    return file.parent() ? test(nameBytes(file.name())) : test(nameBytes(file.path().filename().native()));
}

// Nothing where a person chose the masks, and for categories whose kinds no list of endings tells.
std::optional<MediaKind> kindWithCategoryMasks(const ScanCriteria& criteria)
{
    if (criteria.definition.masks.size() > 1)
        return std::nullopt;
    switch (criteria.category()) {
    case Category::audio:
        return MediaKind::sound;
    case Category::video:
        return MediaKind::film;
    case Category::images:
        return MediaKind::picture;
    default:
        return std::nullopt;
    }
}

}  // namespace

Admission::Admission(const ScanCriteria& criteria, ShellNamespace& shell, const PropertySource& properties,
                     ContentAdmission contents)
    : criteria_(criteria),
      shell_(shell),
      properties_(properties),
      contents_{isDescribed(criteria, contents.similar) ? contents.similar : nullptr, contents.valuesLater},
      tinyLimit_(std::max(criteria.options.tinyFile.bytes, leastTinyLimit)),
      unmasked_(kindWithCategoryMasks(criteria))
{
}

std::optional<Candidate> Admission::test(const Ref<ShellItem>& file)
{
    if (file->info().kind != FileKind::regular)
        return std::nullopt;
    if (!hasRightName(*file)) {
        countIfOfKind(*file);
        return std::nullopt;
    }
    if (!hasRightSize(*file))
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
    return criteria_.masks.admitsAll() ||
           testName(file, [&](std::string_view name) { return criteria_.masks.admits(name); });
}

void Admission::countIfOfKind(const ShellItem& file)
{
    const auto isOfKind = [&](std::string_view name) { return mediaKindOf(name) == unmasked_; };
    if (unmasked_ && testName(file, isOfKind) && hasRightSize(file))
        ++outsideMasks_;
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
    const bool may = contents_.similar == nullptr || contents_.similar->mayAdmit(criteria_, file);
    const bool has = may && (contents_.valuesLater || !properties_.value(file, criteria_.primary).missing());
    withoutValue_ += has ? 0 : 1;
    return has;
}

}  // namespace kelvane
