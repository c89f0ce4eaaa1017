#!/usr/bin/env python3
"""Checks a built Kardel.exe from outside: it must import only from Windows' own DLLs and nothing suspicious, be
hardened, have its resources, and be no larger than allowed. Usage: exe.py Kardel.exe win64|win32. Exits with 1 and a
line for each problem."""
import re
import subprocess
import sys

SYSTEM_DLLS = {
    "advapi32.dll", "comctl32.dll", "gdi32.dll", "imm32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "shell32.dll",
    "user32.dll",
}
LARGEST = 500 * 1024
# Brought in by a thread library; in an unsigned file virus scanners take them for an attack on other programs.
SUSPICIOUS = {"AddVectoredExceptionHandler", "GetThreadContext", "IsDebuggerPresent", "ResumeThread", "SetThreadContext",
              "SuspendThread"}


def problems(exe, arch):
    tool = {"win64": "x86_64", "win32": "i686"}[arch] + "-w64-mingw32-objdump"
    text = subprocess.run([tool, "-p", exe], check=True, capture_output=True, text=True).stdout
    for dll in sorted(set(name.lower() for name in re.findall(r"DLL Name: (\S+)", text))):
        if dll not in SYSTEM_DLLS:
            yield f"{exe} needs {dll}, which is no part of Windows"
    for name in sorted(SUSPICIOUS & set(re.findall(r"^\s+(?:[0-9a-f]+\s+)+(\w+)\s*$", text, re.M))):
        yield f"{exe} imports {name}, which a note needs for nothing"
    flags = {"DYNAMIC_BASE": "ASLR", "NX_COMPAT": "DEP"}
    if arch == "win64":
        flags["HIGH_ENTROPY_VA"] = "64-bit ASLR"
    for flag, meaning in flags.items():
        if flag not in text:
            yield f"{exe} is not linked with {meaning}"
    if not re.search(r"Subsystem\s+00000002", text):
        yield f"{exe} is no Windows GUI program"
    with open(exe, "rb") as file:
        data = file.read()
    if len(data) > LARGEST:
        yield f"{exe} has {len(data)} bytes, more than {LARGEST}"
    for wanted in (b"asInvoker", b"Microsoft.Windows.Common-Controls", b">true</dpiAware>", b"longPathAware"):
        if wanted not in data:
            yield f"{exe} has no {wanted.decode()} in its manifest"
    if b"activeCodePage" in data:
        yield f"{exe} changes the code page, which would make existing data files unreadable"


def main():
    found = list(problems(sys.argv[1], sys.argv[2]))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
