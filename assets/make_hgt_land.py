#!/usr/bin/env python3
"""Makes hgt_land: the names of all one-degree cells that hold land.

For maintainers; building the program does not need it. Needs GMT with the full-resolution GSHHG coastline
(Debian: gmt, gmt-gshhg-full) and about half a minute.

    make_hgt_land.py [OUTPUT]          default: hgt_land beside this script

A cell counts when land touches its open interior: either a shoreline of level 1 (sea against land, ice shelves
of Antarctica being land) passes through it, however small the island, or its centre lies on land. Lakes belong
to the land around them. A cell is named after its south-west corner, as the files of heights are.
"""
import math
import os
import subprocess
import sys


def cell_name(south, west):
    return "%s%02d%s%03d" % ("N" if south >= 0 else "S", abs(south), "E" if west >= 0 else "W", abs(west))


def normal_west(west):
    return (west + 180) % 360 - 180


def inside_cell(x, y):
    """The cell whose open interior holds the point; None on a grid line."""
    south, west = math.floor(y), math.floor(x)
    if x == west or y == south:
        return None
    return south, normal_west(west)


def cells_of_segment(a, b):
    """Cells whose open interior the segment passes through: cut at grid lines, take the middle of each piece."""
    (ax, ay), (bx, by) = a, b
    if math.floor(ax) == math.floor(bx) and math.floor(ay) == math.floor(by):
        cell = inside_cell((ax + bx) / 2, (ay + by) / 2)
        return [cell] if cell else []
    cuts = {0.0, 1.0}
    for start, end in ((ax, bx), (ay, by)):
        low, high = sorted((start, end))
        cuts.update((line - start) / (end - start) for line in range(math.ceil(low), math.floor(high) + 1)
                    if start != end)
    cuts = sorted(cuts)
    middles = [(s + t) / 2 for s, t in zip(cuts, cuts[1:])]
    found = (inside_cell(ax + (bx - ax) * t, ay + (by - ay) * t) for t in middles)
    return [cell for cell in found if cell]


def shoreline_cells():
    command = ["gmt", "pscoast", "-Df", "-R-180/180/-90/90", "-A0/0/1", "-W1", "-M", "--GMT_HISTORY=false",
               "--FORMAT_FLOAT_OUT=%.9f"]
    cells, previous, points = set(), None, 0
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as dump:
        for line in dump.stdout:
            if line[0] in ">#":
                previous = None
                continue
            x, y = line.split()
            point = (float(x), float(y))
            points += 1
            if previous and abs(point[0] - previous[0]) < 180:
                cells.update(cells_of_segment(previous, point))
            previous = point
    if dump.returncode != 0 or points < 5_000_000:
        sys.exit("make_hgt_land: gmt pscoast gave %d points, exit status %d" % (points, dump.returncode))
    return cells


def inland_cells():
    """Cells whose centre is on land (or on a lake)."""
    centres = "".join("%.1f %.1f\n" % (west + 0.5, south + 0.5) for south in range(-90, 90)
                      for west in range(-180, 180))
    command = ["gmt", "select", "-Df", "-A0/0/4", "-Ns/k/k/k/k", "-fg", "--GMT_HISTORY=false"]
    result = subprocess.run(command, input=centres, stdout=subprocess.PIPE, text=True, check=True)
    pairs = (line.split() for line in result.stdout.splitlines())
    return {(math.floor(float(y)), normal_west(math.floor(float(x)))) for x, y in pairs}


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    output = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "hgt_land")
    shore, inland = shoreline_cells(), inland_cells()
    names = sorted(cell_name(south, west) for south, west in shore | inland)
    with open(output, "w", encoding="ascii", newline="\r\n") as file:
        file.writelines(name + "\n" for name in names)
    print("%s: %d cells (%d with shoreline, %d with land at the centre)"
          % (output, len(names), len(shore), len(inland)))


main()
