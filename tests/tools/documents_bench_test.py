"""What bench/documents makes of a search whose outcome is known, and what bench/make_documents writes."""

import difflib
import json
import os
import random
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HOUSE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(HOUSE / "bench"))

from document_set import edits, sources, writers  # noqa: E402

PROGRAM = """#!/usr/bin/env python3
import json, os, sys
root = os.path.realpath(sys.argv[-1])
groups = {"80": [["a", "b", "c"], ["x", "y"]], "95": [["a", "b"]]}[sys.argv[sys.argv.index("--similar") + 1]]
if "--exhaustive" in sys.argv:
    groups.append(["a2", "z"])
print(json.dumps({"stats": {"files": 7, "phases": {"comparing": 2.0}, "comparisons": 5000},
                  "groups": [{"files": [{"path": os.path.join(root, name)} for name in group]} for group in groups]}))
"""


class Bench(unittest.TestCase):
    def test_counts_pairs_against_the_truth(self):
        relations = {"a": (1, "original"), "b": (1, "resaved"), "c": (1, "light"), "a2": (1, "heavy"),
                     "x": (2, "original"), "y": (3, "original"), "z": (4, "original")}
        with tempfile.TemporaryDirectory() as folder:
            files = [{"file": "documents/" + name, "source": source, "relation": relation, "origin": name}
                     for name, (source, relation) in relations.items()]
            Path(folder, "truth.json").write_text(json.dumps({
                "what": "document", "relations": ["original", "resaved", "converted", "light"], "neither": ["heavy"],
                "files": files}))
            program = Path(folder, "program")
            program.write_text(PROGRAM)
            program.chmod(0o700)
            output = subprocess.run([HOUSE / "bench/documents", folder, "--program", program, "--similar", "80", "95"],
                                    capture_output=True, text=True, check=True).stdout
        rows = [line.split() for line in output.splitlines() if line.strip()[:4] in ("80 %", "95 %")]
        # groups, pairs, unrelated, precision, recall, then recall of resaved, converted, light, heavy
        self.assertEqual(rows[0][2:], ["2", "4", "1", "0.750", "1.000", "1.000", "-", "1.000", "0.000"])
        self.assertEqual(rows[1][2:], ["1", "1", "0", "1.000", "0.333", "1.000", "-", "0.000", "0.000"])
        self.assertIn("5000 comparisons, 714.3 a file, 2,500 a second", output)
        self.assertIn("5 pairs; of these the ordinary search finds  0.800", output)


class DocumentSet(unittest.TestCase):
    TEXT = [f"Paragraph {number} holds café & <tags> {{braces}} (\\). It has a second sentence; and an end."
            for number in range(60)]

    def test_a_text_comes_back_out_of_what_was_written(self):
        for later in (False, True):
            saving = writers.Saving("A & B", later, 0, "utf-8")
            for name, (write, _) in writers.FORMATS.items():
                with self.subTest(format=name, later=later):
                    self.assertEqual(write(self.TEXT, saving), write(self.TEXT, saving))
            self.assertEqual(write_and_read(writers.html(self.TEXT, saving), "html")[-60:], self.TEXT)
            self.assertEqual(writers.txt(self.TEXT, saving).decode().split(), " ".join(self.TEXT).split())

    def test_edits_are_light_or_heavy(self):
        before = " ".join(self.TEXT).split()
        for edit, least, most in ((edits.lightly, 0.9, 0.999), (edits.heavily, 0.05, 0.8)):
            after = " ".join(edit(self.TEXT, random.Random(1))).split()
            likeness = difflib.SequenceMatcher(None, before, after, autojunk=False).ratio()
            self.assertTrue(least < likeness < most, likeness)

    def test_texts_that_share_much_are_let_in_once(self):
        unlike = sources.Unlike()
        words = [f"word{random.Random(number).randrange(9999)}" for number in range(3000)]
        self.assertTrue(unlike.admits([" ".join(words)], 0))
        self.assertFalse(unlike.admits([" ".join(words[500:2500])], 1))
        self.assertTrue(unlike.admits([" ".join(reversed(words))], 1))


def write_and_read(block, end):
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "page." + end)
        Path(path).write_bytes(block)
        return sources.paragraphs_of((path, end))


if __name__ == "__main__":
    unittest.main()
