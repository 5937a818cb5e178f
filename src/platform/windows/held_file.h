// One regular file held open, and one that is being made.
#pragma once

#include <memory>
#include <string>

#include "platform/held_files.h"
#include "platform/windows/open_files.h"

namespace kelvane::windows_os {

// The handle reads and shares everything.
class WindowsHeldFile final : public HeldFile {
public:
    WindowsHeldFile(std::wstring name, Handle file, std::shared_ptr<OpenFiles> all)
        : name_(std::move(name)), file_(std::move(file)), all_(std::move(all))
    {
        all_->add(file_);
    }
    ~WindowsHeldFile() override { all_->remove(file_); }

    Result<FileDetails> details() const override;
    Result<std::size_t> readAt(std::uint64_t offset, std::span<std::byte> buffer) override;
    Result<FileMetadata> metadata() const override;
    Result<std::uint64_t> sharedBytes() const override;
    // Also when another program keeps everybody from writing to it: a program that runs, for one.
    bool isBeingWritten() const override;
    // No call of this system compares the bytes itself.
    Status shareBlocks(HeldFile& source) override;

    // Whether another program has it open so that none of its names may be changed or removed.
    [[nodiscard]] bool keepsItsNames() const;
    [[nodiscard]] FileIdentity identity() const { return file_.identity(); }
    // A name that leads to the file now, in the system's form: the one that it was opened by as long as that is so.
    [[nodiscard]] Result<std::wstring> currentName() const;

private:
    std::wstring name_;
    OpenFile file_;
    std::shared_ptr<OpenFiles> all_;
};

// As HeldFolder::create. The file takes its access rights from its folder, as every new file here does.
[[nodiscard]] Result<std::unique_ptr<NewFile>> createFile(const std::wstring& name);

}  // namespace kelvane::windows_os
