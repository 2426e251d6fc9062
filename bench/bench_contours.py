#!/usr/bin/env python3
"""ferrowen-contours beside gdal_contour: the same cells, lines every 20 m, no line simplified, measured in one run.

Usage: bench_contours.py BUILD_FOLDER [RUNS]
BUILD_FOLDER is a release build; the middle of RUNS (5) runs counts. Needs gdal_contour (Debian: gdal-bin).
"""

import os
import multiprocessing
import pathlib
import shutil
import statistics
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "tools"))
import terrain  # noqa: E402


def measured(command, folder):
    """Processor seconds, seconds by the clock and megabytes of memory of one run."""
    begin = time.perf_counter()
    process = os.posix_spawnp(command[0], command, os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 1, str(folder / "out.txt"), os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600)])
    _, status, usage = os.wait4(process, 0)
    if status != 0:
        sys.exit(f"failed: {' '.join(command)}")
    return usage.ru_utime + usage.ru_stime, time.perf_counter() - begin, usage.ru_maxrss / 1024


def middle(runs):
    return [statistics.median(values) for values in zip(*runs)]


def remove(folder, pattern):
    for path in folder.glob(pattern):
        path.unlink()


def megabytes(folder, pattern):
    return sum(path.stat().st_size for path in folder.glob(pattern)) / 1e6


def make_cell(path, size, seed):
    terrain.write_cell(path, terrain.heights(size, seed))


def own_command(program, *words):
    return [str(program), "--FakeDistance=-0.5", "--DouglasPeucker=0", "--MinorDistance=20", "--OutputOverwrite=True",
            *words]


def points_in(path):
    with open(path, "rb") as file:
        return sum(line.startswith(b"<node") for line in file)


def one_cell(program, folder, cell, runs):
    """The programs take turns, so that all of them meet the same load of the machine."""
    def gdal(driver, ending):
        return lambda: ["gdal_contour", "-q", "-f", driver, "-a", "ele", "-i", "20", str(cell),
                        str(folder / f"peer.{ending}")]

    sides = {"ferrowen-contours, OSM text": (lambda: own_command(program, f"--Outfile={folder / 'own.osm'}", str(cell)),
                                             "own.osm"),
             "gdal_contour, GeoJSON": (gdal("GeoJSON", "geojson"), "peer.geojson"),
             "gdal_contour, shapefile": (gdal("ESRI Shapefile", "shp"), "peer.*")}
    results = {name: [] for name in sides}
    for _ in range(runs):
        for name, (command, pattern) in sides.items():
            remove(folder, pattern)
            results[name].append((*measured(command(), folder), megabytes(folder, pattern)))
            if "OSM" not in name:
                remove(folder, pattern)
    return {name: middle(values) for name, values in results.items()}, points_in(folder / "own.osm")


def table(name, results, points):
    own = results["ferrowen-contours, OSM text"]
    print(f"{name + ', ' + format(points, ',') + ' points':44}{'processor s':>12}{'clock s':>9}{'memory MB':>11}"
          f"{'file MB':>9}{'ratio':>7}")
    for side, (processor, clock, memory, size) in results.items():
        print(f"{side:44}{processor:12.2f}{clock:9.2f}{memory:11.0f}{size:9.1f}{processor / own[0]:7.1f}")
    print(flush=True)


def growth(program, folder, cell, runs):
    """Every halving of the interval doubles the points."""
    print(f"{'interval':44}{'processor s':>12}{'points':>12}{'s per million more':>20}")
    before = None
    for interval in (80, 40, 20, 10, 5):
        output = folder / "own.osm"
        command = own_command(program, f"--MinorDistance={interval}", f"--Outfile={output}", str(cell))
        seconds = middle([measured(command, folder) for _ in range(runs)])[0]
        points = points_in(output)
        more = "" if before is None else format((seconds - before[0]) / (points - before[1]) * 1e6, ".2f")
        print(f"{str(interval) + ' m':44}{seconds:12.2f}{points:12,}{more:>20}")
        before = seconds, points
    output.unlink()
    print(flush=True)


def several_cells(program, folder, cells, runs):
    rows = {}
    for threads in (1, 0):
        command = own_command(program, f"--Threads={threads}", f"--OutPath={folder}", *map(str, cells))
        rows[threads] = middle([measured(command, folder) for _ in range(runs)])
    print(f"{str(len(cells)) + ' cells, ' + str(os.cpu_count()) + ' processors':44}{'processor s':>12}{'clock s':>9}"
          f"{'memory MB':>11}")
    for threads, name in ((1, "one thread"), (0, "a thread per processor")):
        print(f"{name:44}{rows[threads][0]:12.2f}{rows[threads][1]:9.2f}{rows[threads][2]:11.0f}")


def main():
    program = pathlib.Path(sys.argv[1]).resolve() / "bin" / "ferrowen-contours"
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    folder = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen-bench-"))
    try:
        cells = []
        for name, size, seed in (("N46E009", 1201, 2), ("N46E010", 3601, 1)):
            cells.append(folder / f"{name}.hgt")
            # In a process of its own: the memory of this one would count as that of the programs it starts.
            maker = multiprocessing.Process(target=make_cell, args=(cells[-1], size, seed))
            maker.start()
            maker.join()
            table(f"{size} x {size}", *one_cell(program, folder, cells[-1], runs))
        growth(program, folder, cells[1], runs)
        for name in ("N46E011", "N46E012", "N46E013"):
            cells.append(folder / f"{name}.hgt")
            shutil.copyfile(cells[1], cells[-1])
        several_cells(program, folder, cells[1:], runs)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main()
