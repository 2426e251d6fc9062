#!/usr/bin/env python3
"""Contour lines of ferrowen-contours against those of gdal_contour on the same heights.

Usage: check_contours.py PROGRAM [quick]
For several cells: the length of the lines of every elevation must agree within 0.5 %, and the number of closed lines
whose bounding box reaches the smallest extent exactly. Needs gdal_contour (Debian: gdal-bin).

gdal_contour draws half a square into voids and beyond the edge; those pieces are left out here. It takes heights that
lie on a line as slightly higher. ferrowen-contours is compared in that setting, and in its usual one, half a metre
lower, with heights that were lowered before they were given to gdal_contour.
"""

import array
import collections
import math
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.parsers.expat

import terrain

INTERVAL = 20
LEAST_POINTS, LEAST_EXTENT = 3, 0.00016
LONGEST_DIFFERENCE = 0.005  # of the length of one elevation's lines
LATITUDE, LONGITUDE, NAME = 46, 9, "N46E009"

Line = collections.namedtuple("Line", "elevation points closed")


def osm_lines(path):
    """Lines of an OSM file; a closed one repeats its first node."""
    nodes, lines, references, tags = {}, [], [], {}

    def start(name, attributes):
        if name == "node":
            nodes[attributes["id"]] = (float(attributes["lon"]), float(attributes["lat"]))
        elif name == "nd":
            references.append(attributes["ref"])
        elif name == "tag":
            tags[attributes["k"]] = attributes["v"]

    def end(name):
        if name == "way":
            assert tags["contour"] == "elevation" and tags["contour_ext"].startswith("elevation_m"), tags
            lines.append(Line(int(tags["ele"]), [nodes[node] for node in references], references[0] == references[-1]))
            references.clear()
            tags.clear()

    parser = xml.parsers.expat.ParserCreate()
    parser.StartElementHandler, parser.EndElementHandler = start, end
    with open(path, "rb") as file:
        parser.ParseFile(file)
    return lines


def shape_lines(path):
    """Lines of a shapefile with one part per record, and the numbers of its field "ele"."""
    dbf = path.with_suffix(".dbf").read_bytes()
    head, record = struct.unpack_from("<HH", dbf, 8)
    names = [dbf[at:at + 11].rstrip(b"\0") for at in range(32, head - 1, 32)]
    widths = [dbf[at + 16] for at in range(32, head - 1, 32)]
    begin = 1 + sum(widths[:names.index(b"ele")])
    width = widths[names.index(b"ele")]
    shp = path.read_bytes()
    lines, at, number = [], 100, 0
    while at < len(shp):
        size = 2 * struct.unpack_from(">I", shp, at + 4)[0]
        parts, count = struct.unpack_from("<II", shp, at + 8 + 36)
        assert parts == 1
        values = array.array("d", shp[at + 8 + 48:at + 8 + 48 + 16 * count])
        field = head + number * record + begin
        points = list(zip(values[0::2], values[1::2]))
        lines.append(Line(round(float(dbf[field:field + width])), points, points[0] == points[-1]))
        at += 8 + size
        number += 1
    return lines


def ours(program, folder, fake_distance, least_points, least_extent):
    output = folder / "own.osm"
    subprocess.run([program, "--HgtPath=" + str(folder), f"--Lat={LONGITUDE}", f"--Lon={LATITUDE}",
                    "--WriteElevationType=False", f"--FakeDistance={fake_distance}",
                    f"--MinVerticePoints={least_points}", f"--MinBoundingbox={least_extent}", "--DouglasPeucker=0",
                    f"--MinorDistance={INTERVAL}", "--OutputOverwrite=True", "--Outfile=" + str(output)],
                   check=True, stdout=subprocess.PIPE)
    return osm_lines(output)


def gdal(folder, rows, taken):
    """Lines of gdal_contour, in degrees, on heights after `taken` was applied to them."""
    raster, output = folder / "heights.bin", folder / "gdal.shp"
    size = len(rows)
    with open(raster, "wb") as file:
        for row in rows:
            array.array("f", [taken(height) for height in row]).tofile(file)
    (folder / "heights.hdr").write_text(
        f"ENVI\nsamples = {size}\nlines = {size}\nbands = 1\ndata type = 4\ninterleave = bsq\nbyte order = 0\n")
    subprocess.run(["gdal_contour", "-q", "-a", "ele", "-i", str(INTERVAL), "-snodata", str(terrain.VOID), str(raster),
                    str(output)], check=True)
    return shape_lines(output)


