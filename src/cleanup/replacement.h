// The one moment at which a link takes the place of an item.
#pragma once

#include <optional>

#include "cleanup/guards.h"

namespace kelvane {

enum class Placed : std::uint8_t {
    done,
    notDone,    // everything is as it was, and the temporary names are free
    undecided,  // could not be brought back either: the journal's entry has to stay open
};

struct Placement {
    Placed state = Placed::done;
    std::optional<CleanupFailure> failure;  // unless done
};

// The hard or symbolic link that was made under `temporary` takes the item's name, the item leaves by `temporary` or
// asideName() of it, what left is looked at and removed last. At every instant the item's name has the old file or the
// finished link; whatever fails or proves to have changed meanwhile is put back.
[[nodiscard]] Placement placeLink(const HeldPair& pair, const NativeString& temporary, LinkKind kind,
                                  FileSystem& files);

// After the link could not be made: a link that lies under the name all the same is removed.
[[nodiscard]] Placement abandonLink(const HeldPair& pair, const NativeString& temporary, CleanupFailure failure);

}  // namespace kelvane
