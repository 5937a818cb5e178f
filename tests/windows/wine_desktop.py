"""What the tests of the desktop program for Windows share: a display of their own, the program on it under Wine, and
keys, which go to a window once it has the focus.

KELVANE_DESKTOP names the program, KELVANE_EMULATOR what a Windows program is started with; it sees "/" as drive Z.
"""

import os
import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

PATIENCE = 200  # seconds for a whole test; a computer that is busy with other work is no failure
ADVANCED = 0x80000800 - 2 ** 32  # as a setting: the bits of the interface that offers everything, links too
PROGRAM = Path(os.environ["KELVANE_DESKTOP"])


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

    def send(self, window, *keys):
        """To this window alone; false, and nothing is sent, while it does not get the focus: it is not shown yet."""
        self.ask("windowfocus", window)
        if self.ask("getwindowfocus", "-f") != [window]:
            return False
        self.ask("key", *keys)
        return True

    def picture(self, file):
        if shutil.which("import"):
            subprocess.run(["import", "-silent", "-window", "root", str(file)], env=self.environment, check=False)

    def close(self):
        self.process.terminate()
        self.process.wait()


class DesktopTest(unittest.TestCase):
    """A person who has answered the questions of a first run already, for every option, in front of an empty screen."""

    def setUp(self):
        for program in ("Xvfb", "xdotool"):
            self.assertTrue(shutil.which(program), f"{program} is missing; tools/setup windows installs it")
        self.until = time.monotonic() + PATIENCE
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        # What a test that failed left behind would stay on a screen that is gone.
        self.addCleanup(subprocess.run, [os.environ["KELVANE_EMULATOR"], "--end"], check=True)
        self.settings = self.folder / "kelvane.ini"
        self.settings.write_text(f"[general]\r\nnTipOfTheDay=0\r\nbinFlags={ADVANCED}\r\n", encoding="utf-8")

    def start(self, folder):
        program = subprocess.Popen(
            [os.environ["KELVANE_EMULATOR"], "--seen", str(PROGRAM), "/I:" + for_program(self.settings),
             for_program(folder)],
            env=self.screen.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(program.kill)
        return program

    def await_that(self, holds, what, meanwhile=lambda: True):
        """Asks until the answer is true, and gives it; does something else until then, now and every ten seconds."""
        until_next = 0
        while not (answer := holds()):
            if time.monotonic() > self.until:
                self.screen.picture(picture := PROGRAM.parent / f"{type(self).__name__}.png")
                self.fail(f"{what} did not come; {picture} shows the screen")
            if until_next == 0:
                until_next = 50 if meanwhile() else 1
            until_next -= 1
            time.sleep(0.2)
        return answer

    def await_windows(self, title, count, meanwhile=lambda: True):
        found = []

        def are_so_many():
            found[:] = self.screen.windows(title)
            return len(found) == count
        self.await_that(are_so_many, f"{count} windows called {title}", meanwhile)
        return found

    def press(self, window, *keys, title, count):
        """Presses keys until that many windows have this title: one that has just come up may not listen yet."""
        return self.await_windows(title, count, lambda: self.screen.send(window, *keys))

    def search(self, folder):
        """A new window's search, up to its answer; the number of the window."""
        [window] = self.await_windows("Kelvane", 1)
        self.press(window, "ctrl+Return", title=f".*{folder.name} - Kelvane", count=1)
        # The first searches tell that they removed nothing.
        [notice] = self.await_windows("Kelvane", 1)
        self.press(notice, "Return", title="Kelvane", count=0)
        return window

    def end(self, program):
        self.assertEqual(program.wait(max(1, self.until - time.monotonic())), 0)
