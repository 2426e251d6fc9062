"""A Windows of the test's own: a Wine prefix, a screen without a display, and what can be asked of both."""
import hashlib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from screen_picture import keep_picture  # noqa: E402


class Screen:
    """Xvfb with its picture in a file, which can be kept as PNG at any time."""

    def __init__(self, folder, number):
        self.display = f":{number}"
        self.frame = folder / "Xvfb_screen0"
        self.process = subprocess.Popen(
            ["Xvfb", self.display, "-screen", "0", "1400x900x24", "-fbdir", str(folder), "-nolisten", "tcp"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(self.frame.exists, "the screen")

    def close(self):
        self.process.terminate()
        self.process.wait()

    def keep_picture(self, target):
        """Saves what is seen and returns the number of its colours."""
        return keep_picture(self.frame, target)


def wait_until(look, what, seconds=60):
    end = time.monotonic() + seconds
    while not look():
        if time.monotonic() > end:
            raise AssertionError(f"{what} did not come within {seconds} seconds")
        time.sleep(0.1)


class Windows:
    """A Wine prefix below `folder`; `screen_program` is screen.exe of these tests."""

    def __init__(self, folder, display, screen_program):
        self.folder = folder
        self.prefix = folder / "prefix"
        self.screen_program = screen_program
        home = folder / "home"
        home.mkdir(parents=True, exist_ok=True)
        kept = {name: value for name, value in os.environ.items() if not name.startswith(("FERROWEN", "WINE", "XDG"))}
        # The desktop of the person who runs the test stays as it is.
        self.environment = kept | {
            "WINEPREFIX": str(self.prefix), "WINEDEBUG": "-all", "HOME": str(home), "DISPLAY": display,
            "LC_ALL": "C.UTF-8", "WINEDLLOVERRIDES": "winemenubuilder.exe=d;mscoree=d;mshtml=d"}

    def start(self, *arguments, output=subprocess.DEVNULL, environment=None):
        return subprocess.Popen(["wine", *map(str, arguments)], env=self.environment | (environment or {}),
                                stdin=subprocess.DEVNULL, stdout=output, stderr=output)

    def run(self, *arguments, seconds=300, environment=None):
        """Exit status of a Windows program, and what it wrote."""
        # Not through a pipe: what Wine starts beside the program would hold it open.
        with tempfile.TemporaryFile() as output:
            process = self.start(*arguments, output=output, environment=environment)
            try:
                process.wait(timeout=seconds)
            except subprocess.TimeoutExpired:
                process.kill()
                raise AssertionError(f"{arguments[0]} did not end within {seconds} seconds") from None
            output.seek(0)
            return process.returncode, output.read().decode("utf-8", "replace").replace("\r", "")

    def end(self):
        subprocess.run(["wineserver", "-k", "-w"], env=self.environment, check=False)

    # Paths

    def own_folders(self):
        """Desktop and the like, which Wine makes links to the home folder, become folders of the prefix."""
        for link in [path for path in self.drive("users").glob("*/*") if path.is_symlink()]:
            link.unlink()
            link.mkdir()

    def drive(self, *parts):
        return self.prefix.joinpath("drive_c", *parts)

    def name_of(self, path):
        """A path of this machine as Windows sees it."""
        path = pathlib.Path(path)
        if path.is_relative_to(self.drive()):
            return "C:\\" + "\\".join(path.relative_to(self.drive()).parts)
        return "Z:\\" + "\\".join(path.parts[1:])

    # The registry

    def has_key(self, key):
        return self.run("reg", "query", key)[0] == 0

    def registry(self, key, value):
        """The text of a value, digits of a number or of bytes; "" is the default value; None when there is none."""
        # The export alone holds every letter, whatever code page the console has.
        exported = self.drive("exported.reg")
        exported.unlink(missing_ok=True)
        if self.run("reg", "export", key, "C:\\exported.reg", "/y")[0] != 0:
            return None
        section = exported.read_text("utf-16").split("\n[")[1]
        name = f'"{value}"=' if value else "@="
        found = next((line[len(name):] for line in section.split("\n") if line.startswith(name)), None)
        if found is None or found.startswith('"'):
            return found and found[1:-1].replace("\\\\", "\\").replace('\\"', '"')
        return found.split(":")[1].replace(",", "").upper()

    def set_registry(self, key, value, text, kind="REG_SZ"):
        which = ["/ve"] if value == "" else ["/v", value]
        status, _ = self.run("reg", "add", key, *which, "/t", kind, "/d", text, "/f")
        assert status == 0, f"reg add {key}"

    # The screen

    def screen(self, *words):
        status, output = self.run(self.screen_program, *words)
        assert status == 0, f"screen {' '.join(words)}: on the screen were\n{output}"
        return output


def files_below(folder):
    """Name and content of every file."""
    if not folder.exists():
        return {}
    return {str(path.relative_to(folder)): hashlib.sha256(path.read_bytes()).hexdigest()
            for path in sorted(folder.rglob("*")) if path.is_file()}


def copy_prefix(source, target):
    subprocess.run(["cp", "-a", str(source), str(target)], check=True)


def fresh_folder(path):
    shutil.rmtree(path, ignore_errors=True)
    path.mkdir(parents=True)
    return path
