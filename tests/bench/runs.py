"""One run of a program on the desk, measured: its start, and the commands on all notes. Also pairs of such runs, and
the figures of a program that only waits."""

import dataclasses
import os
import pathlib
import subprocess
import time
from collections.abc import Callable

from Xlib import Xatom

from kardel_desk import Desk, processes, waiting
from kardel_desk.ids import IDS
from kardel_desk.paths import FAILURES
from notes import COUNT, notes
from pairs import Pairs
from screen import Screen

QUIET = 0.8          # seconds without a change of the picture: the program is idle
COMMAND_QUIET = 0.5  # the same after a command, which is shorter than a start
LIMIT = 60.0         # seconds after which a start or a command has failed
PANEL = 24           # pixels at the lower edge of the screen
WARM_UP = 1          # pairs that are run first and dropped
COUNTDOWN_SLICES, SLICE = 12, 5.0  # seconds
IDLE_SECONDS = 20.0
MEMORY_AFTER = 5.0   # seconds after the creation of the process: what it needs in the long run
WM_COMMAND = 0x0111

_ICONIZED = 30       # pixels; a note that is shrunk to its strip is lower
_TICK = os.sysconf("SC_CLK_TCK")


@dataclasses.dataclass
class Program:
    """One of the two that are compared: where it is (a Windows path), the class of the hidden window that takes the
    commands, and what is stored for it before each start."""
    path: str
    commands_to: str
    seed: Callable[[], None] = lambda: None


@dataclasses.dataclass
class Span:
    """Seconds of one stretch of work."""
    wall: float
    cpu: float         # of the process itself
    server_cpu: float  # of the Wine server meanwhile, which does the process's window and registry calls

    @property
    def all_cpu(self) -> float:
        return self.cpu + self.server_cpu


@dataclasses.dataclass
class Start(Span):
    """From the creation of the process to the final picture."""
    memory: int  # bytes: private dirty pages when idle
    share: int = 0  # bytes: all its pages, MEMORY_AFTER the beginning; shared pages count by their part


@dataclasses.dataclass
class Command:
    name: str
    id: int  # of WM_COMMAND
    done: Callable[[Screen, list], bool]  # whether the windows, compared with those before, are where they should be


def _heights(screen: Screen) -> list[int]:
    return [place[3] for place in screen.places]


# In the order in which they are run.
COMMANDS = (
    Command("Hide All", IDS["IDM_DYN"] + 2, lambda screen, before: screen.empty),
    Command("Show All", IDS["IDM_DYN"] + 2, lambda screen, before: len(screen.places) == COUNT),
    Command("Iconize All", IDS["IDM_DYN"] + 3, lambda screen, before: max(_heights(screen)) < _ICONIZED),
    Command("Restore All", IDS["IDM_DYN"] + 3, lambda screen, before: min(_heights(screen)) >= _ICONIZED),
    Command("Automatic position", IDS["IDM_DYN"] + 5, lambda screen, before: screen.places != before),
)


def _cpu(process: int) -> float:
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / _TICK  # user and system


def _fine_cpu(process: int) -> float:
    """To the nanosecond, of the threads that are there."""
    tasks = pathlib.Path(f"/proc/{process}/task").glob("*/schedstat")
    return sum(int(task.read_text().split()[0]) for task in tasks) / 1e9


def _wake_ups(process: int) -> int:
    """How often the threads of a process have gone to sleep since it began, which is how often they were woken."""
    lines = [line for task in pathlib.Path(f"/proc/{process}/task").glob("*/status")
             for line in task.read_text().splitlines()]
    return sum(int(line.split()[1]) for line in lines if line.startswith("voluntary_ctxt_switches:"))


def _memory(process: int, kind: str) -> int:
    lines = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text().splitlines()
    return next(int(line.split()[1]) * 1024 for line in lines if line.startswith(f"{kind}:"))


