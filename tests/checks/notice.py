#!/usr/bin/env python3
"""Do the logic tests notice mistakes? Makes random changes to the window-free sources, one at a time: a comparison
turned or moved by one, a constant one larger, `and` and `or` swapped. Each is built and tested in build/notice, a copy
of the checkout. Prints every change that no test noticed, and how many were noticed.

A change that leaves the optimised code as it was alters nothing and is not counted. Other changes that alter nothing (a
sort key that never ties, a reserve that is one too small) are left for the reader to recognise.

Usage: notice.py [--count N] [--seed N] [--jobs N] [SOURCE or FOLDER...]"""
import argparse
import concurrent.futures
import dataclasses
import hashlib
import os
import pathlib
import queue
import random
import re
import shlex
import shutil
import subprocess
import sys
import time
import xml.etree.ElementTree as tree

ROOT = pathlib.Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "notice"
COPIED = ("CMakeLists.txt", "cmake", "resources", "core", "note", "alarm", "storage", "support", "tests")
SWAPS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&"}
NOT_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|u?8?"(?:\\.|[^"\\\n])*"|(?<![0-9a-zA-Z])u?\'(?:\\.|[^\'\\\n])+\''
                      r"|^[ \t]*#[^\n]*|static_assert\(.*?\);", re.S | re.M)
