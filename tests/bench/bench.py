"""How fast and how large Kardel is, compared with a program that does the bare minimum: prints one table.

Run by ./bench, which builds what is measured."""

import argparse
import datetime
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
from pairs import Pairs, spread  # noqa: E402
from runs import (COMMAND_QUIET, COMMANDS, COUNTDOWN_SLICES, IDLE_SECONDS, MEMORY_AFTER, QUIET, SLICE,  # noqa: E402
                  WARM_UP, Bench, Program, Span, like_a_session)
from steps import ROUNDS, Steps, inside, rules  # noqa: E402

ARCH = "win64"
PAGE = ROOT / "docs" / "BENCHMARKS.md"
LEAST_PAIRS, USUAL_PAIRS = 10, 10
START_GOAL, MEMORY_GOAL, COMMAND_GOAL = 1.5, 1.5, 1.5  # times the reference
WINDOWS_GOAL = 1.9    # times bare windows without children
SHARE_GOAL = 15.5     # MB of 1024 * 1024 bytes
SIZE_GOAL = 500       # KB of 1024 bytes
MOVING_GOAL = 20      # microseconds
GROWTH_GOAL = 1.5     # 1 is exactly linear
SAVING_GOAL = 2       # times the bare save
COUNTDOWN_GOAL = 1    # percent of a core
RULE_GOAL = 1000      # nanoseconds

INTRODUCTION = """\
# Benchmarks

`./bench` measures and prints this page; `./bench --write` stores it here. No test depends on these times.

The *reference* is a bare program (`tests/bench/reference.cpp`) that creates, shows and paints 50 windows of the same
sizes with the same eight children, titles and bodies, and hides, shows, shrinks and places them on command. It has
Kardel's manifest, because that decides which of Windows' edit controls the children are, but no store, tray icon or
settings. *Bare windows* (`tests/bench/windows.cpp`) are 50 borderless windows of the same sizes without any children,
each painted in one go with the same title and body. The *bare step*, with which a single step of Kardel is compared, is
in `tests/bench/bare.cpp`.
"""

