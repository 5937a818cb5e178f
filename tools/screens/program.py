"""The desktop program on a display, with folders of its own for everything that it keeps."""

import os
import subprocess
import time


class Program:
    """Started with a home, and a folder for what it keeps, so that nothing of the person's own is touched."""

    def __init__(self, display, executable, home, state, language="C.UTF-8"):
        self.display = display
        self.executable = executable
        self.home = home
        self.environment = {
            **display.environment,
            "HOME": str(home),
            "LC_ALL": language,
            "QT_QPA_PLATFORM": "xcb",
            "QT_SCALE_FACTOR": str(display.scale),
            "XDG_CURRENT_DESKTOP": "",
            "XDG_RUNTIME_DIR": str(state),
            # Builds with the address sanitizer would tell of the toolkit's own leaks at the end.
            "ASAN_OPTIONS": "detect_leaks=0",
            **{f"XDG_{kind}_HOME": str(state / kind.lower()) for kind in ("CONFIG", "CACHE", "DATA", "STATE")},
        }
        # Nobody's desktop is asked for anything.
        self.environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
        self.log = state / "program.log"
        self.process = None

    def start(self, *words):
        self.log.parent.mkdir(parents=True, exist_ok=True)
        with open(self.log, "ab") as log:
            try:
                self.process = subprocess.Popen([self.executable, *words], env=self.environment, cwd=self.home,
                                                stdout=log, stderr=log)
            except OSError as why:
                raise SystemExit(f"{self.executable} does not start: {why.strerror}") from why

    def started(self):
        return self.process is not None

    def ended(self):
        return self.process.poll() is not None

    def stop(self, seconds=60):
        """Closes the windows as a person does; returns whether the program ended well."""
        end = time.monotonic() + seconds
        while not self.ended() and time.monotonic() < end:
            self.display.press("Escape", "ctrl+w", pause=0.5)
        if not self.ended():
            os.kill(self.process.pid, 9)
            self.process.wait()
            return False
        return self.process.returncode == 0
