// Archives without any archive.
#pragma once

#include <functional>
#include <memory>
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
        entry.size = {content.size()};
        static_cast<void>(sink(entry));
        return {};
    }
    Result<std::unique_ptr<ContentReader>> open(const std::filesystem::path&, std::uint64_t) override
    {
        files_.addFile("/entry", content);
        return files_.openForReading("/entry", ReadPattern::sequential);
    }
    std::string content;

private:
    MemoryFileSystem files_;
};

}  // namespace kelvane::testing
