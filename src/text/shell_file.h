// A shell item as a file of which any part can be read, in this process.
#pragma once

#include <memory>
#include <vector>

#include "base/cancel.h"
#include "platform/random_access_file.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// Keeps the first bytes, so that a look at them costs no second reading. Reading onwards is as cheap as the item's own
// reader; going back opens the item anew. Both must outlive it.
class ShellFile final : public RandomAccessFile {
public:
    static constexpr std::size_t headSize = 4096;

    [[nodiscard]] static Result<std::unique_ptr<ShellFile>> open(ShellNamespace& shell, const ShellItem& item);

    [[nodiscard]] std::span<const std::byte> head() const { return head_; }
    [[nodiscard]] std::uint64_t size() const override { return item_.info().size.bytes; }
    [[nodiscard]] Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override;

private:
    ShellFile(ShellNamespace& shell, const ShellItem& item) : shell_(shell), item_(item) {}
    Status goTo(std::uint64_t position);
    Status openAgain();

    ShellNamespace& shell_;
    const ShellItem& item_;
    std::unique_ptr<ContentReader> reader_;
    std::uint64_t position_ = 0;  // of the reader
    std::vector<std::byte> head_;
};

// All of the file, `tooLong` when it has more bytes than that.
struct WholeContent {
    std::vector<std::byte> bytes;
    bool tooLong = false;
};
// An error of kind `cancelled` when it was.
[[nodiscard]] Result<WholeContent> readWhole(RandomAccessFile& file, std::uint64_t most, const CancelFlag& cancel);

}  // namespace kelvane
