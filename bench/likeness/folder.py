"""A folder of files whose likeness is known."""

import collections
import json
import os
import sys

FILES_PER_FOLDER = 100


class Folder:
    """Numbers the files, and writes down what each of them is."""

    def __init__(self, path, what):
        self.path = path
        self.what = what  # "document": FOLDER/documents/000/document 00000.txt
        self.entries = []

    def place(self, origin, format_name, **more):
        """Where the next file is to be written."""
        number = len(self.entries)
        name = f"{self.what}s/{number // FILES_PER_FOLDER:03d}/{self.what} {number:05d}.{format_name}"
        path = os.path.join(self.path, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        self.entries.append({"file": name, **origin, "format": format_name, **more})
        return path

    def write_truth(self, relations, neither, **more):
        """The relations in rising order of what was done to a file, and those that are neither to be found nor to be
        left out."""
        os.makedirs(self.path, exist_ok=True)
        with open(os.path.join(self.path, "truth.json"), "w", encoding="utf-8") as file:
            json.dump({"what": self.what, "relations": [name for name in relations if name not in neither],
                       "neither": neither, **more, "files": self.entries}, file, indent=1)

    def show_counts(self):
        for what in ("relation", "format"):
            print(", ".join(f"{count} {name}" for name, count in
                            collections.Counter(entry[what] for entry in self.entries).most_common()))


def refuse_filled(path):
    if os.path.isdir(path) and os.listdir(path):
        print(f"{path} is not empty", file=sys.stderr)
        return True
    return False
