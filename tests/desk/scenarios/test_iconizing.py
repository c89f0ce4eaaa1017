"""A note shrunk to its title strip and restored, and a note kept above all other windows."""

import pytest
from kardel_desk.one_note import FAR_ALARM, NOTE, OTHER, TWIP, any_store

STRIP = 20  # pixels: the title strip and its two borders

WAYS = {
    "menu": lambda hand, note: hand.menu(note, "Restore" if note.rect.height == STRIP else "Iconize"),
    "picture": lambda hand, note: hand.press(note, "iconize"),
    "double click": lambda hand, note: note.click("lbl", 100, double=True),
}


def iconize_all_entry(hand, note):
    return next(text for text in hand.entries(note) if text in ("Iconize All", "Restore All"))


def store_height(hand, height):
    """Changes the stored height of the only note, as another program might."""
    if hand.kind == "registry":
        hand.desk.set_registry("kardel-1", {"height": height})
    else:
        path = hand.desk.path() / "KARDEL.DAT"
        data = bytearray(path.read_bytes())
        place = 10 + 8 + 2 + 5 + 4 + 2
        data[place:place + 4] = height.to_bytes(4, "little")
        path.write_bytes(bytes(data))
    assert hand.stored("height") == height


def test_iconize_and_restore_by_menu_picture_and_double_click(desk, hand):
    note = hand.run().note()
    for way, turn in WAYS.items():
        turn(hand, note)
        desk.wait_equal(lambda: note.rect, (400, 300, 200, STRIP), 5, way)
        hand.wait_stored(iconized=True)
        assert not note.part("nota").visible and hand.stored("height") == 2250
        turn(hand, note)
        desk.wait_equal(lambda: note.rect, (400, 300, 200, 150), 5, way)
        hand.wait_stored(iconized=False)
        assert note.part("nota").visible and hand.stored("height") == 2250
    assert (hand.stored("x"), hand.stored("y")) == (6000, 4500)


@any_store
def test_beside_the_pictures_nothing_happens(desk, hand):
    note = hand.run().note()
    before = hand.store.raw()
    for place in ((7, 1), (15, 9), (7, 17)):
        note.click("lbl2", *place)
    assert hand.settled(note) and note.rect == (400, 300, 200, 150) and note.visible
    assert hand.store.raw() == before


def test_restore_takes_the_height_that_is_stored(desk, hand):
    note = hand.run({**NOTE, "iconized": True}).note()
    store_height(hand, 3000)
    hand.press(note, "iconize")
    desk.wait_equal(lambda: note.rect.height, 200)


def test_restore_without_a_stored_height_takes_the_remembered_one(desk, hand):
    note = hand.run({**NOTE, "iconized": True}).note()
    store_height(hand, 0)
    hand.press(note, "iconize")
    desk.wait_equal(lambda: note.rect.height, 150)


@any_store
def test_a_note_that_never_had_a_height_gets_the_usual_one(desk, hand):
    note = hand.run({**NOTE, "iconized": True, "height": 0}).note()
    hand.press(note, "iconize")
    desk.wait(lambda: note.rect.height > 100, what="a note of the usual height")
    assert note.part("nota").visible


@any_store
def test_the_time_strip_comes_back_with_the_note(desk, hand):
    note = hand.run({**NOTE, **FAR_ALARM}).note()
    strip = note.part("pic_time")
    desk.wait(lambda: strip.visible, what="the time strip")
    hand.press(note, "iconize")
    desk.wait(lambda: note.rect.height == STRIP and not strip.visible, what="no time strip on an iconized note")
    hand.press(note, "iconize")
    desk.wait(lambda: strip.visible and strip.rect.bottom == note.rect.bottom - 1, what="the time strip at the foot")


