"""Stores with something wrong in them, through the real program: it starts, shows what was not damaged, and leaves that
as it was. KARDEL_DAMAGED says how many (200 in `./test soak`), KARDEL_SEED which."""

import os
import random

import pytest

from kardel_desk.datafiles import HEADER, MEMO, RECORD

STORES = int(os.environ.get("KARDEL_DAMAGED", "12"))
SEED = int(os.environ.get("KARDEL_SEED", "1"))
NOTES = [{"Titolo": f"note {n}", "Nota": f"body of {n}", "x": 15 * (40 + 200 * n), "y": 15 * (60 + 90 * n),
          "width": 2910, "height": 1890, "alarmdate": "31/12/2099" if n % 2 else "",
          "alarmtime": "12:00:00" if n % 2 else ""}
         for n in range(1, 5)]
WILD = ("", "-1", "99999999999999999999", "1e999", "True", "*", "**/**/****", "-2147483648", "\u3042" * 50, "x" * 5000)


TOLD = ("An error has occurred on saving the memo, possible data lost.", "The files of the notes were damaged.")


def damaged(dice, data):
    """The bytes with a few of them changed, cut off, inserted or doubled."""
    at = dice.randrange(len(data))
    length = dice.randrange(1, 60)
    piece = data[at:at + length]
    return dice.choice((
        lambda: data[:at] + bytes([dice.randrange(256)]) + data[at + 1:],
        lambda: data[:at] + dice.randbytes(len(piece)) + data[at + len(piece):],
        lambda: data[:at] + bytes(len(piece)) + data[at + len(piece):],
        lambda: data[:at] + b"\xff" * len(piece) + data[at + len(piece):],
        lambda: data[:at],
        lambda: data + dice.randbytes(length),
        lambda: data[:at] + piece + data[at:]))()


def piece(data, number, length):
    return data[(number - 1) * length:number * length]


def run_through(desk):
    """Starts the program and ends it. Returns what it showed, or None if it said that it cannot use the store."""
    kardel = desk.start()

    def up():
        for box in kardel.dialogs():
            assert any(text.startswith(TOLD) for text in box.texts()), box.texts()
            box.press("OK")
        return not kardel.alive or kardel.tray.window()
    desk.wait(up, 20, "the program to start")
    if kardel.alive:
        desk.wait(lambda: up() and kardel.tray.painted, 20, "the program to be ready")
        shown = {note.title: note.body for note in kardel.notes()}
        assert kardel.exit() == 0
        return shown
    assert kardel.process.returncode == 1, kardel.output()
    kardel.killed = True  # it ended as it should and did not crash
    return None


def test_damaged_files(desk, count):
    dice = random.Random(SEED)
    for number in range(STORES // 2):
        desk.reset()
        desk.seed_registry({"UseRegistry": False})
        desk.seed_files(NOTES)
        whole = desk.read_files()
        for _ in range(dice.randrange(1, 4)):
            path = desk.path() / dice.choice(("KARDEL.DAT", "KARDEL.DAT", "MEMO", "MEMO", "KARDEL.HDR"))
            path.write_bytes(damaged(dice, path.read_bytes() or b"\0"))
        files = desk.read_files()
        counted = files.hdr[:HEADER.size] == whole.hdr

        def fine(at, now):
            return counted and piece(now.dat, at, RECORD.size) == piece(whole.dat, at, RECORD.size) and \
                piece(now.memo, at, MEMO) == piece(whole.memo, at, MEMO)
        unharmed = [at for at in range(1, len(NOTES) + 1) if fine(at, files)]
        shown = run_through(desk)
        if shown is None:
            assert desk.read_files() == files, f"store {number}: what cannot be used is left alone"
            continue
        for at in unharmed:
            assert shown.get(f"note {at}") == f"body of {at}", f"store {number}: {shown}"
            assert fine(at, desk.read_files()), f"store {number}: note {at} was changed"
    count(f"{STORES // 2} damaged sets of files tried with seed {SEED}")


def test_damaged_registry(desk, count):
    dice = random.Random(SEED)
    for number in range(STORES // 2):
        desk.reset()
        desk.seed_registry({}, NOTES)
        touched = set()
        for _ in range(dice.randrange(1, 6)):
            section = dice.choice(("setting", "kardel-1", "kardel-2", "kardel-3"))
            key = dice.choice(sorted(desk.registry(section)))
            if key == "UseRegistry":
                continue
            touched.add(section)
            desk.set_registry(section, {key: dice.choice(WILD)})
        before = {at: desk.registry(f"kardel-{at}") for at in range(1, 5)}
        counted = desk.registry("setting")["count"] == "4"
        shown = run_through(desk)
        assert shown is not None
        for at in range(1, 5):
            if f"kardel-{at}" in touched or not counted:
                continue
            assert shown.get(f"note {at}") == f"body of {at}", f"store {number}: {shown}"
            assert desk.registry(f"kardel-{at}") == before[at], f"store {number}: note {at} was changed"
    count(f"{STORES // 2} damaged registries tried with seed {SEED}")
