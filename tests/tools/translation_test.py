"""tools/make_translation: reading the rows, keeping catalogues in step, and modules that others can read."""

import gettext
import io
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
HOUSE = Path(__file__).resolve().parents[2]
MAKER = HOUSE / "tools/make_translation"
sys.path.insert(0, str(HOUSE / "tools"))

from translation import catalogues, modules, po, rows  # noqa: E402

ROWS = r"""// Heading.
TEXT_ROW(4, searchingIn, u"searching in %s ...")  // %s: the folder
TEXT_ROW(7, question,
         u"Say \"yes\"?\n"
         u"C:\\x \u2026")

TEXT_ROW(130, languageName, u"English")
"""
READ = [
    rows.Row(4, "searchingIn", "searching in %s ...", "%s: the folder"),
    rows.Row(7, "question", 'Say "yes"?\nC:\\x \u2026'),
    rows.Row(130, "languageName", "English"),
]
TEXTS = {"searchingIn": "suche in %s ...", "question": '"Ja"?\nC:\\x \U0001F600', "languageName": "Deutsch"}
HEADER = catalogues.HEADER.replace("Language: ", "Language: de") + "X-Complete: yes\n"


def catalogue(texts=None):
    made = catalogues.updated(po.Catalogue(HEADER, []), READ)
    for entry in made.entries:
        entry.translation = (TEXTS | (texts or {}))[entry.context]
    return made


class RowsTest(unittest.TestCase):
    def test_rows_are_read_with_their_literals_joined_and_notes(self):
        self.assertEqual(rows.read_rows(ROWS), READ)

    def test_what_is_no_row_is_not_passed_over(self):
        for bad in ('TEXT_ROW(1, a, "narrow")', 'TEXT_ROW(x, a, u"t")', 'TEXT_ROW(1, a, u"t"', r'TEXT_ROW(1, a, u"\q")'):
            with self.assertRaises(rows.RowError, msg=bad):
                rows.read_rows(ROWS + bad + "\n")

    def test_placeholders_keep_their_order_but_for_numbered_ones(self):
        self.assertEqual(rows.placeholders("%2 %d %% %1 of %02d %s %.1f"), (["%d", "%02d", "%s", "%.1f"], ["%1", "%2"]))


class CatalogueTest(unittest.TestCase):
    def test_a_catalogue_survives_being_written_and_read(self):
        made = catalogue()
        made.remarks = ["By hand."]
        made.entries[0].remarks = ["Stays."]
        made.entries[1].fuzzy, made.entries[1].previous = True, "Once\nsaid"
        self.assertEqual(po.read_po(po.po_text(made)), made)

    def test_damage_is_told(self):
        good = po.po_text(catalogue())
        for bad in ("", "msgid \"\"\n", good + good[good.index("#. number 4"):], good + "\nmsgid loose\n", "\"loose\"\n"):
            with self.assertRaises(po.PoError, msg=bad):
                po.read_po(bad)

    def test_update_keeps_adds_drops_and_marks(self):
        changed = [READ[0], rows.Row(7, "question", "Say no?"), rows.Row(8, "added", "New")]
        made = {entry.context: entry for entry in catalogues.updated(catalogue(), changed).entries}
        self.assertEqual(list(made), ["searchingIn", "question", "added"])
        self.assertEqual((made["searchingIn"].translation, made["searchingIn"].fuzzy), ("suche in %s ...", False))
        self.assertEqual((made["question"].fuzzy, made["question"].previous), (True, READ[1].english))
        self.assertEqual(made["added"].translation, "")

    def test_every_fault_is_named(self):
        self.assertEqual(list(catalogues.faults(catalogue(), READ)), [])
        for context, text, words in (
            ("question", "", "not translated"),
            ("searchingIn", "suche ...", "placeholders"),
            ("searchingIn", "suche in %s ...\n", "white space"),
        ):
            found = list(catalogues.faults(catalogue({context: text}), READ))
            self.assertEqual(len(found), 1, found)
            self.assertIn(f"{context}: ", found[0])
            self.assertIn(words, found[0])
        fuzzy = catalogue()
        fuzzy.entries[0].fuzzy = True
        self.assertIn("fuzzy", "".join(catalogues.faults(fuzzy, READ)))
        self.assertIn("has changed", "".join(catalogues.faults(catalogue(), [rows.Row(4, "searchingIn", "x"), *READ[1:]])))
        self.assertIn("no such text", "".join(catalogues.faults(catalogue(), READ[1:])))

    def test_a_beginning_needs_only_the_name_of_its_language(self):
        begun = catalogue({"question": "", "searchingIn": ""})
        begun.header = begun.header.replace("yes", "no")
        self.assertEqual(list(catalogues.faults(begun, READ)), [])
        begun.entries[2].translation = ""
        self.assertEqual(list(catalogues.faults(begun, READ)), ["languageName: not translated"])


