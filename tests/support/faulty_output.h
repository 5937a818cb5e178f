// A wrapper of the file output that fails at a chosen operation, or from it on as if the process had been killed.
#pragma once

#include <functional>

#include "platform/file_output.h"

namespace kelvane::testing {

// Every call of a FileOutput, its files included, is one operation, counted from 1. One thread at a time.
class FaultyOutput final : public FileOutput {
public:
    enum class Fault {
        none,
        once,    // the n-th operation fails
        killed,  // it fails, a write half way, and so does everything after it: nothing can be cleaned up
    };

    explicit FaultyOutput(FileOutput& real) : real_(real) {}

    void fail(Fault fault, int operation)
    {
        fault_ = fault;
        at_ = operation;
        count_ = 0;
    }
    // Called when the fault comes, after the half of a write was written; it need not return.
    void onFault(std::function<void()> action) { action_ = std::move(action); }

    [[nodiscard]] int operations() const { return count_; }
    [[nodiscard]] bool failed() const { return fault_ != Fault::none && count_ >= at_; }

    Result<std::unique_ptr<OutputFile>> create(const std::filesystem::path& path) override;
    Result<std::unique_ptr<OutputFile>> append(const std::filesystem::path& path) override;
    Status replace(const std::filesystem::path& from, const std::filesystem::path& to) override;
    Status flushFolder(const std::filesystem::path& folder) override;
    Status remove(const std::filesystem::path& path) override;
    Status createFolders(const std::filesystem::path& folder) override;
    Status copyAccess(const std::filesystem::path& from, const std::filesystem::path& to) override;
    Result<std::filesystem::path> target(const std::filesystem::path& path) override;
    Result<std::unique_ptr<FileLock>> lock(const std::filesystem::path& path, std::uint32_t milliseconds) override;

private:
    class File;

    [[nodiscard]] Status next();
    [[nodiscard]] bool due();
    [[nodiscard]] Status strike();
    [[nodiscard]] Result<std::unique_ptr<OutputFile>> wrapped(Result<std::unique_ptr<OutputFile>> file);

    FileOutput& real_;
    Fault fault_ = Fault::none;
    int at_ = 0;
    int count_ = 0;
    std::function<void()> action_;
};

}  // namespace kelvane::testing
