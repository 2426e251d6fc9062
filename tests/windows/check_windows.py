#!/usr/bin/env python3
"""The Windows packages under Wine: check_windows.py BUILD NATIVE_FERROWEN SAMPLE SETUP ZIP

Installs, starts, makes and registers a map, upgrades and uninstalls, per user, for all users, in a folder with
blanks and umlauts, and from the portable zip; then everything that must go wrong gracefully. BUILD is
build/windows, NATIVE_FERROWEN this machine's own program, which makes the results that the stand-in tools leave.
Pictures go to BUILD/screenshots."""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import zipfile

from wine_desk import Screen, Windows, copy_prefix, files_below, fresh_folder, wait_until

SOURCE = pathlib.Path(__file__).resolve().parents[2]
UNINSTALL = r"Software\Microsoft\Windows\CurrentVersion\Uninstall\Ferrowen"
CLASSES = r"Software\Classes"
MAP = "Färöer & Co"
RUNNING, OLDER, NOT_WRITABLE, NO_ROOM, ELSEWHERE, ROLLED_BACK, OLD_SYSTEM, LEFT_OVER = 3, 4, 5, 6, 8, 9, 10, 11


def expect(true, words):
    if not true:
        raise AssertionError(words)


def equal(seen, wanted, what):
    expect(seen == wanted, f"{what}: {seen!r} instead of {wanted!r}")


