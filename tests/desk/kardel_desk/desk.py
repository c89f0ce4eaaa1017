"""The desk: one virtual screen and one Wine session, on which every test finds a clean start."""

import contextlib
import datetime
import fcntl
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import zoneinfo

from . import datafiles, processes, waiting
from .app import Kardel, Menu, Rect
from .display import Display
from .hands import Hands
from .paths import WORK, program
from .probe import Probe
from .sound import Recorder
from .wine import Wine

SETTINGS_KEY = r"HKCU\Software\VB and VBA Program Settings\Kardel"
RUN_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Run"
SCREEN_KEY = r"HKCU\Control Panel\Desktop"
X11_KEY = r"HKCU\Software\Wine\X11 Driver"
COLOUR_KEY = r"HKCU\Control Panel\Colors"
THEME_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\ThemeManager"
ENGLISH_DAYS = ("Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun")
_FAKETIME = "/usr/lib/x86_64-linux-gnu/faketime/libfaketimeMT.so.1"


def _sweep() -> None:
    """Cleans up after sessions whose run was killed. A running session holds its lock file."""
    for lock in WORK.glob("session-*/lock"):
        try:
            with open(lock) as file:
                fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
                processes.kill_with_variable("WINEPREFIX", str(lock.parent / "prefix"), patience=0)
                shutil.rmtree(lock.parent, ignore_errors=True)
        except OSError:
            pass  # in use, or cleaned up by another run meanwhile


class Clock:
    """The time that a program on the desk sees. It runs on from what was set; timers are not affected."""

    def __init__(self, path: pathlib.Path, start: str, zone: str):
        self._path, self._zone = path, zoneinfo.ZoneInfo(zone)
        self.jump(start)

    def jump(self, local_time: str) -> None:
        """Sets the wall clock, even while the program runs: "2026-02-28 23:59:57"."""
        wanted = datetime.datetime.fromisoformat(local_time).replace(tzinfo=self._zone)
        offset = (wanted - datetime.datetime.now(datetime.timezone.utc)).total_seconds()
        fresh = self._path.with_suffix(".new")
        fresh.write_text(f"{offset:+.3f}\n")
        fresh.replace(self._path)

    @property
    def env(self) -> dict[str, str]:
        return {"LD_PRELOAD": _FAKETIME, "FAKETIME_TIMESTAMP_FILE": str(self._path), "FAKETIME_NO_CACHE": "1",
                "FAKETIME_DONT_FAKE_MONOTONIC": "1", "TZ": self._zone.key}


