// Wrappers of held files and of file operations whose every call is one operation of a shared fault plan.
#pragma once

#include "platform/file_operations.h"
#include "platform/held_files.h"
#include "support/fault_plan.h"

namespace kelvane::testing {

// Its folders, files and new files are wrapped as well, and are given only to folders and files of the same wrapper.
class FaultyHeldFiles final : public HeldFiles {
public:
    FaultyHeldFiles(HeldFiles& real, FaultPlan& plan) : real_(real), plan_(plan) {}

    Result<std::unique_ptr<HeldFolder>> openFolder(const std::filesystem::path& folder) override;
    bool isTooManyLinks(const Error& error) const override;

private:
    HeldFiles& real_;
    FaultPlan& plan_;
};

// The removal of one item is two operations: the whole of it, and the move after its place in the trash was told.
class FaultyOperations final : public FileOperations {
public:
    FaultyOperations(FileOperations& real, FaultPlan& plan) : real_(real), plan_(plan) {}

    BatchOutcome remove(std::span<const RemovalItem> items, RemovalSink& sink, const CancelFlag& cancel) override;
    Status canTrash(const std::filesystem::path& path) override;
    bool isInTrash(const std::filesystem::path& path) override;
    Status restore(const std::filesystem::path& trashed, const std::filesystem::path& place) override;
    Status forget(const std::filesystem::path& trashed) override;

private:
    FileOperations& real_;
    FaultPlan& plan_;
};

}  // namespace kelvane::testing
