"""ferrowen from the command line with the real splitter and mkgmap, on the sample map and on bad input."""

import json
import math
import os
import pathlib
import random
import shutil
import signal
import struct
import subprocess
import tempfile
import time
import unittest
import zipfile

import typ_text

BUILD = pathlib.Path(os.environ["FERROWEN_BUILD"])
PROGRAM = BUILD / "bin" / "ferrowen"
SAMPLE = BUILD / "share" / "ferrowen" / "faroe-islands.osm.pbf"
SMALL_TILES = "splitter-options=--output=o5m\\n--max-nodes=10000"
SOURCES = pathlib.Path(__file__).resolve().parents[2]
HOSTILE = "a \"b\" 'c' $(touch x) `touch y` %PATH% & ; ü"


def processes_naming(text):
    """Command lines of running processes that hold the text."""
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        if not entry.name.isdigit() or int(entry.name) == os.getpid():
            continue
        try:
            words = (entry / "cmdline").read_bytes()
        except OSError:
            continue
        if text.encode() in words:
            found.append(words.replace(b"\0", b" ").decode(errors="replace"))
    return found


def write_hgt(path, height):
    """A height cell of 1201 x 1201 samples; `height(row, column)` in metres."""
    rows = (struct.pack(">1201h", *(height(row, column) for column in range(1201))) for row in range(1201))
    path.write_bytes(b"".join(rows))


class RealTools(unittest.TestCase):
    home_name = "program folder"

    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen-tools-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        self.home = self.root / self.home_name
        self.output = self.home / "output"

    def ferrowen(self, *words, status=0, environment=None, before=None, timeout=300):
        command = [str(PROGRAM), "--home", str(self.home), *map(str, words)]
        run = subprocess.run(command, capture_output=True, text=True, timeout=timeout, preexec_fn=before,
                             env={**os.environ, **(environment or {})}, cwd=self.root, stdin=subprocess.DEVNULL)
        self.assertEqual(run.returncode, status, f"{words}\n{run.stdout}\n{run.stderr}")
        return run

    def build_sample(self, *words, **keywords):
        # Images of later builds lie beside the first: nothing is asked.
        self.ferrowen("settings", "set", SMALL_TILES, "confirm-image-overwrite=0")
        return self.ferrowen("build", SAMPLE, "--split", "--fid", "1234", "--gmapsupp", *words, **keywords)

    def images(self):
        return sorted(path.name for path in self.output.glob("[0-9]*.img"))

    def sizes(self):
        return {path.name: path.stat().st_size for path in self.output.glob("*.img")}


