"""Runs the commands that write media."""

import os
import shutil
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

# Two programs of this kind on one processor gain nothing, so each is to keep to one thread.
ONE_THREAD = {**os.environ, "VIPS_CONCURRENCY": "1"}


def missing(names):
    """Says which of the commands are not there."""
    absent = [name for name in names if shutil.which(name) is None]
    if absent:
        print(f"needs the commands {', '.join(absent)} (tools/setup test installs them)", file=sys.stderr)
    return bool(absent)


def run(words):
    done = subprocess.run([str(word) for word in words], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.PIPE, env=ONE_THREAD)
    if done.returncode:
        raise RuntimeError(f"{' '.join(map(str, words))}: {done.stderr.decode('utf-8', 'replace').strip()[-600:]}")


def succeeds(words):
    try:
        run(words)
    except RuntimeError:
        return False
    return True


def for_each(work, items):
    """The results in the order of the items, as many at a time as there are processors."""
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        yield from pool.map(work, items)


def files_below(folders, ends):
    """Regular files, no links, in an order that the same machine always gives."""
    found = []
    for folder in folders:
        for parent, _, names in os.walk(folder):
            found += [os.path.join(parent, name) for name in names if name.lower().endswith(ends)]
    return sorted({path for path in found if not os.path.islink(path) and os.path.isfile(path)})
