"""A display of its own with a window manager, and what a person does there: keys, and looking at windows."""

import hashlib
import os
import re
import subprocess
import time
from pathlib import Path


class Silence(Exception):
    """Something did not come in time."""


class Display:
    """Xvfb with openbox; ends both at the end of a "with" block."""

    def __init__(self, width, height, scale):
        self.size = f"{width * scale}x{height * scale}x24"
        self.scale = scale

    def __enter__(self):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", self.size, "-nolisten", "tcp", "-noreset"],
            pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            name = number.readline().strip()
        if not name:
            raise SystemExit("Xvfb did not start")
        self.environment = {**os.environ, "DISPLAY": f":{name}"}
        self.manager = subprocess.Popen(["openbox"], env=self.environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        self.ask("xdotool", "mousemove", "0", "0")  # nothing lies below the pointer
        return self

    def __exit__(self, *_):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def ask(self, *command):
        done = subprocess.run(command, env=self.environment, capture_output=True, text=True, check=False)
        return done.stdout.strip()

    # Keys and words go to the window that has the focus, as they do from a keyboard.

    def press(self, *keys, pause=0.15):
        for key in keys:
            self.ask("xdotool", "key", "--clearmodifiers", key)
            time.sleep(pause)

    def type(self, text):
        self.ask("xdotool", "type", "--delay", "15", text)
        time.sleep(0.2)

    def windows(self, title):
        """Those that are shown and have a title that holds this expression."""
        return self.ask("xdotool", "search", "--onlyvisible", "--name", title).split()

    def active_title(self):
        return self.ask("xdotool", "getactivewindow", "getwindowname")

    def wait_active(self, title, seconds=60):
        """Until the window with this title has the focus."""
        self.wait(lambda: re.search(title, self.active_title()), f"the window {title}", seconds)
        time.sleep(0.3)

    def wait(self, holds, what, seconds=60):
        end = time.monotonic() + seconds
        while not holds():
            if time.monotonic() > end:
                raise Silence(f"{what} did not come; in front is: {self.active_title()}")
            time.sleep(0.1)

    def wait_still(self, seconds=30):
        """Until the picture has not changed for a moment, but for a cursor that blinks."""
        end = time.monotonic() + seconds
        seen = []
        while time.monotonic() < end:
            pixels = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"],
                                    env=self.environment, capture_output=True, check=False).stdout
            seen.append(hashlib.sha1(pixels).digest())
            if len(seen) >= 4 and len(set(seen[-4:])) <= 2 and seen[-1] in seen[-4:-1]:
                return
            time.sleep(0.25)

    def picture(self, file, whole=False):
        """Of the window in front, with its title; or of the whole screen."""
        self.wait_still()
        Path(file).parent.mkdir(parents=True, exist_ok=True)
        window = "root" if whole else self.ask("xdotool", "getactivewindow") or "root"
        frame = [] if whole else ["-frame"]
        self.ask("import", "-silent", *frame, "-window", window, str(file))
