#include <algorithm>
#include <list>
#include <mutex>
#include <sys/stat.h>
#include <vector>

#include "platform/linux/adapters.h"
#include "platform/linux/archive_names.h"
#include "platform/linux/open_archive.h"

namespace kelvane {
namespace linux_os {
namespace {

namespace fs = std::filesystem;

// Archives that were read up to some entry and may be read on from there: one entry after the other is then read in
// one pass, where starting over each time would unpack a solid archive as often as it has entries. Thread-safe.
class IdleArchives {
public:
    // The one that is nearest before the entry, or null.
    std::unique_ptr<OpenArchive> take(const ArchiveStamp& stamp, std::uint64_t ordinal)
    {
        const std::lock_guard lock(mutex_);
        auto best = idle_.end();
        for (auto at = idle_.begin(); at != idle_.end(); ++at) {
            const bool usable = (*at)->stamp() == stamp && (*at)->nextOrdinal() <= ordinal;
            if (usable && (best == idle_.end() || (*at)->nextOrdinal() > (*best)->nextOrdinal()))
                best = at;
        }
        if (best == idle_.end())
            return nullptr;
        auto taken = std::move(*best);
        idle_.erase(best);
        return taken;
    }

    void giveBack(std::unique_ptr<OpenArchive> archive)
    {
        const std::lock_guard lock(mutex_);
        idle_.push_front(std::move(archive));
        if (idle_.size() > mostIdle)
            idle_.pop_back();
    }

private:
    static constexpr std::size_t mostIdle = 4;
    std::mutex mutex_;
    std::list<std::unique_ptr<OpenArchive>> idle_;
};

class EntryReader final : public ContentReader {
public:
    EntryReader(std::unique_ptr<OpenArchive> archive, std::shared_ptr<IdleArchives> idle)
        : archive_(std::move(archive)), idle_(std::move(idle))
    {
    }
    ~EntryReader() override { idle_->giveBack(std::move(archive_)); }

    Result<std::size_t> read(std::span<std::byte> buffer) override { return archive_->read(buffer); }

    Status skip(std::uint64_t bytes) override
    {
        std::vector<std::byte> scratch(std::min<std::uint64_t>(bytes, 64 * 1024));
        while (bytes > 0) {
            const std::size_t part = std::min<std::uint64_t>(bytes, scratch.size());
            const auto got = archive_->read(std::span(scratch).first(part));
            if (!got)
                return got.error();
            if (*got < part)
                return {};
            bytes -= part;
        }
        return {};
    }

    Result<FileInfo> info() const override
    {
        return Error{ErrorKind::notSupported, 0, "an entry of an archive does not change by itself"};
    }

private:
    std::unique_ptr<OpenArchive> archive_;
    std::shared_ptr<IdleArchives> idle_;
};

class LibarchiveFolders final : public ArchiveFolders {
public:
    bool looksLikeArchive(NativeView fileName) const override { return isArchiveName(fileName); }

    Status list(const fs::path& archive, const std::function<bool(const ArchiveEntry&)>& sink) override
    {
        auto opened = OpenArchive::open(archive);
        if (!opened)
            return opened.error();
        OpenArchive& reading = **opened;
        for (;;) {
            const auto more = reading.next();
            if (!more)
                return more.error();
            if (!*more)
                return {};
            const auto wanted = give(reading, sink);
            if (!wanted)
                return wanted.error();
            if (!*wanted)
                return {};
        }
    }

    Result<std::unique_ptr<ContentReader>> open(const fs::path& archive, std::uint64_t ordinal) override
    {
        auto opened = openBefore(archive, ordinal);
        if (!opened)
            return opened.error();
        OpenArchive& reading = **opened;
        while (reading.nextOrdinal() <= ordinal) {
            const auto more = reading.next();
            if (!more)
                return more.error();
            if (!*more)
                return Error{ErrorKind::notFound, 0, "no such entry in the archive"};
        }
        if (reading.kind() != FileKind::regular)
            return Error{ErrorKind::wrongType, 0, "not a regular file"};
        if (reading.encrypted())
            return Error{ErrorKind::accessDenied, 0, "the entry is encrypted"};
        return std::unique_ptr<ContentReader>(std::make_unique<EntryReader>(std::move(*opened), idle_));
    }

private:
    // False when the sink has had enough.
    static Result<bool> give(OpenArchive& reading, const std::function<bool(const ArchiveEntry&)>& sink)
    {
        const auto kind = reading.kind();
        const auto path = kind ? safeEntryPath(reading.storedPath()) : std::nullopt;
        if (!path)
            return true;
        ArchiveEntry entry;
        entry.path = *path;
        entry.kind = *kind;
        entry.modified = reading.modified();
        entry.ordinal = reading.ordinal();
        if (entry.kind == FileKind::regular) {
            const auto size = reading.size();
            if (!size)
                return size.error();
            entry.size = *size;
        }
        return sink(entry);
    }

    // An archive of which no entry at or after the wanted one has been passed yet.
    Result<std::unique_ptr<OpenArchive>> openBefore(const fs::path& path, std::uint64_t ordinal)
    {
        auto fresh = OpenArchive::open(path);
        if (!fresh)
            return fresh.error();
        if (auto taken = idle_->take((*fresh)->stamp(), ordinal))
            return taken;
        return fresh;
    }

    std::shared_ptr<IdleArchives> idle_ = std::make_shared<IdleArchives>();
};

}  // namespace
}  // namespace linux_os

std::unique_ptr<ArchiveFolders> makeLibarchiveFolders()
{
    return std::make_unique<linux_os::LibarchiveFolders>();
}

}  // namespace kelvane
