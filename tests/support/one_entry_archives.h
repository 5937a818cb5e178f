// Archives without any archive.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/archive_folders.h"
#include "support/memory_file_system.h"
#include "support/paths.h"

namespace kelvane::testing {

// Every archive has one entry.
class OneEntryArchives final : public ArchiveFolders {
public:
    bool looksLikeArchive(NativeView fileName) const override { return fileName.ends_with(native(".zip")); }
    Status list(const std::filesystem::path&, const std::function<bool(const ArchiveEntry&)>& sink) override
    {
        ArchiveEntry entry;
        entry.path = "inside.html";
        entry.size = {claimed.value_or(content.size())};
        static_cast<void>(sink(entry));
        return {};
    }
    Result<std::unique_ptr<ContentReader>> open(const std::filesystem::path&, std::uint64_t) override
    {
        if (onOpen)
            onOpen();
        files_.addFile("/entry", content);
        return files_.openForReading("/entry", ReadPattern::sequential);
    }
    // What was unpacked of all entries.
    [[nodiscard]] std::uint64_t bytesRead() const { return files_.bytesRead(); }

    std::string content;
    std::optional<std::uint64_t> claimed;  // the size in the list; of the content where nothing is said
    std::function<void()> onOpen;

private:
    MemoryFileSystem files_;
};

}  // namespace kelvane::testing
