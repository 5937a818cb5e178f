"""The program's texts, as src/base/text_rows.inc lists them, and their placeholders."""

import re
from dataclasses import dataclass

ROW = re.compile(
    r'^TEXT_ROW\(\s*(?P<number>\d+),\s*(?P<name>\w+),\s*(?P<text>(?:u"(?:\\.|[^"\\\n])*"\s*)+)\)'
    r"[ ]*(?://[ ]*(?P<note>[^\n]*))?$",
    re.M,
)
INCLUDE = re.compile(r'^#include "([^"]+)"', re.M)
LITERAL = re.compile(r'u"((?:\\.|[^"\\\n])*)"')
ESCAPE = re.compile(r"\\(u[0-9A-Fa-f]{4}|.)")
SIMPLE_ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}

# %[flags][width][.precision][length]conversion, %1, or an escaped percent sign: as src/base/placeholders.cpp reads them.
PLACEHOLDER = re.compile(r"%[-+ #0]*\d*(?:\.\d*)?[hlLjztqwI]*[diouxXeEfFgGaAcCsSpn]|%\d+|%%")


class RowError(Exception):
    """A line of the rows that is none."""


@dataclass(frozen=True)
class Row:
    number: int
    name: str
    english: str
    note: str = ""


def unescaped(literal):
    def plain(match):
        code = match[1]
        if len(code) == 5:
            return chr(int(code[1:], 16))
        if code not in SIMPLE_ESCAPES:
            raise RowError(f"\\{code} is not known")
        return SIMPLE_ESCAPES[code]

    return ESCAPE.sub(plain, literal)


def check_rest(text):
    """What is no row must be a comment, or else a row would be lost in silence."""
    for line in ROW.sub("", text).splitlines():
        if line.strip() and not line.lstrip().startswith("//"):
            raise RowError(f"not a row: {line.strip()}")


def read_tree(root):
    """The rows of the program: the one list, and those of the desktop program behind it."""
    base = root / "src/base"
    text = (base / "text_rows.inc").read_text(encoding="utf-8")
    desktop = base / "desktop_text_rows.inc"
    names = INCLUDE.findall(desktop.read_text(encoding="utf-8")) if desktop.exists() else []
    return read_rows("\n".join([text, *((root / "src" / name).read_text(encoding="utf-8") for name in names)]))


def read_rows(text):
    check_rest(text)
    return [
        Row(int(match["number"]), match["name"], unescaped("".join(LITERAL.findall(match["text"]))), match["note"] or "")
        for match in ROW.finditer(text)
    ]


def placeholders(text):
    """Those of printf in their order, and the numbered ones sorted."""
    found = [mark for mark in PLACEHOLDER.findall(text) if mark != "%%"]
    numbered = sorted(mark for mark in found if mark[1:].isdigit())
    return [mark for mark in found if not mark[1:].isdigit()], numbered