class Desk:
    """`arch` is win64 or win32; `both`: a win64 desk on which 32-bit programs run too. `dpi`, `panel_strut` and
    `monitors`, side by side, hold for the whole session. close() ends everything."""

    wait = staticmethod(waiting.wait)
    wait_equal = staticmethod(waiting.wait_equal)
    stays = staticmethod(waiting.stays)

    def __init__(self, arch: str = "win64", size: tuple[int, int] = (1280, 1024), dpi: int = 96,
                 panel_strut: bool = True, both: bool = False, monitors: int = 1):
        self.arch, self.dpi = arch, dpi
        WORK.mkdir(parents=True, exist_ok=True)
        _sweep()
        self.work = pathlib.Path(tempfile.mkdtemp(prefix=f"session-{arch}-", dir=WORK))
        self._lock = open(self.work / "lock", "w")
        fcntl.flock(self._lock, fcntl.LOCK_EX)
        self.display = self.wine = self.probe = self._ears = None
        self._programs: list[Kardel] = []
        self._folders = 0
        self._seeded_notes: dict[str, int] = {}
        self._registry_notes = 0
        self.panel_restarted = False  # because it took in no icon
        try:
            self.display = Display(self.work, *size, panel_strut=panel_strut, monitors=monitors)
            self.hands = Hands(self.display)
            self.wine = Wine(arch, self.display.env, self.work, both, monitors > 1)
            self.probe = Probe(self.wine)
            if dpi != 96:
                self._scale(dpi)
        except BaseException:
            self.close()
            raise

    # --- a clean start for each test

    def reset(self) -> None:
        """Makes sure of no program, settings, notes or log-on entry, an empty program folder, and the mouse out of the
        way."""
        if not self.probe.alive:  # a test that left the session hanging must not fail those after it
            self.probe = Probe(self.wine)
        self.end_programs()
        self.probe.ask("regdeltree", SETTINGS_KEY)
        self.probe.ask("regdelete", RUN_KEY, "Kardel")
        self._registry_notes = 0
        self._folders += 1
        self.folder = self.program_folder(f"desk\\{self._folders}")
        self.hands.move(self.display.width - 200, 5)

    def end_programs(self) -> None:
        """Ends every copy of Kardel that is still running, however it was started."""
        for kardel in self._programs:
            if kardel.alive:
                kardel.kill()
        self._programs.clear()
        for process in self.probe.ask("processes", "Kardel.exe"):
            self.probe.ask("kill", process)
        self.wait(lambda: not self.probe.ask("processes", "Kardel.exe"), 10, "every copy of the program to end")

    def crashes(self) -> list[str]:
        """The reports of programs that crashed, with which the fixture fails the test."""
        return [kardel.output() for kardel in self._programs
                if not kardel.killed and not kardel.alive and kardel.process.returncode != 0]

    def program_folder(self, name: str) -> str:
        """Makes a folder below C:\\ with a copy of the program in it; returns its Windows path."""
        folder = "C:\\" + name
        place = self.wine.path(folder)
        place.mkdir(parents=True, exist_ok=True)
        shutil.copy(program(self.arch), place / "Kardel.exe")
        return folder

    def path(self, folder: str | None = None) -> pathlib.Path:
        """The program folder as a path of this system."""
        return self.wine.path(folder or self.folder)

    # --- what is stored

    def seed_registry(self, settings: dict | None = None, notes: list[dict] | None = None,
                      days: tuple[str, ...] = ENGLISH_DAYS) -> None:
        """Fills the registry store. Values are written as texts, true and false as "True" and "False". Unless given,
        "UseRegistry" becomes "True" and "count" the number of notes; None leaves a key out. A note's "weekdays" (seven
        flags, Monday first) become its "w." keys, named by `days`."""
        notes = notes or []
        values = {"UseRegistry": True, "count": len(notes) if notes else None, **(settings or {})}
        self.set_registry("setting", values)
        for number, note in enumerate(notes, 1):
            note = dict(note)
            flags = note.pop("weekdays", None)
            for day, flag in zip(days, flags or []):
                note["w." + day] = flag
            self.set_registry(f"kardel-{number}", note)
        self._registry_notes = len(notes)

    def seed_files(self, notes: list[dict] | None = None, count: int | None = None, version: float = 1.28,
                   folder: str | None = None, code_page: str = datafiles.CODE_PAGE) -> None:
        """Writes the three data files into the program folder; see datafiles.pack_note for the fields."""
        notes = notes or []
        datafiles.write_folder(self.path(folder), notes, count, version, code_page)
        self._seeded_notes[folder or self.folder] = len(notes) if count is None else count

    def read_files(self, folder: str | None = None, code_page: str = datafiles.CODE_PAGE) -> datafiles.DataFiles:
        return datafiles.read_folder(self.path(folder), code_page)

    def set_registry(self, section: str, values: dict) -> None:
        """Adds values to a section; None leaves a value out."""
        words = []
        for name, value in values.items():
            if value is not None:
                words += [name, str(value)]
        self.probe.ask("regtexts", f"{SETTINGS_KEY}\\{section}", *words)

    def registry(self, section: str) -> dict | None:
        """All values of a section, such as "setting" or "kardel-1". None when the section does not exist."""
        return self.probe.ask("regvalues", f"{SETTINGS_KEY}\\{section}")

    def sections(self) -> list[str]:
        return sorted(self.probe.ask("regkeys", SETTINGS_KEY))

    def stored_note(self, number: int) -> dict:
        """Note `number` from the registry. LookupError when it has no section."""
        values = self.registry(f"kardel-{number}")
        if values is None:
            raise LookupError(f"no section kardel-{number}")
        return values

    @property
    def run_value(self) -> str | None:
        """The entry that starts the program at log-on."""
        return (self.probe.ask("regvalues", RUN_KEY) or {}).get("Kardel")

    @contextlib.contextmanager
    def held(self, *files: str):
        """While the block runs, another program has these files of the program folder open for itself alone."""
        try:
            for name in files:
                self.probe.ask("holdfile", f"{self.folder}\\{name}")
            yield
        finally:
            self.probe.ask("release")

    @contextlib.contextmanager
    def named(self, mutex: str):
        """While the block runs, another program holds a mutex of this name."""
        self.probe.ask("holdmutex", mutex)
        try:
            yield
        finally:
            self.probe.ask("release")

    @contextlib.contextmanager
    def scaled(self, dpi: int):
        """While the block runs, programs that start see a screen of so many dots per inch."""
        before, self.dpi = self.dpi, dpi
        self._scale(dpi)
        try:
            yield
        finally:
            self.end_programs()
            self.dpi = before
            self._scale(before)

    def _scale(self, dpi: int) -> None:
        self.probe.ask("regset", SCREEN_KEY, "LogPixels", "dword", dpi)
        fresh = Probe(self.wine)
        seen = fresh.ask("screen")
        fresh.close()
        if (seen["dpi"], seen["width"]) != (dpi, self.screen()["width"]):
            # Newer Wines stretch the screen to the new scale until the user logs on again, as Windows does. Then the
            # program must not start by itself.
            self.probe.ask("regdelete", RUN_KEY, "Kardel")
            self.probe.close()
            self.wine.log_on_again()
            self.probe = Probe(self.wine)

    @contextlib.contextmanager
    def coloured(self, colours: dict[str, tuple[int, int, int]]):
        """While the block runs, programs that start see these system colours, by their names in the settings, and
        plain controls, as under a theme for people who need contrast."""
        usual = self.probe.ask("regvalues", COLOUR_KEY) or {}
        self.probe.ask("regtexts", COLOUR_KEY, *sum(([name, "%d %d %d" % rgb] for name, rgb in colours.items()), []))
        self.probe.ask("regtexts", THEME_KEY, "ThemeActive", "0")
        try:
            yield
        finally:
            self.end_programs()
            for name in colours:
                self.probe.ask("regdelete", COLOUR_KEY, name)
            self.probe.ask("regtexts", COLOUR_KEY, *sum(map(list, usual.items()), []))
            self.probe.ask("regtexts", THEME_KEY, "ThemeActive", "1")

    @contextlib.contextmanager
    def unmanaged(self):
        """While the block runs, the window manager has nothing to do with the windows of programs that start. Wine then
        never waits for it and always knows where they are."""
        self.probe.ask("regtexts", X11_KEY, "Managed", "N")
        try:
            yield
        finally:
            self.end_programs()
            self.probe.ask("regdelete", X11_KEY, "Managed")

    # --- the program

    def start(self, folder: str | None = None, env: dict[str, str] | None = None, faketime: str | None = None,
              clock: Clock | None = None, cwd: str | None = None) -> Kardel:
        """Starts Kardel; `faketime` sets the time it sees ("2026-02-28 23:59:57"), `clock` one that can jump. `cwd` is
        the current folder, by default the program's own."""
        folder = folder or self.folder
        env = dict(env or {})
        if faketime:
            clock = self.clock(faketime, env.get("TZ", "UTC"))
        if clock:
            env = {**clock.env, **env}
        log = self.work / f"kardel-{len(self._programs)}-{self._folders}.log"
        with open(log, "wb") as output:
            process = self.wine.start(folder + "\\Kardel.exe", folder=self.path(cwd or folder), env=env,
                                      stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        kardel = Kardel(self, process, folder, self._expected_notes(folder), log)
        self._programs.append(kardel)
        return kardel

    def run(self, **how) -> Kardel:
        """start() and wait_ready() in one."""
        return self.start(**how).wait_ready()

    def clock(self, start: str, zone: str = "UTC") -> Clock:
        """A clock to give to start(clock=...) and to move with jump(). Raises Unavailable for 32-bit programs."""
        if self.arch == "win32":
            raise processes.Unavailable("the clock of a 32-bit program cannot be set under Wine")
        return Clock(self.work / f"clock-{self._folders}", start, zone)

    def _expected_notes(self, folder: str) -> int:
        use_registry = (self.registry("setting") or {}).get("UseRegistry", "").lower()
        in_registry = use_registry in ("on", "true", "vero", "yes", "si", "sì", "1", "-1")
        seeded = self._registry_notes if in_registry else self._seeded_notes.get(folder, 1)
        return max(1, min(50, seeded))

    # --- hands and eyes

    def type(self, text: str) -> None:
        self.keyboard_to_foreground()
        self.hands.type(text)

    def key(self, *names: str) -> None:
        self.keyboard_to_foreground()
        self.hands.key(*names)

    def keyboard_to_foreground(self) -> None:
        """On Windows keys reach the foreground window. Here the window manager gives them to no window once a dialog
        has gone, because windows with neither an owner nor a place in the task bar do not get them by themselves."""
        if not self.display.keys_reach_nobody:
            return
        front = self.probe.ask("focus")["foreground"]
        info = self.probe.ask("window", front) if front else None
        if info and info["visible"] and info["x11"]:
            self.display.give_keys(info["x11"])
            with contextlib.suppress(AssertionError):
                self.wait(lambda: not self.display.keys_reach_nobody, 1, "the keyboard to reach a program")

    def keys_reach_kardel(self) -> bool:
        self.keyboard_to_foreground()
        return self.display.keys_reach("kardel.exe")

    def click(self, x: int, y: int, button: int = 1, double: bool = False) -> None:
        self.hands.click(x, y, button, double)

    def click_desktop(self) -> None:
        """Clicks the empty root, as a user does to leave a note."""
        covered = [Rect(*info["rect"]) for info in self.probe.ask("windows") if info["visible"]]
        for y in range(self.display.height - 40, 0, -40):
            for x in range(20, self.display.width, 40):
                if not any(r.x - 5 <= x < r.right + 5 and r.y - 5 <= y < r.bottom + 5 for r in covered
                           if r.width < self.display.width):
                    self.hands.click(x, y)
                    return
        raise AssertionError("no empty place on the desktop")

    def menu(self, timeout: float = 5.0) -> Menu:
        """The open popup menu, or the innermost one when a sub-menu is open."""
        return Menu(self, self.wait(lambda: self.menus()[-1:], timeout, "a menu to open")[0])

    def menus(self) -> list[list[dict]]:
        return [items for items in self.probe.ask("menu") if items]

    def pixel(self, x: int, y: int) -> tuple[int, int, int]:
        return self.display.pixel(x, y)

    def screenshot(self, path: pathlib.Path | str) -> pathlib.Path:
        return self.display.screenshot(pathlib.Path(path))

    def screen(self) -> dict:
        """Work area, size, rectangles of the monitors, dpi and ANSI code page as Windows programs see them."""
        return self.probe.ask("screen")

    @property
    def ears(self) -> Recorder:
        """Hears what programs started with its `env` play. The sound server starts when it is first used."""
        if self._ears is None:
            self._ears = Recorder(self.work, self.display.env)
        return self._ears

    # --- other programs of the build

    def run_program(self, exe: pathlib.Path, words: list[str], results: dict[str, pathlib.Path], timeout: float) -> int:
        """Runs another Windows program on the desk with its output on ours, and fetches files that it wrote into its
        folder (name there -> where to put it). Returns its exit code; -1 if it had to be killed."""
        folder = self.wine.path(r"C:\tests")
        folder.mkdir(exist_ok=True)
        shutil.copy(exe, folder / exe.name)
        log = self.work / "program.log"
        with open(log, "wb") as output:
            process = self.wine.start(f"C:\\tests\\{exe.name}", *words, folder=folder, env={"WINEPATH": r"C:\tests"},
                                      stdin=subprocess.DEVNULL, stdout=output, stderr=output)
            try:
                code = process.wait(timeout)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                code = -1
        os.write(1, re.sub(rb"\x1b\[[0-9;?]*[A-Za-z]|\r", b"", log.read_bytes()))
        for name, target in results.items():
            target.parent.mkdir(parents=True, exist_ok=True)
            target.unlink(missing_ok=True)
            if (folder / name).exists():
                shutil.copy(folder / name, target)
        return code

    def close(self) -> None:
        """Ends the session. Nothing stays behind, even when a step fails."""
        with contextlib.ExitStack() as steps:  # in reverse order, each one whatever happened to the others
            steps.callback(self._lock.close)
            steps.callback(shutil.rmtree, self.work, ignore_errors=True)
            for part in (self.display, self.wine, self.probe, self._ears):
                if part:
                    steps.callback(part.close)
            self.display = self.wine = self.probe = self._ears = None
