"""The files of the tree that the rules look at."""

from pathlib import Path

CODE_FOLDERS = ("src", "tests", "bench", "tools")
OTHER_FOLDERS = ("docs", "cmake", ".ci")
CODE_SUFFIXES = {".cc", ".cpp", ".h", ".hpp", ".sh", ".py"}
CXX_SUFFIXES = {".cc", ".cpp", ".h", ".hpp"}
TEXT_SUFFIXES = CODE_SUFFIXES | {".txt", ".cmake", ".md", ".json"}


class File:
    def __init__(self, root, path):
        self.full = path
        self.path = path.relative_to(root).as_posix()
        self.folder, _, self.name = self.path.rpartition("/")
        self.suffix = path.suffix
        self.text = path.read_text(encoding="utf-8", errors="replace")
        self.lines = self.text.splitlines()

    def is_script(self):
        return self.suffix == "" and self.text.startswith("#!")

    def is_code(self):
        return self.suffix in CODE_SUFFIXES or self.is_script()

    def is_cxx(self):
        return self.suffix in CXX_SUFFIXES

    def is_header(self):
        return self.suffix in {".h", ".hpp"}

    def is_under(self, folder):
        return self.path.startswith(folder + "/")

    def non_blank_lines(self):
        return sum(1 for line in self.lines if line.strip())


class Tree:
    def __init__(self, root):
        self.root = Path(root)
        self.files = sorted(self._read(), key=lambda file: file.path)

    def _read(self):
        for path in self.root.iterdir():
            if path.is_file():
                yield from self._file(path)
        for folder in CODE_FOLDERS + OTHER_FOLDERS:
            for path in (self.root / folder).rglob("*"):
                if path.is_file() and "__pycache__" not in path.parts:
                    yield from self._file(path)

    def _file(self, path):
        if path.suffix in TEXT_SUFFIXES or path.suffix == "":
            yield File(self.root, path)

    def cxx(self, folder=None):
        return [file for file in self.files if file.is_cxx() and (folder is None or file.is_under(folder))]

    def code(self, folder):
        return [file for file in self.files if file.is_code() and file.is_under(folder)]
