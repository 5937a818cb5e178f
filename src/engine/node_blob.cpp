#include "engine/node_blob.h"

#include <algorithm>
#include <utility>

#include "base/byte_stream.h"
#include "base/crc32.h"

namespace kelvane {
namespace {

constexpr std::string_view magic = "KVNB";
constexpr std::uint16_t formatVersion = 1;
constexpr std::size_t headerSize = 12;
constexpr std::size_t checksumSize = 4;
constexpr std::size_t nodeHeaderSize = 8;
constexpr std::size_t longestName = 0xFFFF;

bool hasOrderedTags(const StoredNode& node)
{
    const auto& fields = node.fields;
    const bool ascends = std::adjacent_find(fields.begin(), fields.end(), [](const auto& one, const auto& next) {
                             return one.tag >= next.tag;
                         }) == fields.end();
    return ascends && (fields.empty() || fields.back().tag < childTag);
}

bool isStorable(const StoredNode& node, unsigned room)
{
    return room > 0 && node.name.size() <= longestName && hasOrderedTags(node) &&
           std::all_of(node.children.begin(), node.children.end(),
                       [&](const StoredNode& child) { return isStorable(child, room - 1); });
}

void writeField(ByteWriter& writer, std::uint16_t tag, std::span<const std::byte> bytes)
{
    writer.number(tag);
    writer.number(static_cast<std::uint32_t>(bytes.size()));
    writer.bytes(bytes);
}

std::vector<std::byte> nodeBytes(const StoredNode& node)
{
    ByteWriter body;
    for (const NodeField& field : node.fields)
        writeField(body, field.tag, field.bytes);
    for (const StoredNode& child : node.children)
        writeField(body, childTag, nodeBytes(child));
    ByteWriter writer;
    writer.number(node.kind);
    writer.number(static_cast<std::uint16_t>(node.name.size()));
    writer.number(static_cast<std::uint32_t>(body.size()));
    for (const char16_t unit : node.name)
        writer.number(static_cast<std::uint16_t>(unit));
    writer.bytes(body.written());
    return writer.take();
}

// The bytes of the outermost node, once everything around it has proved right.
Result<std::span<const std::byte>> checkedContents(std::span<const std::byte> blob)
{
    if (blob.size() > largestNodeBlob || blob.size() < headerSize + nodeHeaderSize + checksumSize)
        return invalid("no stored node has this length");
    const std::size_t end = blob.size() - checksumSize;
    ByteReader reader(blob);
    const auto mark = *reader.bytes(magic.size());
    if (!std::ranges::equal(mark, std::as_bytes(std::span(magic))))
        return invalid("not a stored node");
    if (reader.number<std::uint16_t>() != formatVersion)
        return Error{ErrorKind::notSupported, 0, "a stored node of another version"};
    if (reader.number<std::uint16_t>() != 0 || reader.number<std::uint32_t>() != blob.size())
        return invalid("the header of a stored node is damaged");
    if (ByteReader(blob.subspan(end)).number<std::uint32_t>() != crc32(blob.first(end)))
        return invalid("the checksum of a stored node is wrong");
    return blob.subspan(headerSize, end - headerSize);
}

std::u16string nameOf(std::span<const std::byte> bytes)
{
    std::u16string name;
    ByteReader reader(bytes);
    while (const auto unit = reader.number<std::uint16_t>())
        name += static_cast<char16_t>(*unit);
    return name;
}

Result<StoredNode> readNode(std::span<const std::byte> bytes, unsigned room);

Status readBody(ByteReader& body, StoredNode& node, unsigned room)
{
    while (!body.atEnd()) {
        const auto tag = body.number<std::uint16_t>();
        const auto length = body.number<std::uint32_t>();
        const auto bytes = tag && length ? body.bytes(*length) : std::nullopt;
        if (!bytes)
            return invalid("a field of a stored node is cut off");
        if (*tag != childTag) {
            node.fields.push_back({*tag, {bytes->begin(), bytes->end()}});
            if (!node.children.empty())
                return invalid("the fields of a stored node are out of order");
            continue;
        }
        auto child = readNode(*bytes, room - 1);
        if (!child)
            return child.error();
        node.children.push_back(std::move(*child));
    }
    return hasOrderedTags(node) ? Status() : invalid("the fields of a stored node are out of order");
}

// Exactly one node.
Result<StoredNode> readNode(std::span<const std::byte> bytes, unsigned room)
{
    if (room == 0)
        return invalid("stored nodes lie too deep in one another");
    ByteReader reader(bytes);
    const auto kind = reader.number<std::uint16_t>();
    const auto units = reader.number<std::uint16_t>();
    const auto length = reader.number<std::uint32_t>();
    const auto name = units ? reader.bytes(std::size_t{*units} * 2) : std::nullopt;
    const auto body = name && length ? reader.bytes(*length) : std::nullopt;
    if (!body || !reader.atEnd())
        return invalid("the length of a stored node is wrong");
    StoredNode node{*kind, nameOf(*name), {}, {}};
    ByteReader fields(*body);
    if (const Status status = readBody(fields, node, room); !status)
        return status.error();
    return node;
}

}  // namespace

std::vector<std::byte> encodeNode(const StoredNode& node)
{
    if (!isStorable(node, deepestNode))
        return {};
    const std::vector<std::byte> contents = nodeBytes(node);
    const std::size_t size = headerSize + contents.size() + checksumSize;
    if (size > largestNodeBlob)
        return {};
    ByteWriter writer;
    writer.text(magic);
    writer.number(formatVersion);
    writer.number(std::uint16_t{0});
    writer.number(static_cast<std::uint32_t>(size));
    writer.bytes(contents);
    writer.number(crc32(writer.written()));
    return writer.take();
}

Result<StoredNode> decodeNode(std::span<const std::byte> blob)
{
    const auto contents = checkedContents(blob);
    if (!contents)
        return contents.error();
    return readNode(*contents, deepestNode);
}

std::vector<std::byte> toBlob(const CScanNode& scan)
{
    return encodeNode(storedNode(scan));
}

Result<CScanNode> scanNodeFromBlob(std::span<const std::byte> blob, std::u16string_view name)
{
    const auto top = decodeNode(blob);
    if (!top)
        return top.error();
    if (name.empty() || top->name == name)
        return scanNodeOf(*top);
    for (const StoredNode& child : top->children) {
        if (child.name == name)
            return scanNodeOf(child);
    }
    return Error{ErrorKind::notFound, 0, "no definition of this name"};
}

}  // namespace kelvane
