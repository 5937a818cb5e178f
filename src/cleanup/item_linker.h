// One item becomes a link, by the first of the allowed ways that works.
#pragma once

#include "cleanup/elevated_links.h"
#include "cleanup/link_volumes.h"
#include "cleanup/replacement.h"

namespace kelvane {

struct LinkAttempt {
    Placement placement;
    LinkKind kind = LinkKind::none;  // what it became, when done
    bool tooManyNames = false;       // not done: the kept file has as many names as it can
    bool linkFailed = false;         // not done: no link could be made, which tells of the volume
};

// The ways that the command allows; those that its kind of link stands for where it names none.
[[nodiscard]] std::uint8_t waysOf(const CleanupCommand& command);

class ItemLinker {
public:
    ItemLinker(const PassPorts& ports, LinkVolumes& volumes, ElevatedLinks& elevated)
        : ports_(ports), volumes_(volumes), elevated_(elevated)
    {
    }

    // `ways` are those that are possible here. Clone, hard, symbolic, in this order; a symbolic link only stands in for
    // a hard one that failed for another reason than the number of names.
    [[nodiscard]] LinkAttempt link(const HeldPair& pair, const NativeString& temporary, std::uint8_t ways,
                                   const ShellItem& item, const ShellItem& kept);

private:
    [[nodiscard]] Status makeSymbolic(const HeldPair& pair, const NativeString& temporary, const ShellItem& item,
                                      const ShellItem& kept);
    [[nodiscard]] LinkAttempt place(const HeldPair& pair, const NativeString& temporary, LinkKind kind);

    const PassPorts& ports_;
    LinkVolumes& volumes_;
    ElevatedLinks& elevated_;
};

}  // namespace kelvane
