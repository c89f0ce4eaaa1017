"""Single steps of Kardel, timed inside a program made of its code."""

import pathlib
import shutil
import statistics
import subprocess

from kardel_desk import Desk
from kardel_desk.paths import BUILD, helper
from pairs import spread

ROUNDS = 40
LIMIT = 180.0  # seconds

RULES = BUILD / "host" / "kardel_bench_rules"


class Steps:
    """Samples of one step: each a figure of the bare step and one of Kardel's."""

    def __init__(self, samples: list[tuple[float, float]]):
        self.bare = statistics.median(bare for bare, _ in samples)
        self.ours = statistics.median(ours for _, ours in samples)
        self.ours_spread = spread([ours for _, ours in samples])
        self.own = spread([ours - bare for bare, ours in samples])     # what Kardel adds
        self.ratio = spread([ours / bare for bare, ours in samples])


def _parsed(output: str) -> dict[str, Steps]:
    samples: dict[str, list] = {}
    for line in output.splitlines():
        name, bare, ours = line.split()
        samples.setdefault(name, []).append((float(bare), float(ours)))
    return {name: Steps(found) for name, found in samples.items()}


def inside(desk: Desk) -> dict[str, Steps]:
    """Steps with windows and stores, in microseconds. The stores of the desk must be empty, and are left so."""
    source = helper(desk.arch, "kardel_bench_inside.exe")
    folder = desk.wine.path(r"C:\inside")
    folder.mkdir()
    shutil.copy(source, folder)
    with open(desk.work / "inside.log", "w+", encoding="utf-8") as output:
        process = desk.wine.start(rf"C:\inside\{source.name}", "C:\\inside\\", str(ROUNDS), folder=folder,
                                  stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL)
        try:
            code = process.wait(LIMIT)
        finally:
            process.kill()
            process.wait()
        output.seek(0)
        text = output.read()
    if code != 0:
        raise RuntimeError(f"{source.name} ended with {code}: {text.splitlines()[-1:]}")
    return _parsed(text)


def rules() -> dict[str, Steps]:
    """Repeating rules moved on, natively and optimised, in nanoseconds."""
    return _parsed(subprocess.run([RULES], capture_output=True, text=True, check=True, timeout=LIMIT).stdout)