METHOD = """\
## How it is measured

- There is one virtual screen of 1280 x 1024 with a window manager, a tray panel and the resource property that every
  desktop session has (without it Wine looks for a file on disk whenever a font is selected), and one Wine session that
  is already running. The 64-bit build is measured. Reference and program run in turn: {warm_up} pair is dropped as
  warm-up, and {pairs} pairs are measured for each store.
- A start begins when the process is created. It ends when 50 windows of a note's size are mapped (counted by the X
  server's own events; no window list is polled) **and** the picture has changed for the last time: the X server
  reports every change of its pixels (the DAMAGE extension), and the last report before {quiet} seconds without one is
  the end. For both programs this is what a user would call "everything is there". After the clock has stopped, the
  picture is checked: each of the 50 notes shows its colour with something written on it.
- A command is timed from the message that gives it to the last change of a window or of the picture before
  {command_quiet} seconds without one. After each command, the windows of both programs are at the same places. Kardel's
  time includes what it stores.
- A ratio is the median of the ratios of all pairs, with the quartiles in brackets; times are medians.
- CPU is user and system time of the process itself. After the plus sign comes what Wine's server, which handles every
  window and registry call, has spent meanwhile; the CPU ratio is that of both together. On a machine with other work
  it is steadier than the time, for which the goal is set.
- Private memory is what only the process itself has written (its private dirty pages) at the end of the start. Memory
  in all is the sum of its pages {memory_after:g} seconds after the start began, where a page of several processes counts
  by its part (PSS); it is a little lower when other programs use the same libraries.
- Single steps run inside a program made of Kardel's own code (`tests/bench/inside.cpp`), with {rounds} samples each, in
  turn with their bare counterparts. A drag is a real one, with snapping on and no edge near, so that all notes are
  looked at. The bare message goes to a window that leaves it to the system. Linear growth compares what a note adds from
  25 to 50 notes with what it adds from 10 to 25. From Enter to the store ends when the store's own write of the body has
  returned; the bare step takes the text from an edit control, hides it, shows the text in a label and writes the same
  bytes, while Kardel writes before it shows. A tick is that of all 50 notes, divided by 50; when the second has changed,
  every strip is drawn again. The bare tick sets and draws a label, or is a message that nobody answers.
- The countdown runs in the real program, in {slices} slices of {slice:g} seconds. How often a program wakes up is counted
  by the system over all its threads, so that a timer that runs for nothing would show.
- Rules are timed in a native, optimised program (`tests/bench/rules.cpp`), and compared with a rule that missed one step.
- The programs are ended from outside, and the next start waits until their windows and the tray icon are gone.
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


def cpu_cells(pairs: Pairs) -> list[str]:
    walls, cpus, servers = pairs.medians("wall"), pairs.medians("cpu"), pairs.medians("server_cpu")
    digits = 2 if max(walls) >= 1 else 3
    return [f"{wall * 1000:.0f} ms, CPU {cpu:.{digits}f} + {server:.{digits}f} s"
            for wall, cpu, server in zip(walls, cpus, servers)]


def time_row(name: str, pairs: Pairs, goal: float) -> str:
    cells = cpu_cells(pairs)
    cpu_ratio = pairs.ratios("all_cpu")[0]
    return f"| {name} | {cells[0]} | {cells[1]} | CPU {cpu_ratio:.2f}, time {ratio_cells(pairs, 'wall', goal)} |"


def memory_row(name: str, pairs: Pairs) -> str:
    cells = [f"{size / 2**20:.1f} MB" for size in pairs.medians("memory")]
    return f"| {name} | {cells[0]} | {cells[1]} | {ratio_cells(pairs, 'memory', MEMORY_GOAL)} |"


def bare_rows(starts: Pairs) -> list[str]:
    bare, ours = (f"{size / 2**20:.1f} MB" for size in starts.medians("share"))
    share = starts.medians("share")[1] / 2**20
    return [time_row("Start to 50 notes painted, beside 50 bare windows", starts, WINDOWS_GOAL),
            f"| Memory in all with 50 notes, beside 50 bare windows | {bare} | {ours} | | at most {SHARE_GOAL:g} MB | "
            f"{judged(share, SHARE_GOAL)} |"]


def size_row(arch: str, name: str) -> str:
    size = program(arch).stat().st_size / 1024
    return f"| Size of `Kardel.exe`, {name} | | {size:.0f} KB | | at most {SIZE_GOAL} KB | {judged(size, SIZE_GOAL)} |"


def moving_rows(steps: dict[str, Steps]) -> list[str]:
    counts = (10, 25, 50)
    own = {count: steps[f"moving-{count}"].own for count in counts}
    last = steps["moving-50"]
    middle, lower, upper = own[50]
    growth = (own[50][0] - own[25][0]) / 25 / ((own[25][0] - own[10][0]) / 15)
    each = ", ".join(f"{count}: {own[count][0]:.1f}" for count in counts)
    return [f"| One step of a drag (`WM_MOVING`) among 50 notes | {last.bare:.1f} µs | {last.ours:.1f} µs | "
            f"own time {middle:.1f} µs ({lower:.1f}-{upper:.1f}) | under {MOVING_GOAL} µs | "
            f"{judged(middle, MOVING_GOAL)} |",
            f"| Growth of that own time with the notes | | {each} µs | {growth:.2f} (1: linear) | "
            f"at most {GROWTH_GOAL:g} | {judged(growth, GROWTH_GOAL)} |"]


def saving_row(name: str, steps: Steps) -> str:
    middle, lower, upper = steps.ratio
    return (f"| {name} | {steps.bare / 1000:.2f} ms | {steps.ours / 1000:.2f} ms | {middle:.2f} "
            f"({lower:.2f}-{upper:.2f}) | at most {SAVING_GOAL:g} | {judged(middle, SAVING_GOAL)} |")


def tick_row(name: str, steps: Steps) -> str:
    middle, lower, upper = steps.ours_spread
    return f"| {name} | {steps.bare:.1f} µs | {middle:.1f} µs ({lower:.1f}-{upper:.1f}) | {steps.ratio[0]:.2f} | | |"


def countdown_row(slices: list[Span]) -> str:
    middle, lower, upper = spread([100 * span.cpu / span.wall for span in slices])
    server = spread([100 * span.server_cpu / span.wall for span in slices])[0]
    return (f"| CPU with 50 notes counting down, over {COUNTDOWN_SLICES * SLICE:g} s | | {middle:.2f} % of a core "
            f"({lower:.2f}-{upper:.2f}), Wine's server {server:.2f} % | | under {COUNTDOWN_GOAL} % | "
            f"{judged(middle, COUNTDOWN_GOAL)} |")


def idle_row(reference: int, ours: int) -> str:
    return (f"| Waking up in {IDLE_SECONDS:g} s with 50 notes and no alarm | {reference} | {ours} | | 0 | "
            f"{judged(ours, 0)} |")


def rule_row(name: str, steps: Steps) -> str:
    middle, lower, upper = steps.ours_spread
    return (f"| Moving on a rule that repeats by {name}, missed for 100 years | {steps.bare:.0f} ns | "
            f"{steps.ours:.0f} ns ({lower:.0f}-{upper:.0f}) | {steps.ratio[0]:.2f} | "
            f"under {RULE_GOAL} ns | {judged(middle, RULE_GOAL)} |")


def armed(note: dict) -> dict:
    """The note with an alarm that is days away."""
    due = datetime.date.today() + datetime.timedelta(days=3)
    return {**note, "alarmdate": due.strftime("%d/%m/%Y"), "alarmtime": "12:00:00"}


def measure(count: int, progress) -> list[str]:
    """The rows of the table."""
    desk = Desk(ARCH)
    try:
        like_a_session(desk)
        desk.reset()
        steps = inside(desk)
        progress()
        plain = [stored(note) for note in notes()]
        reference = Program(program_on(desk, "reference", helper(ARCH, "kardel_bench_reference.exe")), "ReferenceDesk")

        def kardel(seed) -> Program:
            desk.reset()
            return Program(desk.folder + "\\Kardel.exe", "ThunderRT6FormDC", seed)

        def seed_files() -> None:
            desk.seed_registry(settings={"UseRegistry": False, "AlignAll": False})
            desk.seed_files(plain)

        bench = Bench(desk)
        try:
            with_registry = kardel(lambda: desk.seed_registry(settings={"AlignAll": False}, notes=plain))
            registry = bench.pairs(reference, with_registry, count, progress)
            bare = Program(program_on(desk, "bare", helper(ARCH, "kardel_bench_windows.exe")), "BareNote")
            starts = bench.starts(bare, with_registry, count, progress)
            idle = bench.wake_ups(reference), bench.wake_ups(with_registry)
            files = bench.pairs(reference, kardel(seed_files), count, progress)
            counting = kardel(lambda: desk.seed_registry(notes=[armed(note) for note in plain]))
            countdown = bench.waiting(counting)
        finally:
            bench.close()
    finally:
        desk.close()
    stores = (("registry store", registry), ("local files", files))
    return [*(time_row(f"Start to 50 notes painted, {store}", pairs["Start"], START_GOAL) for store, pairs in stores),
            *bare_rows(starts),
            *(time_row(f"{command.name} with 50 notes, {store}", pairs[command.name], COMMAND_GOAL)
              for command in COMMANDS for store, pairs in stores),
            *moving_rows(steps),
            saving_row("Enter in the editor until the text is stored, registry store", steps["saving-registry"]),
            saving_row("Enter in the editor until the text is stored, local files", steps["saving-files"]),
            countdown_row(countdown),
            tick_row("One tick of a note that changes its strip, drawing included", steps["tick-changed"]),
            tick_row("One tick of a note within the same second", steps["tick-same"]),
            idle_row(*idle),
            *(rule_row(name, rule) for name, rule in rules().items()),
            *(memory_row(f"Private memory with 50 notes, idle, {store}", pairs["Start"]) for store, pairs in stores),
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
    method = METHOD.format(pairs=count, warm_up=WARM_UP, quiet=QUIET, command_quiet=COMMAND_QUIET, rounds=ROUNDS,
                           slices=COUNTDOWN_SLICES, slice=SLICE, idle=IDLE_SECONDS, memory_after=MEMORY_AFTER)
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
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # so that the desk is cleaned up then, too

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
