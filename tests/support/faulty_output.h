// A wrapper of the file output that fails at a chosen operation, or from it on as if the process had been killed.
#pragma once

#include <functional>

#include "platform/file_output.h"
#include "support/fault_plan.h"

namespace kelvane::testing {

// Every call of a FileOutput, its files included, is one operation of a plan: its own, or one that other ports share.
class FaultyOutput final : public FileOutput {
public:
    using Fault = testing::Fault;

    explicit FaultyOutput(FileOutput& real) : real_(real), plan_(own_) {}
    FaultyOutput(FileOutput& real, FaultPlan& plan) : real_(real), plan_(plan) {}

    void fail(Fault fault, int operation) { plan_.fail(fault, operation); }
    void onFault(std::function<void()> action) { plan_.onFault(std::move(action)); }

    [[nodiscard]] int operations() const { return plan_.operations(); }
    [[nodiscard]] bool failed() const { return plan_.failed(); }

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

    [[nodiscard]] Result<std::unique_ptr<OutputFile>> wrapped(Result<std::unique_ptr<OutputFile>> file);

    FileOutput& real_;
    FaultPlan own_;
    FaultPlan& plan_;
};

}  // namespace kelvane::testing