def _private_memory(process: int) -> int:
    # Dirty pages only: whether a clean page of a library is private depends on what else runs on the machine.
    return _memory(process, "Private_Dirty")


def _wine_server(desk: Desk) -> int:
    found = [process for process in processes.with_variable("WINEPREFIX", str(desk.wine.prefix))
             if pathlib.Path(f"/proc/{process}/comm").read_text().startswith("wineserver")]
    if len(found) != 1:
        raise RuntimeError(f"{len(found)} Wine servers of this desk")
    return found[0]


def like_a_session(desk: Desk) -> None:
    """Gives the screen a resource property, as every desktop session does. Without one, Wine looks for the user's
    file of resources on disk again whenever a font is selected."""
    desk.display.root.change_property(Xatom.RESOURCE_MANAGER, Xatom.STRING, 8, b"*customization: -color\n")
    desk.display.x.sync()


class Bench:
    """Runs programs on one desk, one at a time."""

    def __init__(self, desk: Desk):
        self.desk = desk
        self.screen = Screen(desk.display.env["DISPLAY"], desk.display.height - PANEL)
        self._server = _wine_server(desk)

    def run(self, program: Program) -> tuple[dict[str, Span], dict[str, list]]:
        """Starts a program that shows the 50 notes, gives it every command, and ends it. The measured spans by name
        ("Start" is the first), and where the windows stood after each."""
        with self._running(program) as (process, begun, server_before):
            self.screen.settle(lambda: len(self.screen.maps) >= COUNT, QUIET, LIMIT,
                               f"{program.path} to show its notes")
            spans = {"Start": Start(self.screen.painted - begun, _cpu(process.pid), _cpu(self._server) - server_before,
                                    _private_memory(process.pid))}
            places = {"Start": self.screen.places}
            self._check_picture(program)
            window = self._command_window(program)
            for command in COMMANDS:
                spans[command.name] = self._command(process.pid, window, command)
                places[command.name] = self.screen.places
        return spans, places

    def _command(self, process: int, window: int, command: Command) -> Span:
        before = self.screen.places
        self.screen.forget()
        cpu, server = _fine_cpu(process), _fine_cpu(self._server)
        begun = time.monotonic()
        self.desk.probe.ask("post", window, WM_COMMAND, command.id, 0)
        self.screen.settle(lambda: command.done(self.screen, before), COMMAND_QUIET, LIMIT, command.name)
        return Span(self.screen.painted - begun, _fine_cpu(process) - cpu, _fine_cpu(self._server) - server)

    def pairs(self, reference: Program, program: Program, count: int, progress=lambda: None) -> dict[str, Pairs]:
        """Runs both in turn, so that whatever else the machine does affects both alike."""
        found: dict[str, list] = {}
        for pair in range(WARM_UP + count):
            spans, places = self.run(reference)
            spans_of_program, places_of_program = self.run(program)
            for name, span in spans.items():
                if places[name] != places_of_program[name]:
                    apart = set(places[name]) ^ set(places_of_program[name])
                    raise RuntimeError(f"after {name!r} the windows of the two programs stand apart: {sorted(apart)}")
                if pair >= WARM_UP:
                    found.setdefault(name, []).append((span, spans_of_program[name]))
            progress()
        return {name: Pairs(list_of_pairs) for name, list_of_pairs in found.items()}

    def start(self, program: Program) -> Start:
        """Only a start, and the memory that it needs."""
        with self._running(program) as (process, begun, server_before):
            self.screen.settle(lambda: len(self.screen.maps) >= COUNT, QUIET, LIMIT,
                               f"{program.path} to show its notes")
            start = Start(self.screen.painted - begun, _cpu(process.pid), _cpu(self._server) - server_before,
                          _private_memory(process.pid))
            self._check_picture(program)
            time.sleep(max(0.0, begun + MEMORY_AFTER - time.monotonic()))
            start.share = _memory(process.pid, "Pss")
        return start

    def starts(self, bare: Program, program: Program, count: int, progress=lambda: None) -> Pairs:
        """Starts of both in turn, as in pairs()."""
        found = []
        for _ in range(WARM_UP + count):
            found.append((self.start(bare), self.start(program)))
            progress()
        return Pairs(found[WARM_UP:])

    def waiting(self, program: Program) -> list[Span]:
        """What a program spends while it only waits, or counts down: slices of it after a first one."""
        slices = []
        with self._running(program) as (process, *_):
            self.screen.settle(lambda: len(self.screen.maps) >= COUNT, 0, LIMIT, f"{program.path} to show its notes")
            for _ in range(1 + COUNTDOWN_SLICES):
                begun, cpu, server = time.monotonic(), _fine_cpu(process.pid), _fine_cpu(self._server)
                time.sleep(SLICE)
                slices.append(Span(time.monotonic() - begun, _fine_cpu(process.pid) - cpu,
                                   _fine_cpu(self._server) - server))
        return slices[1:]

    def wake_ups(self, program: Program) -> int:
        """How often a program that has nothing to do wakes up within IDLE_SECONDS."""
        with self._running(program) as (process, *_):
            self.screen.settle(lambda: len(self.screen.maps) >= COUNT, QUIET, LIMIT,
                               f"{program.path} to show its notes")
            time.sleep(SLICE)  # Wine is still tidying up
            before = _wake_ups(process.pid)
            time.sleep(IDLE_SECONDS)
            return _wake_ups(process.pid) - before

    def _running(self, program: Program) -> "_Running":
        return _Running(self, program)

    def _command_window(self, program: Program) -> int:
        found = self.desk.probe.ask("windows", program.commands_to)
        if len(found) != 1:
            raise RuntimeError(f"{len(found)} windows of the class {program.commands_to}")
        return found[0]["hwnd"]

    def clear(self) -> None:
        """Waits until nothing of the program before is left: its windows, and its icon, which Wine's shell takes out
        of the tray a moment after the program is gone."""
        waiting.wait(lambda: self.screen.empty, 20, "the notes of the run before to go")
        waiting.wait(lambda: not self.desk.display.tray_icons(), 20, "the tray icon of the run before to go")

    @property
    def server_cpu(self) -> float:
        return _cpu(self._server)

    def _check_picture(self, program: Program) -> None:
        """Checks that every note is on the screen in its colour with something written on it, so that no program is
        fast because it does not paint."""
        if len(self.screen.maps) != COUNT:
            raise RuntimeError(f"{program.path} showed {len(self.screen.maps)} windows instead of {COUNT}")
        picture = self.desk.display.image()
        for note in notes():
            colour = tuple(note["colour"] >> shift & 0xFF for shift in (0, 8, 16))
            corner = picture.crop((note["x"] + 1, note["y"] + 1, note["x"] + 100, note["y"] + 100))
            counts = {found: count for count, found in corner.getcolors(corner.width * corner.height)}
            if max(counts, key=counts.get) != colour or counts[colour] > 0.98 * corner.width * corner.height:
                raise RuntimeError(f"{program.path} did not paint the note {note['title']!r}")

    def close(self) -> None:
        self.screen.close()


class _Running:
    """Runs a program from its start until it is ended from outside. Yields the process, when it began, and the Wine
    server's CPU time at that moment. A run that fails leaves a picture of the screen."""

    def __init__(self, bench: Bench, program: Program):
        self._bench, self._program = bench, program

    def __enter__(self):
        bench, program = self._bench, self._program
        bench.clear()
        program.seed()
        bench.screen.forget()
        server = bench.server_cpu
        begun = time.monotonic()
        self._process = bench.desk.wine.start(
            program.path, folder=bench.desk.wine.path(program.path).parent, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return self._process, begun, server

    def __exit__(self, kind, *_):
        if kind is not None:
            self._bench.desk.screenshot(FAILURES / "bench.png")
        self._process.kill()
        self._process.wait()
