#!/usr/bin/env python3
"""Makes the icon of the Windows programs from the drawing: make_icon.py DRAWING.svg ICON.ico

The icon is kept beside this script, so that a build needs no program for drawings. Run it after a change of
the drawing (packages: librsvg2-bin)."""
import struct
import subprocess
import sys

SIZES = (16, 20, 24, 32, 40, 48, 64, 256)


def picture(drawing, size):
    """The drawing as a PNG file of this width and height."""
    return subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), drawing],
                          check=True, stdout=subprocess.PIPE).stdout


def icon(pictures):
    """An ICO file: a header, one entry of 16 bytes for each picture, the pictures. 256 is written as 0."""
    start = 6 + 16 * len(pictures)
    head = struct.pack("<HHH", 0, 1, len(pictures))
    for size, data in pictures:
        head += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), start)
        start += len(data)
    return head + b"".join(data for _, data in pictures)


def main():
    drawing, target = sys.argv[1:]
    with open(target, "wb") as file:
        file.write(icon([(size, picture(drawing, size)) for size in SIZES]))


if __name__ == "__main__":
    main()
