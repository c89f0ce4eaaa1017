"""The 50 notes of the benchmark: seeded into Kardel's stores, and compiled into the reference program, so that both
show the same desk.

notes.py FILE writes them as C++ initialisers (what reference.cpp includes)."""

import pathlib
import sys

COUNT = 50
TWIPS_PER_PIXEL = 15  # at 96 dots an inch, which the benchmark runs at

_COLUMNS = 10
_LEFT, _TOP, _ACROSS, _DOWN = 8, 8, 106, 170  # pixels; the last row ends above the panel of the desk
_COLOURS = (0x80FFFF, 0xC0FFC0, 0xFFE0C0, 0xE0C0FF, 0xC0E0FF, 0xFFFFC0, 0xD0D0D0, 0xFFC0C0)  # blue, green, red bytes
_SUBJECTS = ("Shopping", "Call back", "Garden", "Invoices", "Reading list", "Trip", "Repairs", "Meeting")
_WORDS = ("bread and butter before the shop closes at seven, ask Maria about the spare key, the blue folder lies on "
          "the second shelf, pay the water bill by the 15th, look up train times for Saturday morning, ring the "
          "plumber again if nobody came, measure the window in the hall, bring back the borrowed ladder, renew the "
          "library card, sort the photographs of last summer, water the plants on both balconies, ").split()


def _body(index: int) -> str:
    """200 to some 600 characters, different for every note."""
    length = 200 + index * 97 % 400
    words, size = [], 0
    while size < length:
        words.append(_WORDS[(index * 7 + len(words)) % len(_WORDS)])
        size += len(words[-1]) + 1
    return " ".join(words)


def notes() -> list[dict]:
    """Place and size in pixels, colour as Kardel stores it, title and body. Rows and columns overlap, and a later
    note lies to the right of or below an earlier one: with all on show, the top left corner of each stays in sight."""
    return [{"x": _LEFT + index % _COLUMNS * _ACROSS, "y": _TOP + index // _COLUMNS * _DOWN,
             "width": 190 + index * 13 % 60, "height": 150 + index * 29 % 120,
             "colour": _COLOURS[index * 3 % len(_COLOURS)],
             "title": f"{_SUBJECTS[index * 5 % len(_SUBJECTS)]} {index + 1}", "body": _body(index)}
            for index in range(COUNT)]


def stored(note: dict) -> dict:
    """The same note under the names that Kardel's stores use, in twips."""
    return {"Titolo": note["title"], "Nota": note["body"], "backcolor": note["colour"],
            **{name: note[name] * TWIPS_PER_PIXEL for name in ("x", "y", "width", "height")}}


def initialisers() -> str:
    return "".join(f'{{{n["x"]}, {n["y"]}, {n["width"]}, {n["height"]}, {n["colour"]:#08x}, L"{n["title"]}", '
                   f'L"{n["body"]}"}},\n' for n in notes())


if __name__ == "__main__":
    pathlib.Path(sys.argv[1]).write_text(initialisers(), encoding="ascii")
