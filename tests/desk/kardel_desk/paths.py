"""Where things are in the checkout."""

import os
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[3]
BUILD = ROOT / "build"
WORK = BUILD / "desk"                # prefix templates and running sessions
FAILURES = BUILD / "desk-failures"   # screenshots of failed tests
I386_ROOT = BUILD / "i386-root"      # a small Debian with the 32-bit Wine, made by tools/i386-root


def program(arch: str) -> pathlib.Path:
    """Kardel.exe of one build; KARDEL_EXE names another one (for trying the desk itself)."""
    other = os.environ.get("KARDEL_EXE")
    return pathlib.Path(other) if other else BUILD / arch / "Kardel.exe"


def helper(arch: str, name: str) -> pathlib.Path:
    """A file of the desk's helper, built beside the program; KARDEL_PROBE_DIR names another folder."""
    other = os.environ.get("KARDEL_PROBE_DIR")
    return (pathlib.Path(other) if other else BUILD / arch) / name
