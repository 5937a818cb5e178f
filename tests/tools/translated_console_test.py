"""The console program with a translation beside it speaks the language, and what programs read stays as it is."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HOUSE = Path(__file__).resolve().parents[2]
PROGRAM = os.environ.get("KELVANE_CLI", "")


@unittest.skipIf(not PROGRAM or PROGRAM.endswith(".exe"), "KELVANE_CLI names no program of this system")
class TranslatedConsole(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.program = self.root / "bin/kelvane-cli"
        self.program.parent.mkdir()
        shutil.copy(PROGRAM, self.program)
        self.files = self.root / "files"
        self.files.mkdir()
        for name in ("a.txt", "b.txt"):
            (self.files / name).write_text("the same", encoding="utf-8")

    def install(self, place):
        target = self.root / place
        target.parent.mkdir(parents=True, exist_ok=True)
        command = [sys.executable, "-B", HOUSE / "tools/make_translation", HOUSE / "translations/de.po", target]
        subprocess.run(command, check=True)

    def run_program(self, *arguments, **variables):
        variables = {"PATH": os.environ["PATH"], "HOME": str(self.root), "LC_ALL": "C.UTF-8", **variables}
        run = subprocess.run([self.program, *arguments], capture_output=True, env=variables, check=False)
        return run.stdout.decode(), run.stderr.decode()

    def test_a_module_beside_the_program_is_spoken_unless_the_settings_say_no(self):
        english, _ = self.run_program("scan", self.files)
        self.assertTrue(english.startswith("Group 1: 2 files, "), english)
        self.install("bin/kvtr_de.mo")
        german, summary = self.run_program("scan", self.files)
        self.assertTrue(german.startswith("Gruppe 1: 2 Dateien, "), german)
        self.assertIn("1 Duplikat in 1 Gruppe, ", summary)
        self.assertIn("unbekannte Option „--jsn“ (meinten Sie --json", self.run_program("scan", "--jsn")[1])
        self.assertIn("Nur Dateien dieser Art", self.run_program("scan", "--help")[0])
        (self.program.parent / "kelvane.ini").write_text("[general]\nbUseTrans=0\n", encoding="utf-8")
        self.assertEqual(self.run_program("scan", self.files)[0], english)

    def test_of_packaged_modules_the_persons_language_is_taken(self):
        self.install("share/kelvane/translations/kvtr_de.mo")
        self.assertTrue(self.run_program("scan", self.files)[0].startswith("Group 1"))
        self.assertTrue(self.run_program("scan", self.files, LC_ALL="de_AT.UTF-8")[0].startswith("Gruppe 1"))
        self.assertTrue(self.run_program("scan", self.files, LC_ALL="fr_FR", LANGUAGE="fr:en:de")[0].startswith("Group 1"))

    def test_what_programs_read_is_not_translated(self):
        saved = self.root / "saved.ikvs"
        calls = [
            ("scan", "--format", "csv", self.files),
            ("scan", "--format", "null", self.files),
            ("compare", "--json", self.files / "a.txt", self.files / "b.txt"),
            ("compare", "--format", "csv", "--match", "System.FileName,System.IsEncrypted", "--content",
             self.files / "a.txt", self.files / "b.txt"),
            ("describe", "--json", self.files / "a.txt"),
            ("describe", "--list"),
            ("show", "--json", saved),
            ("show", "--format", "csv", "--columns", "System.Kind,System.Size", saved),
            ("clean", "--json", "--dry-run", "--keep", "first", saved),
        ]
        self.run_program("scan", "--save", saved, self.files)
        before = [self.run_program(*call)[0] for call in calls]
        scanned = json.loads(self.run_program("scan", "--json", self.files)[0])
        self.install("bin/kvtr_de.mo")
        for call, english in zip(calls, before):
            self.assertTrue(english, call)
            self.assertEqual(self.run_program(*call)[0], english, call)
        german = json.loads(self.run_program("scan", "--json", self.files)[0])
        self.assertEqual(german["groups"], scanned["groups"])
        self.assertEqual(german["definition"], scanned["definition"])


if __name__ == "__main__":
    unittest.main()
