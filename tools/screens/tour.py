"""What windows and pages there are, and how a keyboard gets to each."""

MAIN = "Kelvane$"
# The first start's choices, from the one that is preselected.
MODES = {"advanced": ["shift+Tab"], "standard": [], "beginner": ["Tab"]}
OPTION_PAGES = ("general", "view", "scanning", "comparing", "clean-up", "texts of documents", "notices", "kept")


class Tour:
    """A person at the keyboard, whose steps are photographed; every step ends with the main window in front."""

    def __init__(self, display, program, folder):
        self.display = display
        self.program = program
        self.folder = folder
        self.number = 0

    def take(self, name, whole=False):
        self.number += 1
        self.display.picture(self.folder / f"{self.number:02} {name}.png", whole)
        print(f"  {name}", flush=True)

    def keys(self, *keys):
        self.display.press(*keys, pause=0.3)

    def first_start(self, mode, picture=None):
        self.program.start()
        self.display.wait_active("User interface selection")
        if picture:
            self.take(picture)
        self.keys(*MODES[mode], "Return")
        self.display.wait_active(MAIN)
        self.display.wait_still()

    def window(self, name, title, *keys, leave="Escape"):
        """Opens a window by keys, takes its picture, and leaves it."""
        self.keys(*keys)
        self.display.wait_active(title)
        self.take(name)
        if leave:
            self.keys(leave)
            self.display.wait_active(MAIN)

    def menu(self, name, *keys):
        self.keys(*keys)
        self.take(name, whole=True)
        self.keys("Escape", "Escape")

    def add_folder(self, folder, picture=None):
        self.keys("alt+a")
        self.display.wait_active("Choose a folder")
        self.display.type(str(folder))
        if picture:
            self.take(picture)
        self.keys("Return")
        self.display.wait_active(MAIN)

    def first_scan(self, picture=None):
        """The explanation that the first one begins with is answered once there are results."""
        self.keys("ctrl+Return")
        self.display.wait(lambda: self.display.windows(" - Kelvane$"), "the end of the scan")
        self.display.wait_still()
        if picture:
            self.take(picture)
        self.keys("Return")
        self.display.wait_active(" - Kelvane$")

    def clean_up(self, *choice, pictures=True):
        """From the command to the box at the end; the choice begins at the button that is preselected."""
        self.keys("ctrl+shift+c")
        self.display.wait_active("Clean up duplicates")
        if pictures:
            self.take("clean-up choice")
        self.keys(*choice, "Return")
        self.display.wait_active("clean-up summary")
        if pictures:
            self.take("clean-up summary")


def look_at_modes(tour, theme):
    """The windows that the simpler interfaces show."""
    tour.first_start("beginner", "first start")
    tour.keys("alt+v", "t", "d" if theme == "dark" else "l")
    tour.take("beginner")
    tour.keys("alt+v", "i", "s")
    tour.take("standard")
    tour.keys("alt+v", "i", "a")
    tour.take("advanced")


def look_at_scan(tour, home):
    tour.add_folder(home, "choose a folder")
    tour.take("scan pane")
    tour.window("property picker", "Properties that must match", "alt+p")
    tour.first_scan("first scan")
    tour.take("results")


def look_at_list(tour):
    for letter in "fevmth":
        tour.menu(f"menu {letter}", f"alt+{letter}")
    tour.menu("context menu", "Menu")
    tour.window("properties", "Properties of", "alt+Return")
    tour.window("columns", "^Columns$", "alt+v", "c")
    tour.window("side by side, texts", "Side by side", "ctrl+d")
    tour.keys("ctrl+f")
    tour.display.type("sunset")
    tour.keys("Down")
    tour.take("filtered")
    tour.keys("ctrl+f", "Escape")
    tour.take("preview of a picture")
    tour.window("side by side, pictures", "Side by side", "ctrl+d")
    tour.keys("alt+v", "u")
    tour.take("thumbnails")
    tour.keys("alt+v", "d")
    tour.keys("F6", "Right")
    tour.take("why matched")
    tour.keys("shift+F6", "Home")


def turn_on_the_log(tour):
    """As a person does who looks for it: by a word, in the options."""
    tour.keys("ctrl+comma")
    tour.display.wait_active("^Options$")
    tour.display.type("write a log")
    tour.keys("Tab", "Tab", "space")
    tour.take("options, found")
    tour.keys("Escape")
    tour.display.wait_active(MAIN)


def look_at_clean_up(tour):
    turn_on_the_log(tour)
    tour.window("mark wizard", "Mark wizard", "ctrl+m")
    tour.keys("ctrl+a", "space")
    tour.keys("ctrl+shift+c")
    tour.display.wait_still()
    tour.take("pre-check")
    tour.keys("Escape", "ctrl+shift+i", "ctrl+m")
    tour.display.wait_active("Mark wizard")
    tour.keys("Return")
    tour.display.wait_active(MAIN)
    tour.take("marked")
    tour.clean_up()
    tour.keys("alt+o")
    tour.display.wait_active("^Clean up duplicates$")
    tour.take("clean-up complete")
    tour.keys("Escape")
    tour.window("log of the clean-up", "Log of the clean-up", "alt+t", "l")
    tour.window("earlier clean-ups", "Earlier clean-ups", "alt+t", "e")
    tour.keys("alt+t", "u")
    tour.display.wait_still()
    tour.take("undo")
    tour.keys("Escape")


def look_at_help(tour):
    tour.keys("ctrl+comma")
    tour.display.wait_active("^Options$")
    tour.keys("Tab")
    for page in OPTION_PAGES:
        tour.take(f"options, {page}")
        tour.keys("Down")
    tour.keys("Escape")
    tour.display.wait_active(MAIN)
    tour.window("guide", "user guide", "F1")
    tour.window("keyboard", "^Keyboard$", "alt+h", "k")
    tour.window("tips", "Did you know", "alt+h", "t")
    tour.window("about", "About Kelvane", "alt+h", "a")


def look_at_everything(tour, home, theme):
    look_at_modes(tour, theme)
    look_at_scan(tour, home)
    look_at_list(tour)
    look_at_clean_up(tour)
    look_at_help(tour)
