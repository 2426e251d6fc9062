#!/usr/bin/env python3
"""The converters to Polish MP beside gpsbabel and ogr2ogr on the same files, in one run.

Usage: run_converters.py BUILD_FOLDER [POINTS]
BUILD_FOLDER is a release build; POINTS of the files defaults to 1,000,000 (a GPX file of about 100 MB, a KML file of
about 23 MB). gpsbabel and ogr2ogr (gdal-bin) must be installed. Prints processor seconds (user and system, of the
whole process), the ratio to ours, and our largest memory as a share of the input's size.
"""

import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

GPX_HEAD = """<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="bench" xmlns="http://www.topografix.com/GPX/1/1">
<trk><name>A long way</name><trkseg>
"""
GPX_POINT = ('<trkpt lat="%.7f" lon="%.7f"><ele>%.1f</ele><time>2025-06-01T%02d:%02d:%02dZ</time></trkpt>\n')


def position(i):
    """A winding way through the Alps that never stands still."""
    return 46 + math.sin(i / 90000) + i * 1e-7, 8 + math.cos(i / 70000) * 2 + i * 1e-7


def write_gpx(path, points):
    with open(path, "w", encoding="utf-8") as file:
        file.write(GPX_HEAD)
        for i in range(points):
            file.write(GPX_POINT % (*position(i), 500 + i % 1000 / 10, i // 3600 % 24, i // 60 % 60, i % 60))
        file.write("</trkseg></trk></gpx>\n")


def write_kml(path, points):
    with open(path, "w", encoding="utf-8") as file:
        file.write('<?xml version="1.0" encoding="UTF-8"?>\n<kml xmlns="http://www.opengis.net/kml/2.2"><Document>\n'
                   "<Placemark><LineString><coordinates>\n")
        for i in range(points):
            latitude, longitude = position(i)
            file.write(f"{longitude:.7f},{latitude:.7f},0\n")
        file.write("</coordinates></LineString></Placemark></Document></kml>\n")


def run(command):
    """Processor seconds and largest memory in bytes of one process."""
    with open(os.devnull, "wb") as nothing:
        process = subprocess.Popen([str(word) for word in command], stdout=nothing, stderr=subprocess.PIPE)
    errors = process.stderr.read()
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"{command}: {errors.decode(errors='replace')}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024


def ours(program, root, command, source):
    return run([program, "--home", root / "home", "--quiet", command, source])


def table(title, source, mine, peers):
    seconds, memory = mine
    size = source.stat().st_size
    print(f"{title}, {size / 1e6:.1f} MB")
    print(f"  {'ferrowen':34}{seconds:8.3f} s{memory / 1e6:10.1f} MB  {memory / size:6.2f} times the file")
    for name, (peer_seconds, peer_memory) in peers:
        print(f"  {name:34}{peer_seconds:8.3f} s{peer_memory / 1e6:10.1f} MB  {peer_seconds / seconds:6.1f} times as long")


def main():
    program = pathlib.Path(sys.argv[1]).resolve() / "bin" / "ferrowen"
    points = int(sys.argv[2]) if len(sys.argv) > 2 else 1000000
    root = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen-bench-"))
    try:
        run([program, "--home", root / "home", "--quiet", "settings", "show"])  # makes the program folder
        gpx, kml = root / "way.gpx", root / "way.kml"
        write_gpx(gpx, points)
        write_kml(kml, points)
        converted = ours(program, root, "gpx2mp", gpx)
        babel = ["gpsbabel", "-t", "-i", "gpx", "-f", gpx]
        table(f"GPX of {points} points", gpx, converted,
              [("gpsbabel, writing KML", run([*babel, "-o", "kml", "-F", root / "peer.kml"])),
               ("gpsbabel, writing CSV", run([*babel, "-o", "unicsv", "-F", root / "peer.csv"]))])
        print()
        table(f"KML of {points} points", kml, ours(program, root, "kml2mp", kml),
              [("ogr2ogr, writing GeoJSON", run(["ogr2ogr", "-f", "GeoJSON", root / "peer.json", kml]))])
        print()
        write_gpx(gpx, 2 * points)
        write_kml(kml, 2 * points)
        table("twice the points", gpx, ours(program, root, "gpx2mp", gpx), [])
        table("twice the points", kml, ours(program, root, "kml2mp", kml), [])
    finally:
        shutil.rmtree(root, ignore_errors=True)


if __name__ == "__main__":
    main()
