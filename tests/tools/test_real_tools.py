"""ferrowen from the command line with the real splitter and mkgmap, on the sample map and on bad input."""

import json
import os
import pathlib
import shutil
import signal
import struct
import subprocess
import tempfile
import time
import unittest

BUILD = pathlib.Path(os.environ["FERROWEN_BUILD"])
PROGRAM = BUILD / "bin" / "ferrowen"
SAMPLE = BUILD / "share" / "ferrowen" / "faroe-islands.osm.pbf"
SMALL_TILES = "splitter-options=--output=o5m\\n--max-nodes=10000"
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

    def test_printed_commands_run_nothing(self):
        self.ferrowen("settings", "show")
        printed = self.ferrowen("build", SAMPLE, "--split", "--print").stdout.splitlines()
        self.assertEqual(len(printed), 2)
        self.assertIn("splitter.jar", printed[0])
        self.assertIn("mkgmap.jar", printed[1])
        self.assertEqual((list((self.home / "temp").iterdir()), self.images()), ([], []))


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
