"""The console program finds the groups that are hidden in the samples. KELVANE_CLI names the program."""

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


def snapshot(folder):
    return {path: (path.stat().st_ino, path.stat().st_mtime_ns) for path in folder.rglob("*") if path.is_file()}


class Samples(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "samples"
        self.maker = measure.load_script(HOUSE / "tools/make_samples")
        self.maker.make(str(self.folder))

    def scan(self, *options):
        command = [os.environ["KELVANE_CLI"], "scan", "--no-protect", *options, str(self.folder)]
        return subprocess.run(command, capture_output=True, check=False)

    def test_scan_finds_the_hidden_groups_and_no_others(self):
        run = self.scan("--format", "json")
        self.assertEqual(run.returncode, 0, run.stderr.decode(errors="replace"))
        groups = set()
        for group in json.loads(run.stdout)["groups"]:
            names = {Path(file["path"]).relative_to(self.folder).as_posix() for file in group["files"]}
            groups.add(frozenset(self.maker.HARD_LINKS.get(name, name) for name in names))
        self.assertEqual(groups, EXPECTED)

    def test_scan_of_a_copy_free_folder_finds_nothing(self):
        lone = self.folder / "texts/old"
        command = [os.environ["KELVANE_CLI"], "scan", "--no-protect", "--format", "json", str(lone)]
        run = subprocess.run(command, capture_output=True, check=False)
        self.assertIn(run.returncode, (0, 1), run.stderr)
        self.assertEqual(json.loads(run.stdout)["groups"], [])

    def test_making_them_again_changes_nothing(self):
        before = snapshot(self.folder)
        self.maker.make(str(self.folder))
        self.assertEqual(snapshot(self.folder), before)
        self.assertGreaterEqual(len(before), 36)

    def test_spoilt_files_are_mended(self):
        chord = self.folder / "sounds/chord.wav"
        second = self.folder / "sounds/the same chord.wav"
        good = chord.read_bytes()
        second.unlink()
        second.write_bytes(b"another file")
        chord.write_bytes(b"")
        self.maker.make(str(self.folder))
        self.assertEqual(chord.read_bytes(), good)
        self.assertTrue(chord.samefile(second))


if __name__ == "__main__":
    unittest.main()
