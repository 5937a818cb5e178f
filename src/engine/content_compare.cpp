#include "engine/content_compare.h"

#include <algorithm>
#include <cstring>

#include "base/filled_text.h"
#include "engine/compared_ranges.h"
#include "engine/same_file.h"

namespace kelvane {
namespace {

constexpr std::size_t compareChunkBytes = 65'536;

using Reader = std::unique_ptr<ContentReader>;

}  // namespace

Result<std::unique_ptr<ContentReader>> openForComparing(ShellNamespace& shell, const ShellItem& item,
                                                        const EngineOptions& options)
{
    if (item.isOffline())
        return Error{ErrorKind::notSupported, 0, filledText(TextId::fileIsOffline)};
    if (shell.typeCode(item) == type_code::portableDevice)
        return Error{ErrorKind::notSupported, 0, filledText(TextId::onPortableDevice)};
    if (!item.inFileSystem() && item.info().size > options.largestVirtualStream)
        return Error{ErrorKind::notSupported, 0, filledText(TextId::archiveEntryTooLarge)};
    return shell.open(item, ReadPattern::sequential);
}

bool stillAsSeen(const ContentReader& reader, const ShellItem& item)
{
    const Result<FileInfo> now = reader.info();
    if (!now)
        return now.error().kind == ErrorKind::notSupported;
    const FileInfo& seen = item.info();
    return now->size == seen.size && now->modified == seen.modified &&
           (now->identity == seen.identity || !hasIdentity(item));
}

ContentComparer::ContentComparer(ShellNamespace& shell, const EngineOptions& options, const CancelFlag& cancel)
    : shell_(shell), options_(options), cancel_(cancel), bufferA_(compareChunkBytes), bufferB_(compareChunkBytes)
{
}

ContentResult ContentComparer::compare(const ShellItem& a, const ShellItem& b)
{
    sampled_ = false;
    const FileSize size = a.info().size;
    if (size != b.info().size)
        return ContentResult::different;
    if (size.bytes == 0)
        return ContentResult::equal;
    Result<Reader> openA = openForComparing(shell_, a, options_);
    if (!openA)
        return ContentResult::openFailed;
    Result<Reader> openB = openForComparing(shell_, b, options_);
    if (!openB)
        return ContentResult::openFailed;

    const bool plainFiles = a.inFileSystem() && b.inFileSystem();
    const ComparedRanges compared = comparedRanges(size, hugeLimit(options_.hugeFile, plainFiles));
    sampled_ = compared.sampled;
    const ContentResult result = compareRanges(**openA, **openB, compared.ranges);
    // A file that is written to while it is read may never have been, as a whole, what was read of it.
    if (result == ContentResult::equal && !(stillAsSeen(**openA, a) && stillAsSeen(**openB, b)))
        return ContentResult::different;
    return result;
}

ContentResult ContentComparer::compareRanges(ContentReader& a, ContentReader& b, std::span<const ByteRange> ranges)
{
    std::uint64_t position = 0;
    for (const ByteRange& range : ranges) {
        if (cancel_.cancelled())
            return ContentResult::cancelled;
        const std::uint64_t gap = range.begin.bytes - position;
        if (gap > 0 && !(a.skip(gap) && b.skip(gap)))
            return ContentResult::sampleSeekFailed;
        const ContentResult result = compareRange(a, b, range.length.bytes);
        if (result == ContentResult::headReadFailed && &range != &ranges.front())
            return ContentResult::sampleReadFailed;
        if (result != ContentResult::equal)
            return result;
        position = range.begin.bytes + range.length.bytes;
    }
    return ContentResult::equal;
}

ContentResult ContentComparer::compareRange(ContentReader& a, ContentReader& b, std::uint64_t length)
{
    for (std::uint64_t left = length; left > 0;) {
        if (cancel_.cancelled())
            return ContentResult::cancelled;
        const std::size_t wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, compareChunkBytes));
        const Result<std::size_t> readA = a.read(std::span(bufferA_).first(wanted));
        const Result<std::size_t> readB = b.read(std::span(bufferB_).first(wanted));
        if (!readA || !readB)
            return ContentResult::headReadFailed;
        bytesRead_ += *readA + *readB;
        if (*readA != wanted || *readB != wanted)
            return ContentResult::different;
        if (std::memcmp(bufferA_.data(), bufferB_.data(), wanted) != 0)
            return ContentResult::different;
        left -= wanted;
    }
    return ContentResult::equal;
}

}  // namespace kelvane
