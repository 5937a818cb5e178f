"""A made-up person's home: photographs that were copied thrice, music, downloads, letters."""

import importlib.machinery
import importlib.util
import math
import os
import shutil
import subprocess
from pathlib import Path

HOUSE = Path(__file__).resolve().parent.parent.parent
# Photograph: colours of the sky from top to bottom, place and size of the sun, colour of the nearest hill.
PHOTOGRAPHS = {
    "sunset at the lake": ("#27346e", "#f6a650", (910, 490, 62), "#1d2440"),
    "morning fog": ("#9fb8c8", "#f3e9d8", (380, 290, 50), "#46606b"),
    "dunes in May": ("#4f9bd8", "#e4f1f7", (1230, 170, 44), "#c9a25c"),
    "first snow": ("#7d93ad", "#eef3f8", (720, 210, 40), "#d9e2ea"),
    "vineyard": ("#5aa7cf", "#fdf0c2", (1050, 240, 56), "#4d7a34"),
    "night hike": ("#0b1026", "#33406b", (450, 180, 34), "#080b17"),
}
HILLS = 3
WIDTH, HEIGHT = 1440, 960


def load(name):
    """A script of tools/ as a module."""
    loader = importlib.machinery.SourceFileLoader(name, str(HOUSE / "tools" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


def hill(number, seed):
    """The outline of a hill as points of a polygon."""
    base, swing = HEIGHT * (0.58 + 0.14 * number), HEIGHT * (0.10 - 0.02 * number)
    points = [f"{x},{base + swing * math.sin(x / (150 + 40 * number) + seed + 2 * number):.0f}"
              for x in range(0, WIDTH + 20, 20)]
    return f"polygon 0,{HEIGHT} {' '.join(points)} {WIDTH},{HEIGHT}"


def photograph(file, look, seed):
    top, bottom, (x, y, radius), near = look
    draw = ["-fill", "#fff6dd", "-draw", f"circle {x},{y} {x + radius},{y}"]
    for number in range(HILLS):
        share = 100 * (number + 1) // HILLS
        draw += ["-fill", mixed(bottom, near, share), "-draw", hill(number, seed)]
    subprocess.run(["convert", "-size", f"{WIDTH}x{HEIGHT}", f"gradient:{top}-{bottom}", *draw, "-seed", "7", "-attenuate", "0.2", "+noise", "Gaussian", "-quality", "92",
                    str(file)], check=True)


def mixed(first, second, percent):
    """Percent of the second colour, the rest of the first."""
    parts = [(int(first[i:i + 2], 16), int(second[i:i + 2], 16)) for i in (1, 3, 5)]
    return "#" + "".join(f"{(a * (100 - percent) + b * percent) // 100:02x}" for a, b in parts)


def copy(source, target, minutes):
    """Some minutes younger than the original."""
    target.parent.mkdir(parents=True, exist_ok=True)
    shutil.copyfile(source, target)
    time = os.stat(source).st_mtime + 60 * minutes
    os.utime(target, (time, time))


def make_photographs(home, first_time):
    album, telephone, backup = home / "Pictures/Album", home / "Pictures/From telephone", home / "Backup 2025/Pictures"
    album.mkdir(parents=True)
    for number, (name, look) in enumerate(PHOTOGRAPHS.items()):
        file = album / f"{name}.jpg"
        photograph(file, look, number)
        os.utime(file, (first_time + 3600 * number,) * 2)
        copy(file, telephone / f"IMG_20260{number + 1}14.jpg", 5000 + number)
        copy(file, backup / f"{name}.jpg", 9000 + number)
    smaller = home / "Downloads/sunset at the lake (small).jpg"
    smaller.parent.mkdir()
    subprocess.run(["convert", str(album / "sunset at the lake.jpg"), "-resize", "50%", str(smaller)], check=True)


def make_rest(home, samples):
    texts, sounds = samples.texts(), samples.sounds()
    places = {
        "Documents/letter to Änne.txt": texts["texts/letter to Änne.txt"],
        "Documents/Drafts/letter.txt": texts["texts/drafts/letter.txt"],
        "Documents/story.txt": texts["texts/story.txt"],
        "Documents/story, revised.txt": texts["texts/story, revised.txt"],
        "Documents/recipe.txt": texts["texts/recipe.txt"],
        "Downloads/recipe (1).txt": texts["texts/recipe.txt"],
        "Music/chord.wav": sounds["sounds/chord.wav"],
        "Music/Telephone/ring tone.wav": sounds["sounds/chord.wav"],
        "Music/rising.wav": sounds["sounds/rising.wav"],
    }
    for number, (name, contents) in enumerate(places.items()):
        samples.write_file(str(home / name), contents, samples.FIRST_TIME + 60 * number)
    archive = home / "Downloads/old pictures.zip"
    shutil.make_archive(str(archive.with_suffix("")), "zip", home / "Pictures/Album")
    copy(archive, home / "Downloads/old pictures (1).zip", 3)


def make_home(home):
    """Fills the folder, which must not be there yet."""
    samples = load("make_samples")
    home.mkdir(parents=True)
    make_photographs(home, samples.FIRST_TIME)
    make_rest(home, samples)
