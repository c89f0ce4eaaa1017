#!/usr/bin/env python3
"""Runs the logic tests of a build that counts (preset `coverage`) and says how much of the window-free code they ran:
lines, and branches, leaving out those that only an exception takes. Exits with 1 below the required figures. Usage:
coverage.py BUILD_FOLDER"""
import collections
import json
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("core", "note", "alarm", "storage", "support")
LINES, BRANCHES = 95.0, 90.0  # percent


def counts(build):
    """source -> line -> (times run, [times each branch was taken])."""
    lines = collections.defaultdict(dict)
    for data in build.rglob("*.gcda"):
        text = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", data], check=True,
                              capture_output=True, cwd=build).stdout
        for file in json.loads(text)["files"]:
            path = (build / file["file"]).resolve()
            if not path.is_relative_to(ROOT) or path.relative_to(ROOT).parts[0] not in FOLDERS:
                continue
            known = lines[str(path.relative_to(ROOT))]
            for line in file["lines"]:
                taken = [branch["count"] for branch in line["branches"] if not branch["throw"]]
                times, before = known.get(line["line_number"], (0, []))
                # A header is counted once for every source that includes it, a template once per instance.
                if len(before) == len(taken):
                    taken = [a + b for a, b in zip(before, taken)]
                elif len(before) > len(taken):
                    taken = before
                known[line["line_number"]] = (times + line["count"], taken)
    return lines


def percent(part, whole):
    return 100 * part / whole if whole else 100


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    for data in build.rglob("*.gcda"):
        data.unlink()
    tests = next(build.rglob("kardel_logic_tests"))
    env = {**os.environ, "KARDEL_STORES": "2000"}
    subprocess.run([tests, "--gtest_brief=1"], check=True, env=env, stdout=subprocess.DEVNULL)
    totals = [0, 0, 0, 0]
    for source, lines in sorted(counts(build).items()):
        run = sum(times > 0 for times, _ in lines.values())
        branches = [count for times, taken in lines.values() if times for count in taken]
        taken = sum(count > 0 for count in branches)
        totals = [a + b for a, b in zip(totals, (run, len(lines), taken, len(branches)))]
        print(f"{source:32} {percent(run, len(lines)):5.1f} % of {len(lines):4} lines, "
              f"{percent(taken, len(branches)):5.1f} % of {len(branches):4} branches")
        missed = [str(number) for number, (times, _) in sorted(lines.items()) if not times]
        if missed:
            print("    never run: " + ", ".join(missed))
    lines, branches = percent(totals[0], totals[1]), percent(totals[2], totals[3])
    print(f"in all: {lines:.1f} % of {totals[1]} lines, {branches:.1f} % of {totals[3]} branches")
    return 0 if lines >= LINES and branches >= BRANCHES else 1


if __name__ == "__main__":
    sys.exit(main())
