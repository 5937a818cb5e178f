"""How files look: formatting, white space, constructs that the house does without."""

import re
import shutil
import subprocess

# Literal suffixes cannot be had otherwise.
USING_NAMESPACE = re.compile(r"^\s*using\s+namespace\b(?!.*_literals;)")
# The first words of clang-format's complaint about a place; its next lines only quote the code.
COMPLAINT = re.compile(r"^(?P<path>[^:\n]+):(?P<line>\d+):\d+: (?:error|warning): code should be clang-formatted", re.M)


def line_faults(file, line):
    if line != line.rstrip():
        yield "white space at the end of the line"
    if "\t" in line:
        yield "a tab"
    if file.is_cxx() and USING_NAMESPACE.match(line):
        yield "'using namespace' makes names of unclear origin"


def check_lines(tree):
    for file in tree.files:
        for number, line in enumerate(file.lines, 1):
            for fault in line_faults(file, line):
                yield f"{file.path}:{number}: {fault}"
        if file.is_header() and "#pragma once" not in file.text:
            yield f"{file.path}: a header without '#pragma once'"


def check_format(tree):
    files = [file.path for file in tree.cxx()]
    if not files:
        return
    if not shutil.which("clang-format"):
        yield "clang-format is missing, so the formatting is not checked"
        return
    command = ["clang-format", "--dry-run", "-Werror", *files]
    run = subprocess.run(command, cwd=tree.root, capture_output=True, text=True, check=False)
    seen = set()
    for match in COMPLAINT.finditer(run.stderr):
        if match["path"] not in seen:
            seen.add(match["path"])
            yield f"{match['path']}:{match['line']}: not formatted; run clang-format -i on it"
    if run.returncode != 0 and not seen:
        yield f"clang-format failed: {run.stderr.strip()[:500]}"


def check(tree):
    yield from check_lines(tree)
    yield from check_format(tree)
