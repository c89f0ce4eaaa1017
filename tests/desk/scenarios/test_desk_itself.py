"""The desk can be trusted: what it does reaches the program, and what it reports is what a user would see."""

import struct

import pytest

from kardel_desk import wait
from kardel_desk.datafiles import pack_note, unpack_note

NOTE = {"Titolo": "Shopping", "Nota": "milk\nbread", "x": 3000, "y": 1500, "width": 3000, "height": 2250}


def test_packed_note_has_every_field_at_its_place():
    full = {"alarmdate": "28/02/2027", "alarmtime": "23:59:57", "alarmday": "28", "alarmdaymonth": "28/02",
            "backcolor": 0x123456, "closed": True, "height": 1890, "iconized": False, "interval": "eachyear", "x": -15,
            "mute": True, "memo": 7, "Titolo": "Caffè", "y": 30, "topmost": True, "width": 2910, "alarmweekday": 8,
            "alarmrepeatnumber": 12, "alarmrepeatevery": "MM", "weekdays": [True] + [False] * 5 + [True]}
    record = pack_note(full)
    assert len(record) == 215
    assert record[:25] == b"28/02/202723:59:572828/02"
    assert record[37:47] == b"eachyear  " and record[57:63] == b"Caff\xe8 " and record[199:201] == b"MM"
    numbers = {25: 0x123456, 31: 1890, 47: -15, 53: 7, 185: 30, 191: 2910}
    assert {at: struct.unpack_from("<i", record, at)[0] for at in numbers} == numbers
    shorts = {29: -1, 35: 0, 51: -1, 189: -1, 195: 8, 197: 12, 201: -1, 203: 0, 213: -1}
    assert {at: struct.unpack_from("<h", record, at)[0] for at in shorts} == shorts
    assert unpack_note(record) == full


def test_misspelt_field_is_refused():
    with pytest.raises(ValueError, match="titolo"):
        pack_note({"titolo": "Shopping"})


def test_wait_reports_what_it_saw_last():
    with pytest.raises(AssertionError, match="for the note; last saw: 0"):
        wait(lambda: 0, 0.1, "the note")


@pytest.mark.parametrize("seed", ["seed_registry", "seed_files"])
def test_seeded_notes_are_shown_from_either_store(desk, seed):
    getattr(desk, seed)(notes=[{**NOTE, "backcolor": 0xC0FFC0}, {**NOTE, "Titolo": "Straße", "x": 9000}])
    kardel = desk.run()
    note = kardel.note("Shopping")
    assert note.rect == (200, 100, 200, 150)
    assert note.colour == (192, 255, 192)
    assert kardel.note("Straße").body.split() == ["milk", "bread"]


def test_menus_are_read_and_chosen_from(desk):
    desk.seed_registry(notes=[NOTE])
    kardel = desk.run()
    menu = kardel.tray.menu()
    assert menu.item("Exit")["id"] == 413
    menu.choose("Open")
    desk.wait_equal(lambda: desk.menu().captions, ["Shopping"])
    desk.menu().close()
    kardel.tray.menu().choose("Exit")
    assert kardel.wait_ended() == 0
    desk.wait_equal(lambda: kardel.tray.icons, 0)


def test_a_click_reaches_a_note_that_wine_believes_in_the_corner(desk):
    desk.seed_registry(notes=[NOTE])
    note = desk.run().note()
    note.awake()
    desk.display.tell_place(note.info["x11"], (0, 0))
    desk.wait_equal(lambda: note.rect[:2], (0, 0), 5, "Wine to believe so")
    note.click("lbl2", 15, 9, button=3)
    desk.wait(desk.menu, 5, "the note's menu")
    assert note.rect[:2] == (200, 100)


def test_killed_program_leaves_a_desk_that_the_next_one_can_use(desk):
    desk.seed_registry(notes=[NOTE])
    desk.run().kill()
    assert desk.run().note().title == "Shopping"


def test_clock_can_be_set_and_moved(desk):
    desk.seed_registry(notes=[{**NOTE, "alarmdate": "28/02/2031", "alarmtime": "10:00:00"}])
    clock = desk.clock("2031-02-27 09:59:00")
    strip = desk.run(clock=clock).note().part("pic_time")
    desk.wait(lambda: strip.text.strip().startswith("1 d"), what="a day left")
    clock.jump("2031-02-28 09:00:00")
    desk.wait(lambda: "59:" in strip.text and "d" not in strip.text, what="less than an hour left")
