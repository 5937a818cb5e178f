#include "text/shell_file.h"

#include <algorithm>

namespace kelvane {

Result<std::unique_ptr<ShellFile>> ShellFile::open(ShellNamespace& shell, const ShellItem& item)
{
    std::unique_ptr<ShellFile> file(new ShellFile(shell, item));
    if (Status status = file->openAgain(); !status)
        return status.error();
    file->head_.resize(headSize);
    const auto count = file->reader_->read(file->head_);
    if (!count)
        return count.error();
    file->head_.resize(*count);
    file->position_ = *count;
    return file;
}

Status ShellFile::openAgain()
{
    auto reader = shell_.open(item_, ReadPattern::sequential);
    if (!reader)
        return reader.error();
    reader_ = std::move(*reader);
    position_ = 0;
    return {};
}

Status ShellFile::goTo(std::uint64_t position)
{
    if (position < position_)
        if (Status status = openAgain(); !status)
            return status;
    Status status = reader_->skip(position - position_);
    position_ = position;
    return status;
}

Result<std::size_t> ShellFile::readAt(std::uint64_t position, std::span<std::byte> buffer)
{
    std::size_t known = 0;
    if (position < head_.size()) {
        known = std::min<std::size_t>(buffer.size(), head_.size() - static_cast<std::size_t>(position));
        std::copy_n(head_.begin() + static_cast<std::ptrdiff_t>(position), known, buffer.begin());
    }
    if (known == buffer.size() || head_.size() < headSize)
        return known;
    if (const Status status = goTo(position + known); !status)
        return status.error();
    const auto count = reader_->read(buffer.subspan(known));
    if (!count)
        return count;
    position_ += *count;
    return known + *count;
}

Result<WholeContent> readWhole(RandomAccessFile& file, std::uint64_t most, const CancelFlag& cancel)
{
    constexpr std::size_t piece = std::size_t{256} * 1024;
    WholeContent content;
    for (;;) {
        if (cancel.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        const std::size_t have = content.bytes.size();
        content.bytes.resize(have + piece);
        const auto count = file.readAt(have, std::span(content.bytes).subspan(have));
        if (!count)
            return count.error();
        content.bytes.resize(have + *count);
        content.tooLong = content.bytes.size() > most;
        if (content.tooLong || *count < piece)
            return content;
    }
}

}  // namespace kelvane