class ModuleTest(unittest.TestCase):
    def test_gettext_reads_the_module_and_finds_only_what_is_good(self):
        made = catalogue({"searchingIn": "ohne"})
        data = modules.mo_bytes(made.header, list(catalogues.usable(made, READ)))
        read = gettext.GNUTranslations(io.BytesIO(data))
        self.assertEqual(read.info()["language"], "de")
        self.assertEqual(read.pgettext("130", "English"), "Deutsch")
        self.assertEqual(read.pgettext("7", READ[1].english), TEXTS["question"])
        self.assertEqual(read.pgettext("4", READ[0].english), READ[0].english)

    def test_texts_of_a_resource_script_are_plain_ascii(self):
        text = modules.rc_text([(READ[1], 'a"\\\n\tä\U0001F600b')])
        self.assertIn(r'7, L"a""\\\n\t\x00e4\xd83d\xde00b"', text)

    @unittest.skipUnless(shutil.which("x86_64-w64-mingw32-windres"), "no compiler of Windows resources")
    def test_the_compiler_of_resources_reads_every_character_back(self):
        text = 'long "ä" \\n \\ \U0001F600\n%s ' * 300
        with tempfile.TemporaryDirectory() as folder:
            script, compiled = Path(folder, "t.rc"), Path(folder, "t.res")
            script.write_text(modules.rc_text([(READ[2], text)]), encoding="ascii")
            subprocess.run(["x86_64-w64-mingw32-windres", "-O", "res", script, compiled], check=True)
            units = text.encode("utf-16-le")
            # Two texts come first in the bundle of sixteen, then the length in characters.
            self.assertIn(b"\0" * 4 + (len(units) // 2).to_bytes(2, "little") + units, compiled.read_bytes())


class ToolTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        (self.root / "src/base").mkdir(parents=True)
        (self.root / "translations").mkdir()
        self.rows = self.root / "src/base/text_rows.inc"
        self.rows.write_text(ROWS, encoding="utf-8")
        self.german = self.root / "translations/de.po"
        self.german.write_text(po.po_text(catalogue()), encoding="utf-8")

    def run_tool(self, *arguments):
        command = [sys.executable, "-B", MAKER, "--root", self.root, *arguments]
        run = subprocess.run(command, capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr

    def test_check_fails_until_update_and_translation_are_done(self):
        self.assertEqual(self.run_tool("--update")[0], 0)
        self.assertEqual(self.run_tool("--check"), (0, ""))
        self.rows.write_text(ROWS + 'TEXT_ROW(131, added, u"New")\n', encoding="utf-8")
        code, said = self.run_tool("--check")
        self.assertEqual(code, 1)
        self.assertIn("kelvane.pot: out of step", said)
        self.assertIn("de.po: out of step", said)
        self.assertIn("added: not translated", self.run_tool("--update")[1])
        self.assertIn('msgid "New"\n', (self.root / "translations/kelvane.pot").read_text(encoding="utf-8"))
        self.german.write_text(
            self.german.read_text(encoding="utf-8").replace('msgid "New"\nmsgstr ""', 'msgid "New"\nmsgstr "Neu"'),
            encoding="utf-8")
        self.assertEqual(self.run_tool("--check"), (0, ""))

    def test_bad_use_and_bad_files_are_refused(self):
        for arguments in ((), ("--check", "--update"), (self.german,), (self.german, self.root / "x.txt")):
            self.assertNotEqual(self.run_tool(*arguments)[0], 0, arguments)
        self.german.write_text("msgid loose", encoding="utf-8")
        code, said = self.run_tool("--check")
        self.assertEqual((code, said), (1, "make_translation: not understood: msgid loose\n"))


class TreeTest(unittest.TestCase):
    def test_all_texts_of_the_program_are_translated(self):
        run = subprocess.run([sys.executable, "-B", MAKER, "--check"], capture_output=True, text=True, check=False)
        self.assertEqual((run.returncode, run.stdout + run.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
