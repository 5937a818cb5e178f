// A million files that lie on no disk, for measuring what is done with a list of them.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "platform/file_system.h"
#include "platform/shell_item.h"

namespace kelvane::bench {

// Groups of two to five copies in the folders of a person who copied things about for years. The same seed gives the
// same files.
class MadeUpFiles {
public:
    explicit MadeUpFiles(std::uint64_t seed);

    // Takes a file with the number of its group, from 1.
    using Taker = std::function<void(Ref<const ShellItem>, std::uint32_t group)>;
    void make(std::uint32_t count, const Taker& take);
    // The same in folders and under names so short that a results file holds a million of them.
    void makeShortNamed(std::uint32_t count, const Taker& take);

private:
    [[nodiscard]] const Ref<const ShellItem>& anyFolder() { return folders_[random_() % folders_.size()]; }

    std::mt19937_64 random_;
    Ref<const ShellItem> home_;
    std::vector<Ref<const ShellItem>> folders_;
};

// Says of every path that it is there: a file when its name has an extension, otherwise a folder. So a saved list of
// made-up files loads without a disk; the list itself is read from the real one.
class MadeUpFileSystem final : public FileSystem {
public:
    explicit MadeUpFileSystem(FileSystem& real) : real_(real) {}
    Status enumerate(const std::filesystem::path& folder, Links links, const EntrySink& sink) override;
    Result<FileDetails> details(const std::filesystem::path& path, Links links) override;
    Result<std::unique_ptr<ContentReader>> openForReading(const std::filesystem::path& path, ReadPattern pattern,
                                                          Links links) override;
    Result<std::vector<std::string>> streamNames(const std::filesystem::path& path) override;
    Result<std::vector<std::byte>> readStream(const std::filesystem::path& path, const std::string& name,
                                              std::size_t limit) override;
    Result<VolumeFacts> volumeFacts(const std::filesystem::path& path) override;
    Result<std::u16string> ownerName(std::uint32_t ownerId) override;

private:
    FileSystem& real_;
};

}  // namespace kelvane::bench
