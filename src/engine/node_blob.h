// Nodes as bytes: how a scan definition lies in the settings and in a results file. docs/formats/settings-node.md
// describes every byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "engine/scan_node.h"

namespace kelvane {

inline constexpr std::size_t largestNodeBlob = 49'999;  // bytes; a results file takes no more
inline constexpr unsigned deepestNode = 8;              // nodes inside nodes, the outermost one counted

enum class NodeKind : std::uint16_t {
    plain = 1,  // nothing but what lies in it
    named = 2,
    scan = 3,
};

// A value of a node. What the tag means depends on the kind of the node.
struct NodeField {
    std::uint16_t tag = 0;
    std::vector<std::byte> bytes;
    friend bool operator==(const NodeField&, const NodeField&) = default;
};

// A node as it is kept, whatever wrote it: a later version's kinds and fields stay as they are.
struct StoredNode {
    std::uint16_t kind = static_cast<std::uint16_t>(NodeKind::plain);
    std::u16string name;
    std::vector<NodeField> fields;  // tags ascend, below childTag
    std::vector<StoredNode> children;
    friend bool operator==(const StoredNode&, const StoredNode&) = default;
};

inline constexpr std::uint16_t childTag = 0xFFFF;

// Empty when the blob would be too long, or the node lies too deep or breaks the order of tags: nothing is kept then.
[[nodiscard]] std::vector<std::byte> encodeNode(const StoredNode& node);

// All or nothing: `invalid` for whatever encodeNode() would not have written.
[[nodiscard]] Result<StoredNode> decodeNode(std::span<const std::byte> blob);

[[nodiscard]] StoredNode storedNode(const CScanNode& scan);

// `wrongType` for a node of another kind, `invalid` for a field that no definition can have. A field that is not there
// takes its default, and an unknown one is passed over.
[[nodiscard]] Result<CScanNode> scanNodeOf(const StoredNode& node);

// encodeNode() of the definition alone, its name included.
[[nodiscard]] std::vector<std::byte> toBlob(const CScanNode& scan);

// The definition of that name: the blob's own node, or one that lies directly in it. `notFound` when there is none. An
// empty name takes the blob's own node, whatever its name.
[[nodiscard]] Result<CScanNode> scanNodeFromBlob(std::span<const std::byte> blob,
                                                 std::u16string_view name = u"binLastScan");

}  // namespace kelvane
