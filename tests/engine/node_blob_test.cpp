#include "engine/node_blob.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>

#include "base/byte_stream.h"
#include "base/crc32.h"

namespace kelvane {
namespace {

using Blob = std::vector<std::byte>;

CScanNode fullDefinition()
{
    CScanNode scan;
    scan.setName(u"Fotos \xD83D\xDE00 \xD800");
    scan.flags = 0xFFFFFFFF;
    scan.similarity = -1;
    scan.properties = "System.Size,System.Title";
    scan.roots = "/home/\xFF\xFE|/b\nc";
    scan.extraRootsLine = "line";
    scan.masks = "jpg,png";
    scan.sizeRange = "1-2";
    scan.note = "Größe";
    return scan;
}

void expectEqual(const CScanNode& one, const CScanNode& two)
{
    EXPECT_EQ(one.name(), two.name());
    EXPECT_EQ(one.flags, two.flags);
    EXPECT_EQ(one.similarity, two.similarity);
    EXPECT_EQ(one.properties, two.properties);
    EXPECT_EQ(one.roots, two.roots);
    EXPECT_EQ(one.extraRootsLine, two.extraRootsLine);
    EXPECT_EQ(one.masks, two.masks);
    EXPECT_EQ(one.sizeRange, two.sizeRange);
    EXPECT_EQ(one.note, two.note);
}

Blob withChecksum(Blob blob)
{
    ByteWriter writer;
    writer.bytes(std::span(blob).first(blob.size() - 4));
    writer.number(crc32(writer.written()));
    return writer.take();
}

StoredNode nested(unsigned levels)
{
    StoredNode node;
    if (levels > 1)
        node.children.push_back(nested(levels - 1));
    return node;
}

std::optional<ErrorKind> fault(const Blob& blob, std::u16string_view name = u"binLastScan")
{
    const auto scan = scanNodeFromBlob(blob, name);
    return scan ? std::nullopt : std::optional(scan.error().kind);
}

TEST(NodeBlob, KeepsEveryFieldOfADefinition)
{
    const CScanNode full = fullDefinition();
    const auto again = scanNodeFromBlob(toBlob(full), full.name());
    ASSERT_TRUE(again.ok());
    expectEqual(*again, full);
    const auto standard = scanNodeFromBlob(toBlob(CScanNode()));
    ASSERT_TRUE(standard.ok());
    expectEqual(*standard, CScanNode());
}

// The blob of the worked example, from the lines of hexadecimal digits that a wide gap ends.
TEST(NodeBlob, IsAsTheDocumentShowsIt)
{
    std::ifstream page(KELVANE_NODE_PAGE);
    std::string line;
    while (std::getline(page, line) && line != "## Example") {
    }
    Blob shown;
    while (std::getline(page, line)) {
        std::istringstream digits(line.substr(0, 67));
        for (unsigned value = 0; line.size() > 67 && line[2] == ' ' && digits >> std::hex >> value;)
            shown.push_back(static_cast<std::byte>(value));
    }
    CScanNode scan;
    scan.properties = "System.Size";
    scan.roots = "/home/ann/M\xC3\xBC";
    EXPECT_EQ(toBlob(scan), shown);
}

TEST(NodeBlob, AnyDamageIsNoticed)
{
    const Blob sound = toBlob(fullDefinition());
    for (std::size_t at = 0; at < sound.size(); ++at) {
        Blob damaged = sound;
        damaged[at] ^= std::byte{0x10};
        EXPECT_TRUE(fault(damaged, u"")) << at;
        EXPECT_TRUE(fault(Blob(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(at)), u"")) << at;
    }
    Blob longer = sound;
    longer.push_back({});
    EXPECT_EQ(fault(longer, u""), ErrorKind::invalid);
}

TEST(NodeBlob, ARightChecksumDoesNotMakeItTrusted)
{
    const Blob sound = toBlob(CScanNode());
    const std::pair<std::size_t, int> changes[] = {
        {0, 'X'}, {6, 1}, {8, 0xFF}, {14, 0xFF}, {14, 0}, {16, 0}, {17, 1}, {42, 2}, {44, 3}, {44, 5}, {47, 0x7F},
    };
    for (const auto& [at, value] : changes) {
        Blob damaged = sound;
        damaged[at] = static_cast<std::byte>(value);
        EXPECT_EQ(fault(withChecksum(damaged), u""), ErrorKind::invalid) << at;
    }
    Blob later = sound;
    later[4] = std::byte{2};
    EXPECT_EQ(fault(withChecksum(later)), ErrorKind::notSupported);
}

TEST(NodeBlob, WhatALaterVersionAddsIsPassedOver)
{
    StoredNode node = storedNode(fullDefinition());
    node.fields.erase(node.fields.begin());
    node.fields.push_back({99, {std::byte{1}, std::byte{2}}});
    node.children.push_back({77, u"of a later kind", {}, {}});
    const Blob blob = encodeNode(node);
    EXPECT_EQ(*decodeNode(blob), node);
    CScanNode expected = fullDefinition();
    expected.flags = scan_flag::standard;  // the field that was not there
    const auto scan = scanNodeFromBlob(blob, u"");
    ASSERT_TRUE(scan.ok());
    expectEqual(*scan, expected);
}

TEST(NodeBlob, ADefinitionIsFoundByItsName)
{
    StoredNode list{static_cast<std::uint16_t>(NodeKind::named), u"scans", {}, {}};
    list.children = {storedNode(fullDefinition()), storedNode(CScanNode())};
    const Blob blob = encodeNode(list);
    EXPECT_EQ(fault(blob), std::nullopt);
    EXPECT_EQ(fault(blob, fullDefinition().name()), std::nullopt);
    EXPECT_EQ(fault(blob, u"other"), ErrorKind::notFound);
    EXPECT_EQ(fault(blob, u"scans"), ErrorKind::wrongType);
    EXPECT_EQ(fault(toBlob(fullDefinition())), ErrorKind::notFound);
}

TEST(NodeBlob, FieldsOfADefinitionAreChecked)
{
    const NodeField bad[] = {{1, Blob(3)}, {1, Blob(5)}, {2, {}}, {4, Blob(1)}};
    for (const NodeField& field : bad) {
        StoredNode node{static_cast<std::uint16_t>(NodeKind::scan), u"binLastScan", {field}, {}};
        EXPECT_EQ(fault(encodeNode(node)), ErrorKind::invalid) << field.tag << ", " << field.bytes.size();
    }
}

TEST(NodeBlob, LengthAndDepthHaveTheirLimits)
{
    CScanNode scan;
    const std::size_t others = toBlob(scan).size();
    scan.roots.assign(largestNodeBlob - others, 'r');
    EXPECT_EQ(toBlob(scan).size(), largestNodeBlob);
    EXPECT_EQ(fault(toBlob(scan)), std::nullopt);
    scan.roots += 'r';
    EXPECT_TRUE(toBlob(scan).empty());

    EXPECT_TRUE(decodeNode(encodeNode(nested(deepestNode))).ok());
    EXPECT_TRUE(encodeNode(nested(deepestNode + 1)).empty());
    EXPECT_TRUE(encodeNode({1, u"", {{2, {}}, {2, {}}}, {}}).empty());
    EXPECT_TRUE(encodeNode({1, u"", {{childTag, {}}}, {}}).empty());
}

}  // namespace
}  // namespace kelvane
