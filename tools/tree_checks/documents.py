"""What the documents point at exists."""

import re

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
# `src/engine/walker.h`, `tools/*`: a path of the house in code quotes.
QUOTED_PATH = re.compile(r"`((?:\./|src/|tests/|tools/|bench/|docs/|cmake/|\.ci/)[\w./*-]*)`")


def link_fault(file, target):
    if re.match(r"[a-z]+:|#", target):
        return None
    path = target.partition("#")[0]
    return None if (file.full.parent / path).exists() else f"the link to {target} leads nowhere"


def path_fault(tree, path):
    path = path.removeprefix("./")
    found = not path or any(tree.root.glob(path.rstrip("/")))
    return None if found else f"{path} does not exist"


def check(tree):
    for file in tree.files:
        if file.suffix != ".md":
            continue
        for number, line in enumerate(file.lines, 1):
            faults = [link_fault(file, target) for target in LINK.findall(line)]
            faults += [path_fault(tree, path) for path in QUOTED_PATH.findall(line)]
            for fault in filter(None, faults):
                yield f"{file.path}:{number}: {fault}"
