"""The console program finds the groups that are hidden in the samples.

KELVANE_CLI names the program. KELVANE_EMULATOR names what a Windows program is started with; it sees "/" as drive Z.
"""

import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
HOUSE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(HOUSE / "tools"))

import measure  # noqa: E402

# One of several names of one file stands for all of them, whichever it is.
EXPECTED = {
    frozenset({"texts/letter to Änne.txt", "texts/drafts/letter.txt"}),
    frozenset({"texts/recipe.txt", "texts/kitchen/bread.md", "texts/kitchen/パン.txt"}),
    frozenset({"texts/log 2.txt", "texts/old/log 2 of 1998.txt"}),
    frozenset({"pictures/sunrise.png", "pictures/holidays/DSC0001.png", "pictures/holidays/DSC0001 (1).png"}),
    frozenset({"pictures/chequered.bmp", "pictures/wallpaper.bmp"}),
    frozenset({"sounds/chord.wav", "sounds/phone/ring tone.wav"}),
}


def for_program(path):
    return "Z:" + path.replace("/", "\\") if "KELVANE_EMULATOR" in os.environ else path


def name_below(folder, path):
    """The path from the folder on; Windows paths may come back in other case."""
    given = for_program(folder)
    if path[: len(given)].lower() != given.lower():
        raise ValueError(f"{path} does not lie in {given}")
    return path[len(given) + 1 :].replace("\\", "/") if given != folder else path[len(given) + 1 :]


class Samples(unittest.TestCase):
    def test_scan_finds_the_hidden_groups_and_no_others(self):
        maker = measure.load_script(HOUSE / "tools/make_samples")
        with tempfile.TemporaryDirectory() as folder:
            maker.make(folder)
            start = [os.environ[name] for name in ("KELVANE_EMULATOR", "KELVANE_CLI") if name in os.environ]
            command = [*start, "scan", "--no-protect", "--format", "json", for_program(folder)]
            run = subprocess.run(command, capture_output=True, check=False)
        self.assertEqual(run.returncode, 0, run.stderr.decode(errors="replace"))
        groups = set()
        for group in json.loads(run.stdout)["groups"]:
            names = {name_below(folder, file["path"]) for file in group["files"]}
            groups.add(frozenset(maker.HARD_LINKS.get(name, name) for name in names))
        self.assertEqual(groups, EXPECTED)


if __name__ == "__main__":
    unittest.main()
