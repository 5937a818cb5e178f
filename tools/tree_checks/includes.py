"""What may include what: the order of the folders, and who may see the system, Qt and the libraries."""

import re

# A folder includes itself and what stands left of it; the faces do not include each other.
ORDER = ["base", "platform", "text", "props", "media", "engine", "results", "cleanup", "app", "ui", "cli", "worker"]
FACES = {"ui", "cli", "worker"}
SYSTEMS = ("linux", "windows")

# Libraries, by the beginning of their headers' names, and the folders that may include them.
LIBRARIES = {
    "CLI/": {"cli"},
    "nlohmann/": {"cli"},
    "xxhash.h": {"engine", "platform"},
    "eigen3/": {"props"},
    "Q": {"ui"},
}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
CONDITIONAL = re.compile(r"^\s*#\s*(?:el)?if")
SYSTEM_MACRO = re.compile(
    r"\b(_WIN32|_WIN64|WIN32|__MINGW\w+|_MSC_VER|__CYGWIN__|__linux__|__linux|linux|__unix__|__APPLE__|__FreeBSD__"
    r"|_POSIX_\w+|__ANDROID__)\b"
)
STANDARD = re.compile(r"^[a-z_0-9]+$")


def layer(path):
    """The folder of src/ that a path below src/ lies in, None for a file of src/ itself."""
    head, slash, _ = path.partition("/")
    return head if slash else None


def adapter(path):
    """The system whose adapters a path below src/ belongs to, or None."""
    parts = path.split("/")
    return parts[1] if len(parts) > 2 and parts[0] == "platform" and parts[1] in SYSTEMS else None


def own_include_fault(path, included):
    if adapter(included):
        return None if adapter(path) == adapter(included) else "adapters are included by nobody"
    mine, other = layer(path), layer(included)
    if other not in ORDER:
        return "it names no folder of src/"
    if adapter(path) and other not in ("base", "platform"):
        return "an adapter includes base and the ports only"
    if mine != other and {mine, other} <= FACES:
        return "the faces know nothing of each other"
    return "it lies to the right in the order of the folders" if ORDER.index(other) > ORDER.index(mine) else None


def foreign_include_fault(path, included):
    if STANDARD.match(included) or adapter(path) and not included.startswith("Q"):
        return None
    for beginning, folders in LIBRARIES.items():
        if included.startswith(beginning):
            return None if layer(path) in folders else f"that library is for src/{'/, src/'.join(sorted(folders))}/"
    return "headers of the system and of other libraries stay under src/platform/<system>/"


def include_fault(path, quote, included):
    if layer(path) not in ORDER:
        return "its own folder has no place in the order of the folders"
    return own_include_fault(path, included) if quote == '"' else foreign_include_fault(path, included)


def check_line(path, line):
    if match := INCLUDE.match(line):
        if fault := include_fault(path, match[1], match[2]):
            return f"includes {match[2]}: {fault}"
    if CONDITIONAL.match(line) and SYSTEM_MACRO.search(line) and not adapter(path):
        return "asks for the system, which only src/platform/<system>/ may do"
    return None


def check(tree):
    for file in tree.cxx("src"):
        path = file.path.removeprefix("src/")
        for number, line in enumerate(file.lines, 1):
            if fault := check_line(path, line):
                yield f"{file.path}:{number}: {fault}"
