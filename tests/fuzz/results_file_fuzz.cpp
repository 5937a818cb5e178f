// Whatever the reader of results files accepts, the writer writes the same way again, and every row of it can be asked
// for.
#include <vector>

#include "../support/bytes_reader.h"
#include "engine/node_blob.h"
#include "engine/results_content.h"
#include "engine/scan_figures.h"
#include "require.h"

namespace kelvane {
namespace {

void askForRows(const ResultsContent& content)
{
    require(content.groups.size() == content.items.rows());
    for (std::uint32_t row = 0; row < content.items.rows(); ++row) {
        const StoredPlace place = content.items.row(row);
        require(!place.path.empty() && place.inArchive != place.inside.empty());
    }
}

void askForDefinition(const std::vector<std::byte>& blob)
{
    static_cast<void>(scanNodeFromBlob(blob));
    const auto top = decodeNode(blob);
    if (!top)
        return;
    for (const StoredNode& child : top->children)
        static_cast<void>(scanFiguresOf(child));
}

void check(const std::vector<std::byte>& bytes)
{
    testing::BytesReader reader(bytes);
    const auto content = decodeResults(reader, CancelFlag());
    if (!content)
        return;
    askForRows(*content);
    askForDefinition(content->definition);
    const std::vector<std::byte> again = encodeResults(*content);
    // Without a definition the length that led to none may have been another one than 0.
    const std::size_t same = content->definition.empty() ? again.size() - 4 : again.size();
    require(same <= bytes.size() &&
            std::equal(again.begin(), again.begin() + static_cast<std::ptrdiff_t>(same), bytes.begin()));
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto* first = reinterpret_cast<const std::byte*>(data);
    kelvane::check({first, first + size});
    return 0;
}
