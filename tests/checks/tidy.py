#!/usr/bin/env python3
"""Runs clang-tidy over the program's sources as the 64-bit build compiles them. Files that have not changed since they
were last found clean are left out. Usage: tidy.py BUILD_FOLDER. Exits with 1 when there is a finding."""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("core", "note", "alarm", "storage", "support")


def compiler_arguments():
    """The folders of the MinGW headers: clang-tidy has none of its own and uses those of the compiler that builds the
    program."""
    gcc = subprocess.run(["x86_64-w64-mingw32-g++-win32", "-print-libgcc-file-name"], check=True,
                         capture_output=True, text=True).stdout.strip()
    include = f"{os.path.dirname(gcc)}/include/c++"
    words = ["-Wno-ignored-optimization-argument", "--target=x86_64-w64-mingw32", "-nostdinc++", f"-isystem{include}",
             f"-isystem{include}/x86_64-w64-mingw32", "-Wno-unknown-warning-option", "-Wreserved-identifier"]
    return [f"--extra-arg={word}" for word in words]


def without_precompiled(commands):
    """The commands without GCC's precompiled header, which clang cannot read: a source that leans on it is found."""
    return [{**c, "command": re.sub(r" -include \S*cmake_pch\.hxx", "", c["command"])} for c in commands]


def state_of(source, headers):
    """Everything that the findings for a source depend on."""
    digest = hashlib.sha256(headers)
    digest.update((ROOT / source).read_bytes())
    return digest.hexdigest()


def main():
    build = pathlib.Path(sys.argv[1])
    commands = json.loads((build / "compile_commands.json").read_text())
    sources = sorted({str(pathlib.Path(c["file"]).resolve().relative_to(ROOT)) for c in commands
                      if pathlib.Path(c["file"]).resolve().is_relative_to(ROOT)})
    sources = [s for s in sources if s.split("/")[0] in FOLDERS]
    shared = sorted(p for folder in FOLDERS + ("resources",) for p in (ROOT / folder).glob("*.h"))
    headers = b"".join(p.read_bytes() for p in shared + [ROOT / ".clang-tidy", ROOT / "cmake/Flags.cmake"])
    memory = build / "tidy-clean.json"
    clean = json.loads(memory.read_text()) if memory.exists() else {}
    stale = [s for s in sources if clean.get(s) != state_of(s, headers)]
    extra = compiler_arguments()
    plain = build / "tidy"
    plain.mkdir(exist_ok=True)
    (plain / "compile_commands.json").write_text(json.dumps(without_precompiled(commands)))

    def look(source):
        result = subprocess.run(["clang-tidy", "-p", str(plain), "--quiet", *extra, str(ROOT / source)],
                                capture_output=True, text=True)
        return source, result.returncode, result.stdout

    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, code, output in pool.map(look, stale):
            if code == 0:
                clean[source] = state_of(source, headers)
            else:
                failed = True
                print(output.strip())
    memory.write_text(json.dumps(clean))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