def inner_lengths(lines, rows):
    """From lines in pixels: for each line its elevation, its points in samples, the length inside whole squares and
    whether all of it lies there."""
    last = len(rows) - 1
    holes = {(row + down, column + right) for row, heights in enumerate(rows) for column, height in enumerate(heights)
             if height == terrain.VOID for down in (-1, 0) for right in (-1, 0)}
    for line in lines:
        points = [(x - 0.5, abs(y) - 0.5) for x, y in line.points]
        length, whole = 0.0, True
        for (x, y), (to_x, to_y) in zip(points, points[1:]):
            middle_x, middle_y = (x + to_x) / 2, (y + to_y) / 2
            if 0 <= middle_x <= last and 0 <= middle_y <= last and (int(middle_y), int(middle_x)) not in holes:
                length += math.hypot(to_x - x, to_y - y)
            else:
                whole = False
        yield line.elevation, points, length, whole


def extent(points):
    columns, rows = [x for x, _ in points], [y for _, y in points]
    return max(max(columns) - min(columns), max(rows) - min(rows))


def compare(program, folder, rows, fake_distance, taken):
    samples_per_degree = len(rows) - 1
    own_lengths, gdal_lengths = collections.Counter(), collections.Counter()
    for line in ours(program, folder, fake_distance, 0, 0):
        own_lengths[line.elevation] += sum(map(math.dist, line.points, line.points[1:]))
    own_closed = sum(line.closed for line in ours(program, folder, fake_distance, LEAST_POINTS, LEAST_EXTENT))
    # A line whose extent is the smallest one itself may fall on either side.
    surely_closed = perhaps_closed = 0
    for elevation, points, length, whole in inner_lengths(gdal(folder, rows, taken), rows):
        gdal_lengths[elevation] += length / samples_per_degree
        # As many different points as a kept line must have, after the rounding that both undergo.
        corners = {(round(x / samples_per_degree * 1e7), round(y / samples_per_degree * 1e7)) for x, y in points}
        if whole and points[0] == points[-1] and len(corners) >= LEAST_POINTS:
            size = extent(points) / samples_per_degree
            surely_closed += size > LEAST_EXTENT + 2e-7
            perhaps_closed += size > LEAST_EXTENT - 2e-7
    differences = {elevation: abs(own_lengths[elevation] - gdal_lengths[elevation]) / max(gdal_lengths[elevation], 1e-9)
                   for elevation in set(own_lengths) | set(gdal_lengths)
                   # Less than a square's side in all: the rounding of points to 1e-7 degrees shows.
                   if max(own_lengths[elevation], gdal_lengths[elevation]) > 1 / samples_per_degree}
    worst = max(differences, key=differences.get)
    good = differences[worst] <= LONGEST_DIFFERENCE and surely_closed <= own_closed <= perhaps_closed
    print(f"{len(rows):5} {fake_distance:10} {len(differences):10} {sum(own_lengths.values()):12.3f} "
          f"{sum(gdal_lengths.values()):12.3f} {differences[worst]:12.6%} {own_closed:8} {surely_closed:8}  "
          f"{'agrees' if good else 'DIFFERS at ' + str(worst) + ' m'}", flush=True)
    return good and len(differences) > 10 and own_closed > 10


def main():
    program = str(pathlib.Path(sys.argv[1]).resolve())
    cells = [(1201, 2, 2900), (1201, 3, 900), (3601, 1, 2900)]
    folder = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen-contours-"))
    good = True
    print(" size  on a line  elevations   own degrees    gdal degr.  worst diff.   closed     gdal")
    try:
        for size, seed, high in cells[:1] if sys.argv[2:] == ["quick"] else cells:
            rows = terrain.heights(size, seed, high=high)
            terrain.write_cell(folder / (NAME + ".hgt"), rows)
            good &= compare(program, folder, rows, "0.000001", lambda height: height)
            good &= compare(program, folder, rows, "-0.5",
                            lambda height: height - 0.5 if height % INTERVAL == 0 else height)
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