# clang-format puts blanks around comparisons and logical `&&`, but not around template brackets and references.
OPERATOR = re.compile(r"(?<= )(<|<=|>|>=|==|!=|&&|\|\|)(?= )")
CONSTANT = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f']+|[0-9][0-9']*)(?=[uUlL]*(?![\w.'xX]))")
SLOW = 0.5  # seconds: tests that take longer are run last


@dataclasses.dataclass(frozen=True)
class Change:
    source: str
    at: int
    old: str
    new: str
    line: int

    def __str__(self):
        return f"{self.source}:{self.line}: {self.old} -> {self.new}"


def window_free():
    text = (ROOT / "CMakeLists.txt").read_text().split("\nif(WIN32)")[0]
    return re.findall(r"\b(?:support|storage|alarm|note|core)/\w+\.cpp", text)


def changes(source):
    text = (ROOT / source).read_text()
    blanked = NOT_CODE.sub(lambda found: re.sub(r"[^\n]", "~", found[0]), text)
    for pattern in (OPERATOR, CONSTANT):
        for found in pattern.finditer(blanked):
            old = found[1]
            new = SWAPS.get(old) or str(int(old.replace("'", ""), 0) + 1)
            line = text.count("\n", 0, found.start()) + 1
            if not re.match(r"\s*(template|using|operator|case)\b", text.splitlines()[line - 1]) or old[0].isdigit():
                yield Change(source, found.start(), old, new, line)


def slow_tests(results):
    """Names of the tests that take long, from a run's XML."""
    return [f"{case.get('classname')}.{case.get('name')}" for case in tree.parse(results).iter("testcase")
            if float(case.get("time", 0)) >= SLOW]


def copy(source, target):
    """Brings a file or a folder up to date; unchanged files keep their time and are not built again."""
    if source.is_dir():
        target.mkdir(exist_ok=True)
        for gone in {path.name for path in target.iterdir()} - {path.name for path in source.iterdir()}:
            subprocess.run(["rm", "-r", target / gone], check=True)
        for path in source.iterdir():
            copy(path, target / path.name)
    elif not target.exists() or source.read_bytes() != target.read_bytes():
        shutil.copy(source, target)


class Bench:
    """One copy of the sources with its build."""

    def __init__(self, number):
        self.source, self.build = WORK / f"source-{number}", WORK / f"build-{number}"
        self.source.mkdir(parents=True, exist_ok=True)
        for name in COPIED:
            copy(ROOT / name, self.source / name)
        with open(WORK / f"build-{number}.log", "w", encoding="utf-8") as log:
            subprocess.run(["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                            "-DKARDEL_SANITIZE=OFF"], check=True, stdout=log, stderr=log)
            subprocess.run(["cmake", "--build", self.build, "--target", "kardel_logic_tests"], check=True, stdout=log,
                           stderr=log)
        self.tests = next(path for path in self.build.rglob("kardel_logic_tests") if path.is_file())
        commands = subprocess.run(["ninja", "-C", self.build, "-t", "commands", "kardel_logic_tests"], check=True,
                                  capture_output=True, text=True).stdout.splitlines()
        self.compile = {}
        for line in commands:
            words = shlex.split(line)
            if "-c" in words:
                path = pathlib.Path(words[-1])
                if path.is_relative_to(self.source):
                    self.compile[str(path.relative_to(self.source))] = words

    def run(self, *words, timeout=600.0):
        env = {**os.environ, "KARDEL_STORES": "500"}
        return subprocess.run([self.tests, "--gtest_brief=1", "--gtest_fail_fast", *words], env=env, cwd=self.build,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=timeout).returncode == 0

    def optimised(self, source):
        """A checksum of the optimised code, without anything that depends on line numbers."""
        words = self.compile[source]
        words = [word for at, word in enumerate(words) if word not in ("-MD", "-g", "-c") and
                 words[at - 1] not in ("-MT", "-MF", "-o") and word not in ("-MT", "-MF", "-o")]
        made = subprocess.run([*words, "-O2", "-g0", "-S", "-o", "-"], cwd=self.build, check=True, capture_output=True)
        return hashlib.sha256(made.stdout).hexdigest()

    def judge(self, change, slow, patience):
        """"noticed", "not built" (which is noticed, too), "alters nothing" or "not noticed"."""
        file = self.source / change.source
        before = file.read_text()
        file.write_text(before[:change.at] + change.new + before[change.at + len(change.old):])
        try:
            built = subprocess.run(["cmake", "--build", self.build, "--target", "kardel_logic_tests"],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
            if built.returncode != 0:
                return "not built"
            try:
                names = ":".join(slow)
                if not self.run(f"--gtest_filter=-{names}", timeout=patience) or (
                        slow and not self.run(f"--gtest_filter={names}", timeout=patience)):
                    return "noticed"
            except subprocess.TimeoutExpired:
                return "noticed"
            changed = self.optimised(change.source)
            file.write_text(before)
            return "alters nothing" if changed == self.optimised(change.source) else "not noticed"
        finally:
            file.write_text(before)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=random.randrange(10000))
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("sources", nargs="*")
    args = parser.parse_args()

    possible = [change for source in window_free()
                if not args.sources or any(source.startswith(wanted) for wanted in args.sources)
                for change in changes(source)]
    chosen = random.Random(args.seed).sample(possible, min(args.count, len(possible)))
    print(f"{len(chosen)} of {len(possible)} changes, --seed {args.seed}", flush=True)
    benches = queue.Queue()
    for number in range(args.jobs):
        benches.put(Bench(number))
    first = benches.queue[0]
    start = time.monotonic()
    results = WORK / "results.xml"
    if not first.run(f"--gtest_output=xml:{results}"):
        print("The tests fail without any change.")
        return 1
    patience, slow = 60 + 10 * (time.monotonic() - start), slow_tests(results)

    def judge(change):
        bench = benches.get()
        try:
            return change, bench.judge(change, slow, patience)
        finally:
            benches.put(bench)

    outcomes = {}
    with concurrent.futures.ThreadPoolExecutor(args.jobs) as pool:
        for change, outcome in pool.map(judge, chosen):
            outcomes[change] = outcome
            if outcome in ("not noticed", "alters nothing"):
                source = (ROOT / change.source).read_text().splitlines()[change.line - 1].strip()
                print(f"{outcome}: {change}    {source}", flush=True)
    counted = [outcome for outcome in outcomes.values() if outcome != "alters nothing"]
    noticed = sum(outcome != "not noticed" for outcome in counted)
    print(f"{noticed} of {len(counted)} changes were noticed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
