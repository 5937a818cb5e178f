// System.Comment: what somebody noted about a file, wherever it is kept.
#pragma once

#include <string>

#include "platform/property_system.h"
#include "platform/shell_namespace.h"
#include "platform/text_folding.h"

namespace kelvane {

// The name of the alternate data stream (on Linux: of the extended attribute) that holds a comment.
inline constexpr const char* commentStream = "nv_AFScomment";

// What the comment is looked for with.
struct CommentPorts {
    ShellNamespace& shell;
    PropertyReaders& readers;
    const TextFolding& folding;
};

// The first that is not empty of: the comment in the file itself; for a folder, which must have the read-only
// attribute to be looked into, the info tip of its desktop.ini; for a file its comment stream, of which the first 8192
// bytes count; and, when that stream cannot be opened, the line for the file in the folder's descript.ion. Empty when
// there is none. Thread-safe as far as the ports are.
[[nodiscard]] RawValue readComment(const CommentPorts& ports, const PropertyInfo& property, const ShellItem& item);

}  // namespace kelvane
