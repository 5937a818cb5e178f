// Marks that a person put aside, to be put back or taken off later.
#pragma once

#include <cstddef>
#include <unordered_set>

#include "platform/native_text.h"
#include "platform/shell_item.h"

namespace kelvane {

// A set of full paths, byte for byte and in the case as stored; empty at first. It outlives the results that it was
// filled from, so that marks can be carried over to those of another scan.
class StoredMarks {
public:
    void clear() { paths_.clear(); }
    void add(const ShellItem& item) { paths_.insert(item.fullName()); }
    [[nodiscard]] bool contains(const ShellItem& item) const { return paths_.contains(item.fullName()); }
    [[nodiscard]] bool empty() const { return paths_.empty(); }
    [[nodiscard]] std::size_t count() const { return paths_.size(); }

private:
    std::unordered_set<NativeString> paths_;
};

}  // namespace kelvane
