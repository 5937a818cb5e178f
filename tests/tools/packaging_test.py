"""The files of an installation are well formed and agree with each other; nothing is built. KELVANE_CLI names the
program that the manual is made from."""

import configparser
import os
import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

HOUSE = Path(__file__).resolve().parents[2]
PACKAGING = HOUSE / "packaging"
IDENTITY = "org.example.Kelvane"
RESULTS = "application/x-kelvane-results"
VALUES = {"KELVANE_APPLICATION_ID": IDENTITY, "PROJECT_VERSION": "1.2.3", "KELVANE_RELEASE_DATE": "2026-01-31",
          "KELVANE_PROGRAM_FOLDER": "/usr/bin"}
MIME = "{http://www.freedesktop.org/standards/shared-mime-info}"


def filled(name):
    text = re.sub(r"@(\w+)@", lambda match: VALUES[match[1]], (PACKAGING / name).read_text(encoding="utf-8"))
    return text


class Packaging(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def written(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return str(path)

    def test_the_desktop_file_opens_what_the_types_name(self):
        text = filled("desktop/kelvane.desktop.in")
        entry = configparser.ConfigParser(interpolation=None, delimiters="=")
        entry.optionxform = str
        entry.read_string(text)
        main = entry["Desktop Entry"]
        self.assertIn(RESULTS, main["MimeType"].split(";"))
        self.assertEqual(main["Exec"], "/usr/bin/kelvane %f")
        for action in filter(None, main["Actions"].split(";")):
            self.assertIn(f"Desktop Action {action}", entry)
        service = configparser.ConfigParser(interpolation=None, delimiters="=")
        service.read_string(filled("desktop/kelvane.service.in"))
        self.assertEqual(service["D-BUS Service"]["Name"], IDENTITY, "the bus starts it by the desktop file's name")
        self.assertEqual(main["DBusActivatable"], "true")
        if validator := shutil.which("desktop-file-validate"):
            path = self.written(f"{IDENTITY}.desktop", text)
            subprocess.run([validator, path], check=True)

    def test_results_are_known_by_name_and_by_their_first_bytes(self):
        kind = xml.parse(PACKAGING / "desktop/kelvane.mime.xml").getroot().find(f"{MIME}mime-type")
        self.assertEqual(kind.get("type"), RESULTS)
        self.assertEqual([glob.get("pattern") for glob in kind.iter(f"{MIME}glob")], ["*.ikvs"])
        magic = [match.get("value") for match in kind.iter(f"{MIME}match")]
        page = (HOUSE / "docs/formats/results-file.md").read_text(encoding="utf-8")
        self.assertIn(f"the bytes `{magic[0]}`", page)

    def test_the_store_page_names_the_desktop_file(self):
        text = filled("desktop/kelvane.metainfo.xml.in")
        page = xml.fromstring(text)
        self.assertEqual(page.findtext("launchable"), f"{IDENTITY}.desktop")
        self.assertEqual(page.findtext("provides/mediatype"), RESULTS)
        if validator := shutil.which("appstreamcli"):
            path = self.written(f"{IDENTITY}.metainfo.xml", text)
            run = subprocess.run([validator, "validate", "--no-net", path], capture_output=True, text=True, check=False)
            errors = [line for line in run.stdout.splitlines() if line.startswith(("E:", "W:"))]
            # No licence is chosen yet, not even for this page.
            self.assertEqual([line for line in errors if "metadata-license-missing" not in line], [])

    def test_the_manual_has_a_page_for_each_verb_and_each_of_its_options(self):
        program = os.environ["KELVANE_CLI"]
        subprocess.run([HOUSE / "tools/make_manual", program, self.folder], check=True)
        pages = sorted(path.name for path in self.folder.glob("*.1"))
        self.assertIn("kelvane-cli.1", pages)
        self.assertGreater(len(pages), 8)
        for name in pages:
            verb = name.removeprefix("kelvane-cli").removeprefix("-").removesuffix(".1")
            text = (self.folder / name).read_text(encoding="utf-8").replace("\\-", "-")
            said = subprocess.run([program, *filter(None, [verb]), "--help"], capture_output=True, text=True, check=True,
                                  env={**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": ""})
            for option in re.findall(r"^  (--[a-z-]+)", said.stdout, re.M):
                self.assertRegex(text, rf"(?m)^\.B {option}\b", name)
            self.assertLess(text.index(".SH NAME"), text.index(".SH SYNOPSIS"), name)
            if typesetter := shutil.which("groff"):
                run = subprocess.run([typesetter, "-man", "-Tutf8", "-ww", self.folder / name], capture_output=True,
                                     text=True, check=True)
                self.assertEqual(run.stderr, "", name)


if __name__ == "__main__":
    unittest.main()
