#include "engine/results_content.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "base/byte_stream.h"
#include "base/filled_text.h"
#include "engine/node_blob.h"

namespace kelvane {
namespace {

constexpr std::string_view magic = "IKV1";
constexpr std::size_t numberSize = 4;
constexpr std::size_t unitSize = 2;
constexpr std::size_t smallestHeader = unitSize + 2 * numberSize;
constexpr std::size_t largestHeader = 1 << 20;  // no list of columns comes near it
constexpr std::size_t pieceSize = 1 << 20;
constexpr std::uint32_t viewOptionShift = 16;

using Bytes = std::vector<std::byte>;

std::uint32_t numberAt(const Bytes& bytes, std::size_t at)
{
    return *ByteReader(std::span(bytes).subspan(at)).number<std::uint32_t>();
}

// Takes fields off the front of a file.
class FieldReader {
public:
    FieldReader(ContentReader& reader, const CancelFlag& cancel) : reader_(reader), cancel_(cancel) {}

    // All of the bytes, or an error that calls them by the name given.
    Result<Bytes> take(std::size_t count, const char* what)
    {
        Bytes bytes;
        while (bytes.size() < count) {
            if (cancel_.cancelled())
                return Error{ErrorKind::cancelled, 0, {}};
            const std::size_t before = bytes.size();
            const std::size_t wanted = std::min(count - before, pieceSize);
            bytes.resize(before + wanted);
            const auto read = reader_.read(std::span(bytes).subspan(before));
            if (!read)
                return read.error();
            if (*read < wanted)
                return invalid("the " + std::string(what) + " ends after " + std::to_string(before + *read) + " of " +
                               std::to_string(count) + " bytes");
        }
        return bytes;
    }

private:
    ContentReader& reader_;
    const CancelFlag& cancel_;
};

struct Header {
    std::u16string columns;
    std::uint32_t view = 0;
    std::uint32_t blockLength = 0;
};

// The column string with its terminator, which must be its only zero.
std::optional<std::u16string> columnsOf(const Bytes& header)
{
    std::u16string columns;
    ByteReader reader{std::span(header).first(header.size() - 2 * numberSize)};
    while (const auto unit = reader.number<std::uint16_t>())
        columns += static_cast<char16_t>(*unit);
    if (columns.find(u'\0') != columns.size() - 1)
        return std::nullopt;
    columns.pop_back();
    return columns;
}

Result<Header> readHeader(FieldReader& fields)
{
    const auto head = fields.take(magic.size() + numberSize, "head of the file");
    if (!head)
        return head.error();
    if (!std::ranges::equal(std::span(*head).first(magic.size()), std::as_bytes(std::span(magic))))
        return invalid(filledText(TextId::notResultsFile));
    const std::uint32_t length = numberAt(*head, magic.size());
    if (length < smallestHeader || length > largestHeader || length % unitSize != 0)
        return invalid("no header is " + std::to_string(length) + " bytes long");
    const auto bytes = fields.take(length, "header");
    if (!bytes)
        return bytes.error();
    auto columns = columnsOf(*bytes);
    if (!columns)
        return invalid("the list of columns has no end, or two");
    return Header{std::move(*columns), numberAt(*bytes, length - 2 * numberSize),
                  numberAt(*bytes, length - numberSize)};
}

Status checkView(std::uint32_t view)
{
    constexpr std::uint32_t known = 1u | 1u << viewOptionShift;
    return (view & ~known) == 0 ? Status() : invalid("the view flags are " + std::to_string(view));
}

Result<ItemBlock> readBlock(FieldReader& fields, std::uint32_t length)
{
    if (length < smallestItemBlock || length > largestItemBlock)
        return invalid("no item block is " + std::to_string(length) + " bytes long");
    auto bytes = fields.take(length, "item block");
    if (!bytes)
        return bytes.error();
    return ItemBlock::check(std::move(*bytes));
}

Result<std::vector<std::uint32_t>> readGroups(FieldReader& fields, std::uint32_t rows)
{
    const auto bytes = fields.take(numberSize * rows, "list of group numbers");
    if (!bytes)
        return bytes.error();
    std::vector<std::uint32_t> groups;
    groups.reserve(rows);
    ByteReader reader(*bytes);
    while (const auto group = reader.number<std::uint32_t>()) {
        if (*group == 0 || *group > highestGroup)
            return invalid("row " + std::to_string(groups.size() + 1) + " is in group " + std::to_string(*group));
        groups.push_back(*group);
    }
    return groups;
}

// The rows stand without it, so that only a cancel is an error.
Result<Bytes> readDefinition(FieldReader& fields)
{
    const auto orNothing = [](Result<Bytes> bytes) -> Result<Bytes> {
        const bool lost = !bytes && bytes.error().kind != ErrorKind::cancelled;
        return lost ? Bytes() : bytes;
    };
    const auto head = orNothing(fields.take(numberSize, "length of the definition"));
    if (!head || head->empty())
        return head;
    const std::uint32_t length = numberAt(*head, 0);
    return length <= largestNodeBlob ? orNothing(fields.take(length, "definition")) : Bytes();
}

}  // namespace

std::vector<std::byte> encodeResults(const ResultsContent& content)
{
    ByteWriter writer;
    writer.text(magic);
    writer.number(static_cast<std::uint32_t>(unitSize * (content.columns.size() + 1) + 2 * numberSize));
    for (const char16_t unit : content.columns)
        writer.number(static_cast<std::uint16_t>(unit));
    writer.number(std::uint16_t{0});
    writer.number((content.detailsView ? 1u : 0u) | (content.viewOption ? 1u << viewOptionShift : 0u));
    writer.number(static_cast<std::uint32_t>(content.items.bytes().size()));
    writer.bytes(content.items.bytes());
    for (const std::uint32_t group : content.groups)
        writer.number(group);
    writer.number(static_cast<std::uint32_t>(content.definition.size()));
    writer.bytes(content.definition);
    return writer.take();
}

Result<ResultsContent> decodeResults(ContentReader& reader, const CancelFlag& cancel)
{
    FieldReader fields(reader, cancel);
    auto header = readHeader(fields);
    if (!header)
        return header.error();
    if (const Status view = checkView(header->view); !view)
        return view.error();
    auto items = readBlock(fields, header->blockLength);
    if (!items)
        return items.error();
    auto groups = readGroups(fields, items->rows());
    if (!groups)
        return groups.error();
    auto definition = readDefinition(fields);
    if (!definition)
        return definition.error();
    return ResultsContent{std::move(header->columns), (header->view & 1) != 0, (header->view >> viewOptionShift) != 0,
                          std::move(*items),          std::move(*groups),      std::move(*definition)};
}

}  // namespace kelvane
