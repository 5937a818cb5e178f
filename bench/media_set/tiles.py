"""Different pictures, cut out of the large ones that packages bring.

A few dozen wallpapers are too few to search among, so each is cut into tiles that do not overlap, in full size, in half
and in a quarter of it: what is a detail of another tile is another picture. All tiles of one picture in one scale have
one shape. Left out are tiles with little in them, and tiles that look like one chosen before: two pieces
of the same sky would count as unrelated and yet be alike.
"""

import os
import re
import statistics
import subprocess
from dataclasses import dataclass

from . import commands, pixels

PLACES = ["/usr/share/wallpapers", "/usr/share/backgrounds", "/usr/share/images"]
PACKAGES = ["plasma-workspace-wallpapers", "gnome-backgrounds", "mate-backgrounds", "lomiri-wallpapers-16.04",
            "lomiri-wallpapers-20.04", "ukui-wallpapers"]
SIZE_IN_NAME = re.compile(r"_?\d+x\d+")

UNIT = 28  # pixels of a tile that are one of its small copy, by which tiles are chosen
SCALES = (1, 2, 4)  # how many pixels of the large picture are one of the tile
# width and height in units, how often
SHAPES = {(16, 12): 5, (18, 12): 4, (12, 16): 2, (12, 18): 1, (16, 9): 2, (14, 14): 1}
MOST_PIXELS = 20000  # of each side: all of a wallpaper
WIDE = {(30, 17): 1}  # for films
LEAST_DEVIATION = 14  # of the brightness of a tile in units, of 255
LEAST_STEP = 5  # mean difference of brightness from unit to unit
LEAST_DIFFERENCE = 20  # mean over all units and colours of two tiles


@dataclass
class Tile:
    origin: str
    scale: int
    left: int  # in units, as the others
    top: int
    width: int
    height: int
    small: bytes


def large_pictures():
    """Of the sizes that one picture is shipped in, the largest alone. Previews of wallpapers are left out."""
    largest = {}
    for path in commands.files_below(PLACES, (".jpg", ".jpeg", ".png", ".webp")):
        name = os.path.basename(path)
        if name.startswith("screenshot") or "preview" in name:
            continue
        key = (os.path.dirname(path), SIZE_IN_NAME.sub("", name))
        if key not in largest or os.path.getsize(largest[key]) < os.path.getsize(path):
            largest[key] = path
    return sorted(largest.values())


def small_copies(path, place):
    """One for each scale."""
    whole = [int(subprocess.run(["vipsheader", "-f", side, path], capture_output=True, check=True).stdout)
             for side in ("width", "height")]
    sizes = [[max(1, side // (UNIT * scale)) for side in whole] for scale in SCALES]
    copies, source = [], path
    for number, (width, height) in enumerate(sizes):
        commands.run(["vips", "thumbnail", source, f"{place}{number}.ppm", width, "--height", height,
                      "--size", "force"])
        source = f"{place}{number}.ppm"
        copies.append(pixels.read_ppm(source))
    for number in range(len(sizes)):
        os.remove(f"{place}{number}.ppm")
    return copies


def loaded(path, place, shrinks):
    """The whole picture, shrunk by each of the factors; no transparency."""
    commands.run(["vips", "thumbnail", path, f"{place}.v", MOST_PIXELS, "--size", "down"])
    pictures = []
    for shrink in shrinks:
        commands.run(["vips", "shrink", f"{place}.v", f"{place}.ppm", shrink, shrink])
        pictures.append(pixels.read_ppm(f"{place}.ppm"))
    os.remove(f"{place}.v")
    os.remove(f"{place}.ppm")
    return pictures


def has_detail(small):
    """Neither of one colour nor only two of them parted by an edge."""
    at = range(0, len(small.pixels), 3)
    bright = [0.299 * small.pixels[i] + 0.587 * small.pixels[i + 1] + 0.114 * small.pixels[i + 2] for i in at]
    steps = [abs(bright[i] - bright[i - 1]) for i in range(len(bright)) if i % small.width]
    steps += [abs(bright[i] - bright[i - small.width]) for i in range(small.width, len(bright))]
    return statistics.pstdev(bright) >= LEAST_DEVIATION and statistics.fmean(steps) >= LEAST_STEP


def tiles_of(path, scale, small, shapes, numbers):
    """Those with something in them, in random order."""
    width, height = numbers.choices(list(shapes), list(shapes.values()))[0]
    tiles = []
    for left in range(0, small.width - width + 1, width):
        for top in range(0, small.height - height + 1, height):
            part = small.part(left, top, width, height)
            if has_detail(part):
                tiles.append(Tile(path, scale, left, top, width, height, part.pixels))
    numbers.shuffle(tiles)
    return tiles


class Unlike:
    """Lets in only tiles that differ from all of their shape that it let in before."""

    def __init__(self):
        self.chosen = {}

    def admits(self, tile):
        others = self.chosen.setdefault((tile.width, tile.height), [])
        least = LEAST_DIFFERENCE * len(tile.small)
        for other in others:
            if sum(map(abs, map(int.__sub__, tile.small, other))) < least:
                return False
        others.append(tile.small)
        return True


def choose(count, place, numbers, shapes=None):
    """At most so many tiles, as evenly from all pictures as they allow."""
    shapes = shapes or SHAPES
    paths = large_pictures()
    small = list(commands.for_each(lambda one: small_copies(paths[one], f"{place} {one} "), range(len(paths))))
    queues = [tiles_of(path, scale, copies[number], shapes, numbers) for number, scale in enumerate(SCALES)
              for path, copies in zip(paths, small)]
    chosen, unlike = [], Unlike()
    while len(chosen) < count and any(queues):
        for queue in filter(None, queues):
            tile = queue.pop()
            if len(chosen) < count and unlike.admits(tile):
                chosen.append(tile)
    return chosen


def cut(tiles, path, place):
    """Yields (number of the tile, its picture) of the tiles that are parts of the picture at `path`."""
    parts = [(number, tile) for number, tile in enumerate(tiles) if tile.origin == path]
    scales = sorted({tile.scale for _, tile in parts})
    wholes = dict(zip(scales, loaded(path, place, scales)))
    for number, tile in parts:
        yield number, wholes[tile.scale].part(tile.left * UNIT, tile.top * UNIT, tile.width * UNIT, tile.height * UNIT)
