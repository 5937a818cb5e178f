"""The desktop program for Windows with its real windows, under Wine and a display of its own: it starts with a folder,
searches it, takes what a second start and the desktop hand over, and ends.

KELVANE_DESKTOP names the program, KELVANE_EMULATOR what a Windows program is started with; it sees "/" as drive Z.
"""

import os
import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

PATIENCE = 120  # seconds; a computer that is busy with other work is no failure


def for_program(path):
    return "Z:" + str(path).replace("/", "\\")


class Screen:
    """A display that nobody sees."""

    def __init__(self):
        reading, writing = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x960x24", "-nolisten", "tcp"],
            pass_fds=[writing], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as told:
            self.environment = dict(os.environ, DISPLAY=":" + told.readline().strip())

    def ask(self, *words):
        run = subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True, check=False)
        return run.stdout.split()

    def windows(self, title):
        """Numbers of the visible windows whose title is this regular expression."""
        return self.ask("search", "--onlyvisible", "--name", f"^{title}$")

    def close(self):
        self.process.terminate()
        self.process.wait()


class DesktopStart(unittest.TestCase):
    def setUp(self):
        for program in ("Xvfb", "xdotool"):
            self.assertTrue(shutil.which(program), f"{program} is missing; tools/setup windows installs it")
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        # Somebody who has answered the questions of a first run already.
        self.settings = self.folder / "kelvane.ini"
        self.settings.write_text("[general]\r\nnTipOfTheDay=0\r\n", encoding="utf-8")

    def start(self, *words):
        program = subprocess.Popen(
            [os.environ["KELVANE_EMULATOR"], "--seen", os.environ["KELVANE_DESKTOP"], *words],
            env=self.screen.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(program.kill)
        return program

    def await_windows(self, title, count, meanwhile=lambda: None):
        until = time.monotonic() + PATIENCE
        turn = 0
        while len(found := self.screen.windows(title)) != count:
            self.assertLess(time.monotonic(), until, f"{len(found)} windows are called {title}")
            if turn % 50 == 0:
                meanwhile()
            turn += 1
            time.sleep(0.2)
        return found

    def press(self, window, key, title, count):
        """Presses a key until that many windows have this title: one that has just come up may not listen yet."""
        return self.await_windows(title, count, lambda: self.screen.ask("windowfocus", window, "key", key))

    def copies(self, name):
        folder = self.folder / name
        folder.mkdir()
        for copy in ("a", "b"):
            (folder / copy).write_text("one and the same", encoding="utf-8")
        return folder

    def search_in(self, folder):
        """A new window's search, up to its answer; the number of the window."""
        [window] = self.await_windows("Kelvane", 1)
        self.press(window, "ctrl+Return", f".*{folder} - Kelvane", 1)
        # The first searches tell that they removed nothing.
        [notice] = self.await_windows("Kelvane", 1)
        self.press(notice, "Return", "Kelvane", 0)
        return window

    def test_a_folder_is_searched_and_a_second_start_opens_a_second_window(self):
        settings = "/I:" + for_program(self.settings)
        program = self.start(settings, for_program(self.copies("holidays")))
        holidays = self.search_in("holidays")
        self.start(settings, for_program(self.copies("letters")))
        letters = self.search_in("letters")
        self.assertIsNone(program.poll(), "one process serves both windows")

        self.press(letters, "ctrl+F4", ".*letters - Kelvane", 0)
        self.press(holidays, "ctrl+F4", ".*Kelvane", 0)
        self.assertEqual(program.wait(PATIENCE), 0)
        # A kept definition is written as its bytes.
        kept = self.settings.read_text(encoding="utf-8")
        for folder in ("holidays", "letters"):
            self.assertIn(folder.encode().hex().upper(), kept, "searches are kept")


if __name__ == "__main__":
    unittest.main()