class Building(RealTools):
    def test_sample_end_to_end(self):
        run = self.build_sample("--name", "Faroe Islands", "--country", "United Kingdom", "--json")
        report = json.loads(run.stdout)
        self.assertEqual(report["result"], "done")
        self.assertGreaterEqual(len(self.images()), 3)
        made = {pathlib.Path(file["path"]).name for file in report["files"]}
        self.assertTrue({"FaroeIslands.img", "osmmap.tdb", "osmmap.mdx"} <= made)
        image = self.home / "gmapsupp" / "FaroeIslands.img"
        self.assertEqual(report["image"], str(image))
        self.assertGreater(image.stat().st_size, 100000)
        self.assertFalse((self.output / "gmapsupp.img").exists())
        self.assertIn('--country-name="United Kingdom"', report["command"])
        # The TDB names the family: 'P' first, the family ID at offset 5.
        tdb = (self.output / "osmmap.tdb").read_bytes()
        self.assertEqual((tdb[:1], tdb[5:7]), (b"P", struct.pack("<H", 1234)))
        self.assertEqual(list(self.output.glob("*.before")), [])

    def test_images_of_later_builds_find_a_free_name_or_ask(self):
        for name in ("DemoMap.img", "DemoMapA.img"):
            self.build_sample()
            self.assertTrue((self.home / "gmapsupp" / name).exists())
        first = (self.home / "gmapsupp" / "DemoMap.img").read_bytes()
        self.ferrowen("settings", "set", "confirm-image-overwrite=1", "keep-image=1")
        run = self.ferrowen("build", "--fid", "4321", status=3)
        self.assertIn("File exists. Overwrite? [y/N] No", run.stderr)
        self.assertEqual((self.home / "gmapsupp" / "DemoMap.img").read_bytes(), first)
        self.ferrowen("--yes", "build", "--fid", "4321")
        copy = (self.home / "gmapsupp" / "DemoMap.img").read_bytes()
        self.assertEqual(copy, (self.output / "gmapsupp.img").read_bytes())
        self.assertNotEqual(copy, first)

    def install_under_wine(self, name):
        """The default target is a 32-bit program; its 64-bit sister, from the same script, runs under any Wine."""
        subprocess.run(["makensis", "-XTarget amd64-unicode", "osmmap.nsi"], cwd=self.output, check=True,
                       capture_output=True, env={**os.environ, "LC_ALL": "C.UTF-8"})
        prefix = self.root / "prefix"
        wine = {"cwd": self.output, "check": True, "capture_output": True, "timeout": 300,
                "env": {**os.environ, "WINEPREFIX": str(prefix), "WINEDEBUG": "-all", "LC_ALL": "C.UTF-8", "DISPLAY": ""}}
        subprocess.run(["wine", "./" + name + ".exe", "/S"], **wine)
        family = "HKLM\\Software\\Garmin\\MapSource\\Families\\" + name
        found = subprocess.run(["wine", "reg", "query", family, "/v", "ID"], **wine).stdout
        self.assertIn(b"D204", found)
        installed = prefix / "drive_c" / "Garmin" / "Maps" / name
        for file in ("13224385.img", "osmmap.tdb"):
            self.assertEqual((installed / file).read_bytes(), (self.output / file).read_bytes())

    def test_installer(self):
        name = "Möðru & 100% (x)"
        report = json.loads(self.build_sample("--name", name, "--installer", "--json").stdout)
        self.assertEqual([stage["stage"] for stage in report["stages"]][-2:], ["device image", "installer"])
        installer = self.output / (name + ".exe")
        self.assertIn(str(installer), [file["path"] for file in report["files"]])
        made = installer.read_bytes()
        self.assertEqual(made[:2], b"MZ")
        self.install_under_wine(name)
        installer.write_bytes(made)
        # A builder that refuses its script, whatever it says at its end: the installer of before stays.
        (self.output / "osmmap.nsi").unlink()
        builder = self.root / "makensis"
        builder.write_text("#!/bin/sh\necho 'no files found.'\nexit 0\n")
        builder.chmod(0o755)
        self.ferrowen("settings", "set", f"makensis={builder}")
        run = self.ferrowen("build", "--name", name, "--fid", "1234", "--installer", status=1)
        self.assertIn("No files created. Check for errors.\nno files found.", run.stderr)
        self.assertEqual(installer.read_bytes(), made)
        self.assertEqual(list(self.output.glob("*.before")), [])
        # What cannot work is told before the time of a build is spent.
        for setting, words, text in ((f"makensis={self.root / 'none'}", [], "Please locate makensis.exe"),
                                     ("makensis=", ["--name", "a/b"], "'a/b' cannot be the name of an installer")):
            self.ferrowen("settings", "set", setting)
            run = self.ferrowen("build", "--fid", "1234", "--installer", *words, status=3)
            self.assertIn(text, run.stderr)

    def test_selection_and_new_map_id(self):
        self.build_sample()
        tiles = json.loads(self.ferrowen("tiles", "--json").stdout)["tiles"]
        chosen = [tiles[0]["number"], tiles[-1]["number"]]
        shutil.rmtree(self.output)
        self.ferrowen("build", "--tiles", ",".join(chosen), "--fid", "1234")
        self.assertEqual(self.images(), [number + ".img" for number in chosen])
        shutil.rmtree(self.output)
        self.ferrowen("build", "--tiles", ",".join(chosen), "--fid", "1234", "--mapid", "55550000")
        self.assertEqual(self.images(), ["55550000.img", f"{55550000 + len(tiles) - 1}.img"])

    def test_elevation_model_holds_real_heights(self):
        cells = [f"N6{row}W00{column}.hgt" for row in (1, 2) for column in (6, 7, 8)]
        folder = self.root / "heights"
        folder.mkdir()
        sizes = []
        for height in (lambda row, column: 0, lambda row, column: (row * 37 + column * column) % 800):
            write_hgt(folder / cells[0], height)
            for cell in cells[1:]:
                shutil.copy(folder / cells[0], folder / cell)
            self.build_sample("--dem", "--hgt", folder)
            sizes.append(self.sizes()["13224385.img"])
        # A model of zeros is written too when heights are missing: only its size proves real heights.
        self.assertGreater(sizes[1], 3 * sizes[0])
        self.ferrowen("build", "--dem", "--hgt", self.root / "gone", "--fid", "1234", status=3)

    def test_contours_become_images_of_their_own(self):
        self.build_sample()
        heights = self.home / "hgt" / "Europe" / "3"
        nodes = "".join(f"<node id='{i}' version='1' lat='{62.05 + i / 1000}' lon='-7.1'/>" for i in range(1, 200))
        way = "".join(f"<nd ref='{i}'/>" for i in range(1, 200))
        (heights / "N62W008.osm").write_text(
            f"<?xml version='1.0'?><osm version='0.6'>{nodes}<way id='1' version='1'>{way}"
            "<tag k='contour' v='elevation'/><tag k='ele' v='100'/><tag k='contour_ext' v='elevation_major'/>"
            "</way></osm>")
        before = self.images()
        self.ferrowen("build", "--contours", "yes", "--fid", "1234")
        self.assertEqual(len(self.images()), len(before) + 1)
        self.assertEqual(self.images()[:len(before)], before)

    def test_polish_map_goes_straight_to_mkgmap(self):
        mp = self.root / "track.mp"
        mp.write_text("[IMG ID]\nID=63240001\nName=Track\nLevels=2\nLevel0=24\nLevel1=18\nZoom0=0\nZoom1=1\n"
                      "[END-IMG ID]\n[POLYLINE]\nType=0x1\nLabel=Track\n"
                      "Data0=(62.01,-6.77),(62.02,-6.78),(62.05,-6.80)\n[END]\n")
        self.ferrowen("build", mp, "--fid", "1234")
        self.assertEqual(self.images(), ["13224385.img"])

    def test_converted_tracks_and_placemarks_become_maps(self):
        track = self.root / "Тропа tour.gpx"
        points = "".join(f"<trkpt lat='{62 + i * 1e-4:.5f}' lon='{-6.8 + i * 1e-4:.4f}'/>" for i in range(2500))
        track.write_text("<gpx><trk><name>Тропа</name><trkseg>" + points + "</trkseg></trk></gpx>")
        report = json.loads(self.ferrowen("--yes", "gpx2mp", track, "--points", "--name", "--json").stdout)
        self.assertEqual((report["lines"], report["pois"], report["coordinates"]), (1, 3, 2500))
        converted = pathlib.Path(report["files"][0]["output"])
        self.assertEqual(converted.read_bytes().count(b"[POLYLINE]"), 3)
        self.ferrowen("settings", "set", "unicode=0", "confirm-image-overwrite=0")
        self.ferrowen("build", converted, "--fid", "1234", "--option", "--code-page=1251")
        image = (self.output / "13224385.img").read_bytes()
        # Labels of this code page lie in the image byte by byte, in capitals.
        for label in ("ТРОПА", "START", "FINISH", "HALF WAY"):
            self.assertTrue(label.encode("cp1251") in image, label)
        places = self.root / "places.kml"
        places.write_text("<kml><Placemark><coordinates>-6.8,62.1,0</coordinates></Placemark><Placemark>"
                          "<coordinates>-6.8,62 -6.9,62.1\n-6.7,62.2</coordinates></Placemark></kml>")
        self.ferrowen("kml2mp", places, "--points", "--label", "Mine")
        self.ferrowen("build", self.home / "mps" / "places.mp", "--fid", "1234", "--option", "--code-page=1251")
        self.assertEqual(self.images(), ["13224385.img"])
        image = (self.output / "13224385.img").read_bytes()
        self.assertTrue(b"HALF WAY" not in image and b"MINE" in image)

    def test_files_that_cannot_be_converted(self):
        def small_files():
            import resource
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100000, 100000))

        self.ferrowen("settings", "show")
        track = self.root / "long.gpx"
        track.write_text("<trkseg>" + "<trkpt lat='62.12345' lon='-6.81234'/>" * 50000)
        run = self.ferrowen("gpx2mp", track, status=1, before=small_files)
        self.assertIn("long.mp: File too large", run.stderr)
        self.assertEqual(list((self.home / "mps").iterdir()), [])
        blanks = self.root / "blanks.kml"
        with open(blanks, "wb") as file:
            file.truncate(2 << 30)
        run = self.ferrowen("kml2mp", blanks, status=2)
        self.assertIn("too large (2147483648 bytes)", run.stderr)
        (self.root / "folder.gpx").mkdir()
        for name, text in (("folder.gpx", "is a folder"), ("none.gpx", "no such file"),
                           ("blanks.kml", "Not a gpx file.")):
            self.assertIn(text, self.ferrowen("gpx2mp", self.root / name, track, status=2).stderr)
        self.assertIn("Invalid Type:zzType must be hexadecimal",
                      self.ferrowen("gpx2mp", track, "--type", "zz", status=3).stderr)

    def test_printed_commands_run_nothing(self):
        self.ferrowen("settings", "show")
        printed = self.ferrowen("build", SAMPLE, "--split", "--print").stdout.splitlines()
        self.assertEqual(len(printed), 2)
        self.assertIn("splitter.jar", printed[0])
        self.assertIn("mkgmap.jar", printed[1])
        self.assertEqual((list((self.home / "temp").iterdir()), self.images()), ([], []))


