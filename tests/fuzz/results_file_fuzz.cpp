// Whatever the reader of results files accepts, the writer writes the same way again, and every row of it can be asked
// for.
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "engine/node_blob.h"
#include "engine/results_content.h"
#include "engine/scan_figures.h"

namespace kelvane {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

class BytesReader final : public ContentReader {
public:
    explicit BytesReader(std::span<const std::byte> bytes) : rest_(bytes) {}
    Result<std::size_t> read(std::span<std::byte> buffer) override
    {
        const std::size_t count = std::min(buffer.size(), rest_.size());
        std::copy_n(rest_.begin(), count, buffer.begin());
        rest_ = rest_.subspan(count);
        return count;
    }
    Status skip(std::uint64_t) override { return Error{}; }
    Result<FileInfo> info() const override { return Error{}; }

private:
    std::span<const std::byte> rest_;
};

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

void check(std::span<const std::byte> bytes)
{
    BytesReader reader(bytes);
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
    kelvane::check(std::as_bytes(std::span(data, size)));
    return 0;
}
