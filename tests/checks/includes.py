#!/usr/bin/env python3
"""Checks that the folders use each other in one direction only (core -> note -> alarm -> storage -> support), that only
support/WinText.h includes <windows.h>, that the files that Linux compiles include no Windows header, and that every
test is built. Prints every line that breaks a rule; exits 1 when there is one."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
ORDER = ["support", "storage", "alarm", "note", "core"]
EVERYONE_MAY_USE = {"resources"}
# Further headers of Windows, which may be used besides windows.h.
WINDOWS_DOOR = "support/WinText.h"


def window_free_sources():
    """The sources listed in CMakeLists.txt before `if(WIN32)`, with their headers."""
    text = (ROOT / "CMakeLists.txt").read_text()
    listed = re.findall(r"[a-z]+/\w+\.cpp", text[: text.index("if(WIN32)")])
    headers = [name.replace(".cpp", ".h") for name in listed]
    return [name for name in listed + headers if (ROOT / name).exists()]


def broken_rules():
    for folder in ORDER:
        for path in sorted((ROOT / folder).glob("*.*")):
            name = f"{folder}/{path.name}"
            for number, line in enumerate(path.read_text().splitlines(), 1):
                quoted = re.match(r'\s*#include "([^"/]+)/', line)
                if quoted:
                    used = quoted.group(1)
                    if used not in EVERYONE_MAY_USE and (
                        used not in ORDER or ORDER.index(used) > ORDER.index(folder)
                    ):
                        yield f"{name}:{number}: {folder}/ must not use {used}/"
                if re.match(r"\s*#include <windows\.h>", line) and name != WINDOWS_DOOR:
                    yield f"{name}:{number}: windows.h comes through {WINDOWS_DOOR} only"
    for name in window_free_sources():
        for number, line in enumerate((ROOT / name).read_text().splitlines(), 1):
            if re.match(r'\s*#include ("support/(WinText|Window|Handles|Clock)\.h"|<(windows|winreg)[^>]*>)', line):
                yield f"{name}:{number}: this file is also built where there is no Windows"


def unlisted_tests():
    """Checks that every test is built, since one that is not would never fail."""
    listed = (ROOT / "tests/CMakeLists.txt").read_text()
    for path in sorted((ROOT / "tests").rglob("*Test.cpp")):
        name = path.relative_to(ROOT / "tests").as_posix()
        if name not in listed:
            yield f"tests/{name}: no target of tests/CMakeLists.txt builds it"


def main():
    problems = [*broken_rules(), *unlisted_tests()]
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
