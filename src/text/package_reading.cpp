#include "text/package_reading.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::size_t mostOfOneStream = std::size_t{64} * 1024 * 1024;
// Of all parts together; a document with more text than this is cut long before.
constexpr std::size_t mostOfAllParts = std::size_t{64} * 1024 * 1024;

// One local header of a zip (APPNOTE.TXT, section 4.3.7).
constexpr std::string_view localHeader("PK\x03\x04", 4);
constexpr std::size_t localHeaderSize = 30;

std::size_t number16(std::string_view bytes, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    return static_cast<std::size_t>(byte(at) | byte(at + 1) << 8);
}

std::string_view storedContent(std::string_view header, std::size_t begin)
{
    constexpr std::size_t longest = 256;
    const bool stored = number16(header, 8) == 0;
    const std::size_t size = number16(header, 18);
    return stored && size <= longest && begin <= header.size() ? header.substr(begin, size) : std::string_view();
}

}  // namespace

std::size_t streamLimit(const ExtractionOptions& options)
{
    const bool limited = options.largestStream != 0 && options.largestStream < mostOfOneStream;
    return limited ? static_cast<std::size_t>(options.largestStream) : mostOfOneStream;
}

ReadOutcome failedReading(const Error& error)
{
    switch (error.kind) {
    case ErrorKind::accessDenied:
        return {TextOutcome::encrypted, error.detail, {}};
    case ErrorKind::invalid:
        return {TextOutcome::damaged, error.detail, {}};
    case ErrorKind::notSupported:
        return {TextOutcome::unknownFormat, error.detail, {}};
    default:
        return {TextOutcome::unreadable, error.detail, {}};
    }
}

ReadOutcome readParts(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink,
                      const std::function<bool(std::string_view name)>& wanted, PackageParts& parts)
{
    std::size_t left = mostOfAllParts;
    const Status status = services.packages.walk(file, [&](PackagePart& part) {
        if (!wanted(part.name()))
            return true;
        PartContent content;
        auto bytes = part.read(std::min(left, streamLimit(services.options)), &content.cut);
        if (bytes) {
            left -= bytes->size();
            if (content.cut || left == 0)
                sink.leavesMore();
            content.bytes = std::move(*bytes);
            parts.insert_or_assign(std::string(part.name()), std::move(content));
        }
        return left > 0;
    });
    return status ? ReadOutcome() : failedReading(status.error());
}

bool parsePart(const PartContent& part, const DocumentServices& services, MarkupHandler& handler)
{
    const Status status = services.xml.parse(part.bytes, handler);
    return status.ok() || (part.cut && handler.heard());
}

std::string resolvePart(std::string_view folder, std::string_view target)
{
    std::string path(target.starts_with('/') ? std::string_view() : folder);
    while (!target.empty()) {
        const std::size_t end = std::min(target.find('/'), target.size());
        const std::string_view step = target.substr(0, end);
        target.remove_prefix(std::min(end + 1, target.size()));
        if (step == "..")
            path.resize(folderOfPart(path).size());
        else if (!step.empty() && step != ".")
            path += (path.empty() ? "" : "/") + std::string(step);
    }
    return path;
}

std::string_view folderOfPart(std::string_view name)
{
    const std::size_t slash = name.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : name.substr(0, slash);
}

unsigned numberIn(std::string_view name)
{
    constexpr std::size_t digitsOfAPart = 9;
    unsigned number = 0;
    const std::size_t first = name.find_first_of("0123456789");
    if (first == std::string_view::npos)
        return 0;
    for (const char c : name.substr(first, digitsOfAPart)) {
        if (c < '0' || c > '9')
            break;
        number = number * 10 + static_cast<unsigned>(c - '0');
    }
    return number;
}

PackageHead packageHead(std::span<const std::byte> head)
{
    PackageHead found;
    const std::string_view bytes(reinterpret_cast<const char*>(head.data()), head.size());
    if (!bytes.starts_with(localHeader))
        return found;
    // Lengths may be told behind the contents only, so the next header is looked for by its signature.
    for (std::size_t at = 0; at != std::string_view::npos; at = bytes.find(localHeader, at + localHeaderSize)) {
        const std::string_view header = bytes.substr(at);
        if (header.size() < localHeaderSize)
            break;
        const std::size_t nameSize = number16(header, 26);
        found.names.push_back(header.substr(localHeaderSize, nameSize));
        if (found.names.size() == 1 && found.names[0] == "mimetype")
            found.mimetype = storedContent(header, localHeaderSize + nameSize + number16(header, 28));
    }
    return found;
}

}  // namespace kelvane
