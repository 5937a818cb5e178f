"""Sizes of files and functions: one hard limit, and figures beside their targets."""

import re

FILE_LIMIT = 1000
COMMENTS_AND_TEXTS = re.compile(
    r"//[^\n]*|/\*.*?\*/|R\"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)\"|\"(?:\\.|[^\"\\\n])*\"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'",
    re.S,
)
SCOPE = re.compile(r"\b(namespace|class|struct|union|extern)\b")
ENUMERATION = re.compile(r"\benum\b")


def blanked(text):
    """The text with comments and literals emptied and directives dropped, every line in its place."""
    text = COMMENTS_AND_TEXTS.sub(lambda match: "\n" * match[0].count("\n"), text)
    return re.sub(r"^\s*#(?:[^\n]*\\\n)*[^\n]*", lambda match: "\n" * match[0].count("\n"), text, flags=re.M)


def opens(head):
    """What a brace opens outside of functions, judged by the text since the last ';', '{' or '}'."""
    if ENUMERATION.search(head) or re.search(r"=\s*$", head):
        return "data"
    if ")" in head and not re.search(r"=\s*[^=()]*$", head.rpartition(")")[2]):
        return "function"
    return "scope" if SCOPE.search(head) else "data"


def function_lengths(text):
    """(first line, lines) of each function definition: from the line its brace opens on to the one it closes on.

    A heuristic: nested functions and lambdas count with the one around them.
    """
    stack, head, line = [], "", 1
    for character in blanked(text):
        if character == "{":
            inside = any(kind != "scope" for kind, _ in stack)
            stack.append(("block" if inside else opens(head), line))
            head = ""
        elif character == "}":
            kind, first = stack.pop() if stack else ("block", line)
            if kind == "function":
                yield first, line - first + 1
            head = ""
        elif character == ";":
            head = ""
        else:
            head += character
        line += character == "\n"


def at(values, part):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(part * len(ordered)))] if ordered else 0


def figures(name, values, median, ninety):
    middle, high = at(values, 0.5), at(values, 0.9)
    over = middle > median or ninety is not None and high >= ninety
    targets = f"at most {median}" + (f", under {ninety}" if ninety is not None else "")
    return f"{name}: median {middle}, 90 % at {high} of {len(values)} (wanted: {targets}){' <-- over' if over else ''}"


def report(tree):
    files = tree.cxx("src")
    sources = [file for file in files if not file.is_header()]
    # The one-line functions of classes in headers would only flatter the figures.
    functions = [(length, f"{file.path}:{line}") for file in sources for line, length in function_lengths(file.text)]
    yield figures("source lines", [len(file.lines) for file in sources], 200, 600)
    yield figures("header lines", [len(file.lines) for file in files if file.is_header()], 80, None)
    yield figures("function lines", [length for length, _ in functions], 10, 40)
    for length, place in sorted(functions, reverse=True)[:5]:
        if length > 40:
            yield f"  long function: {place}, {length} lines"


def check(tree):
    for folder in ("src", "tests", "bench", "tools"):
        for file in tree.code(folder):
            if len(file.lines) > FILE_LIMIT:
                yield f"{file.path}: {len(file.lines)} lines; files end at {FILE_LIMIT}"
