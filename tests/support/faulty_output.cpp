#include "support/faulty_output.h"

namespace kelvane::testing {

class FaultyOutput::File final : public OutputFile {
public:
    File(FaultyOutput& output, std::unique_ptr<OutputFile> real) : output_(output), real_(std::move(real)) {}

    Status write(std::span<const std::byte> bytes) override
    {
        if (!output_.due())
            return real_->write(bytes);
        if (output_.fault_ == Fault::killed && output_.count_ == output_.at_)
            static_cast<void>(real_->write(bytes.first(bytes.size() / 2)));
        return output_.strike();
    }
    Status flush() override
    {
        const Status next = output_.next();
        return next ? real_->flush() : next;
    }
    Status close() override
    {
        const Status next = output_.next();
        return next ? real_->close() : next;
    }

private:
    FaultyOutput& output_;
    std::unique_ptr<OutputFile> real_;
};

bool FaultyOutput::due()
{
    ++count_;
    return fault_ == Fault::once ? count_ == at_ : failed();
}

Status FaultyOutput::strike()
{
    if (action_)
        action_();
    return Error{ErrorKind::io, 0, "struck"};
}

Status FaultyOutput::next()
{
    return due() ? strike() : Status();
}

Result<std::unique_ptr<OutputFile>> FaultyOutput::wrapped(Result<std::unique_ptr<OutputFile>> file)
{
    if (!file)
        return file;
    return std::unique_ptr<OutputFile>(std::make_unique<File>(*this, std::move(*file)));
}

Result<std::unique_ptr<OutputFile>> FaultyOutput::create(const std::filesystem::path& path)
{
    const Status status = next();
    return status ? wrapped(real_.create(path)) : status.error();
}

Result<std::unique_ptr<OutputFile>> FaultyOutput::append(const std::filesystem::path& path)
{
    const Status status = next();
    return status ? wrapped(real_.append(path)) : status.error();
}

Status FaultyOutput::replace(const std::filesystem::path& from, const std::filesystem::path& to)
{
    const Status status = next();
    return status ? real_.replace(from, to) : status;
}

Status FaultyOutput::flushFolder(const std::filesystem::path& folder)
{
    const Status status = next();
    return status ? real_.flushFolder(folder) : status;
}

Status FaultyOutput::remove(const std::filesystem::path& path)
{
    const Status status = next();
    return status ? real_.remove(path) : status;
}

Status FaultyOutput::createFolders(const std::filesystem::path& folder)
{
    const Status status = next();
    return status ? real_.createFolders(folder) : status;
}

Status FaultyOutput::copyAccess(const std::filesystem::path& from, const std::filesystem::path& to)
{
    const Status status = next();
    return status ? real_.copyAccess(from, to) : status;
}

Result<std::filesystem::path> FaultyOutput::target(const std::filesystem::path& path)
{
    const Status status = next();
    return status ? real_.target(path) : status.error();
}

Result<std::unique_ptr<FileLock>> FaultyOutput::lock(const std::filesystem::path& path, std::uint32_t milliseconds)
{
    const Status status = next();
    return status ? real_.lock(path, milliseconds) : status.error();
}

}  // namespace kelvane::testing
