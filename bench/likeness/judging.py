"""Holds what a search found against what is known of the files."""

import argparse
import collections
import itertools
import json
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tools"))

import measure  # noqa: E402

from . import memory  # noqa: E402


class Truth:
    """What each pair of files is: one of the relations, or None for files that were made of different things."""

    def __init__(self, folder):
        with open(os.path.join(folder, "truth.json"), encoding="utf-8") as file:
            truth = json.load(file)
        self.what, self.to_be_found, self.neither = truth["what"], truth["relations"], truth["neither"]
        self.files = {os.path.realpath(os.path.join(folder, entry["file"])): entry for entry in truth["files"]}
        families = collections.defaultdict(list)
        for path, entry in self.files.items():
            families[entry["source"]].append(path)
        self.wanted = collections.defaultdict(set)
        for paths in families.values():
            for pair in itertools.combinations(sorted(paths), 2):
                self.wanted[self.kind(pair)].add(pair)

    def kind(self, pair):
        """A pair counts for the later one of its two."""
        one, two = (self.files[path] for path in pair)
        if one["source"] != two["source"]:
            return None
        return max((one["relation"], two["relation"]), key=[*self.to_be_found, *self.neither].index)

    def kinds(self):
        """All but the originals, since a pair of two of them is of different things."""
        return [*self.to_be_found[1:], *self.neither]

    def named(self, path):
        entry = self.files[path]
        origin = entry["origin"]
        return (f"{os.path.basename(path)} ({entry['relation']} of "
                f"{os.path.basename(origin if isinstance(origin, str) else origin[0])})")


class Search:
    """One run of the program."""

    def __init__(self, program, folder, options):
        command = [str(word) for word in [program, "scan", "--no-protect", "--format", "json", *options, folder]]
        self.memory = memory.Watch()
        run = measure.run(command, self.memory)
        if run.code not in (0, 1) or not run.output.startswith(b"{"):
            subprocess.run(command, stdout=subprocess.DEVNULL)  # says why
            raise SystemExit(f"{program} did not search: exit code {run.code}")
        document = json.loads(run.output)
        self.seconds = run.seconds
        self.stats = document["stats"]
        self.groups = [sorted(os.path.realpath(file["path"]) for file in group["files"])
                       for group in document["groups"]]
        self.pairs = {pair for group in self.groups for pair in itertools.combinations(group, 2)}


def ratio(part, whole):
    return f"{part / whole:7.3f}" if whole else "      -"


def wide(kind):
    return max(len(kind), 7) + 2


def show_quality(truth, similar, search):
    kinds = collections.Counter(truth.kind(pair) for pair in search.pairs)
    found = sum(kinds[kind] for kind in truth.to_be_found)
    there = sum(len(truth.wanted[kind]) for kind in truth.to_be_found)
    by_kind = "".join(f"{ratio(kinds[kind], len(truth.wanted[kind])):>{wide(kind)}}" for kind in truth.kinds())
    print(f"{similar:7} %  {len(search.groups):6}  {len(search.pairs):7}  {kinds[None]:9} "
          f"{ratio(found, found + kinds[None]):>10} {ratio(found, there):>8}      {by_kind}")


def show_header(truth):
    kinds = "".join(f"{kind:>{wide(kind)}}" for kind in truth.kinds())
    print(f"\n{'similar':>9}  {'groups':>6}  {'pairs':>7}  unrelated  precision   recall   of {kinds}")


def show_speed(name, search):
    stats = search.stats
    compared = stats.get("comparisons")
    seconds = stats["phases"]["comparing"]
    rate = ""
    if compared and stats["files"]:
        rate = f", {compared} comparisons, {compared / stats['files']:.1f} a file"
        rate += f", {compared / seconds:,.0f} a second" if seconds else ""
    phases = ", ".join(f"{phase} {took:.2f} s" for phase, took in stats["phases"].items())
    needed = ", ".join(f"{program} {measure.mib(peak)}" for program, peak in search.memory.largest.items()
                       if program != "time")
    print(f"{name:11} {search.seconds:7.2f} s, {stats['files']} files, {phases}{rate}\n{'':11} at most {needed}, "
          f"all together {measure.mib(search.memory.together)}")


def show_examples(truth, search, count):
    wrong = sorted(pair for pair in search.pairs if truth.kind(pair) is None)
    missed = sorted(pair for kind in truth.to_be_found for pair in truth.wanted[kind] - search.pairs)
    for name, pairs in (("unrelated", wrong), ("missed", missed)):
        for pair in pairs[:count]:
            print(f"  {name}: " + " | ".join(map(truth.named, pair)))


def parser(description, percentages):
    made = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    made.add_argument("folder")
    made.add_argument("--similar", type=int, nargs="+", default=percentages, metavar="PERCENT")
    made.add_argument("--program", help="instead of the release build")
    made.add_argument("--option", action="append", default=[], help="one more option for kelvane-cli scan")
    made.add_argument("--examples", type=int, default=0, help="name so many wrong pairs and missed ones")
    made.add_argument("--no-exhaustive", action="store_true", help="leave out the long runs that compare all pairs")
    return made


def judge(wanted, truth, options):
    """Runs the program with each of the percentages, and prints what it found and how long it took."""
    if wanted.program is None:
        measure.build_program()
    program = os.path.abspath(wanted.program or measure.PROGRAM)
    folder = os.path.join(wanted.folder, f"{truth.what}s")

    def search(similar, *more):
        return Search(program, folder, [*options, "--similar", similar, "--seed", 1, *wanted.option, *more])

    with tempfile.TemporaryDirectory() as place:
        os.environ.update(XDG_CACHE_HOME=os.path.join(place, "cache"), XDG_CONFIG_HOME=os.path.join(place, "config"))
        first, second = search(wanted.similar[0]), search(wanted.similar[0])
        show_speed("first run", first)
        show_speed("second run", second)
        print("first and second run found " + ("the same" if first.pairs == second.pairs else "DIFFERENT PAIRS"))
        show_header(truth)
        for similar in wanted.similar:
            one = second if similar == wanted.similar[0] else search(similar)
            show_quality(truth, similar, one)
            show_examples(truth, one, wanted.examples)
            if not wanted.no_exhaustive:
                show_exhaustive(one, search(similar, "--exhaustive"))


def show_exhaustive(search, every):
    found = len(every.pairs & search.pairs)
    print(f"{'':11}--exhaustive: {every.seconds:.2f} s, {len(every.pairs)} pairs; of these the ordinary "
          f"search finds{ratio(found, len(every.pairs))}, in {search.seconds:.2f} s")
