"""Recordings that packages bring, mostly the music of games."""

import os
import re
import subprocess

from . import commands

PLACES = ["/usr/share/games", "/usr/share/scummvm", "/usr/share/hyperrogue", "/usr/share/planetblupi",
          "/usr/share/pushover", "/usr/share/sounds"]
PACKAGES = ["wesnoth-1.16-music", "warzone2100-music", "hyperrogue-music", "singularity-music", "planetblupi-music-ogg",
            "drascula-music", "pushover-data", "asc-music"]
# Two versions of one song are neither the same nor unrelated.
VERSION = re.compile(r"(_enhanced|-old)\.")
LEAST_BYTES = 200000  # shorter than any song, so that its length need not be asked for


def seconds_of(path):
    asked = subprocess.run(["ffprobe", "-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", path],
                           capture_output=True, text=True)
    try:
        return float(asked.stdout)
    except ValueError:
        return 0.0


def longer_than(seconds):
    """All recordings of more than so many seconds."""
    paths = [path for path in commands.files_below(PLACES, (".ogg", ".oga", ".opus", ".mp3", ".flac", ".wav"))
             if os.path.getsize(path) >= LEAST_BYTES and not VERSION.search(os.path.basename(path))]
    return [path for path, length in zip(paths, commands.for_each(seconds_of, paths)) if length > seconds]


def cut(path, seconds, wave):
    commands.run([*FFMPEG, "-i", path, "-map", "0:a:0", "-t", seconds, "-ar", 44100, "-ac", 2, "-map_metadata", -1, wave])


# The same bytes whenever and wherever it runs with these.
FFMPEG = ["ffmpeg", "-nostdin", "-v", "error", "-y", "-threads", 1, "-filter_threads", 1]
REPEATABLE = ["-fflags", "+bitexact", "-flags:v", "+bitexact", "-flags:a", "+bitexact", "-threads", 1]
