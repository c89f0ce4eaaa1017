"""One start of a program on the desk, measured; pairs of such starts; and what many pairs say together."""

import dataclasses
import os
import pathlib
import statistics
import subprocess
import time

from kardel_desk import Desk, processes, waiting
from kardel_desk.paths import FAILURES
from notes import COUNT, notes
from screen import Screen

QUIET = 0.8    # seconds without a change of the picture: the program is idle
LIMIT = 60.0   # seconds after which a start has failed
PANEL = 24     # pixels at the lower edge of the screen
WARM_UP = 1    # pairs that are run first and dropped
_TICK = os.sysconf("SC_CLK_TCK")


@dataclasses.dataclass
class Start:
    """Seconds and bytes of one start, from the creation of the process to the picture that stays."""
    wall: float
    cpu: float         # of the process itself
    server_cpu: float  # of the Wine server meanwhile, which does the process's window and registry calls
    memory: int        # private dirty pages when idle

    @property
    def all_cpu(self) -> float:
        return self.cpu + self.server_cpu


def _cpu(process: int) -> float:
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / _TICK  # user and system


def _private_memory(process: int) -> int:
    # Dirty pages only: whether a clean page of a library is private depends on what else runs on the machine.
    lines = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text().splitlines()
    return next(int(line.split()[1]) * 1024 for line in lines if line.startswith("Private_Dirty:"))


def _wine_server(desk: Desk) -> int:
    found = [process for process in processes.with_variable("WINEPREFIX", str(desk.wine.prefix))
             if pathlib.Path(f"/proc/{process}/comm").read_text().startswith("wineserver")]
    if len(found) != 1:
        raise RuntimeError(f"{len(found)} Wine servers of this desk")
    return found[0]


class Bench:
    """Starts programs on one desk, one at a time."""

    def __init__(self, desk: Desk):
        self.desk = desk
        self.screen = Screen(desk.display.env["DISPLAY"], desk.display.height - PANEL)
        self._server = _wine_server(desk)

    def start(self, program: str) -> Start:
        """Starts a program (a Windows path) that shows the 50 notes, measures it, and ends it."""
        self._clear()
        folder = self.desk.wine.path(program).parent
        self.screen.forget()
        server_before = _cpu(self._server)
        begun = time.monotonic()
        process = self.desk.wine.start(program, folder=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
        try:
            self.screen.settle(COUNT, QUIET, LIMIT)
            measured = Start(self.screen.painted - begun, _cpu(process.pid),
                             _cpu(self._server) - server_before, _private_memory(process.pid))
            self._check_picture(program)
        except BaseException:
            self.desk.screenshot(FAILURES / "bench.png")
            raise
        finally:
            process.kill()
            process.wait()
        return measured

    def _clear(self) -> None:
        """Waits until nothing of the program before is left: its windows, and its icon, which Wine's shell takes out
        of the tray a moment after the program is gone."""
        waiting.wait(lambda: self.screen.empty, 20, "the notes of the run before to go")
        waiting.wait(lambda: not self.desk.display.tray_icons(), 20, "the tray icon of the run before to go")

    def _check_picture(self, program: str) -> None:
        """Every note is on the screen in its colour with something written on it: nobody is quick by not painting."""
        if len(self.screen.maps) != COUNT:
            raise RuntimeError(f"{program} showed {len(self.screen.maps)} windows instead of {COUNT}")
        picture = self.desk.display.image()
        for note in notes():
            colour = tuple(note["colour"] >> shift & 0xFF for shift in (0, 8, 16))
            corner = picture.crop((note["x"] + 1, note["y"] + 1, note["x"] + 100, note["y"] + 100))
            counts = {found: count for count, found in corner.getcolors(corner.width * corner.height)}
            if max(counts, key=counts.get) != colour or counts[colour] > 0.98 * corner.width * corner.height:
                raise RuntimeError(f"{program} did not paint the note {note['title']!r}")

    def pairs(self, reference: str, program: str, count: int, progress=lambda: None) -> "Pairs":
        """Runs both in turn, so that whatever else the machine does meets both alike."""
        found = []
        for _ in range(WARM_UP + count):
            found.append((self.start(reference), self.start(program)))
            progress()
        return Pairs(found[WARM_UP:])

    def close(self) -> None:
        self.screen.close()


@dataclasses.dataclass
class Pairs:
    """Measured pairs: the reference first, the program second."""
    found: list[tuple[Start, Start]]

    def medians(self, what: str) -> tuple[float, float]:
        """Of one figure, for the reference and for the program."""
        return tuple(statistics.median(getattr(pair[side], what) for pair in self.found) for side in (0, 1))

    def ratios(self, what: str) -> tuple[float, float, float]:
        """The median, the lower and the upper quartile of program to reference, pair by pair."""
        ratios = [getattr(program, what) / getattr(reference, what) for reference, program in self.found]
        lower, middle, upper = statistics.quantiles(ratios, n=4, method="inclusive")
        return middle, lower, upper
