"""Runs programs side by side and says how long they took and how much memory they needed at most."""

import importlib.machinery
import importlib.util
import os
import shutil
import statistics
import subprocess
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

HOUSE = Path(__file__).resolve().parent.parent
# A process inherits the peak of the one that started it. Python's own is large, that of GNU time small; without the
# latter no peak below about 16 MiB is seen.
TIME = shutil.which("time")
PROGRAM = HOUSE / "build/release/kelvane-cli"


@dataclass
class Run:
    seconds: float  # wall time
    peak: int  # bytes of the largest resident set
    code: int
    output: bytes


@dataclass
class Figures:
    seconds: list = field(default_factory=list)
    peak: int = 0

    def add(self, run):
        self.seconds.append(run.seconds)
        self.peak = max(self.peak, run.peak)

    @property
    def median(self):
        return statistics.median(self.seconds)


def build_program():
    subprocess.run([HOUSE / "tools/build", "release", "kelvane-cli"], check=True)


def run(command, watch=None):
    """Standard output goes to a file, so that no reader slows the program down; errors are dropped. `watch` is told to
    follow() the process and to stop() when it has ended."""
    words = [os.fspath(word) for word in command]
    with tempfile.TemporaryFile() as output, tempfile.NamedTemporaryFile() as memory:
        if TIME:
            words = [TIME, "-q", "-f", "%M", "-o", memory.name, *words]
        start = time.perf_counter()
        process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL)
        if watch:
            watch.follow(process.pid)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        if watch:
            watch.stop()
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        kibibytes = memory.read().split()
        peak = int(kibibytes[-1]) if kibibytes else usage.ru_maxrss
        return Run(seconds, peak * 1024, process.returncode, output.read())


def side_by_side(commands, runs):
    """{name: command} -> {name: Figures}: one pass that is not counted, then all in turn, so that what slows the
    machine down for a while strikes them alike."""
    for command in commands.values():
        run(command)
    figures = {name: Figures() for name in commands}
    for _ in range(runs):
        for name, command in commands.items():
            figures[name].add(run(command))
    return figures


def mib(count):
    return f"{count / 1048576:.1f} MiB"


def load_script(path):
    """A script without the suffix .py as a module."""
    loader = importlib.machinery.SourceFileLoader(path.name, str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(path.name, loader))
    loader.exec_module(module)
    return module
