#include "cleanup/disk_facts.h"

#include "cleanup/metadata_loss.h"

namespace kelvane {
CleanupFacts DiskFacts::facts(const CScanNode& definition, const PathRules& paths)
{
    return {definition,
            paths,
            [this](const ShellItem& item) { return onNetwork(item); },
            [this](const ShellItem& item) { return linkCount(item); },
            [this](const ShellItem& item) { return canClone(item); },
            [this](const ShellItem& item) { return sharedBytes(item); },
            [this](const ShellItem& item, const ShellItem& kept) { return metadataLoss(item, kept); }};
}

bool DiskFacts::onNetwork(const ShellItem& item)
{
    return volumeOf(item).network;
}

bool DiskFacts::canClone(const ShellItem& item)
{
    return volumeOf(item).clones;
}

std::uint32_t DiskFacts::linkCount(const ShellItem& item)
{
    const auto details = files_.details(item.path(), Links::asThemselves);
    return details ? details->links : 0;
}

std::uint64_t DiskFacts::sharedBytes(const ShellItem& item)
{
    if (!canClone(item))
        return 0;
    const auto file = open(item);
    const auto shared = file ? file->sharedBytes() : Result<std::uint64_t>(0);
    return shared ? *shared : 0;
}

std::uint8_t DiskFacts::metadataLoss(const ShellItem& item, const ShellItem& kept)
{
    if (std::filesystem::path path = kept.path(); path != keptPath_) {
        kept_ = metadataOf(kept);
        keptPath_ = std::move(path);
    }
    const auto own = kept_ ? metadataOf(item) : std::nullopt;
    return own ? metadataLossBetween(*own, *kept_) : std::uint8_t{0};
}

DiskFacts::Volume DiskFacts::volumeOf(const ShellItem& item)
{
    const FileIdentity identity = item.info().identity;
    if (!item.inFileSystem() || !identity.known())
        return askVolume(item);
    const auto [known, isNew] = volumes_.try_emplace(identity.volume);
    if (isNew)
        known->second = askVolume(item);
    return known->second;
}

DiskFacts::Volume DiskFacts::askVolume(const ShellItem& item)
{
    const auto facts = files_.volumeFacts(item.path());
    return facts ? Volume{facts->network, facts->clones} : Volume{};
}

std::unique_ptr<HeldFile> DiskFacts::open(const ShellItem& item)
{
    const std::filesystem::path path = item.path();
    if (std::filesystem::path place = path.parent_path(); !folder_ || folder_->path() != place) {
        auto folder = held_.openFolder(place);
        folder_ = folder ? std::move(*folder) : nullptr;
    }
    if (!folder_)
        return nullptr;
    auto file = folder_->open(path.filename().native());
    return file ? std::move(*file) : nullptr;
}

std::optional<FileMetadata> DiskFacts::metadataOf(const ShellItem& item)
{
    const auto file = open(item);
    const auto metadata = file ? file->metadata() : Result<FileMetadata>(Error{});
    return metadata ? std::optional(*metadata) : std::nullopt;
}

}  // namespace kelvane
