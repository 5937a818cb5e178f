"""The memory of a program and of the processes that it starts, looked at while they run."""

import os
import threading

BETWEEN_LOOKS = 0.02  # seconds; what a process needed at most is kept by the system until it ends


def fields_of(process):
    with open(f"/proc/{process}/status", encoding="utf-8", errors="replace") as file:
        return dict(line.split(":", 1) for line in file if ":" in line)


def children_of(process):
    """Those of all threads: a worker belongs to the thread that started it."""
    found = []
    for thread in os.listdir(f"/proc/{process}/task"):
        with open(f"/proc/{process}/task/{thread}/children", encoding="ascii") as file:
            found += map(int, file.read().split())
    return found


class Watch:
    """Follows the descendants of a process until it is stopped: bytes of the largest resident set by the name of the
    program, and of all of them together."""

    def __init__(self):
        self.largest = {}
        self.together = 0
        self.stopping = threading.Event()
        self.thread = None

    def follow(self, process):
        self.thread = threading.Thread(target=self.look_again, args=(process,), daemon=True)
        self.thread.start()

    def stop(self):
        self.stopping.set()
        self.thread.join()

    def look_again(self, process):
        while not self.stopping.wait(BETWEEN_LOOKS):
            self.together = max(self.together, self.look(process))

    def look(self, process):
        try:
            fields, children = fields_of(process), children_of(process)
        except OSError:
            return 0
        name, resident = fields["Name"].strip(), int(fields.get("VmRSS", "0 kB").split()[0]) * 1024
        peak = int(fields.get("VmHWM", "0 kB").split()[0]) * 1024
        self.largest[name] = max(self.largest.get(name, 0), peak)
        return resident + sum(map(self.look, children))