class Check:
    def __init__(self, build, native, sample, setup, portable):
        self.build, self.native, self.sample, self.setup, self.portable = build, native, sample, setup, portable
        self.pictures = fresh_folder(build / "screenshots")
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="ferrowen-windows-"))
        self.version = (build / "setup/version").read_text().strip()
        self.failed = []
        self.clean = None
        self.display = None

    # What all arrangements share

    def prepare(self):
        number = next(n for n in range(90, 200) if not pathlib.Path(f"/tmp/.X{n}-lock").exists())
        frame = fresh_folder(self.work / "frame")
        self.display = Screen(frame, number)
        self.clean = Windows(fresh_folder(self.work / "clean"), self.display.display, self.build / "bin/screen.exe")
        self.clean.run("wineboot", "-i")
        self.clean.run("winecfg", "-v", "win7")
        equal(self.install(self.clean), OLD_SYSTEM, "the setup on an old Windows")
        self.clean.run("winecfg", "-v", "win10")
        subprocess.run(["wineserver", "-w"], env=self.clean.environment, check=True)
        self.clean.own_folders()
        self.tools = self.prepare_tools(self.work / "tools")
        for name, version in (("older", "0.9.0"), ("newer", "99.0.0")):
            target = self.work / f"{name}.exe"
            subprocess.run(["sh", SOURCE / "packaging/windows/make_setup.sh", version, target], check=True)
            setattr(self, name, target)

    def prepare_tools(self, tools):
        """java.exe, the jars, and beside them what the real splitter and mkgmap leave for the sample map."""
        prepared = tools / "prepared"
        prepared.mkdir(parents=True)
        shutil.copy(self.build / "bin/stand-in/java.exe", tools)
        for jar in ("mkgmap/mkgmap.jar", "mkgmap-splitter/splitter.jar"):
            shutil.copy(f"/usr/share/{jar}", tools)
        wrapper = self.work / "wrapper/java"
        wrapper.parent.mkdir()
        wrapper.write_text(WRAPPER.format(java=shutil.which("java"), prepared=prepared))
        wrapper.chmod(0o755)
        home = self.work / "native"
        run = [self.native, "--home", home]
        for setting in (f"java={wrapper}", r"splitter-options=--output=o5m\n--max-nodes=10000"):
            subprocess.run([*run, "settings", "set", setting], check=True, stdout=subprocess.DEVNULL)
        made = subprocess.run([*run, "--yes", "build", self.sample, "--split", "--name", MAP, "--fid", "6324", "--register"],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False,
                              env=os.environ | {"HOME": str(self.work), "WINEPREFIX": str(self.work / "none")})
        equal(made.returncode, 0, f"the native build: {made.stdout}")
        expect(list((prepared / "build").glob("*.img")), "no prepared map")
        return tools

    def new_windows(self, name):
        windows = Windows(fresh_folder(self.work / name), self.display.display, self.build / "bin/screen.exe")
        copy_prefix(self.clean.prefix, windows.prefix)
        return windows

    def picture(self, name, least_colours=20):
        colours = self.display.keep_picture(self.pictures / f"{name}.png")
        expect(colours >= least_colours, f"the picture {name} has {colours} colours")

    def install(self, windows, *switches, setup=None):
        status, _ = windows.run(setup or self.setup, "/S", *switches)
        return status

    def uninstall(self, windows, folder):
        """The uninstaller goes on in a copy of itself after its first process has ended."""
        equal(windows.run(folder / "uninstall.exe", "/S")[0], 0, "the uninstaller's exit status")
        wait_until(lambda: not (folder / "uninstall.exe").exists(), "the end of the uninstaller")
        wait_until(lambda: not windows.has_key(f"HKCU\\{UNINSTALL}") and not windows.has_key(f"HKLM\\{UNINSTALL}"),
                   "the end of the uninstall entry")

    def set_tools(self, windows, folder):
        tools = {"java": "java.exe", "splitter": "splitter.jar", "mkgmap": "mkgmap.jar"}
        settings = [f"{name}={windows.name_of(self.tools / file)}" for name, file in tools.items()]
        status, output = windows.run(folder / "ferrowen.exe", "settings", "set", *settings,
                                     r"output-folder=C:\Karten für mich", "gmapsupp=0")
        equal(status, 0, f"settings set: {output}")
        # The prepared tiles are older than this copy of the sample.
        os.utime(folder / self.sample.name, (1_000_000_000, 1_000_000_000))

    def start_program(self, windows, folder, name):
        """Starts ferrowen6.exe, sees its window and its picture, closes it; returns the seconds to the window."""
        begin = time.monotonic()
        program = windows.start(folder / "ferrowen6.exe")
        windows.screen("window", "Ferrowen")
        seconds = time.monotonic() - begin
        time.sleep(2)
        self.picture(f"{name}-ferrowen6", 50)
        self.close_program(windows, program)
        return seconds

    def close_program(self, windows, program):
        # A box of the first start stands before the main window.
        end = time.monotonic() + 60
        while program.poll() is None:
            expect(time.monotonic() < end, "ferrowen6.exe did not end")
            windows.screen("close", "Ferrowen")
            time.sleep(1)
        equal(program.returncode, 0, "the exit status of ferrowen6.exe")

    def make_and_remove_map(self, windows, folder, name):
        """From the sample to a registered map and away again, in the windows of the program."""
        qt = next(line.split("=", 1)[1] for line in (self.build / "CMakeCache.txt").read_text().split("\n")
                  if line.startswith("FERROWEN_WINDOWS_QT"))
        beside = [folder / "ui-windows.exe", folder / "Qt6Test.dll"]
        shutil.copy(self.build / "bin/ui-windows.exe", beside[0])
        shutil.copy(f"{qt}/bin/Qt6Test.dll", beside[1])
        pictures = fresh_folder(self.pictures / name)
        environment = {"FERROWEN_PICTURES": windows.name_of(pictures), "QT_FORCE_STDERR_LOGGING": "1"}

        def drive_windows(test):
            status, _ = windows.run(beside[0], test, "-o", f"C:\\{test}.txt,txt", environment=environment)
            report = windows.drive(f"{test}.txt")
            words = report.read_text("utf-8", "replace") if report.exists() else "no report"
            equal(status, 0, f"{test}:\n{words}")
            expect("Totals: 3 passed, 0 failed, 0 skipped" in words, f"{test}:\n{words}")

        drive_windows("sample_becomes_a_registered_map")
        family = rf"HKLM\SOFTWARE\Wow6432Node\Garmin\MapSource\Families\{MAP}"
        equal(windows.registry(family, "ID"), "B418", "the registered family number (6324)")
        tdb = windows.registry(rf"{family}\1", "TDB")
        expect(tdb and windows.drive(*tdb.split("\\")[1:]).exists(), f"the registered TDB: {tdb}")
        drive_windows("registered_map_is_listed_and_removed")
        expect(not windows.has_key(family), "the map is still registered")
        expect(not windows.drive(*tdb.split("\\")[1:]).exists(), "the map's files are still there")
        for path in beside:
            path.unlink()

    def expect_entry(self, windows, root, folder, version):
        for value, wanted in (("DisplayName", "Ferrowen"), ("DisplayVersion", version),
                              ("Publisher", "The Ferrowen developers"),
                              ("InstallLocation", windows.name_of(folder)),
                              ("UninstallString", f'"{windows.name_of(folder)}\\uninstall.exe"')):
            equal(windows.registry(f"{root}\\{UNINSTALL}", value), wanted, value)
        size = int(windows.registry(f"{root}\\{UNINSTALL}", "EstimatedSize"), 16)
        expect(10_000 < size < 200_000, f"EstimatedSize is {size} KB")

    def expect_gone(self, windows, folder, kept):
        """Nothing is left but the files `kept`, which are the person's."""
        equal(sorted(files_below(folder)), sorted(kept), f"left in {folder}")
        for root in ("HKCU", "HKLM"):
            for key in (UNINSTALL, rf"{CLASSES}\Ferrowen.Script", r"Software\Ferrowen"):
                expect(not windows.has_key(f"{root}\\{key}"), f"{root}\\{key} is left")
        links = list(windows.prefix.rglob("Ferrowen.lnk"))
        expect(not links, f"links are left: {links}")

    # The arrangements

    def per_user(self, windows, name="per-user", folder=None):
        folder = folder or self.local_folder(windows) / "Programs/Ferrowen"
        windows.set_registry(rf"HKCU\{CLASSES}\.auto", "", "Other.Program")
        equal(self.install(windows, "/CurrentUser", "/DesktopLink"), 0, "the setup's exit status")
        self.expect_entry(windows, "HKCU", folder, self.version)
        equal(windows.registry(rf"HKCU\{CLASSES}\.auto", ""), "Ferrowen.Script", "the .auto class")
        equal(windows.registry(rf"HKCU\{CLASSES}\Ferrowen.Script\shell\open\command", ""),
              f'"{windows.name_of(folder)}\\ferrowen6.exe" "%1"', "the command of scripts")
        equal(len(list(windows.prefix.rglob("Ferrowen.lnk"))), 2, "links in the start menu and on the desktop")
        installed = files_below(folder)
        print(f"   window after {self.start_program(windows, folder, name):.1f} s at the first start, "
              f"{self.start_program(windows, folder, name):.1f} s at the second")
        self.set_tools(windows, folder)
        self.make_and_remove_map(windows, folder, name)
        self.upgrade(windows, "HKCU", folder, installed)
        own = set(files_below(folder)) - set(installed)
        expect({"ferrow6.dat", "mkopts", "scripts/mine.auto"} <= own, f"own files: {sorted(own)}")
        self.uninstall(windows, folder)
        self.expect_gone(windows, folder, own)
        equal(windows.registry(rf"HKCU\{CLASSES}\.auto", ""), "Other.Program", "the .auto class from before")

    def local_folder(self, windows):
        local = windows.run("cmd", "/c", "echo %LOCALAPPDATA%")[1].strip()
        return windows.drive(*local.split("\\")[1:])

    def upgrade(self, windows, root, folder, installed):
        """A newer version keeps what is the person's, and takes away what it does not have any more."""
        (folder / "mkopts").write_text("--my-own-option\r\n")
        (folder / "scripts").mkdir(exist_ok=True)
        (folder / "scripts/mine.auto").write_text("my script")
        (folder / "dropped.dll").write_text("of the old version")
        with open(folder / "installed-files.txt", "ab") as names:
            names.write("dropped.dll\r\n".encode("utf-16-le"))
        mine = {name: content for name, content in files_below(folder).items()
                if name not in installed and name != "dropped.dll"}
        equal(self.install(windows, setup=self.newer), 0, "the newer setup's exit status")
        after = files_below(folder)
        equal({name: after.get(name) for name in mine}, mine, "the person's files")
        equal(set(after) - set(mine), set(installed), "the files of the program")
        self.expect_entry(windows, root, folder, "99.0.0")

    def umlauts(self, windows):
        """The person's whole folder has blanks and umlauts in its name."""
        profile = "C:\\users\\Jürgen Müller"
        folders = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders"
        for value, part in (("Local AppData", "Local"), ("AppData", "Roaming")):
            windows.set_registry(folders, value, f"{profile}\\AppData\\{part}", "REG_EXPAND_SZ")
        windows.end()
        self.per_user(windows, "umlauts", windows.drive("users/Jürgen Müller/AppData/Local/Programs/Ferrowen"))

    def all_users(self, windows):
        folder = windows.drive("Program Files/Ferrowen")
        equal(self.install(windows, "/AllUsers", "/NoScripts"), 0, "the setup's exit status")
        self.expect_entry(windows, "HKLM", folder, self.version)
        expect(not windows.has_key(rf"HKLM\{CLASSES}\Ferrowen.Script"), "scripts in spite of /NoScripts")
        installed = files_below(folder)
        equal(windows.run(folder / "ferrowen.exe", "settings", "show")[0], 0, "settings show")
        own = self.local_folder(windows) / "Ferrowen"
        self.start_program(windows, folder, "all-users")
        expect((own / "ferrow6.dat").exists(), "the settings are not in the user's own folder")
        equal(files_below(folder), installed, "the folder of all users")
        equal(self.install(windows, "/CurrentUser", setup=self.newer), ELSEWHERE, "a second one, for one user")
        expect(not (self.local_folder(windows) / "Programs/Ferrowen").exists(), "a second folder was made")
        self.upgrade(windows, "HKLM", folder, installed)
        expect(not windows.has_key(rf"HKLM\{CLASSES}\Ferrowen.Script"), "/NoScripts was forgotten")
        self.uninstall(windows, folder)
        self.expect_gone(windows, folder, ["mkopts", "scripts/mine.auto"])
        expect((own / "ferrow6.dat").exists(), "the user's own files are gone")

    def from_zip(self, windows):
        with zipfile.ZipFile(self.portable) as packed:
            packed.extractall(windows.drive("Träger 1"))
        folder = windows.drive("Träger 1/Ferrowen")
        self.start_program(windows, folder, "portable")
        self.set_tools(windows, folder)
        expect((folder / "ferrow6.dat").exists(), "the settings are not beside the program")
        self.make_and_remove_map(windows, folder, "portable")
        expect(not windows.has_key(f"HKCU\\{UNINSTALL}"), "the portable program left an uninstall entry")
        expect(not (self.local_folder(windows) / "Ferrowen").exists(), "files outside the portable folder")

    # What goes wrong

    def expect_refused(self, windows, setup, status, words, folder, *presses, switches=()):
        """Silent: the exit status. With pages: the words. Both: every file is as it was."""
        before = files_below(folder)
        equal(self.install(windows, *switches, setup=setup), status, "the silent setup's exit status")
        equal(files_below(folder), before, "the files after the silent setup")
        process = windows.start(setup, *switches)
        for button in presses:
            windows.screen("press", button)
        windows.screen("text", words)
        self.picture(f"refused-{status}")
        windows.screen("press", "Cancel" if status == RUNNING else "OK")
        if status == RUNNING:
            windows.screen("text", "Nothing was changed.")
            windows.screen("press", "OK")
        may_choose_again = presses[-1:] == ("Install",)
        if may_choose_again:
            windows.screen("press", "Cancel")
            windows.screen("press", "Yes")
        process.wait(timeout=60)
        if not may_choose_again:
            equal(process.returncode, status, "the exit status of the setup with pages")
        equal(files_below(folder), before, "the files after the setup with pages")

    def running_and_older(self, windows):
        folder = self.local_folder(windows) / "Programs/Ferrowen"
        equal(self.install(windows), 0, "the setup's exit status")
        program = windows.start(folder / "ferrowen6.exe")
        windows.screen("window", "Ferrowen")
        self.expect_refused(windows, self.newer, RUNNING, "Ferrowen is running.", folder)
        equal(windows.run(folder / "uninstall.exe", "/S", f"_?={windows.name_of(folder)}")[0], RUNNING,
              "uninstalling while the program runs")
        self.close_program(windows, program)
        self.expect_refused(windows, self.older, OLDER, "this setup holds the older 0.9.0", folder)
        equal(self.install(windows, "/D=C:\\elsewhere"), ELSEWHERE, "a second place")
        expect(not windows.drive("elsewhere").exists(), "a second place was made")
        equal(self.install(windows, "/AllUsers"), ELSEWHERE, "a second one, for all users")
        equal(windows.registry(f"HKCU\\{UNINSTALL}", "DisplayVersion"), self.version, "the version after all")

    PAGES = ("Next >", "I Agree", "Next >", "Next >", "Install")

    def not_writable(self, windows):
        place = self.mount("locked", "size=1m")
        subprocess.run(["mount", "-o", "remount,ro", place], check=True)
        self.expect_refused(windows, self.setup, NOT_WRITABLE, "cannot be written to", place, *self.PAGES,
                            switches=[f"/D={windows.name_of(place)}\\Ferrowen"])
        for folder in ("Q:\\none", "not\\whole"):
            equal(self.install(windows, f"/D={folder}"), NOT_WRITABLE, f"the setup into {folder}")
        expect(not windows.has_key(f"HKCU\\{UNINSTALL}"), "an entry of what is not installed")
        self.locked_files(windows)

    def locked_files(self, windows):
        """What cannot be removed is told, and a second try removes it."""
        place = self.mount("held", "size=200m")
        folder = place / "Ferrowen"
        equal(self.install(windows, f"/D={windows.name_of(folder)}"), 0, "the setup before")
        subprocess.run(["mount", "-o", "remount,ro", place], check=True)
        equal(windows.run(folder / "uninstall.exe", "/S", f"_?={windows.name_of(folder)}")[0], LEFT_OVER,
              "uninstalling what cannot be removed")
        self.expect_entry(windows, "HKCU", folder, self.version)
        subprocess.run(["mount", "-o", "remount,rw", place], check=True)
        self.uninstall(windows, folder)
        self.expect_gone(windows, folder, [])

    def disk_full(self, windows):
        """Too little room for a first setup; then for the files of a newer version beside the older."""
        small = self.mount("small", "size=20m")
        self.expect_refused(windows, self.setup, NO_ROOM, "The disk is too full", small, *self.PAGES,
                            switches=[f"/D={windows.name_of(small)}\\Ferrowen"])
        expect(not (small / "Ferrowen").exists(), "half a setup was left")
        installed = sum(path.stat().st_size for path in (self.build / "setup/tree").rglob("*") if path.is_file())
        tight = self.mount("tight", f"size={installed * 3 // 2}")
        folder = tight / "Ferrowen"
        equal(self.install(windows, f"/D={windows.name_of(folder)}"), 0, "the setup that has room")
        self.expect_refused(windows, self.newer, NO_ROOM, "The disk is too full", folder, "Next >", "I Agree", "Next >")
        equal(windows.run(folder / "ferrowen.exe", "--version")[0], 0, "the version from before still runs")

    def full_half_way(self, windows):
        """Room enough, but no more names on the disk: it ends in the middle, and the older version is as it was."""
        place = self.mount("names", "size=500m")
        folder = place / "Ferrowen"
        equal(self.install(windows, f"/D={windows.name_of(folder)}"), 0, "the setup that has room")
        before = files_below(folder)
        used = os.statvfs(place).f_files - os.statvfs(place).f_ffree
        subprocess.run(["mount", "-o", f"remount,size=500m,nr_inodes={used + 30}", place], check=True)
        equal(self.install(windows, setup=self.newer), ROLLED_BACK, "the exit status half-way")
        equal(files_below(folder), before, "the files after a setup that ended half-way")
        equal(windows.registry(f"HKCU\\{UNINSTALL}", "DisplayVersion"), self.version, "the version in the entry")
        equal(windows.run(folder / "ferrowen.exe", "--version")[0], 0, "the version from before still runs")

    def mount(self, name, options):
        place = fresh_folder(self.work / name)
        subprocess.run(["mount", "-t", "tmpfs", "-o", options, "ferrowen", place], check=True)
        return place

    # The run

    def step(self, name, routine, needs_root=False):
        if needs_root and os.getuid() != 0:
            print(f"-- {name}: not tried, since only root can mount the disks for it")
            return
        begin = time.monotonic()
        print(f"-- {name}", flush=True)
        windows = self.new_windows("windows")
        try:
            routine(windows)
            print(f"   passed, {time.monotonic() - begin:.0f} s", flush=True)
        except (AssertionError, OSError, subprocess.SubprocessError) as error:
            self.failed.append(name)
            print(f"   FAILED: {error}\n{windows.run(windows.screen_program, 'words')[1]}", flush=True)
            self.display.keep_picture(self.pictures / f"failed-{len(self.failed)}.png")
        finally:
            windows.end()

    def close(self):
        for place in ("locked", "held", "small", "tight", "names"):
            if os.path.ismount(self.work / place):
                subprocess.run(["umount", self.work / place], check=False)
        if self.clean is not None:
            self.clean.end()
        if self.display is not None:
            self.display.close()
        shutil.rmtree(self.work, ignore_errors=True)


