"""Kardel's three data files, written and read byte by byte without any of Kardel's code.

KARDEL.HDR: 10 bytes. KARDEL.DAT: 215 bytes per note. MEMO: 1024 bytes per body. Texts are padded with blanks."""

import dataclasses
import pathlib
import struct

HEADER = struct.Struct("<ihf")
RECORD = struct.Struct("<10s8s2s5sihih10sihi128sihihh2s7h")
MEMO = 1024
CODE_PAGE = "cp1252"

assert HEADER.size == 10 and RECORD.size == 215

# Field names as in the registry store, in the order of the record.
FIELDS = ("alarmdate", "alarmtime", "alarmday", "alarmdaymonth", "backcolor", "closed", "height", "iconized",
          "interval", "x", "mute", "memo", "Titolo", "y", "topmost", "width", "alarmweekday", "alarmrepeatnumber",
          "alarmrepeatevery")
TEXTS = {"alarmdate": 10, "alarmtime": 8, "alarmday": 2, "alarmdaymonth": 5, "interval": 10, "Titolo": 128,
         "alarmrepeatevery": 2}
FLAGS = {"closed", "iconized", "mute", "topmost"}
FRESH = {"backcolor": 8454143, "memo": 1}
USUAL = {"backcolor": 8454143, "width": 2910, "height": 1890}


def encode(text: str, width: int, code_page: str = CODE_PAGE) -> bytes:
    return text.encode(code_page)[:width].ljust(width, b" ")


def pack_note(note: dict, code_page: str = CODE_PAGE) -> bytes:
    """One 215-byte record. Fields as in the registry store; missing ones are blank or 0, the colour light yellow.
    "weekdays" holds the seven flags, Monday first; "memo" the number of the body's record."""
    unknown = set(note) - set(FIELDS) - {"Nota", "weekdays"}
    if unknown:
        raise ValueError(f"no such field of a note: {sorted(unknown)}")
    values = []
    for name in FIELDS:
        value = note.get(name, FRESH.get(name, "" if name in TEXTS else 0))
        if name in TEXTS:
            value = value if isinstance(value, bytes) else encode(value, TEXTS[name], code_page)
        elif name in FLAGS:
            value = -1 if value is True else int(value)
        values.append(value)
    days = note.get("weekdays", [False] * 7)
    return RECORD.pack(*values, *(-1 if day is True else int(day) for day in days))


def unpack_note(record: bytes, code_page: str = CODE_PAGE) -> dict:
    *values, = RECORD.unpack(record)
    note = dict(zip(FIELDS, values))
    for name in TEXTS:
        note[name] = note[name].decode(code_page).rstrip(" ")
    for name in FLAGS:
        note[name] = note[name] != 0
    note["weekdays"] = [flag != 0 for flag in values[len(FIELDS):]]
    return note


@dataclasses.dataclass
class DataFiles:
    """The data files in a program folder. A missing file is None, and what it would hold is empty."""
    hdr: bytes | None
    dat: bytes | None
    memo: bytes | None
    code_page: str = CODE_PAGE

    @property
    def count(self) -> int:
        return HEADER.unpack(self.hdr)[0]

    @property
    def flag(self) -> int:
        return HEADER.unpack(self.hdr)[1]

    @property
    def version(self) -> float:
        return round(HEADER.unpack(self.hdr)[2], 4)

    @property
    def records(self) -> list[bytes]:
        data = self.dat or b""
        return [data[i:i + RECORD.size] for i in range(0, len(data), RECORD.size)]

    @property
    def bodies(self) -> list[str]:
        data = self.memo or b""
        return [data[i:i + MEMO].decode(self.code_page).rstrip(" ") for i in range(0, len(data), MEMO)]

    @property
    def notes(self) -> list[dict]:
        """Every whole record as a dictionary, with its body as "Nota"."""
        bodies = self.bodies
        notes = []
        for record in self.records:
            if len(record) == RECORD.size:
                note = unpack_note(record, self.code_page)
                note["Nota"] = bodies[note["memo"] - 1] if 1 <= note["memo"] <= len(bodies) else ""
                notes.append(note)
        return notes


def write_folder(folder: pathlib.Path, notes: list[dict], count: int | None = None, version: float = 1.28,
                 code_page: str = CODE_PAGE) -> None:
    """Writes the three files. Each note gets the body record of its own number unless it names one in "memo"; width,
    height and colour have everyday values unless given."""
    records, bodies = [], {}
    for number, note in enumerate(notes, 1):
        note = {**USUAL, "memo": number, **note}
        bodies.setdefault(note["memo"], note.get("Nota", ""))
        records.append(pack_note(note, code_page))
    highest = max([number for number in bodies if 1 <= number <= 1000], default=0)
    body = lambda number: bodies.get(number, "").replace("\r\n", "\n").replace("\n", "\r\n")
    (folder / "KARDEL.HDR").write_bytes(HEADER.pack(len(notes) if count is None else count, 0, version))
    (folder / "KARDEL.DAT").write_bytes(b"".join(records))
    (folder / "MEMO").write_bytes(b"".join(encode(body(n), MEMO, code_page) for n in range(1, highest + 1)))


def read_folder(folder: pathlib.Path, code_page: str = CODE_PAGE) -> DataFiles:
    def bytes_of(name: str) -> bytes | None:
        path = folder / name
        return path.read_bytes() if path.exists() else None
    return DataFiles(bytes_of("KARDEL.HDR"), bytes_of("KARDEL.DAT"), bytes_of("MEMO"), code_page)
