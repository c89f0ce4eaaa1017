"""The same notes look the same from either store, and what a store cannot hold is dealt with as promised."""

import random

import pytest

from kardel_desk.desk import ENGLISH_DAYS

ITALIAN_DAYS = ("lun", "mar", "mer", "gio", "ven", "sab", "dom")


def full_notes(count):
    dice = random.Random(50)
    notes = []
    for n in range(1, count + 1):
        notes.append({
            "Titolo": f"Note {n} \u00e8 {'long title ' * (n % 3)}".strip(),
            "Nota": "\r\n".join(f"line {k} of note {n}: \u00fc\u00f1\u20ac & more" for k in range(n % 7)),
            "backcolor": dice.randrange(1, 0x1000000), "x": 15 * dice.randrange(0, 1050),
            "y": 15 * dice.randrange(0, 820), "width": 15 * dice.randrange(80, 260),
            "height": 15 * dice.randrange(50, 200), "topmost": n % 10 == 0, "iconized": n % 6 == 0,
            "closed": n % 9 == 0, "mute": n % 4 == 0, "alarmdate": "", "alarmtime": "", "alarmweekday": 0,
            "alarmrepeatnumber": 0, "alarmrepeatevery": "", "interval": "", "alarmday": "", "alarmdaymonth": "",
            "weekdays": [(n >> day) % 2 == 1 for day in range(7)]})
    return notes


def windows(kardel):
    """Place, text and visibility of every note and all its parts."""
    found = {}
    for note in kardel.notes():
        parts = {number: (part.text, part.rect, part.visible) for number, part in note.parts().items()}
        found[note.title] = (note.rect, note.visible, parts)
    return found


def test_fifty_full_notes_make_the_same_desk_to_the_pixel(desk):
    notes = full_notes(50)
    desk.seed_registry({}, notes)
    kardel = desk.run()
    desk.hands.move(5, 5)
    from_registry = windows(kardel)
    first = desk.wait(lambda: settled(desk), 20, "the desk to stand still")
    assert kardel.exit() == 0

    desk.seed_registry({"UseRegistry": False, "count": None, "ImportDAT": "1"})
    desk.probe.ask("regdelete", r"HKCU\Software\VB and VBA Program Settings\Kardel\setting", "count")
    desk.seed_files(notes)
    kardel = desk.start().wait_ready(notes=50)
    desk.hands.move(5, 5)
    from_files = windows(kardel)
    second = desk.wait(lambda: settled(desk), 20, "the desk to stand still")
    assert from_files == from_registry
    differing = [(x, y) for x in range(1280) for y in range(900)
                 if first.getpixel((x, y)) != second.getpixel((x, y))]
    assert differing == [], f"{len(differing)} pixels differ, the first at {differing[0]}"


def settled(desk):
    """A picture of the screen above the panel, once two in a row agree."""
    one = desk.display.image(0, 0, 1280, 900).convert("RGB")
    two = desk.display.image(0, 0, 1280, 900).convert("RGB")
    return two if one.tobytes() == two.tobytes() else None


def test_body_that_fills_its_record_is_shown_whole(desk):
    body = "x" * 1023 + "!"
    desk.seed_files([{"Titolo": "full", "Nota": body}, {"Titolo": "blanks", "Nota": "kept   "}])
    kardel = desk.run()
    assert kardel.note("full").body == body
    assert kardel.note("blanks").body == "kept"


def test_notes_that_the_files_cannot_hold_stay_in_the_registry(desk):
    body = "y" * 1024 + "z"
    desk.seed_registry({"UseRegistry": False, "count": "1"}, [{"Titolo": "long", "Nota": body}])
    for _ in range(2):
        kardel = desk.start()
        box = kardel.dialog()
        assert "An error has occurred on saving the memo, possible data lost." in box.texts()
        box.press("OK")
        kardel.wait_ready(notes=1)
        assert kardel.note("long").body == body
        assert kardel.exit() == 0
        assert desk.stored_note(1)["Nota"] == body and desk.registry("setting")["count"] == "1"
    desk.seed_registry({"UseRegistry": False, "count": "1"}, [{"Titolo": "long", "Nota": "shorter"}])
    assert desk.run().note("long").body == "shorter"
    assert desk.read_files().bodies == ["shorter"]


def test_weekday_flags_of_another_language_read_as_none(desk):
    weekly = {"Titolo": "weekly", "alarmdate": "01/01/2999", "alarmtime": "10:00:00", "alarmweekday": 8,
              "weekdays": [True] * 7}
    desk.seed_registry({}, [weekly], days=ENGLISH_DAYS)
    kardel = desk.run(env={"LC_ALL": "it_IT.UTF-8"})
    assert not kardel.note("weekly").part("pic_time").visible
    kardel.exit()
    desk.seed_registry({}, [weekly], days=ITALIAN_DAYS)
    kardel = desk.run(env={"LC_ALL": "it_IT.UTF-8"})
    note = kardel.note("weekly")
    desk.wait(lambda: note.part("pic_time").visible, what="the countdown of the next day")


@pytest.mark.parametrize("lost", ["KARDEL.DAT", "MEMO", "KARDEL.HDR"])
def test_program_survives_random_bytes_in_its_files(desk, lost):
    desk.seed_files([{"Titolo": f"n{n}", "Nota": f"body {n}"} for n in range(1, 4)])
    dice = random.Random(lost)
    (desk.path() / lost).write_bytes(bytes(dice.randrange(256) for _ in range(700)))
    kardel = desk.start()
    if lost == "KARDEL.DAT":  # its length is none that a note ends at
        box = kardel.dialog()
        assert any("KARDEL.DAT.damaged" in text for text in box.texts())
        box.press("OK")
    desk.wait(lambda: kardel.notes() and kardel.tray.icons == 1, 20, "the notes and the icon")
    assert 1 <= len(kardel.notes()) <= 50
    assert kardel.exit() == 0


def test_a_text_for_a_read_only_folder_is_kept_and_the_user_is_told(desk):
    desk.seed_files([{"Titolo": "a", "Nota": "old"}])
    kardel = desk.run()
    note = kardel.note("a")
    note.edit()
    desk.key("ctrl+a")
    desk.type("new")
    for name in ("KARDEL.DAT", "MEMO", "KARDEL.HDR"):
        (desk.path() / name).rename(desk.path() / (name + ".away"))
        (desk.path() / name).mkdir()  # no file can be written where there is a folder
    desk.key("Return")
    box = kardel.dialog()
    assert "An error has occurred on saving the memo, possible data lost." in box.texts()
    box.press("OK")
    assert note.body == "new"
    for name in ("KARDEL.DAT", "MEMO", "KARDEL.HDR"):
        (desk.path() / name).rmdir()
        (desk.path() / (name + ".away")).rename(desk.path() / name)
    note.edit()
    desk.key("Return")
    desk.wait_equal(lambda: desk.read_files().bodies[0], "new")