WRAPPER = """#!/bin/sh
# The real Java; what it leaves in a tool's output folder is kept.
{java} "$@"
status=$?
folder=""
kind=build
for word in "$@"; do
  case $word in
    --output-dir=*) folder=${{word#--output-dir=}} ;;
    *splitter.jar) kind=split ;;
  esac
done
if [ -n "$folder" ]; then
  mkdir -p "{prepared}/$kind"
  find "$folder" -maxdepth 1 -type f -exec cp {{}} "{prepared}/$kind/" ';'
fi
exit $status
"""


def main():
    arguments = [pathlib.Path(word).resolve() for word in sys.argv[1:6]]
    only = sys.argv[6:]
    check = Check(*arguments)
    # Stopped from outside it cleans up too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    steps = (("per-user", check.per_user, False), ("umlauts", check.umlauts, False),
             ("portable", check.from_zip, False), ("all-users", check.all_users, False),
             ("running-and-older", check.running_and_older, False), ("not-writable", check.not_writable, True),
             ("disk-full", check.disk_full, True), ("full-half-way", check.full_half_way, True))
    try:
        check.prepare()
        for name, routine, needs_root in steps:
            if not only or name in only:
                check.step(name, routine, needs_root)
    finally:
        check.close()
    print("Failed: " + ", ".join(check.failed) if check.failed else "All of it passed")
    return 1 if check.failed else 0


if __name__ == "__main__":
    sys.exit(main())
