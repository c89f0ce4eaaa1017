"""The identifiers of Kardel's windows, read from the program's own resource.h."""

import re

from .paths import ROOT


def _read() -> dict[str, int]:
    text = (ROOT / "resources" / "resource.h").read_text(encoding="utf-8")
    return {name: int(value, 0)
            for name, value in re.findall(r"^#define\s+(\w+)\s+(\d+|0[xX][0-9A-Fa-f]+)\b", text, re.MULTILINE)}


IDS = _read()


def part_id(name: str | int) -> int:
    """'nota', 'txtTitle', 'chkWeek(3)' or a number -> child id."""
    if isinstance(name, int):
        return name
    base, _, index = name.partition("(")
    return IDS["ID_" + base.upper()] + (int(index.rstrip(")")) if index else 0)


def command_id(name: str | int) -> int:
    """'new', 'iconizeAll', 'dyn(2)', 'dyn2(0)' or a number -> command id."""
    if isinstance(name, int):
        return name
    base, _, index = name.partition("(")
    return IDS["IDM_" + base.upper()] + (int(index.rstrip(")")) if index else 0)
