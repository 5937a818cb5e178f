"""Every test file reaches ctest, and tests are a quarter to a third of the code."""

import re

from .tree import CODE_FOLDERS

SHARE_FROM, SHARE_TO = 0.25, 0.34
# kelvane_tests(FOLDER ...) compiles every .cpp of the folder; kelvane_python_tests(FOLDER) runs every _test.py.
NAMED = {
    "_test.cpp": re.compile(r"^\s*kelvane_tests\(\s*([\w/]+)", re.M),
    "_test.py": re.compile(r"^\s*kelvane_python_tests\(\s*([\w/]+)", re.M),
}


def named_folders(tree, pattern):
    lists = [file for file in tree.files if file.path == "tests/CMakeLists.txt"]
    return {f"tests/{name}" for file in lists for name in pattern.findall(file.text)}


def check_reached(tree):
    for ending, pattern in NAMED.items():
        reached = named_folders(tree, pattern)
        for file in tree.files:
            if file.is_under("tests") and file.name.endswith(ending) and file.folder not in reached:
                yield f"{file.path}: tests/CMakeLists.txt does not name its folder, so ctest never runs it"


def share(tree):
    """Non-blank lines under tests/ as a part of those of all code."""
    lines = {folder: sum(file.non_blank_lines() for file in tree.code(folder)) for folder in CODE_FOLDERS}
    return lines["tests"] / max(1, sum(lines.values()))


def check(tree):
    yield from check_reached(tree)
    part = share(tree)
    if not SHARE_FROM <= part <= SHARE_TO:
        yield f"tests are {part:.1%} of the lines of code; wanted are {SHARE_FROM:.0%} to {SHARE_TO:.0%}"
