"""How fast and how large Kardel is, beside a program that does the bare minimum: prints one table.

Run by ./bench, which builds what is measured."""

import argparse
import os
import pathlib
import platform
import shutil
import signal
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "desk"))

from kardel_desk import Desk  # noqa: E402
from kardel_desk.paths import ROOT, helper, program  # noqa: E402
from notes import notes, stored  # noqa: E402
from runs import QUIET, WARM_UP, Bench, Pairs  # noqa: E402

ARCH = "win64"
PAGE = ROOT / "docs" / "BENCHMARKS.md"
LEAST_PAIRS, USUAL_PAIRS = 10, 20
START_GOAL, MEMORY_GOAL = 1.5, 1.5  # times the reference
SIZE_GOAL = 500                     # KB of 1024 bytes

INTRODUCTION = """\
# Benchmarks

`./bench` measures and prints this page; `./bench --write` keeps it here. Nothing in the tests depends on these times.

The *reference* is a bare program (`tests/bench/reference.cpp`) that creates, shows and paints 50 windows of the same
sizes with the same eight children each, and the same titles and bodies. It carries Kardel's manifest, since that
decides which of Windows' edit controls the children are. It has no store, no tray icon, no settings.
"""

METHOD = """\
## How it is measured

- One virtual screen of 1280 x 1024 with a window manager and a tray panel, one Wine session that is already up, the
  64-bit build. Reference and program run in turn: {warm_up} pair dropped as warm-up, {pairs} pairs measured for each
  store.
- A start begins when the process is created. It ends when 50 windows of a note's size are mapped (counted by the
  X server's own events; no window list is polled) **and** the picture has changed for the last time: the X server
  reports every change of its pixels (the DAMAGE extension), and the last report before {quiet} seconds without one is
  the end. For both programs alike this is what a user would call "everything is there". After the clock has
  stopped, the picture is checked: each of the 50 notes shows its colour and something written on it.
- A ratio is the median of the ratios of all pairs, with the quartiles in brackets; times are medians.
- CPU is user and system time of the process itself; behind the plus sign stands what Wine's server spent meanwhile,
  which does every window and registry call. The CPU ratio is that of both together. On a machine that has other work
  it is steadier than the time, which the goal is about.
- Memory is what the process alone has written (its private dirty pages) when the start is over.
- Both programs are ended from outside; the next start waits until their windows and the tray icon are gone.
"""


def machine() -> str:
    cpu = next((line.partition(":")[2].strip() for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines()
                if line.startswith("model name")), platform.machine())
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    wine = subprocess.run(["/usr/lib/wine/wine64", "--version"], capture_output=True, text=True, check=True).stdout
    return f"{cpu}, {os.cpu_count()} cores, {memory:.1f} GB memory; {wine.split('(')[0].strip()}, {system()}"


def system() -> str:
    names = dict(line.split("=", 1) for line in pathlib.Path("/etc/os-release").read_text().splitlines() if "=" in line)
    return names.get("PRETTY_NAME", "Linux").strip('"')


def judged(value: float, goal: float) -> str:
    return "yes" if value <= goal else "**no**"


def ratio_cells(pairs: Pairs, what: str, goal: float) -> str:
    middle, lower, upper = pairs.ratios(what)
    return f"{middle:.2f} ({lower:.2f}-{upper:.2f}) | at most {goal:g} | {judged(middle, goal)}"


def start_row(name: str, pairs: Pairs) -> str:
    walls, cpus, servers = pairs.medians("wall"), pairs.medians("cpu"), pairs.medians("server_cpu")
    cells = [f"{wall * 1000:.0f} ms, CPU {cpu:.2f} + {server:.2f} s" for wall, cpu, server in zip(walls, cpus, servers)]
    cpu_ratio = pairs.ratios("all_cpu")[0]
    return f"| {name} | {cells[0]} | {cells[1]} | CPU {cpu_ratio:.2f}, time {ratio_cells(pairs, 'wall', START_GOAL)} |"


def memory_row(name: str, pairs: Pairs) -> str:
    cells = [f"{size / 2**20:.1f} MB" for size in pairs.medians("memory")]
    return f"| {name} | {cells[0]} | {cells[1]} | {ratio_cells(pairs, 'memory', MEMORY_GOAL)} |"


def size_row(arch: str, name: str) -> str:
    size = program(arch).stat().st_size / 1024
    return f"| Size of `Kardel.exe`, {name} | | {size:.0f} KB | | at most {SIZE_GOAL} KB | {judged(size, SIZE_GOAL)} |"


def measure(count: int, progress) -> list[str]:
    """The rows of the table."""
    desk = Desk(ARCH)
    try:
        desk.reset()
        reference = program_on(desk, "reference", helper(ARCH, "kardel_bench_reference.exe"))
        bench = Bench(desk)
        try:
            desk.seed_registry(notes=[stored(note) for note in notes()])
            registry = bench.pairs(reference, desk.folder + "\\Kardel.exe", count, progress)
            desk.reset()
            desk.seed_registry(settings={"UseRegistry": False})
            desk.seed_files([stored(note) for note in notes()])
            files = bench.pairs(reference, desk.folder + "\\Kardel.exe", count, progress)
        finally:
            bench.close()
    finally:
        desk.close()
    return [start_row("Start to 50 notes painted, registry store", registry),
            start_row("Start to 50 notes painted, local files", files),
            memory_row("Private memory with 50 notes, idle, registry store", registry),
            memory_row("Private memory with 50 notes, idle, local files", files),
            size_row("win64", "64-bit"), size_row("win32", "32-bit")]


def program_on(desk: Desk, name: str, source: pathlib.Path) -> str:
    """Copies a program of the build into a folder of the desk; returns its Windows path."""
    folder = desk.wine.path(rf"C:\{name}")
    folder.mkdir()
    shutil.copy(source, folder / source.name)
    return rf"C:\{name}\{source.name}"


def page(rows: list[str], count: int, load: float) -> str:
    """`load`: how many other processes wanted to run when the measurement began."""
    table = ["| what | reference | Kardel | ratio | goal | met |", "|---|---|---|---|---|---|", *rows]
    method = METHOD.format(pairs=count, warm_up=WARM_UP, quiet=QUIET)
    where = f"Measured on {machine()}. Load of the machine by other work: {load:.1f}."
    return "\n".join([INTRODUCTION, where, "", *table, "", method])


def pairs_wanted(word: str) -> int:
    count = int(word)
    if count < LEAST_PAIRS:
        raise argparse.ArgumentTypeError(f"at least {LEAST_PAIRS}, or a median says little")
    return count


def main() -> int:
    parser = argparse.ArgumentParser(prog="./bench", description=__doc__.splitlines()[0])
    parser.add_argument("--pairs", type=pairs_wanted, default=USUAL_PAIRS, metavar="N",
                        help="pairs of starts for each store (%(default)s)")
    parser.add_argument("--write", action="store_true", help="keep the result in docs/BENCHMARKS.md")
    args = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # the desk is put away then, too

    def progress() -> None:
        print(".", end="", file=sys.stderr, flush=True)

    load = os.getloadavg()[0]
    rows = measure(args.pairs, progress)
    print(file=sys.stderr)
    text = page(rows, args.pairs, load)
    print(text)
    if args.write:
        PAGE.write_text(text, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
