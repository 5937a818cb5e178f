#include "platform/windows/file_streams.h"

#include <algorithm>
#include <windows.h>

#include "platform/windows/file_reader.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"
#include "platform/windows/wide_text.h"

namespace kelvane::windows_os {
namespace {

constexpr std::wstring_view dataType = L":$DATA";
constexpr std::size_t pieceSize = 64 * 1024;

// ":name:$DATA" in; the empty name of the file's own contents is no stream to the port.
void addName(std::wstring_view streamName, std::vector<std::string>& names)
{
    if (!streamName.starts_with(L':') || !streamName.ends_with(dataType))
        return;
    streamName.remove_prefix(1);
    if (streamName.size() <= dataType.size())
        return;
    streamName.remove_suffix(dataType.size());
    names.push_back(wtf8FromWide(streamName));
}

bool meansNone(DWORD code)
{
    return code == ERROR_HANDLE_EOF || code == ERROR_INVALID_PARAMETER || code == ERROR_NOT_SUPPORTED;
}

Result<std::vector<std::byte>> readWhole(ContentReader& reader, std::size_t limit)
{
    std::vector<std::byte> bytes;
    for (;;) {
        const std::size_t before = bytes.size();
        const std::size_t asked = std::min(limit + 1 - before, pieceSize);
        bytes.resize(before + asked);
        const auto got = reader.read(std::span(bytes).subspan(before));
        if (!got)
            return got.error();
        bytes.resize(before + *got);
        if (bytes.size() > limit)
            return Error{ErrorKind::io, 0, "the stream is too long"};
        if (*got < asked)
            return bytes;
    }
}

}  // namespace

Result<std::vector<std::string>> listStreams(const std::filesystem::path& path)
{
    std::vector<std::string> names;
    WIN32_FIND_STREAM_DATA stream{};
    const FindHandle search(::FindFirstStreamW(systemPath(path).c_str(), FindStreamInfoStandard, &stream, 0));
    if (!search.valid()) {
        if (meansNone(::GetLastError()))
            return names;
        return lastError();
    }
    do {
        addName(stream.cStreamName, names);
    } while (::FindNextStreamW(search.get(), &stream) != 0);
    if (::GetLastError() != ERROR_HANDLE_EOF)
        return lastError();
    return names;
}

Result<std::vector<std::byte>> readWholeStream(const std::filesystem::path& path, const std::string& name,
                                               std::size_t limit)
{
    auto reader = openContents(systemPath(path) + L":" + wideFromWtf8(name), ReadPattern::sequential, Links::followed);
    if (!reader)
        return reader.error();
    return readWhole(**reader, limit);
}

}  // namespace kelvane::windows_os
