// One regular file held open, and one that is being made.
#pragma once

#include <memory>
#include <string>

#include "platform/held_files.h"
#include "platform/windows/handle.h"

namespace kelvane::windows_os {

// The handle reads and shares everything.
class WindowsHeldFile final : public HeldFile {
public:
    WindowsHeldFile(std::wstring name, Handle file) : name_(std::move(name)), file_(std::move(file)) {}

    Result<FileDetails> details() const override;
    Result<std::size_t> readAt(std::uint64_t offset, std::span<std::byte> buffer) override;
    Result<FileMetadata> metadata() const override;
    Result<std::uint64_t> sharedBytes() const override;
    // Also when another program keeps everybody from writing to it: a program that runs, for one.
    bool isBeingWritten() const override;
    // No call of this system compares the bytes itself.
    Status shareBlocks(HeldFile& source) override;

    [[nodiscard]] FileIdentity identity() const;
    // A name that leads to the file now, in the system's form: the one that it was opened by as long as that is so.
    [[nodiscard]] Result<std::wstring> currentName() const;

private:
    std::wstring name_;
    Handle file_;
};

// As HeldFolder::create. The file takes its access rights from its folder, as every new file here does.
[[nodiscard]] Result<std::unique_ptr<NewFile>> createFile(const std::wstring& name);

}  // namespace kelvane::windows_os
