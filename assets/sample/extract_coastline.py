#!/usr/bin/env python3
"""Makes coastline.txt: the shores of the Faroe Islands from the full-resolution GSHHG coastline.

For maintainers; building the program does not need it. Needs GMT and GSHHG (Debian: gmt, gmt-gshhg-full).

    extract_coastline.py [OUTPUT]      default: coastline.txt beside this script

GMT hands the coast out in pieces cut at one-degree lines. They are joined to closed rings here, turned so that
land lies on the left, and written largest first.
"""
import os
import subprocess
import sys

REGION = "-R-7.9/-6.0/61.2/62.6"
HEADER = """\
# Shores of the Faroe Islands, one closed ring per island: latitude and longitude in degrees, WGS 84,
# land on the left, the last point joins the first.
# From GSHHG 2.3.7 (Wessel and Smith), full resolution, LGPL v3 or later; made by extract_coastline.py.
"""


def pieces():
    command = ["gmt", "pscoast", "-Df", REGION, "-A0/0/1", "-W1", "-M", "--GMT_HISTORY=false",
               "--FORMAT_FLOAT_OUT=%.6f"]
    text = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout
    current = []
    for line in text.splitlines() + [">"]:
        if line[0] in ">#":
            if len(current) > 1:
                yield current
            current = []
        else:
            lon, lat = line.split()
            point = (lat, lon)
            if not current or current[-1] != point:
                current.append(point)


def join(parts):
    """Joins pieces end to start; every one must end up in a closed ring."""
    rings, open_parts = [], []
    for part in parts:
        (rings if part[0] == part[-1] else open_parts).append(part)
    while open_parts:
        line = open_parts.pop(0)
        while line[0] != line[-1]:
            for other in open_parts:
                if line[-1] in (other[0], other[-1]):
                    break
            else:
                sys.exit("extract_coastline: a shore does not close near %s %s" % line[-1])
            open_parts.remove(other)
            line += (other if other[0] == line[-1] else other[::-1])[1:]
        rings.append(line)
    return rings


def signed_area(ring):
    points = [(float(lat), float(lon)) for lat, lon in ring]
    return sum(a[1] * b[0] - b[1] * a[0] for a, b in zip(points, points[1:])) / 2


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    output = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "coastline.txt")
    rings = [ring if signed_area(ring) > 0 else ring[::-1] for ring in join(pieces())]
    rings = sorted((ring for ring in rings if len(ring) > 3), key=signed_area, reverse=True)
    with open(output, "w", encoding="ascii", newline="\n") as file:
        file.write(HEADER)
        for number, ring in enumerate(rings, 1):
            file.write("ring %d\n" % number)
            file.writelines("%s %s\n" % point for point in ring[:-1])
    print("%s: %d rings, %d points" % (output, len(rings), sum(len(ring) - 1 for ring in rings)))


main()
