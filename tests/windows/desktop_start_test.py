"""The desktop program for Windows starts with a folder, searches it, takes what a second start and the desktop hand
over, and ends.
"""

import unittest

from wine_desktop import DesktopTest


class DesktopStart(DesktopTest):
    def copies(self, name):
        folder = self.folder / name
        folder.mkdir()
        for copy in ("a", "b"):
            (folder / copy).write_text("one and the same", encoding="utf-8")
        return folder

    def test_a_folder_is_searched_and_a_second_start_opens_a_second_window(self):
        folders = [self.copies("holidays"), self.copies("letters")]
        program = self.start(folders[0])
        holidays = self.search(folders[0])
        self.start(folders[1])
        letters = self.search(folders[1])
        self.assertIsNone(program.poll(), "one process serves both windows")

        self.press(letters, "ctrl+F4", title=".*letters - Kelvane", count=0)
        self.press(holidays, "ctrl+F4", title=".*Kelvane", count=0)
        self.end(program)
        # A kept definition is written as its bytes.
        kept = self.settings.read_text(encoding="utf-8")
        for folder in folders:
            self.assertIn(folder.name.encode().hex().upper(), kept, "searches are kept")


if __name__ == "__main__":
    unittest.main()
