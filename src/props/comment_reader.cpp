#include "props/comment_reader.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "props/comment_files.h"
#include "props/marked_text.h"
#include "props/value_convert.h"

namespace kelvane {
namespace {

constexpr std::size_t streamBytesRead = 8192;
// The port refuses streams that are longer than asked for, so this is asked for: more than any file system keeps.
constexpr std::size_t longestStream = 1024 * 1024;
constexpr std::size_t longestTextFile = 1024 * 1024;

std::u16string readTextFile(FileSystem& files, const std::filesystem::path& path)
{
    auto file = files.openForReading(path, ReadPattern::sequential);
    if (!file)
        return {};
    std::vector<std::byte> bytes(longestTextFile);
    const auto size = (*file)->read(bytes);
    if (!size)
        return {};
    return decodeMarkedText(std::span(bytes).first(*size));
}

std::u16string folderComment(const CommentPorts& ports, const ShellItem& folder)
{
    if ((folder.info().attributes & attribute::readOnly) == 0)
        return {};
    const std::u16string ini = readTextFile(ports.shell.files(), folder.path() / "desktop.ini");
    return iniValue(ini, u".ShellClassInfo", u"InfoTip", ports.folding);
}

// Nothing when the stream cannot be opened, an empty text when it holds nothing to read.
std::optional<std::u16string> streamComment(const CommentPorts& ports, const ShellItem& item)
{
    const auto stream = ports.shell.files().readStream(item.path(), commentStream, longestStream);
    if (!stream)
        return stream.error().kind == ErrorKind::io ? std::optional(std::u16string()) : std::nullopt;
    return decodeUtf16(std::span(*stream).first(std::min(stream->size(), streamBytesRead)));
}

std::u16string fileComment(const CommentPorts& ports, const ShellItem& item)
{
    if (auto comment = streamComment(ports, item))
        return *std::move(comment);
    const auto path = item.path();
    const std::u16string descriptions = readTextFile(ports.shell.files(), path.parent_path() / "descript.ion");
    return describedComment(descriptions, ports.shell.displayName(item), ports.folding);
}

}  // namespace

RawValue readComment(const CommentPorts& ports, const PropertyInfo& property, const ShellItem& item)
{
    RawValue own = ports.readers.read(property, item);
    if (!formatRaw(own).empty() || !item.inFileSystem())
        return own;
    std::u16string comment =
        item.info().kind == FileKind::folder ? folderComment(ports, item) : fileComment(ports, item);
    return comment.empty() ? RawValue{} : RawValue::text(std::move(comment));
}

}  // namespace kelvane
