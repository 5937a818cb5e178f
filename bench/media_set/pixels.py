"""Pictures as rows of red, green and blue bytes, and what people do to them."""

import struct
from dataclasses import dataclass


@dataclass
class Picture:
    width: int
    height: int
    pixels: bytes

    def row(self, y):
        return self.pixels[y * self.width * 3:(y + 1) * self.width * 3]

    def part(self, left, top, width, height):
        rows = (self.pixels[(y * self.width + left) * 3:(y * self.width + left + width) * 3]
                for y in range(top, top + height))
        return Picture(width, height, b"".join(rows))


def read_ppm(path):
    with open(path, "rb") as file:
        fields = []
        while len(fields) < 4:
            fields += file.readline().partition(b"#")[0].split()
        if fields[0] != b"P6" or fields[3] != b"255":
            raise RuntimeError(f"{path} has no 8-bit colours")
        return Picture(int(fields[1]), int(fields[2]), file.read())


def write_ppm(path, picture):
    with open(path, "wb") as file:
        file.write(b"P6\n%d %d\n255\n" % (picture.width, picture.height))
        file.write(picture.pixels)


def brightened(picture, numbers):
    gain, lift = numbers.uniform(1.05, 1.2), numbers.randrange(5, 25)
    table = bytes(min(255, round(value * gain) + lift) for value in range(256))
    return Picture(picture.width, picture.height, picture.pixels.translate(table))


def cropped(picture, numbers):
    """The same share of width and height is gone, up to 4 % in all: what is left has the same shape."""
    share = numbers.uniform(0.015, 0.04)
    width, height = round(picture.width * (1 - share)), round(picture.height * (1 - share))
    return picture.part(numbers.randrange(picture.width - width + 1), numbers.randrange(picture.height - height + 1),
                        width, height)


def trimmed(picture, numbers):
    """A tenth of one side is gone: what is left has another shape."""
    if numbers.random() < 0.5:
        return picture.part(0, 0, picture.width, picture.height - picture.height // 10)
    return picture.part(picture.width // 10, 0, picture.width - picture.width // 10, picture.height)


def watermarked(picture, numbers):
    """A line of something like letters, half transparent, in one of the lower corners."""
    white = bytes((value + 255) // 2 for value in range(256))
    cell = max(3, picture.width // 90)
    letters = [[numbers.random() < 0.5 for _ in range(20)] for _ in range(5)]
    left = numbers.choice((2 * cell, picture.width - 22 * cell))
    top = picture.height - 7 * cell
    block = bytearray(picture.pixels)
    for y in range(top, top + 5 * cell):
        for column, drawn in enumerate(letters[(y - top) // cell]):
            if drawn:
                start = (y * picture.width + left + column * cell) * 3
                block[start:start + cell * 3] = block[start:start + cell * 3].translate(white)
    return Picture(picture.width, picture.height, bytes(block))


def say_turned(path, orientation):
    """Puts the orientation of EXIF into a JPEG file that has no such data."""
    with open(path, "rb") as file:
        block = file.read()
    entry = struct.pack(">HHIHH", 0x0112, 3, 1, orientation, 0)
    data = b"Exif\0\0" + struct.pack(">2sHIH", b"MM", 42, 8, 1) + entry + struct.pack(">I", 0)
    with open(path, "wb") as file:
        file.write(block[:2] + struct.pack(">HH", 0xFFE1, len(data) + 2) + data + block[2:])
