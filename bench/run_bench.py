#!/usr/bin/env python3
"""Benchmarks of both programs: each figure beside a peer, measured in one run.

Usage: run_bench.py BUILD_FOLDER [MAP] [PAIRS]
BUILD_FOLDER is a release build; MAP defaults to the sample map, PAIRS of builds to 7.
"""

import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import zipfile


def wall(command, **keywords):
    begin = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **keywords)
    return time.perf_counter() - begin


def whole_build(program, source, pairs):
    """`ferrowen build` against a shell script of the same two tool commands, in alternating pairs."""
    root = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen-bench-"))
    home = root / "home"
    build = [str(program), "--home", str(home), "--json", "--yes", "build", str(source), "--split", "--fid", "1234",
             "--gmapsupp"]
    subprocess.run([str(program), "--home", str(home), "settings", "set",
                    "splitter-options=--output=o5m\\n--max-nodes=10000"], check=True, stdout=subprocess.PIPE)
    printed = subprocess.run(build[:3] + build[5:] + ["--print"], check=True, capture_output=True, text=True).stdout
    script = root / "peer.sh"
    script.write_text("#!/bin/sh\nset -e\n" + "".join(
        line + f" 2>{root}/peer.txt >{root}/peer.out\n" for line in printed.splitlines()))
    wall(build)  # the first run fills the file cache for both
    ratios, own, ours, peers = [], [], [], []
    for pair in range(pairs):
        def run_ours():
            begin = time.perf_counter()
            report = subprocess.run(build, check=True, capture_output=True, text=True)
            own.append(json.loads(report.stdout)["own_processor_seconds"])
            return time.perf_counter() - begin

        def run_peer():
            return wall(["sh", str(script)], env={**os.environ, "LC_ALL": "C.UTF-8"})

        # The order changes from pair to pair, so that neither side always follows the other.
        first, second = (run_ours, run_peer) if pair % 2 == 0 else (run_peer, run_ours)
        times = (first(), second())
        mine, peer = times if pair % 2 == 0 else times[::-1]
        ours.append(mine)
        peers.append(peer)
        ratios.append(mine / peer)
    shutil.rmtree(root, ignore_errors=True)
    print(f"{'whole build, ' + str(pairs) + ' pairs':34}{'ferrowen':>12}{'shell script':>14}{'ratio':>8}")
    print(f"{'median seconds':34}{statistics.median(ours):12.2f}{statistics.median(peers):14.2f}"
          f"{statistics.median(ratios):8.3f}")
    print(f"{'ratios':34}{'  '.join(f'{ratio:.3f}' for ratio in sorted(ratios))}")
    print(f"{'own processor seconds (median)':34}{statistics.median(own):12.3f}")


def start_time(program):
    ours = statistics.median(wall([str(program), "--version"]) for _ in range(51))
    peer = statistics.median(wall(["true"]) for _ in range(51))
    print(f"{'start of a process':34}{'--version':>12}{'true':>14}{'ratio':>8}")
    print(f"{'median milliseconds':34}{ours * 1000:12.2f}{peer * 1000:14.2f}{ours / peer:8.2f}")


def settings_load(build):
    output = subprocess.run([str(build / "bin" / "bench-settings")], check=True, capture_output=True, text=True)
    loading, reading = map(float, output.stdout.split())
    print(f"{'settings file of 500 lines':34}{'load':>12}{'bytes alone':>14}{'ratio':>8}")
    print(f"{'median milliseconds':34}{loading:12.4f}{reading:14.4f}{loading / reading:8.1f}")


def registered_maps(build):
    """Collecting 2,000 registered families, against reading the bytes of the same file."""
    output = subprocess.run([str(build / "bin" / "bench-registry")], check=True, capture_output=True, text=True)
    print(f"{'2,000 registered families':34}{'collect':>12}{'bytes alone':>14}{'ratio':>8}")
    for line in output.stdout.splitlines():
        name, collecting, reading, found, size = line.split()
        print(f"{name + ', ms (' + found + ' found, ' + size + ' bytes)':34}{float(collecting):12.2f}"
              f"{float(reading):14.3f}{float(collecting) / float(reading):8.1f}")
def doctor(build):
    """Every check of the Style Doctor on mkgmap's default style and the shipped TYP file, then on copies of its rules."""
    jar = pathlib.Path("/usr/share/mkgmap/mkgmap.jar")
    typ = build / "share" / "ferrowen" / "mapnik65001.typ"
    if not jar.exists() or not typ.exists():
        print("no mkgmap.jar or no TYP file: the Style Doctor was not timed")
        return
    with tempfile.TemporaryDirectory(prefix="ferrowen-bench-") as folder:
        with zipfile.ZipFile(jar) as archive:
            archive.extractall(folder, [name for name in archive.namelist() if name.startswith("styles/default/")])
        program = build / "bin" / "bench-doctor"
        output = subprocess.run([str(program), folder + "/styles/default", str(typ)], check=True,
                                capture_output=True, text=True).stdout
    print(f"{'Style Doctor, all checks':34}{'bytes':>12}{'milliseconds':>14}{'rows':>8}")
    for line in output.splitlines():
        copies, size, time_taken, rows = line.split()
        name = "default style from the disk" if copies == "0" else f"its rules {copies} times"
        print(f"{name:34}{size if copies != '0' else '':>12}{float(time_taken):14.1f}{rows:>8}")
def typ_load(build):
    output = subprocess.run([str(build / "bin" / "bench-typ")], check=True, capture_output=True, text=True)
    loading, reading, size, definitions = output.stdout.split()
    print(f"{f'TYP file of {int(size) // 1024} KB, {definitions} types':34}{'load':>12}{'bytes alone':>14}{'ratio':>8}")
    print(f"{'median milliseconds':34}{float(loading):12.4f}{float(reading):14.4f}{float(loading) / float(reading):8.1f}")


def window(build):
    """The window program on Qt's offscreen platform; skipped where it was not built."""
    program = build / "bin" / "bench-window"
    if not program.exists():
        print("the window program was not built")
        return
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
    ours = statistics.median(wall([str(program), "first-paint"], env=environment) for _ in range(11))
    peer = statistics.median(wall([str(program), "bare"], env=environment) for _ in range(11))
    print(f"{'process to first paint':34}{'main window':>12}{'empty window':>14}{'ratio':>8}")
    print(f"{'median milliseconds':34}{ours * 1000:12.1f}{peer * 1000:14.1f}{ours / peer:8.2f}")

    def report(what):
        output = subprocess.run([str(program), what], check=True, capture_output=True, text=True, env=environment)
        return json.loads(output.stdout)

    tiles, output = report("tiles"), report("output")
    print(f"{str(tiles['tiles']) + ' tiles: load, draw, longest pause':34}{tiles['load_ms']:9.1f} ms"
          f"{tiles['draw_ms']:11.1f} ms{tiles['pause_ms']:9.1f} ms")
    print(f"{'10 MB of output: longest pause':34}{output['pause_ms']:9.1f} ms{output['seconds']:12.2f} s")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    program = build / "bin" / "ferrowen"
    source = pathlib.Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else (
        build / "share" / "ferrowen" / "faroe-islands.osm.pbf")
    pairs = int(sys.argv[3]) if len(sys.argv) > 3 else 7
    start_time(program)
    print()
    settings_load(build)
    print()
    registered_maps(build)
    print()
    doctor(build)
    print()
    typ_load(build)
    print()
    window(build)
    print()
    whole_build(program, source, pairs)


if __name__ == "__main__":
    main()
