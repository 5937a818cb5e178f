// A file system in memory that records every access and can be told to fail.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace kelvane::testing {

// Absolute POSIX paths. Thread-safe. Parents are made as needed; every file gets an identity of its own on volume 1
// unless it is made as a hard link.
class MemoryFileSystem final : public FileSystem {
public:
    MemoryFileSystem();
    ~MemoryFileSystem() override;

    void addFolder(const std::string& path);
    void addFile(const std::string& path, std::string contents);
    void addHardLink(const std::string& path, const std::string& existing);
    void addSymbolicLink(const std::string& path, const std::string& target);
    void addStream(const std::string& path, const std::string& name, std::string contents);
    void addOther(const std::string& path);  // a socket, say
    void remove(const std::string& path);
    void setModified(const std::string& path, FileTime time);
    void setAttributes(const std::string& path, std::uint32_t attributes);
    void setVolume(const std::string& folder, const VolumeFacts& facts);  // the folder and everything below it
    void setContents(const std::string& path, std::string contents);      // same identity, new time

    // Called before every operation with its name ("enumerate", "details", "open", "read", "skip", "info",
    // "streamNames", "readStream", "volumeFacts") and the path as it was given; returning an error makes the operation
    // fail with it.
    using Hook = std::function<std::optional<Error>(const std::string& operation, const std::string& path)>;
    void setHook(Hook hook);

    // Every operation so far, as "operation path", in order.
    [[nodiscard]] std::vector<std::string> accesses() const;
    [[nodiscard]] std::uint64_t bytesRead() const;

    Status enumerate(const std::filesystem::path& folder, Links links, const EntrySink& sink) override;
    Result<FileDetails> details(const std::filesystem::path& path, Links links) override;
    Result<std::unique_ptr<ContentReader>> openForReading(const std::filesystem::path& path, ReadPattern pattern,
                                                          Links links = Links::asThemselves) override;
    Result<std::vector<std::string>> streamNames(const std::filesystem::path& path) override;
    Result<std::vector<std::byte>> readStream(const std::filesystem::path& path, const std::string& name,
                                              std::size_t limit) override;
    Result<VolumeFacts> volumeFacts(const std::filesystem::path& path) override;
    Result<std::u16string> ownerName(std::uint32_t ownerId) override;

private:
    struct State;
    class Reader;
    std::unique_ptr<State> state_;
};

}  // namespace kelvane::testing
