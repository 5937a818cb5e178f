#include "support/faulty_output.h"

namespace kelvane::testing {

class FaultyOutput::File final : public OutputFile {
public:
    File(FaultPlan& plan, std::unique_ptr<OutputFile> real) : plan_(plan), real_(std::move(real)) {}

    Status write(std::span<const std::byte> bytes) override
    {
        return plan_.run(
            "write", [&] { return real_->write(bytes); },
            [&] { static_cast<void>(real_->write(bytes.first(bytes.size() / 2))); });
    }
    Status flush() override
    {
        return plan_.run("flush", [&] { return plan_.reallyFlushes ? real_->flush() : Status(); });
    }
    Status close() override
    {
        return plan_.run("close", [&] { return real_->close(); });
    }

private:
    FaultPlan& plan_;
    std::unique_ptr<OutputFile> real_;
};

Result<std::unique_ptr<OutputFile>> FaultyOutput::wrapped(Result<std::unique_ptr<OutputFile>> file)
{
    if (!file)
        return file;
    return std::unique_ptr<OutputFile>(std::make_unique<File>(plan_, std::move(*file)));
}

Result<std::unique_ptr<OutputFile>> FaultyOutput::create(const std::filesystem::path& path)
{
    return plan_.run("create file", [&] { return wrapped(real_.create(path)); });
}

Result<std::unique_ptr<OutputFile>> FaultyOutput::append(const std::filesystem::path& path)
{
    return plan_.run("append", [&] { return wrapped(real_.append(path)); });
}

Status FaultyOutput::replace(const std::filesystem::path& from, const std::filesystem::path& to)
{
    return plan_.run("replace file", [&] { return real_.replace(from, to); });
}

Status FaultyOutput::flushFolder(const std::filesystem::path& folder)
{
    return plan_.run("flush folder", [&] { return plan_.reallyFlushes ? real_.flushFolder(folder) : Status(); });
}

Status FaultyOutput::remove(const std::filesystem::path& path)
{
    return plan_.run("remove file", [&] { return real_.remove(path); });
}

Status FaultyOutput::createFolders(const std::filesystem::path& folder)
{
    return plan_.run("create folders", [&] { return real_.createFolders(folder); });
}

Status FaultyOutput::copyAccess(const std::filesystem::path& from, const std::filesystem::path& to)
{
    return plan_.run("copy access", [&] { return real_.copyAccess(from, to); });
}

Result<std::filesystem::path> FaultyOutput::target(const std::filesystem::path& path)
{
    return plan_.run("target", [&] { return real_.target(path); });
}

Result<std::unique_ptr<FileLock>> FaultyOutput::lock(const std::filesystem::path& path, std::uint32_t milliseconds)
{
    return plan_.run("lock", [&] { return real_.lock(path, milliseconds); });
}

}  // namespace kelvane::testing
