"""Data files of older releases: brought up to date in place, even where an earlier start was interrupted while doing
so."""

import pytest

from kardel_desk.datafiles import RECORD, pack_note

LAYOUTS = {195: (1.0, 1.2, 1.2099), 197: (1.21, 1.2199), 201: (1.22, 1.2499)}
TEMPORARY = {195: "KARDEL121.DAT", 197: "KARDEL122.DAT", 201: "KARDEL125.DAT"}
NOTES = [{"Titolo": f"old {n}", "Nota": f"written long ago, {n}", "x": 15 * (40 + 220 * n), "y": 1500, "width": 2910,
          "height": 1890, "topmost": n == 2, "memo": 4 - n} for n in range(1, 4)]


def present_records(length):
    """What the upgrade must make of records of that length: zeros and blanks for what they lack."""
    records = []
    for note in NOTES:
        old = pack_note({**note, "backcolor": 8454143, "alarmweekday": 3, "alarmrepeatnumber": 5,
                         "alarmrepeatevery": "hh"})[:length]
        fresh = pack_note({})
        records.append(old + fresh[length:])
    return records


def seed(desk, length, version):
    desk.seed_registry({"UseRegistry": False})
    desk.seed_files(NOTES, version=version)
    records = present_records(length)
    (desk.path() / "KARDEL.DAT").write_bytes(b"".join(record[:length] for record in records))
    return b"".join(records)


def expect_upgraded(desk, wanted):
    bodies = desk.read_files().memo
    kardel = desk.run()
    assert {note.title: note.body for note in kardel.notes()} == {n["Titolo"]: n["Nota"] for n in NOTES}
    assert [note.title for note in kardel.notes() if note.topmost] == ["old 2"]
    files = desk.read_files()
    assert files.dat == wanted
    assert (files.count, files.flag, files.version) == (3, 0, 1.28)
    assert files.memo == bodies
    assert not any((desk.path() / name).exists() for name in TEMPORARY.values())
    assert kardel.exit() == 0


@pytest.mark.parametrize("length, version", [(length, v) for length, versions in LAYOUTS.items() for v in versions])
def test_older_layouts_are_brought_up_to_date(desk, length, version):
    expect_upgraded(desk, seed(desk, length, version))


def test_version_of_exactly_the_present_layout_is_left_alone(desk):
    desk.seed_registry({"UseRegistry": False})
    desk.seed_files(NOTES, version=1.25)
    before = desk.read_files()
    assert desk.run().exit() == 0
    assert desk.read_files() == before


@pytest.mark.parametrize("length", LAYOUTS)
def test_longer_stale_temporary_file_leaves_nothing_behind(desk, length):
    wanted = seed(desk, length, LAYOUTS[length][0])
    (desk.path() / TEMPORARY[length]).write_bytes(b"s" * (9 * RECORD.size))
    expect_upgraded(desk, wanted)


@pytest.mark.parametrize("length", LAYOUTS)
def test_header_rewritten_but_file_not_yet_replaced(desk, length):
    wanted = seed(desk, length, 1.28)
    (desk.path() / TEMPORARY[length]).write_bytes(wanted)
    expect_upgraded(desk, wanted)


@pytest.mark.parametrize("length", LAYOUTS)
def test_old_file_gone_and_the_new_one_not_yet_in_its_place(desk, length):
    wanted = seed(desk, length, 1.28)
    (desk.path() / "KARDEL.DAT").rename(desk.path() / TEMPORARY[length])
    (desk.path() / TEMPORARY[length]).write_bytes(wanted)
    expect_upgraded(desk, wanted)


def test_file_of_no_known_layout_shows_whole_records_and_is_kept_as_it_was(desk):
    desk.seed_registry({"UseRegistry": False})
    found = b"x" * 215 + b"y" * 88
    (desk.path() / "KARDEL.DAT").write_bytes(found)
    kardel = desk.start()
    box = kardel.dialog()
    assert any("KARDEL.DAT.damaged" in text for text in box.texts())
    box.press("OK")
    kardel.wait_ready(notes=1)
    assert kardel.exit() == 0
    assert (desk.path() / "KARDEL.DAT.damaged").read_bytes() == found
    assert len((desk.path() / "KARDEL.DAT").read_bytes()) == 215
    assert desk.start().wait_ready(notes=1).exit() == 0  # and the user is not told twice

