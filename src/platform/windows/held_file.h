// One regular file held open, and one that is being made.
#pragma once

#include "platform/held_files.h"
#include "platform/windows/handle.h"

namespace kelvane::windows_os {

// The handle reads and shares everything.
class WindowsHeldFile final : public HeldFile {
public:
    explicit WindowsHeldFile(Handle file) : file_(std::move(file)) {}

    Result<FileDetails> details() const override;
    Result<std::size_t> readAt(std::uint64_t offset, std::span<std::byte> buffer) override;
    Result<FileMetadata> metadata() const override;
    Result<std::uint64_t> sharedBytes() const override;
    // Also when another program keeps everybody from writing to it: a program that runs, for one.
    bool isBeingWritten() const override;
    // No call of this system compares the bytes itself.
    Status shareBlocks(HeldFile& source) override;

    [[nodiscard]] HANDLE handle() const { return file_.get(); }

private:
    Handle file_;
};

// As HeldFolder::create. The file takes its access rights from its folder, as every new file here does.
[[nodiscard]] Result<std::unique_ptr<NewFile>> createFile(const std::wstring& name);

}  // namespace kelvane::windows_os
