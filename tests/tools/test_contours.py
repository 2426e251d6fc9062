"""ferrowen-contours as a program: beside gdal_contour, read by osmconvert and mkgmap, on bad places and when killed."""

import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

import terrain

PROGRAM = pathlib.Path(os.environ["FERROWEN_BUILD"]) / "bin" / "ferrowen-contours"
HERE = pathlib.Path(__file__).resolve().parent
MKGMAP = "/usr/share/mkgmap/mkgmap.jar"


class Contours(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.shared = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen-contours-"))
        cls.addClassCleanup(shutil.rmtree, cls.shared, ignore_errors=True)
        cls.cell = cls.shared / "N46E009.hgt"
        terrain.write_cell(cls.cell, terrain.heights(1201, 2))

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen contours ü "))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def contours(self, *words, status=0, before=None):
        run = subprocess.run([PROGRAM, *map(str, words)], cwd=self.folder, capture_output=True, text=True,
                             preexec_fn=before)
        self.assertEqual(run.returncode, status, f"{words}\n{run.stdout}\n{run.stderr}")
        return run

    def test_lines_agree_with_those_of_gdal_contour(self):
        run = subprocess.run([sys.executable, HERE / "check_contours.py", PROGRAM, "quick"], capture_output=True, text=True)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def test_zipped_cells_give_the_same_file(self):
        self.contours("--Outfile=plain.osm", self.cell)
        for name, method in (("N46E009.zip", zipfile.ZIP_DEFLATED), ("N46E009.hgt.zip", zipfile.ZIP_STORED)):
            with zipfile.ZipFile(self.folder / name, "w", method) as archive:
                archive.write(self.cell, "N46E009.hgt")
            self.contours("--Lat=9", "--Lon=46", "--OutputOverwrite=True", "--Outfile=zipped.osm")
            self.assertEqual((self.folder / "zipped.osm").read_bytes(), (self.folder / "plain.osm").read_bytes())
            (self.folder / name).write_bytes((self.folder / name).read_bytes()[:-100])
            run = self.contours("--Lat=9", "--Lon=46", "--OutputOverwrite=True", "--Outfile=zipped.osm", status=2)
            self.assertIn("is no whole zip archive", run.stderr)
            (self.folder / name).unlink()

    def test_mkgmap_and_osmconvert_read_the_lines(self):
        self.contours("--Outfile=N46E009.osm", self.cell)
        lines = (self.folder / "N46E009.osm").read_bytes().count(b"<way")
        subprocess.run(["osmconvert", "N46E009.osm", "-b=9.2,46.2,9.6,46.6", "-o=clp.pbf"], cwd=self.folder, check=True)
        self.assertGreater((self.folder / "clp.pbf").stat().st_size, 10000)
        statistics = subprocess.run(["osmconvert", "N46E009.osm", "--out-statistics"], cwd=self.folder, check=True,
                                    capture_output=True, text=True).stdout
        self.assertIn(f"ways: {lines}\n", statistics)
        sizes = []
        # A style without a rule for contour lines leaves nothing but the frame of the image.
        (self.folder / "empty").mkdir()
        (self.folder / "empty" / "version").write_text("1\n")
        (self.folder / "empty" / "lines").write_text("never=drawn [0x20 resolution 24]\n")
        for number, style in ((13224385, []), (13224386, ["--style-file=empty"])):
            run = subprocess.run(["java", "-Xmx1500m", "-ea", "-jar", MKGMAP, *style, f"--mapname={number}",
                                  "N46E009.osm"], cwd=self.folder, capture_output=True, text=True)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertIn("Number of MapFailedExceptions: 0", run.stdout + run.stderr)
            sizes.append((self.folder / f"{number}.img").stat().st_size)
        self.assertGreater(sizes[0], 100 * lines)
        self.assertLess(sizes[1], 20000)

    def test_no_space_and_no_permission_leave_nothing(self):
        def small_files_only():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 20, 1 << 20))

        run = self.contours("--Outfile=a.osm", self.cell, status=1, before=small_files_only)
        self.assertIn("a.osm: File too large", run.stderr)
        self.assertEqual(list(self.folder.iterdir()), [])
        run = self.contours("--Outfile=/proc/a.osm", self.cell, status=1)
        self.assertRegex(run.stderr, "/proc/a.osm: ")
        if os.path.exists("/dev/full"):
            self.assertIn("is no regular file",
                          self.contours("--Outfile=/dev/full", "--OutputOverwrite=True", self.cell, status=1).stderr)

    def test_killed_or_stopped_half_way(self):
        command = [PROGRAM, "--MinorDistance=5", "--DouglasPeucker=0", "--Outfile=a.osm", self.cell]
        for number, left in ((signal.SIGKILL, ["a.osm.new"]), (signal.SIGTERM, [])):
            process = subprocess.Popen(command, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
            while not (self.folder / "a.osm.new").exists():
                self.assertIsNone(process.poll())
                time.sleep(0.001)
            process.send_signal(number)
            error = process.communicate()[1]
            self.assertEqual(process.returncode, -signal.SIGKILL if number == signal.SIGKILL else 1)
            self.assertEqual(error, "" if number == signal.SIGKILL else "Error: a.osm: stopped\n")
            self.assertEqual(os.listdir(self.folder), left)
            for name in left:
                (self.folder / name).unlink()
        self.contours(*command[1:])
        self.assertTrue(re.search(rb"</osm>\n\Z", (self.folder / "a.osm").read_bytes()))


if __name__ == "__main__":
    unittest.main()
