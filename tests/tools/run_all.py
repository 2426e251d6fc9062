"""Runs the programs with the real tools, contour lines beside gdal_contour. Usage: run_all.py BUILD_FOLDER [TEST...]

TEST is a module, a class or a test, as unittest names them. Every test is a process of its own, as many at once as
there are processors; what it prints is shown when it ends. The exit status is 1 when one failed or none was found."""

import concurrent.futures
import os
import pathlib
import subprocess
import sys
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent


def names_of(suite):
    for part in suite:
        if isinstance(part, unittest.TestSuite):
            yield from names_of(part)
        else:
            yield part.id()


def run(name):
    begin = time.monotonic()
    # A name that cannot be loaded is a test too: its process says why.
    done = subprocess.run([sys.executable, "-B", "-m", "unittest", name.removeprefix("unittest.loader._FailedTest.")],
                          cwd=HERE, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    print(f"{name:90} {'FAILED' if done.returncode else 'passed'} {time.monotonic() - begin:7.1f} s", flush=True)
    if done.returncode:
        print(done.stdout, flush=True)
    return done.returncode == 0


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    os.environ["FERROWEN_BUILD"] = str(pathlib.Path(sys.argv[1]).resolve())
    sys.path.insert(0, str(HERE))
    sys.dont_write_bytecode = True
    wanted = sys.argv[2:] or ["test_real_tools", "test_contours"]
    names = list(names_of(unittest.defaultTestLoader.loadTestsFromNames(wanted)))
    begin = time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        passed = sum(pool.map(run, names))
    print(f"{passed} of {len(names)} tests passed, {time.monotonic() - begin:.0f} s")
    return 0 if names and passed == len(names) else 1


sys.exit(main())
