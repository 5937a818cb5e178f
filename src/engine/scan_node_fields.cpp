// A scan definition as the fields of a stored node.
#include <utility>

#include "base/byte_stream.h"
#include "engine/node_blob.h"

namespace kelvane {
namespace {

constexpr std::uint16_t scanFlagsTag = 1;
constexpr std::uint16_t similarityTag = 2;

struct TextField {
    std::uint16_t tag;
    std::string CScanNode::*member;
};

// Ascending, after the numbers. Tags are never given another meaning, only new ones added.
constexpr TextField textFields[] = {
    {3, &CScanNode::properties}, {4, &CScanNode::roots},     {5, &CScanNode::extraRootsLine},
    {6, &CScanNode::masks},      {7, &CScanNode::sizeRange}, {8, &CScanNode::note},
};

NodeField numberField(std::uint16_t tag, std::uint32_t value)
{
    ByteWriter writer;
    writer.number(value);
    return {tag, writer.take()};
}

bool readNumber(const NodeField& field, std::uint32_t& value)
{
    ByteReader reader(field.bytes);
    const auto number = reader.number<std::uint32_t>();
    value = number.value_or(0);
    return number && reader.atEnd();
}

// No path and no list of names holds a zero, and a system call would stop there.
bool readText(const NodeField& field, std::string& text)
{
    text.clear();
    for (const std::byte byte : field.bytes)
        text += static_cast<char>(byte);
    return text.find('\0') == std::string::npos;
}

bool readSimilarity(const NodeField& field, CScanNode& scan)
{
    std::uint32_t value = 0;
    const bool isRead = readNumber(field, value);
    scan.similarity = static_cast<std::int32_t>(value);
    return isRead;
}

bool readField(const NodeField& field, CScanNode& scan)
{
    if (field.tag == scanFlagsTag)
        return readNumber(field, scan.flags);
    if (field.tag == similarityTag)
        return readSimilarity(field, scan);
    for (const TextField& text : textFields) {
        if (text.tag == field.tag)
            return readText(field, scan.*text.member);
    }
    return true;
}

}  // namespace

StoredNode storedNode(const CScanNode& scan)
{
    StoredNode node{static_cast<std::uint16_t>(NodeKind::scan), scan.name(), {}, {}};
    node.fields.push_back(numberField(scanFlagsTag, scan.flags));
    node.fields.push_back(numberField(similarityTag, static_cast<std::uint32_t>(scan.similarity)));
    for (const TextField& field : textFields) {
        const auto bytes = std::as_bytes(std::span(scan.*field.member));
        node.fields.push_back({field.tag, {bytes.begin(), bytes.end()}});
    }
    return node;
}

Result<CScanNode> scanNodeOf(const StoredNode& node)
{
    if (node.kind != static_cast<std::uint16_t>(NodeKind::scan))
        return Error{ErrorKind::wrongType, 0, "a stored node that is no scan definition"};
    CScanNode scan;
    scan.setName(node.name);
    for (const NodeField& field : node.fields) {
        if (!readField(field, scan))
            return Error{ErrorKind::invalid, 0, "a field of a scan definition is damaged"};
    }
    return scan;
}

}  // namespace kelvane
