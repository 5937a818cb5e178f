"""The way from a folder to free space and back with the desktop program for Windows, by keys alone: search, table,
marks, links, undo. What the disk holds decides, and what the table says.
"""

import csv
import io
import os
import unittest

from wine_desktop import PROGRAM, DesktopTest, for_program

# The later one of two copies is the newer one.
TEXTS = {"letter.txt": "a letter", "letter again.txt": "a letter", "alone.txt": "like no other",
         "Äpfel.txt": "a recipe", "older/Äpfel.txt": "a recipe"}
FIRST_TIME = 1_700_000_000
HOUR = 3600
CLEAN_UP, SUMMARY, UNDO, NOTICE = "Clean up duplicates", "Duplicates clean-up summary", "Undo clean-up", "Kelvane"
COPIES = sorted([name] for name in TEXTS)  # each a file of its own


def tables():
    """Those that were exported into the folder for temporary files of whoever runs Wine."""
    return set((PROGRAM.parent / "wineprefix/drive_c/users").glob("**/kvtmp_*.csv"))


class DesktopJourney(DesktopTest):
    def setUp(self):
        super().setUp()
        self.home = self.folder / "home of anna"
        for number, (name, text) in enumerate(TEXTS.items()):
            file = self.home / name
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
            os.utime(file, (FIRST_TIME + number * HOUR,) * 2)

    def names_by_file(self):
        """The sets of names that lead to one file of the disk; what they hold is always the same."""
        names = {}
        for name, text in TEXTS.items():
            self.assertEqual((self.home / name).read_text(encoding="utf-8"), text)
            names.setdefault((self.home / name).stat().st_ino, set()).add(name)
        return sorted(map(sorted, names.values()))

    def exported(self, window):
        """The names in the table that is exported now."""
        before = tables()
        # Wine has no program that opens a table: so it is told when one is written.
        [notice] = self.press(window, "alt+f", "e", title=NOTICE, count=1)
        self.press(notice, "Return", title=NOTICE, count=0)
        written = tables() - before
        for table in written:
            self.addCleanup(table.unlink)
        self.assertTrue(written, "no table was written")
        title, _, names, *rows = csv.reader(io.StringIO(written.pop().read_text(encoding="utf-8-sig")))
        self.assertEqual(title, [f"{for_program(self.home)} - Kelvane"])
        self.assertEqual(names[:2], ["Filename", "Folder path"])
        top = for_program(self.home).lower()
        self.assertTrue(all(row[1].lower().startswith(top) for row in rows), rows)
        return [(row[1][len(top) + 1:] + "/" + row[0]).lstrip("/") for row in rows]

    def link_all_but_the_newest(self, window):
        """By hard links, up to the box at the end."""
        [choice] = self.press(window, "alt+m", "q", "n", "ctrl+shift+c", title=CLEAN_UP, count=1)
        # Twice, since a window that has just come up may miss a first key, and this way would end at another choice.
        hard = ["alt+k", "h"] * 2
        [summary] = self.press(choice, *hard, "shift+Tab", "Return", title=SUMMARY, count=1)
        self.assertEqual(self.names_by_file(), COPIES, "a page changes nothing")
        self.press(summary, "alt+o", title=SUMMARY, count=0)
        [done] = self.await_windows(CLEAN_UP, 1)
        self.press(done, "Return", title=CLEAN_UP, count=0)

    def take_back(self, window):
        [question] = self.press(window, "alt+t", "u", title=UNDO, count=1)
        [told] = self.await_that(lambda: [box for box in self.screen.windows(UNDO) if box != question],
                                 "the end of undo", lambda: self.screen.send(question, "alt+y"))
        self.press(told, "Return", title=UNDO, count=0)

    def test_copies_become_names_of_one_file_and_copies_again_and_a_table_tells_what_was_found(self):
        program = self.start(self.home)
        window = self.search(self.home)
        self.assertEqual(sorted(self.exported(window)), sorted(set(TEXTS) - {"alone.txt"}))

        self.link_all_but_the_newest(window)
        self.assertEqual(self.names_by_file(),
                         [["alone.txt"], ["letter again.txt", "letter.txt"], ["older/Äpfel.txt", "Äpfel.txt"]])
        self.take_back(window)
        self.assertEqual(self.names_by_file(), COPIES)

        self.press(window, "ctrl+F4", title=".*Kelvane", count=0)
        self.end(program)


if __name__ == "__main__":
    unittest.main()
