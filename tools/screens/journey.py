"""From a folder to free space and back, by keyboard alone; what the disk holds is looked at on the way."""

import hashlib
import os

MAIN = "Kelvane$"


def contents(folder):
    """Each file below a folder: its name, what it holds, and which file of the disk it is."""
    files = {}
    for path in sorted(folder.rglob("*")):
        if path.is_file():
            place = os.stat(path)
            files[str(path.relative_to(folder))] = (hashlib.sha256(path.read_bytes()).hexdigest(), place.st_ino)
    return files


def expect(holds, what):
    if not holds:
        raise SystemExit(f"the journey failed: {what}")


def copies_in(files):
    """How many files hold what another file of the disk holds too."""
    return len({inode for _, inode in files.values()}) - len({digest for digest, _ in files.values()})


def same_contents(one, other):
    return {name: digest for name, (digest, _) in one.items()} == {name: digest for name, (digest, _) in other.items()}


def mark(tour):
    tour.keys("ctrl+m")
    tour.display.wait_active("Mark wizard")
    tour.keys("alt+o")
    tour.take("wizard")
    tour.keys("Return")
    tour.display.wait_active(MAIN)
    tour.take("marked")


def link(tour):
    """By the third choice, with the links that are preselected."""
    tour.keys("ctrl+shift+c")
    tour.display.wait_active("Clean up duplicates")
    tour.keys("Tab", "Tab")
    tour.take("choice")
    tour.keys("Return")
    tour.display.wait_active("clean-up summary")


def go_on(tour):
    tour.keys("alt+o")
    tour.display.wait_active("^Clean up duplicates$", seconds=300)  # the box at the end


def take_back(tour):
    tour.keys("alt+t", "u")
    tour.display.wait_still()
    tour.take("undo")
    tour.keys("alt+y")
    tour.display.wait_still()
    tour.take("undone")
    tour.keys("Return")
    tour.display.wait_active(MAIN)


def travel(tour, home):
    before = contents(home)
    expect(copies_in(before) > 10, "there were no copies to begin with")
    tour.first_start("advanced", "first start")
    tour.add_folder(home, "choose a folder")
    tour.first_scan()
    tour.take("results")
    mark(tour)
    link(tour)
    tour.take("summary")
    tour.keys("Escape")
    tour.display.wait_active(MAIN)
    expect(contents(home) == before, "a summary that was left changed something")
    link(tour)
    go_on(tour)
    tour.take("linked")
    tour.keys("Return")
    tour.display.wait_active(MAIN)
    linked = contents(home)
    expect(same_contents(before, linked), "links changed what files hold")
    expect(copies_in(linked) == 0, f"{copies_in(linked)} copies are left after linking")
    take_back(tour)
    after = contents(home)
    expect(same_contents(before, after), "undo changed what files hold")
    expect(copies_in(after) == copies_in(before), "undo did not make links copies again")
    print(f"  {copies_in(before)} copies became links, and copies again")