class Elevation(RealTools):
    """Heights to contours to a map, with the contour tool beside the program, osmconvert, 7-Zip and mkgmap."""

    def setUp(self):
        super().setUp()
        self.heights = self.root / "heights ü & co"
        self.clips = self.root / "clips"
        for folder in (self.heights, self.clips):
            folder.mkdir()
        self.ferrowen("settings", "set", SMALL_TILES, f"hgt-folder-1={self.heights}", f"clip-folder-1={self.clips}",
                      "confirm-image-overwrite=0", "use-typ=0")

    def cells(self):
        return json.loads(self.ferrowen("hgt", "--json").stdout)

    def make_cells(self):
        """Hills with a lake of voids, rising from the sea in the west."""
        def height(row, column):
            if 500 < row < 520 and 500 < column < 540:
                return -32768
            hills = 300 * math.sin(row / 90) * math.cos(column / 70) + column / 3
            return max(0, int(hills) - 40)

        self.ferrowen("split", SAMPLE)
        needed = self.cells()["missing"]
        self.assertGreaterEqual(len(needed), 4)
        write_hgt(self.heights / needed[0], height)
        for cell in needed[1:]:
            shutil.copy(self.heights / needed[0], self.heights / cell)
        return needed

    def subfiles(self, image):
        """Sizes of the parts of a map image, by their kind; the directory begins at 0x600, 512 bytes an entry."""
        data = image.read_bytes()
        sizes = {}
        for at in range(0x600, len(data), 512):
            if data[at] != 1:
                break
            kind, size, part = data[at + 9:at + 12].decode("latin1"), data[at + 12:at + 16], data[at + 17]
            if part == 0 and kind.strip():
                sizes[kind] = struct.unpack("<I", size)[0]
        return sizes

    def test_from_heights_to_a_map(self):
        needed = self.make_cells()
        # One cell comes as a download under a name of its own.
        archive = self.heights / "K29.zip"
        with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as zipped:
            zipped.write(self.heights / needed[0], "K29/" + needed[0])
        (self.heights / needed[0]).unlink()
        self.assertEqual(self.cells()["missing"], [needed[0]])
        self.assertEqual(json.loads(self.ferrowen("unzip", self.heights, "--json").stdout)["files"], [needed[0]])
        self.assertEqual(self.cells()["found"], len(needed))
        run = self.ferrowen("build", "--contours", "clip", "--fid", "1", status=0)
        self.assertIn("Check the 5 clip folders you have specified", run.stderr)

        made = json.loads(self.ferrowen("contours", "make", "--interval", "50", "--json").stdout)
        self.assertEqual(made["files"], [str(self.heights / (cell[:7] + ".osm")) for cell in needed])
        self.assertIn("Interval: 50", made["messages"][-1]["text"])
        contours = (self.heights / (needed[0][:7] + ".osm")).read_text()
        self.assertIn("contour_ext", contours)
        self.assertIn("All required contours have been created.", self.ferrowen("contours", "make").stderr)
        self.ferrowen("contours", "clip", status=3)
        self.ferrowen("--yes", "contours", "clip")
        clipped = sorted(self.clips.iterdir())
        self.assertEqual([path.name for path in clipped], sorted(cell[:7] + "clp.pbf" for cell in needed))
        for path in clipped:
            self.assertEqual(path.stat().st_mode & 0o444, 0o444)
            whole = self.heights / path.name.replace("clp.pbf", ".osm")
            self.assertLess(path.stat().st_size, whole.stat().st_size / 5)

        shutil.rmtree(self.output)
        run = self.ferrowen("build", "--dem", "--contours", "clip", "--fid", "1", "--gmapsupp")
        self.assertIn(f"Added {len(needed)} contours", run.stderr)
        images = [self.output / name for name in self.images()]
        tiles, lines = images[:-len(needed)], images[-len(needed):]
        self.assertGreaterEqual(len(tiles), 3)
        for image in tiles:
            self.assertGreater(self.subfiles(image)["DEM"], 5000, image)
        for image in lines:
            self.assertNotIn("DEM", self.subfiles(image))
        self.assertGreater(max(self.subfiles(image)["RGN"] for image in lines), 5000)

    def test_contours_of_bad_cells_and_names(self):
        tool = self.root / "tool"
        tool.write_text("#!/bin/sh\nexit 1\n")
        tool.chmod(0o755)
        cell = self.heights / "N62W007.hgt"
        cell.write_bytes(bytes(2884802))
        old = self.heights / "N62W007.osm"
        old.write_text("old")
        cases = [(b"", "is empty."), (b"short", "has 5 bytes"), (bytes(1201), "has 1201 bytes")]
        for content, text in cases:
            cell.write_bytes(content)
            self.assertIn(text, self.ferrowen("contours", "make", "N62W007", "--overwrite", status=3).stderr)
        cell.unlink()
        (self.heights / "N62W007.zip").write_bytes(b"PK\3\4 cut off")
        run = self.ferrowen("contours", "make", "N62W007", "--overwrite", status=3)
        self.assertIn("is no complete zip archive.", run.stderr)
        (self.heights / "N62W007.zip").unlink()
        cell.write_bytes(b"\x80\0" * 1201 * 1201)
        self.ferrowen("contours", "make", "n62w007", "--overwrite")  # voids alone: a file without lines
        self.assertTrue(old.read_text().rstrip().endswith("</osm>"))
        old.write_text("old")
        self.ferrowen("settings", "set", f"contour-tool={tool}")
        run = self.ferrowen("contours", "make", "N62W007", "--overwrite", status=1)
        self.assertIn(f"Contours not created:\n{old}", run.stderr)
        self.assertEqual(old.read_text(), "old")

    def test_full_disk_and_interrupt_keep_the_older_contours(self):
        cell = self.heights / "N62W007.hgt"
        write_hgt(cell, lambda row, column: row + column)
        old = self.heights / "N62W007.osm"
        old.write_text("old")

        def small_files():
            import resource
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))

        self.ferrowen("contours", "make", "N62W007", "--overwrite", status=1, before=small_files)
        self.assertEqual(old.read_text(), "old")
        slow = self.root / "slow"
        slow.write_text(f"#!/bin/sh\nprintf '<osm>' >N62W007.osm\ntouch '{self.root}/started'\nsleep 60\n")
        slow.chmod(0o755)
        self.ferrowen("settings", "set", f"contour-tool={slow}")
        run = subprocess.Popen([str(PROGRAM), "--home", str(self.home), "contours", "make", "N62W007", "--overwrite"],
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        while not (self.root / "started").exists() and run.poll() is None:
            time.sleep(0.05)
        run.send_signal(signal.SIGTERM)
        self.assertEqual(run.wait(timeout=30), 1)
        self.assertEqual(old.read_text(), "old")
        self.assertEqual(sorted(path.name for path in self.heights.iterdir()), ["N62W007.hgt", "N62W007.osm"])

    def test_hostile_archives_are_refused(self):
        link = zipfile.ZipInfo("N62W007.hgt")
        link.create_system, link.external_attr = 3, 0o120777 << 16
        cases = {"up": "../evil.txt", "absolute": str(self.root / "evil.txt"), "link": link, "size": "N62W007.hgt"}
        for name, entry in cases.items():
            archive = self.heights / (name + ".zip")
            with zipfile.ZipFile(archive, "w") as zipped:
                zipped.writestr(entry, "/etc/passwd")
            run = self.ferrowen("unzip", self.heights, status=3)
            self.assertIn("Not unzipped:\n" + archive.name, run.stderr)
            archive.unlink()
        self.assertEqual([path for path in self.root.rglob("*") if path.name.startswith(("evil", "N62"))], [])

    def test_damaged_archives_replace_nothing(self):
        old = self.heights / "N62W007.hgt"
        old.write_bytes(b"\1" * 2884802)
        archives = {"bad.zip": "N62W007.hgt", "good.zip": "N62W006.hgt", "slash.zip": "sub\\N62W006.hgt"}
        for name, entry in archives.items():
            with zipfile.ZipFile(self.heights / name, "w") as zipped:
                zipped.writestr(entry, b"\2" * 2884802)
        data = bytearray((self.heights / "bad.zip").read_bytes())
        data[1000] ^= 1
        (self.heights / "bad.zip").write_bytes(data)
        report = json.loads(self.ferrowen("unzip", self.heights, "--json", status=1).stdout)
        self.assertEqual(report["files"], ["N62W006.hgt"])
        self.assertEqual((report["failed"], report["refused"]), (["N62W007.hgt"], ["slash.zip"]))
        self.assertEqual(old.read_bytes()[:1], b"\1")
        self.assertEqual(sorted(path.name for path in self.heights.iterdir()),
                         ["N62W006.hgt", "N62W007.hgt", "bad.zip", "good.zip", "slash.zip"])

    def test_merge(self):
        parts = []
        for number in (1, 2):
            osm = self.root / f"part {number}.osm"
            osm.write_text(f"<osm version='0.6'><node id='{number}' version='1' lat='62' lon='-7'/></osm>")
            parts.append(self.root / f"part {number}.pbf")
            subprocess.run(["osmconvert", osm, f"-o={parts[-1]}"], check=True)
        broken = self.root / "broken.pbf"
        broken.write_bytes(SAMPLE.read_bytes()[:3000])
        target = self.root / "all & more.pbf"
        run = self.ferrowen("merge", "-o", target, parts[0], broken, parts[1], status=1)
        self.assertIn(f"{broken} not included", run.stderr)
        self.assertEqual(target.stat().st_mode & 0o444, 0o444)
        merged = subprocess.run(["osmconvert", target, "--out-osm"], capture_output=True, text=True, check=True).stdout
        self.assertEqual(merged.count("<node"), 2)
        good = target.read_bytes()
        listed = self.root / "parts.lst"
        listed.write_text(f"{broken}\r\n{broken}\r\n")
        run = self.ferrowen("merge", "-o", target, "--list", listed, status=3)
        self.assertIn(f"Replace {target}? [y/N] No", run.stderr)
        run = self.ferrowen("--yes", "merge", "-o", target, "--list", listed, status=1)
        self.assertIn(f"Not successful {target}", run.stderr)
        self.assertEqual(target.read_bytes(), good)
        self.assertFalse((self.home / "temp" / "merge").exists())


class UnusedMaps(RealTools):
    def test_only_what_is_named_and_unused_is_deleted(self):
        self.ferrowen("settings", "set", f"map-folder={self.root / 'maps'}")
        maps = self.root / "maps"
        for name in ("Old Map", "Other"):
            (maps / name / "typ").mkdir(parents=True)
            for file in ("osmmap.tdb", "1.img", "typ/x.typ"):
                (maps / name / file).write_text("P")
        (maps / "link").symlink_to(maps / "Other")
        (maps / "pictures").mkdir()
        environment = {"HOME": str(self.root)}
        listed = json.loads(self.ferrowen("maps", "unused", "--json", environment=environment).stdout)
        self.assertEqual([one["folder"] for one in listed["unused"]], [str(maps / "Old Map"), str(maps / "Other")])
        run = self.ferrowen("maps", "unused", "--delete", "Old Map", status=3, environment=environment)
        self.assertIn("Are you sure you want to delete these maps?", run.stderr)
        self.assertIn("[y/N] No", run.stderr)
        self.assertTrue((maps / "Old Map" / "1.img").exists())
        for folder in (self.root, "/", str(maps), "pictures", "link"):
            self.ferrowen("--yes", "maps", "unused", "--delete", folder, status=1, environment=environment)
        self.ferrowen("--yes", "maps", "unused", "--delete", "Old Map", environment=environment)
        self.assertEqual(sorted(path.name for path in maps.iterdir()), ["Other", "link", "pictures"])
        self.assertEqual(len(list(maps.rglob("*.*"))), 3)
        run = self.ferrowen("maps", "unused", "--recover", "Other", status=1, environment=environment)
        self.assertIn("might share an FID with another map!", run.stderr)
        self.assertIn("there is no .reg file", run.stderr)


class Registering(RealTools):
    name = "Gönguleiðir Łódź 1"
    neighbour = ("REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Garmin\\MapSource\\Families\\Neighbour]\n"
                 "\"ID\"=hex:e8,03\n")

    def maps(self, **keywords):
        return {one["product"]: one for one in
                json.loads(self.ferrowen("maps", "list", "--json", **keywords).stdout)["maps"]}

    def wine(self, *words):
        return subprocess.run(["wine", *words], capture_output=True, timeout=120, cwd=self.root,
                              env={**os.environ, "WINEPREFIX": str(self.root / "prefix"), "WINEDEBUG": "-all",
                                   "LC_ALL": "C.UTF-8", "DISPLAY": ""})

    def register_and_remove(self, **keywords):
        run = self.build_sample("--name", self.name, "--register", **keywords)
        folder = self.output / self.name.replace(" ", "_")
        self.assertIn(f"'{self.name}' installed successfully", run.stderr)
        self.assertIn(f"Registered: {folder}", run.stdout)
        windows = "Z:" + str(folder).replace("/", "\\")
        found = self.maps(**keywords)[self.name]
        self.assertEqual((found["fid"], found["location"], found["tdb"], found["folder"]),
                         ("1234", windows, windows + "\\osmmap.tdb", str(folder)))
        registered = {path.name: path.read_bytes() for path in folder.iterdir() if path.suffix in (".img", ".tdb")}
        # A second map under the same number is refused, and touches nothing.
        run = self.ferrowen("build", "--name", "Second", "--fid", "1234", "--register", status=3, **keywords)
        self.assertIn("FID 1234 exists in Garmin Register. Can't upload map.", run.stderr)
        self.assertEqual(registered, {name: (folder / name).read_bytes() for name in registered})
        return folder

    def remove(self, folder, **keywords):
        self.ferrowen("maps", "remove", self.name, status=3, **keywords)
        self.assertTrue((folder / "osmmap.tdb").exists())
        run = self.ferrowen("--yes", "maps", "remove", self.name, **keywords)
        self.assertIn("All files were removed.", run.stderr)
        self.assertFalse(folder.exists())
        self.assertTrue((self.output / "osmmap.tdb").exists())
        self.assertNotIn(self.name, self.maps(**keywords))

    def test_in_a_wine_prefix(self):
        self.wine("wineboot", "-i")
        self.ferrowen("settings", "set", f"wine-prefix={self.root / 'prefix'}")
        (self.root / "neighbour.reg").write_text(self.neighbour)
        self.wine("regedit", "/s", "neighbour.reg")
        folder = self.register_and_remove()
        family = "HKLM\\Software\\Wow6432Node\\Garmin\\MapSource\\Families"
        self.assertIn(b"D204", self.wine("reg", "query", family, "/s").stdout)
        used = self.wine("reg", "query", "HKCU\\Software\\Garmin\\MapSource\\Settings", "/v", "MRUProduct").stdout
        self.assertIn(b"0xd2040001", used)
        self.assertEqual(set(self.maps()), {self.name, "Neighbour"})
        self.remove(folder)
        left = self.wine("reg", "query", family, "/s").stdout
        self.assertIn(b"E803", left)
        self.assertNotIn(b"D204", left)

    def test_in_the_own_store(self):
        environment = {"HOME": str(self.root)}
        self.remove(self.register_and_remove(environment=environment), environment=environment)
        self.assertFalse((self.root / ".wine").exists())

    def test_a_prefix_is_never_made(self):
        prefix = self.root / "none"
        self.ferrowen("settings", "set", f"wine-prefix={prefix}")
        run = self.build_sample("--register", status=1)
        self.assertIn(f"{prefix}: there is no Wine prefix here (system.reg is missing)", run.stderr)
        self.assertIn("Error adding to registry", run.stderr)
        self.assertFalse(prefix.exists())
        self.ferrowen("maps", "list", status=1)


class TypFiles(RealTools):
    """Texts compiled by the real mkgmap and read back must hold what they said."""

    def mkgmap_jar(self):
        jar = json.loads(self.ferrowen("settings", "get", "mkgmap", "--json").stdout)["value"]
        self.assertTrue(pathlib.Path(jar).exists(), jar)
        return jar

    def compiled(self, jar, text):
        made = text.with_suffix(".typ")
        run = subprocess.run(["java", "-cp", jar, "uk.me.parabola.mkgmap.main.TypCompiler", text, made], check=True,
                             capture_output=True, text=True, env={**os.environ, "LC_ALL": "C.UTF-8"})
        self.assertEqual(run.stdout, "")
        return made

    def assert_reads_back(self, source, typ, encoding):
        written = typ_text.read_typ_text(source.read_text(encoding))
        shown = typ_text.read_typ_text(self.ferrowen("typ", "show", typ).stdout)
        for kind, definitions in written[0].items():
            self.assertEqual(definitions, shown[0][kind], f"{source.name} {kind}")
        self.assertEqual(written[1], shown[1])
        return sum(len(definitions) for definitions in written[0].values())

    def test_the_shipped_typ_file_is_shown_as_its_text(self):
        count = self.assert_reads_back(SOURCES / "assets" / "mapnik65001.txt",
                                       BUILD / "share" / "ferrowen" / "mapnik65001.typ", "utf-8")
        self.assertGreater(count, 200)
        # Written to a file, the text compiles to the same bytes again; only the date differs.
        self.ferrowen("typ", "show", BUILD / "share" / "ferrowen" / "mapnik65001.typ", "-o", "again.txt")
        again = self.compiled(self.mkgmap_jar(), self.root / "again.txt").read_bytes()
        first = (BUILD / "share" / "ferrowen" / "mapnik65001.typ").read_bytes()
        self.assertEqual((first[:0x0E], first[0x15:]), (again[:0x0E], again[0x15:]))

    def test_sheets_for_the_styles_of_mkgmap(self):
        jar = self.mkgmap_jar()
        with zipfile.ZipFile(jar) as archive:
            archive.extractall(self.root, [name for name in archive.namelist() if name.startswith("styles/")])
        made = {}
        for style in sorted(path for path in (self.root / "styles").iterdir() if path.is_dir()):
            sheet = self.root / (style.name + ".txt")
            words = ("typ", "new", style, "--fid", "4711", "--complete", "-o", sheet)
            if not any((style / kind).exists() for kind in ("polygons", "lines", "points")):
                self.assertIn("missing polygons", self.ferrowen(*words, status=3).stderr)
                continue
            self.assertIn("mkgmap accepts this text.", self.ferrowen(*words).stderr)
            made[style.name] = self.assert_reads_back(sheet, self.compiled(jar, sheet), "cp1252")
        self.assertGreater(len(made), 10)
        self.assertGreater(made["default"], 200)
        # Without neutral fills mkgmap has an opinion, told with its place.
        run = self.ferrowen("typ", "new", self.root / "styles" / "default", "-o", "plain.txt", status=1)
        self.assertRegex(run.stderr, r"mkgmap refuses this text\. Line \d+, \[_polygon\] Type=0x\w+: No XPM tag")
        self.assertIn("--complete", run.stderr)


class Styles(RealTools):
    """The doctor on every style inside the installed mkgmap."""

    def examine(self, style, *words, statuses=(0, 1)):
        command = [str(PROGRAM), "--home", str(self.home), "doctor", str(style), "--json", *map(str, words)]
        run = subprocess.run(command, capture_output=True, text=True, timeout=60, stdin=subprocess.DEVNULL)
        self.assertIn(run.returncode, statuses, f"{style}\n{run.stderr}")
        return json.loads(run.stdout)

    def assert_place_is_right(self, finding):
        """The rule that a finding shows stands where it says."""
        line = pathlib.Path(finding["file"]).read_text("utf-8").split("\n")[finding["line"] - 1]
        begin = "".join(finding["detail"].split())[:12]
        self.assertIn(begin, "".join(line.split()), finding)

    def test_every_style_goes_through(self):
        jar = json.loads(self.ferrowen("settings", "get", "mkgmap", "--json").stdout)["value"]
        with zipfile.ZipFile(jar) as archive:
            archive.extractall(self.root, [name for name in archive.namelist() if name.startswith("styles/")])
        typ = BUILD / "share" / "ferrowen" / "mapnik65001.typ"
        kinds = ("points", "lines", "polygons")
        styles = [folder for folder in sorted((self.root / "styles").iterdir())
                  if any((folder / kind).exists() for kind in kinds)]
        self.assertGreater(len(styles), 10)
        for style in styles:
            report = self.examine(style, "--typ", typ)
            for finding in report["findings"]:
                # noname puts rules of its own before those of the default style.
                if style.name != "noname":
                    self.assertNotEqual(finding["weight"], "error", finding)
                if finding["finding"] == "Not in TYP":
                    self.assert_place_is_right(finding)
        # A rule that can never match is found where it stands.
        lines = self.root / "styles" / "default" / "lines"
        count = len(lines.read_text("utf-8").split("\n"))
        text = lines.read_text("utf-8").replace("<finalize>", "highway=motorway & a=b [0x01 resolution 20]\n<finalize>")
        lines.write_text(text, "utf-8")
        lost = [finding for finding in self.examine(lines.parent, "--check", "style", "--kind", "lines")["findings"]
                if finding["finding"] == "Not rendered"]
        self.assertEqual(len(lost), 1)
        self.assertLess(lost[0]["line"], count + 1)
        self.assertEqual(text.split("\n")[lost[0]["line"] - 1], "highway=motorway & a=b [0x01 resolution 20]")


class HostileNames(RealTools):
    home_name = HOSTILE

    def test_every_path_may_hold_anything(self):
        inputs = self.root / ("in " + HOSTILE)
        inputs.mkdir()
        source = inputs / ("map " + HOSTILE + ".osm.pbf")
        shutil.copy(SAMPLE, source)
        typ = inputs / (HOSTILE + ".typ")
        shutil.copy(SAMPLE.parent / "mapnik65001.typ", typ)
        output = self.root / ("out " + HOSTILE)
        self.ferrowen("settings", "set", SMALL_TILES, "keep-log=1")
        self.ferrowen("build", source, "--split", "--fid", "77", "--typ", typ, "--output", output,
                      "--description", "say `id` $HOME %PATH%", "--name", "Möðru & $(id)")
        self.assertGreaterEqual(len(list(output.glob("1*.img"))), 3)
        self.assertEqual([path for path in self.root.rglob("*") if path.name in ("x", "y")], [])
        self.assertTrue((self.home / "mkgmap.log.0").exists())


class BadInput(RealTools):
    def refused(self, name, content, text, status=2):
        path = self.root / name
        if content is not None:
            path.write_bytes(content)
        run = self.ferrowen("build", path, "--fid", "1", status=status)
        self.assertIn(text, run.stderr)
        self.assertIn(name, run.stderr)

    def test_inputs_that_the_tools_would_pass_over(self):
        whole = SAMPLE.read_bytes()
        self.refused("gone.osm.pbf", None, "")
        self.refused("empty.osm.pbf", b"", "File has zero length:")
        self.refused("cut.osm.pbf", whole[:len(whole) // 2], "")
        self.refused("text.osm", b"just a text\n", "")
        self.assertEqual(self.images(), [])

    def test_settings_that_cannot_work(self):
        jar = self.root / "splitter.jar"
        jar.write_text("no jar")
        cases = [
            (["--mapid", "1322438"], 3, "8 numbers?"),
            (["--option", "--unicode", "--option", "--latin1"], 3, "'latin1' and 'unicode' conflict"),
            (["--memory", "2g"], 2, "2g"),
            (["--typ", "/no/such.typ"], 3, "Please select a valid TYP file."),
            (["--style", "nosuchstyle"], 3, "Please select a valid style."),
            (["--tiles", "99999999"], 3, "99999999"),
        ]
        for words, status, text in cases:
            with self.subTest(words=words):
                run = self.ferrowen("build", SAMPLE, "--fid", "1", *words, status=status)
                self.assertIn(text, run.stderr)
        tools = [
            ("mkgmap=/no/mkgmap.jar", 3, "/no/mkgmap.jar"),
            (f"splitter={jar}", 1, "Invalid or corrupt jarfile"),
            ("splitter=/no/splitter.jar", 3, "Please locate splitter.jar in Settings"),
        ]
        for setting, status, text in tools:
            with self.subTest(setting=setting):
                self.ferrowen("settings", "set", setting)
                run = self.ferrowen("build", SAMPLE, "--split", "--fid", "1", status=status)
                self.assertIn(text, run.stderr)
                self.ferrowen("--yes", "settings", "reset")
        run = self.ferrowen("build", SAMPLE, "--fid", "1", status=3, environment={"PATH": "/nowhere"})
        self.assertIn("Please install Java or restart Ferrowen.", run.stderr)
        self.assertEqual(self.images(), [])

    def test_limits_are_corrected(self):
        run = self.ferrowen("split", SAMPLE, "--max-nodes", "99999")
        self.assertIn("max nodes too small. Reset to 800,000", run.stderr)
        self.assertIn("only 1 file created. Mapsource may crash when map is uploaded.", run.stderr)

    def test_broken_style_keeps_the_older_map(self):
        self.build_sample()
        older = {path.name: path.read_bytes() for path in self.output.iterdir()}
        style = self.home / "styles" / "broken"
        style.mkdir()
        for name, text in (("version", "1\n"), ("lines", "highway=primary [0x02 nonsense 3]\n")):
            (style / name).write_text(text)
        run = self.ferrowen("build", "--style", "broken", "--fid", "1", status=1)
        self.assertIn("This has been unsuccessful.", run.stderr)
        self.assertIn("Error in style", run.stderr)
        self.assertEqual({path.name: path.read_bytes() for path in self.output.iterdir()}, older)

    def test_splitter_without_memory_ends(self):
        for memory in ("8", "10", "12"):
            run = self.ferrowen("--yes", "split", SAMPLE, "--memory", memory, status=1, timeout=120)
            self.assertIn("OutOfMemoryError", run.stderr)
        self.assertEqual(processes_naming(str(self.home)), [])
        self.assertEqual(list((self.home / "temp").iterdir()), [])

    def test_full_disk_loses_nothing(self):
        self.ferrowen("settings", "set", "map-name=Kept")
        saved = (self.home / "ferrow6.dat").read_bytes()

        def small_files():
            import resource
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (512, 512))

        run = self.ferrowen("settings", "set", "map-name=Lost", status=1, before=small_files)
        self.assertIn("ferrow6.dat", run.stderr)
        self.assertEqual((self.home / "ferrow6.dat").read_bytes(), saved)
        self.assertEqual(list(self.home.glob("*.new")), [])

    def test_program_folder_that_cannot_be_made(self):
        (self.root / "file").write_text("")
        self.home = self.root / "file" / "home"
        run = self.ferrowen("build", SAMPLE, status=2)
        self.assertIn(str(self.home), run.stderr)


class Automation(RealTools):
    def script(self, name, *lines, source=SAMPLE):
        path = self.root / name
        path.write_text("\n".join(["<ferrowen>", f"<file>{source}</file>", *lines, "</ferrowen>", ""]))
        return path

    def test_scripts_run_one_after_another(self):
        self.ferrowen("settings", "set", SMALL_TILES, "map-name=My own")
        mp = self.root / "tour.gpx"
        mp.write_text('<gpx><trk><trkseg><trkpt lat="62.0" lon="-7.0"/><trkpt lat="62.01" lon="-7.02"/>'
                      "</trkseg></trk></gpx>")
        self.ferrowen("gpx2mp", mp)
        scripts = [self.script("färöer 1.auto", "<mapname>Færøer</mapname>", "<FID>AUTO</FID>", "<gmapsupp>yes</gmapsupp>"),
                   self.script("broken.auto", "<maxnodes>many</maxnodes>"),
                   self.script("tour.auto", "<fid>4321</fid>", "<gmapsupp>yes</gmapsupp>", "<mapid>55550001</mapid>",
                               "<country>Faroe</country>",
                               source=self.home / "mps" / "tour.mp")]
        run = self.ferrowen("run", "--json", *scripts, status=2)
        first, broken, last = json.loads(run.stdout)["scripts"]
        self.assertEqual([one["result"] for one in (first, broken, last)], ["done", "not started", "done"])
        self.assertEqual(broken["problems"], ["line 3: <maxnodes>: 'many' is not a number."])
        self.assertEqual([stage["stage"] for stage in first["stages"]][-2:], ["build", "device image"])
        self.assertTrue(pathlib.Path(first["image"]).stat().st_size > 10000)
        for one in (first, last):
            self.assertIn("Number of MapFailedExceptions: 0", pathlib.Path(one["log"]).read_text())
        # The overview files of the first are the last one's now: both write into one output folder.
        self.assertTrue(all(pathlib.Path(made["path"]).stat().st_size == made["size"] for made in last["files"]))
        self.assertIn("2 of 3 maps were made.", (self.home / "logs" / "summary.txt").read_text())
        # Without a person nothing of the settings was changed for good.
        self.assertEqual(self.ferrowen("settings", "get", "map-name").stdout.strip(), "My own")

    def test_new_script_replays_the_same_arguments(self):
        def arguments():
            files = {path.name: path.read_bytes() for path in (self.home / "args").iterdir()}
            return files, (self.home / "last_run.txt").read_bytes()

        self.build_sample("--name", "My Map")
        self.ferrowen("settings", "set", f"input={SAMPLE}", "map-name=My Map", "fid=1234", "gmapsupp=1",
                      "image-name=mine", "image-named-after-map=0")
        self.ferrowen("build", "--name", "My Map", "--fid", "1234", "--gmapsupp")
        before = arguments()
        self.ferrowen("script", "new", self.root / "same")
        self.ferrowen("settings", "set", "map-name=Other", "fid=77", "gmapsupp=0", "image-name=other",
                      "options-text=--name-tag-list=name")
        self.ferrowen("run", self.root / "same.auto")
        self.assertEqual(arguments(), before)

    def test_examples_of_the_documentation(self):
        examples = pathlib.Path(__file__).resolve().parents[2] / "docs" / "examples"
        maps = self.root / "maps"
        maps.mkdir()
        styles, heights = self.root / "styles", self.root / "hgt"
        for folder in (styles, heights):
            folder.mkdir()
            folder.chmod(0o555)
        for name in ("one", "two"):
            self.script(f"maps/{name}.auto", f"<mapname>{name}</mapname>", "<gmapsupp>yes</gmapsupp>", "<fid>auto</fid>")
        environment = {**os.environ, "FERROWEN": str(PROGRAM), "MAPS": str(maps), "STYLES": str(styles),
                       "HEIGHTS": str(heights), "WORK": str(self.root / "work")}
        for name in ("build-all.sh", "map-array.sbatch"):
            subprocess.run(["bash", "-n", str(examples / name)], check=True)
        subprocess.run(["bash", str(examples / "build-all.sh")], check=True, env=environment, capture_output=True,
                       timeout=300)
        for task in ("0", "1"):
            subprocess.run(["bash", str(examples / "map-array.sbatch")], check=True, capture_output=True, timeout=300,
                           env={**environment, "WORK": str(self.root / "array"), "SLURM_ARRAY_TASK_ID": task,
                                "SLURM_MEM_PER_NODE": "2000"})
        for work in ("work", "array"):
            for name in ("one", "two"):
                self.assertTrue((self.root / work / name / "gmapsupp" / f"{name}.img").stat().st_size > 10000)

    def test_killed_at_any_moment_the_next_run_makes_the_same_map(self):
        self.ferrowen("settings", "set", SMALL_TILES)
        script = self.script("map.auto", "<mapname>Kill</mapname>", "<fid>1234</fid>", "<gmapsupp>yes</gmapsupp>")
        begin = time.monotonic()
        self.ferrowen("run", script)
        whole = time.monotonic() - begin
        sizes = self.sizes()
        image = (self.home / "gmapsupp" / "Kill.img").stat().st_size
        moments = random.Random(1)
        for _ in range(10):
            for folder in ("output", "temp", "gmapsupp"):
                for path in (self.home / folder).iterdir():
                    if moments.random() < 0.3 and path.is_file():
                        path.unlink()
            run = subprocess.Popen([str(PROGRAM), "--home", str(self.home), "run", str(script)], cwd=self.root,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(moments.uniform(0.02, whole))
            run.kill()
            run.wait()
            # A tool outlives the program that is killed so; nobody else is there to end it.
            subprocess.run(["pkill", "-KILL", "-f", str(self.home)], check=False)
        self.ferrowen("run", script)
        self.assertEqual(self.sizes(), sizes)
        self.assertEqual((self.home / "gmapsupp" / "Kill.img").stat().st_size, image)
        self.assertEqual([path.name for path in self.home.rglob("*.before")], [])


class Interrupting(RealTools):
    def start(self, *words):
        return subprocess.Popen([str(PROGRAM), "--home", str(self.home), *map(str, words)], cwd=self.root,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def wait_for_java(self, jar):
        for _ in range(600):
            if any(jar in line and str(self.home) in line for line in processes_naming(jar)):
                return
            time.sleep(0.05)
        self.fail(f"{jar} never ran")

    def test_interrupt_ends_everything_and_keeps_the_older_map(self):
        self.build_sample()
        older = {path.name: path.read_bytes() for path in self.output.iterdir()}
        tiles = {path.name: path.read_bytes() for path in (self.home / "temp").iterdir()}
        for jar, words in (("splitter.jar", ["build", SAMPLE, "--split"]), ("mkgmap.jar", ["build"])):
            for number in (signal.SIGINT, signal.SIGTERM):
                with self.subTest(jar=jar, signal=number):
                    run = self.start(*words, "--fid", "1234")
                    self.wait_for_java(jar)
                    time.sleep(0.3)
                    second = self.ferrowen("build", status=3)
                    self.assertIn("Application is already running.", second.stderr)
                    run.send_signal(number)
                    _, errors = run.communicate(timeout=60)
                    self.assertEqual(run.returncode, 1, errors)
                    self.assertEqual(processes_naming(str(self.home)), [])
                    self.assertEqual({path.name: path.read_bytes() for path in self.output.iterdir()}, older)
                    left = {path.name: path.read_bytes() for path in (self.home / "temp").iterdir()}
                    self.assertEqual(left, tiles)


if __name__ == "__main__":
    unittest.main()
