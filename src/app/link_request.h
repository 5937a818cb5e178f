// A symbolic link that a process without the rights asks of one that has them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/port_text.h"
#include "base/result.h"
#include "platform/file_info.h"
#include "platform/link_maker.h"

namespace kelvane {

// "link|target", as it travels under port_tag::symbolicLink. `invalid` for what could be taken apart in two ways, or
// that no helper would serve.
[[nodiscard]] Result<std::vector<std::byte>> encodeLinkRequest(std::string_view link, std::string_view target,
                                                               CommandSyntax syntax = nativeSyntax);

// What is at the end of a path, links followed; an error when nothing is.
using KindLookup = std::function<Result<FileKind>(const std::filesystem::path&)>;

// The serving side. The asker is a process of the same user but of lesser rights, so nothing that it says is taken on
// trust: both paths are absolute, without steps upwards and control characters, and the text has exactly one "|".
// Thread-safe; the port must outlive it.
class LinkRequests {
public:
    LinkRequests(KindLookup kindOf, LinkMaker& links, CommandSyntax syntax = nativeSyntax)
        : kindOf_(std::move(kindOf)), links_(links), syntax_(syntax)
    {
    }

    // Makes the link when its target exists, a link to a folder when that is one. A Windows target that does not exist
    // is looked for once more on the drive of the link.
    [[nodiscard]] Status serve(std::span<const std::byte> request) const;

private:
    KindLookup kindOf_;
    LinkMaker& links_;
    CommandSyntax syntax_;
};

}  // namespace kelvane