@any_store
def test_iconizing_keeps_what_was_being_typed(desk, hand):
    note = hand.run().note()
    note.edit()
    desk.type("!")
    desk.wait_equal(lambda: note.part("txtNota").text, "milk and bread!")
    hand.press(note, "iconize")
    desk.wait(lambda: note.rect.height == STRIP and not note.part("txtNota").visible, what="an iconized note")
    hand.wait_stored(Nota="milk and bread!", iconized=True)


@any_store
def test_iconizing_keeps_a_title_that_was_being_typed(desk, hand):
    note = hand.run().note()
    note.click("lbl", 100, button=3)
    desk.wait(lambda: note.part("txtTitle").has_focus, what="the title's editor")
    desk.type("!")
    desk.wait_equal(lambda: note.part("txtTitle").text, "Shopping!")
    note.command("iconize")
    hand.wait_stored(Titolo="Shopping!", iconized=True)
    assert note.part("lbl2").visible and not note.part("txtTitle").visible


@any_store
def test_the_last_note_iconized_turns_iconize_all_into_restore_all(desk, hand):
    hand.run(NOTE, OTHER)
    shopping, other = hand.note("Shopping"), hand.note("other")
    assert iconize_all_entry(hand, other) == "Iconize All"
    hand.press(shopping, "iconize")
    hand.wait_stored(1, iconized=True)
    assert iconize_all_entry(hand, other) == "Iconize All"
    hand.press(other, "iconize")
    hand.wait_stored(2, iconized=True)
    assert iconize_all_entry(hand, other) == iconize_all_entry(hand, shopping) == "Restore All"
    assert "Restore All" in hand.kardel.tray.menu().captions
    desk.menu().close()
    hand.press(shopping, "iconize")
    hand.wait_stored(1, iconized=False)
    assert iconize_all_entry(hand, other) == "Iconize All"


@any_store
def test_with_automatic_position_the_others_move_up(desk, hand):
    hand.run(NOTE, {**OTHER, "x": 6000, "y": 7500}, AlignAll=True)
    shopping, other = hand.note("Shopping"), hand.note("other")
    desk.wait(lambda: other.rect.y == shopping.rect.bottom, what="the notes in their column")
    first = min((shopping, other), key=lambda note: note.rect.y)
    second = other if first == shopping else shopping
    top = second.rect.y
    hand.press(first, "iconize")
    desk.wait_equal(lambda: second.rect.y, top - 130)
    hand.wait_stored(2 if second == other else 1, y=(top - 130) * TWIP)


def test_the_state_is_kept_for_the_next_start(desk, hand):
    note = hand.run().note()
    hand.press(note, "iconize")
    hand.wait_stored(iconized=True)
    assert hand.kardel.exit() == 0
    note = desk.run().note()
    assert note.rect == (400, 300, 200, STRIP)
    hand.press(note, "iconize")
    desk.wait_equal(lambda: note.rect.height, 150)


# --- Always on top


def test_a_note_set_on_top_stays_above_the_others(desk, hand):
    hand.run(NOTE, {**OTHER, "x": 4500, "y": 4800})  # they overlap
    shopping, other = hand.note("Shopping"), hand.note("other")
    hand.menu(shopping, "Always on Top")
    hand.wait_stored(topmost=True)
    desk.wait(lambda: shopping.topmost, what="the note on top")
    spot = other.rect.x + 150, other.rect.y + 60  # both notes are here, but no letter
    other.click("lbl", 40)
    desk.wait(lambda: other.active and desk.pixel(*spot) == (192, 255, 192), 10, "the note above the clicked one")
    desk.wait(lambda: "_NET_WM_STATE_ABOVE" in desk.display.states("Shopping"), what="the window manager to know")

    assert hand.open_menu(shopping).item("Always on Top")["checked"]
    desk.menu().choose("Always on Top")
    hand.wait_stored(topmost=False)
    other.click("lbl", 40)
    desk.wait(lambda: desk.pixel(*spot) == other.colour != (192, 255, 192), what="the clicked note in front")
    assert not shopping.topmost
