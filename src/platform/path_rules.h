// Port: what a path means, as pure string logic, so that the rules of every system are tested on every system.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text_folding.h"

namespace kelvane {

// Paths here are std::string: the bytes themselves on Linux, UTF-8 on Windows (lone surrogates as three bytes each).
// Thread-safe and immutable.
class PathRules {
public:
    virtual ~PathRules() = default;

    // A list of roots is one string, "|" between the roots. POSIX names may hold "|": there "\|" stands for it and
    // "\\" for a backslash; Windows names cannot.
    [[nodiscard]] virtual std::vector<std::string> splitRoots(std::string_view list) const = 0;
    [[nodiscard]] virtual std::string joinRoots(const std::vector<std::string>& roots) const = 0;

    // The form in which roots are compared: lower-cased on Windows, as written on Linux.
    [[nodiscard]] virtual std::string comparable(std::string_view path) const = 0;

    // Whether protection drops a root: it lies in (Windows: its path contains, anywhere) a protected folder.
    [[nodiscard]] virtual bool rootIsProtected(std::string_view path) const = 0;

    // Whether a folder met on the way is itself a protected folder.
    [[nodiscard]] virtual bool isProtectedFolder(std::string_view path) const = 0;

    // Order of roots: negative, 0 or positive; case-insensitive on Windows, by bytes on Linux.
    [[nodiscard]] virtual int compareRoots(std::string_view a, std::string_view b) const = 0;

    // Whether walking root a with its subfolders also walks root b, so that b is dropped. Both comparable().
    [[nodiscard]] virtual bool covers(std::string_view a, std::string_view b) const = 0;

    // Whether this is the parsing name of the computer's own root, the container of all drives.
    [[nodiscard]] virtual bool isComputerRoot(std::string_view root) const = 0;

    // Whether the path is in extended-length form ("\\?\C:..." or a "UNC" one): never on Linux.
    [[nodiscard]] virtual bool isExtendedLength(std::string_view path) const = 0;
    // Writes a path that is too long for the plain form in extended-length form; as it is on Linux.
    [[nodiscard]] virtual std::string toExtendedLength(std::string_view path) const = 0;

    // "c:\" or "/": a root that is shown by its display name rather than cut.
    [[nodiscard]] virtual bool isDriveRoot(std::string_view path) const = 0;

    // What stands between the names in a path: "\\" or "/".
    [[nodiscard]] virtual char separator() const = 0;

    // Same file by name: case-insensitive on Windows, by bytes on Linux.
    [[nodiscard]] virtual bool samePath(std::string_view a, std::string_view b) const = 0;
};

// Where Windows keeps its own files; a trailing backslash is added and removed and the case folded by the rules.
struct WindowsFolders {
    std::string windows = "c:\\windows";
    std::string programFiles = "c:\\program files";
};

// folding must outlive the rules.
[[nodiscard]] std::unique_ptr<PathRules> makeWindowsPathRules(const TextFolding& folding, WindowsFolders folders = {});
[[nodiscard]] std::unique_ptr<PathRules> makePosixPathRules();

}  // namespace kelvane
