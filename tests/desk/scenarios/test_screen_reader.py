"""What another program learns about Kardel's windows: the accessibility tree, queried from outside as a screen reader
does. Wine gives native controls no role, so their class is checked instead."""

from kardel_desk.alarms import wait_ringing
from kardel_desk.one_note import FAR_ALARM, NOTE, OTHER, any_store

GRIP, DIALOG, TOOLBAR, STATIC_TEXT, BUTTON, SPIN = 4, 18, 22, 41, 43, 52
ROLES = {"lbl": STATIC_TEXT, "lbl2": TOOLBAR, "pic": BUTTON, "nota": STATIC_TEXT, "pic2": GRIP, "pic_time": STATIC_TEXT}
NATIVE = {"Button", "ComboBox", "ScrollBar", "Edit"}
WS_TABSTOP = 0x00010000


def spoken(window) -> dict:
    return window.desk.probe.ask("accessible", window.hwnd)


def press(window, element: int = 0) -> None:
    assert window.desk.probe.ask("press", window.hwnd, element)


def check_parts(note) -> None:
    for name, role in ROLES.items():
        part = note.part(name)
        if part.visible:
            said = spoken(part)
            assert said["name"] and said["role"] == role, (name, said)


@any_store
def test_notes_say_their_title_their_state_and_their_text(desk, hand):
    missed = {"alarmdate": "01/01/2020", "alarmtime": "08:00:00", "mute": True}
    hand.run(NOTE, {**OTHER, "iconized": True, "topmost": True}, {**NOTE, **FAR_ALARM, "Titolo": "Later", "y": 8000},
             {**NOTE, **missed, "Titolo": "Tea", "x": 500}, DontDeleteWhenPlay=True)
    wait_ringing(hand.note("Tea"))
    for title, name in (("Shopping", "Shopping"), ("other", "other, iconized, always on top"),
                        ("Later", "Later, alarm set"), ("Tea", "Tea, alarm rings")):
        note = hand.note(title)
        said = spoken(note)
        assert (said["name"], said["value"]) == (name, note.body)
        check_parts(note)


def test_the_pictures_are_buttons_that_a_screen_reader_can_press(desk, hand):
    note = hand.run().note()
    strip = note.part("lbl2")
    assert [(e["name"], e["role"]) for e in spoken(strip)["elements"]] == [("Iconize", BUTTON), ("Close", BUTTON)]
    press(strip, 1)
    desk.wait_equal(lambda: note.rect.height, 20)
    assert [e["name"] for e in spoken(strip)["elements"]] == ["Restore", "Close"]
    press(note.part("pic"))
    box = hand.kardel.dialog()
    assert spoken(box)["name"] == "Delete" and spoken(box)["role"] == DIALOG
    assert {"Question", "&Yes", "&No"} < set(box.texts())
    box.press("No")
    desk.wait(lambda: not hand.kardel.dialogs(), what="the question to go")
    press(strip, 2)
    hand.wait_stored(iconized=True, closed=True)


@any_store
def test_every_field_of_the_alarm_editor_says_what_it_is(desk, hand):
    note = hand.run({**NOTE, **FAR_ALARM}).note()
    note.activate()
    desk.key("F4")
    editor = hand.kardel.dialog()
    assert spoken(editor)["role"] == DIALOG
    stops = [part for part in editor.parts().values() if part.visible and part.info["style"] & WS_TABSTOP]
    assert len(stops) == 10
    for part in stops:
        # The lists are named by the labels before them, which Wine's library does not know.
        assert spoken(part)["name"] or part.info["class"] == "ComboBox", part
        assert part.info["class"] in NATIVE or spoken(part)["role"] == SPIN, part
    date, hours = editor.part("data"), editor.part("hore")
    assert (spoken(date)["name"], spoken(date)["value"]) == ("Date", "01/01/2999, day")
    assert (spoken(hours)["name"], spoken(hours)["value"]) == ("Hours", "10:00:00")
    desk.wait(lambda: date.has_focus, what="the keyboard to be on the date")
    desk.key("Right")
    desk.wait_equal(lambda: spoken(date)["value"], "01/01/2999, month")
    desk.key("alt+h")
    desk.wait(lambda: hours.has_focus, what="the keyboard to be on the hours")
    desk.key("Right")
    desk.wait_equal(lambda: spoken(hours)["value"], "11:00:00")
    desk.key("Escape")
    desk.wait(lambda: not hand.kardel.dialogs(), what="the editor to close")
