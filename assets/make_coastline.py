#!/usr/bin/env python3
"""Makes coastline: the shorelines of the world for the background of the tile plot.

For maintainers; building the program does not need it. Needs GMT with GSHHG (Debian: gmt, gmt-gshhg-full).

    make_coastline.py [OUTPUT]          default: coastline beside this script

Shorelines of level 1 at intermediate resolution, islands under 2 square kilometres left out, simplified to
what a screen shows. One line of text per shoreline. Coordinates count in 1/500 degree; longitude and latitude
of the first point, then the differences from point to point. A number n is written as 2n (or -2n-1 when it is
negative) in groups of five bits, the lowest first, as the characters "0" (48) to "o" (111); 32 is added to
every group but the last.
"""
import os
import subprocess
import sys

UNITS = 500
TOLERANCE = 0.0025  # degrees


def shorelines():
    """Lists of (longitude, latitude) from GMT."""
    text = subprocess.run(["gmt", "pscoast", "-R-180/180/-90/90", "-Jx1d", "-Di", "-A2/0/1", "-W", "-M"],
                          check=True, capture_output=True, text=True).stdout
    line = []
    for row in text.splitlines():
        if row.startswith(("#", ">")):
            if line:
                yield line
            line = []
        elif row.strip():
            x, y = row.split()[:2]
            line.append((float(x), float(y)))
    if line:
        yield line


def far_point(line, first, last):
    """Index and squared distance of the point farthest from the chord between two points."""
    (ax, ay), (bx, by) = line[first], line[last]
    dx, dy = bx - ax, by - ay
    length = dx * dx + dy * dy
    best, where = -1.0, first
    for index in range(first + 1, last):
        px, py = line[index][0] - ax, line[index][1] - ay
        along = max(0.0, min(1.0, (px * dx + py * dy) / length)) if length else 0.0
        ex, ey = px - along * dx, py - along * dy
        if ex * ex + ey * ey > best:
            best, where = ex * ex + ey * ey, index
    return where, best


def simplified(line):
    """Douglas-Peucker without recursion; both ends stay."""
    keep = {0, len(line) - 1}
    open_ends = [(0, len(line) - 1)]
    while open_ends:
        first, last = open_ends.pop()
        where, distance = far_point(line, first, last)
        if distance > TOLERANCE * TOLERANCE:
            keep.add(where)
            open_ends += [(first, where), (where, last)]
    return [line[index] for index in sorted(keep)]


def number(value):
    value = 2 * value if value >= 0 else -2 * value - 1
    text = ""
    while value >= 32:
        text += chr(48 + 32 + value % 32)
        value //= 32
    return text + chr(48 + value)


def written(line):
    text, last = "", (0, 0)
    for x, y in line:
        here = (round(x * UNITS), round(y * UNITS))
        if here != last or not text:
            text += number(here[0] - last[0]) + number(here[1] - last[1])
            last = here
    return text


def main():
    output = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "coastline")
    lines = [written(simplified(line)) for line in shorelines() if len(line) > 1]
    with open(output, "w", encoding="ascii", newline="\n") as file:
        file.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
