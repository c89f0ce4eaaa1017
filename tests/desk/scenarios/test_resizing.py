"""A note made larger and smaller, with the arrows of its grip and with the keys of the resize mode."""

import pytest
from kardel_desk.one_note import FAR_ALARM, GLYPHS, NOTE, OTHER, TALLER, TWIP, WIDER, any_store

LEAST = (75, 47)  # pixels of 1130 x 705 twips
STEP, WIDE_STEP = 2, 12  # pixels per key


class Hold:
    """Holds a mouse button down on the grip, with or without a key."""

    def __init__(self, hand, note, place, button=1, key=None):
        self.desk, self.key, self.button = hand.desk, key, button
        self.at = note.part("pic2").point(*place)

    def __enter__(self):
        if self.key:
            self.desk.hands.key_down(self.key)
        self.desk.hands.press(*self.at, self.button)

    def __exit__(self, *_):
        self.desk.hands.release(self.button)
        if self.key:
            self.desk.hands.key_up(self.key)


def resize_mode(hand, note):
    """Chooses Resize in the menu; the arrow keys resize from then on."""
    hand.menu(note, "Resize")
    hand.desk.wait(lambda: note.has_focus, 5, "the keyboard at the note")
    hand.settled(note)


def check_stored_as_shown(hand, note):
    def same():
        stored = hand.store.notes()[0]
        return (stored["width"], stored["height"]) == (note.rect.width * TWIP, note.rect.height * TWIP)

    hand.desk.wait(same, 5, "the size shown to be stored")


def still(hand, note):
    """The note's size once it has stopped changing."""
    sizes = [None]

    def same():
        sizes.append(note.rect[2:])
        return sizes[-1] == sizes[-2]

    hand.desk.wait(lambda: hand.settled(note) and same())
    return sizes[-1]


def mode_is_on(hand, note):
    menu = hand.open_menu(note)
    hand.desk.key("Escape")  # not by a click elsewhere, which would leave the resize mode
    hand.desk.wait(lambda: not hand.desk.menus(), 5, "the menu to close")
    return menu.item("Resize")["checked"]


# --- The grip

HOLDS = {  # arrow, button, key -> direction in x and y
    "width": (WIDER, 1, None, (1, 0)),
    "width with Shift": (WIDER, 1, "shift", (-1, 0)),
    "width with the right button": (WIDER, 3, None, (-1, 0)),
    "height": (TALLER, 1, None, (0, 1)),
    "height with Shift": (TALLER, 1, "shift", (0, -1)),
    "height with the right button": (TALLER, 3, None, (0, -1)),
}


def test_holding_an_arrow_of_the_grip_resizes_until_the_release(desk, hand):
    note = hand.run().note()
    for how, (place, button, key, (x, y)) in HOLDS.items():
        _, _, width, height = note.rect
        before = hand.stored("width"), hand.stored("height")
        with Hold(hand, note, place, button, key):
            desk.wait(lambda: (note.rect.width - width) * x + (note.rect.height - height) * y >= 3, 5, how)
            assert (hand.stored("width"), hand.stored("height")) == before  # stored once, at the end
        check_stored_as_shown(hand, note)
        _, _, wider, taller = note.rect
        assert (wider == width) == (x == 0) and (taller == height) == (y == 0), how  # the other dimension must not change
        assert note.rect[:2] == (400, 300) and not desk.menus(), how
        grip = note.part("pic2").rect
        assert (grip.right, grip.bottom) == (note.rect.right - 1, note.rect.bottom - 1), how


@any_store
def test_a_click_on_an_arrow_is_one_step_at_least(desk, hand):
    note = hand.run().note()
    note.click("pic2", *WIDER)
    desk.wait(lambda: note.rect.width > 200, what="a wider note")
    check_stored_as_shown(hand, note)
    assert note.rect.width < 300


@any_store
def test_between_the_arrows_nothing_happens(desk, hand):
    note = hand.run().note()
    before = hand.store.raw()
    for place in ((2, 2), (16, 14)):
        note.click("pic2", *place)
    assert still(hand, note) == (200, 150) and hand.store.raw() == before


@any_store
def test_the_grip_stops_at_the_smallest_size(desk, hand):
    note = hand.run({**NOTE, "width": 1220, "height": 780}).note()
    with Hold(hand, note, WIDER, key="shift"):
        desk.wait_equal(lambda: note.rect.width, LEAST[0])
    hand.wait_stored(width=1130)
    with Hold(hand, note, TALLER, key="shift"):
        desk.wait_equal(lambda: note.rect.height, LEAST[1])
        desk.stays(lambda: note.rect[2:] == LEAST, 0.15, "the smallest size")
    hand.wait_stored(height=705)


@any_store
def test_a_step_below_the_smallest_size_is_refused(desk, hand):
    note = hand.run({**NOTE, "width": 1140, "height": 715}).note()
    resize_mode(hand, note)
    before = hand.store.raw()
    desk.key("Left", "Up")
    assert still(hand, note) == (76, 48) and hand.store.raw() == before
    desk.key("Right", "Left", "Left")  # a step wider, a step narrower; the next is refused again
    hand.wait_stored(width=1140)


@any_store
def test_the_grip_grows_a_note_flush_with_the_work_area(desk, hand):
    left, top, width, height = desk.screen()["workarea"]
    right, bottom = left + width, top + height
    note = hand.run({**NOTE, "x": (right - 210) * TWIP, "y": (bottom - 160) * TWIP}).note()
    for place, size in ((WIDER, (210, 150)), (TALLER, (210, 160))):
        with Hold(hand, note, place):
            desk.wait_equal(lambda: note.rect[2:], size)
            desk.stays(lambda: note.rect[2:] == size, 0.15, "within the work area")
        check_stored_as_shown(hand, note)
    assert (note.rect.right, note.rect.bottom) == (right, bottom)


@any_store
def test_a_note_beyond_the_edge_keeps_its_size(desk, hand):
    note = hand.run({**NOTE, "x": 1200 * TWIP}).note()
    resize_mode(hand, note)
    before = hand.store.raw()
    desk.key("Right", "ctrl+Right")
    assert still(hand, note) == (200, 150) and hand.store.raw() == before
    desk.key("Left")
    hand.wait_stored(width=2970)


def test_an_iconized_note_becomes_wider_but_never_taller(desk, hand):
    note = hand.run({**NOTE, "iconized": True}).note()
    note.click("pic2", *TALLER)
    assert still(hand, note) == (200, 20)
    with Hold(hand, note, WIDER):
        desk.wait(lambda: note.rect.width > 205, what="a wider note")
    desk.wait(lambda: hand.stored("width") == note.rect.width * TWIP > 205 * TWIP, 5, "the width shown to be stored")
    assert note.rect.height == 20 and hand.stored("height") == 2250


@any_store
def test_the_time_strip_stays_at_the_foot(desk, hand):
    note = hand.run({**NOTE, **FAR_ALARM}).note()
    strip = note.part("pic_time")
    desk.wait(lambda: strip.visible, what="the time strip")
    resize_mode(hand, note)
    for key in ("ctrl+Down", "ctrl+Up", "Up"):
        desk.key(key)
        still(hand, note)
        assert strip.rect.bottom == note.rect.bottom - 1 and strip.visible
    assert note.rect.height == 148


@any_store
@pytest.mark.parametrize("end", ["close", "hideAll", "iconize"])
def test_a_note_that_goes_away_under_the_held_grip_ends_the_resizing(desk, hand, end):
    hand.run(NOTE, OTHER)
    note = hand.note("Shopping")
    with Hold(hand, note, WIDER):
        desk.wait(lambda: note.rect.width > 205, what="a wider note")
        note.command(end)
        desk.wait(lambda: note.rect.height == 20 if end == "iconize" else not note.visible, what=f"{end}")
    desk.wait(lambda: hand.stored("width") == note.rect.width * TWIP, 5, "the width shown to be stored")
    assert hand.stored("height") == 2250
    other = hand.note("other")
    if end != "hideAll":
        other.activate()  # the program must go on
    assert hand.kardel.exit() == 0


@pytest.mark.parametrize("end", ["delete", "exit"])
def test_delete_and_exit_under_the_held_grip_do_what_they_say(desk, hand, end):
    hand.run(NOTE, OTHER)
    note = hand.note("Shopping")
    with Hold(hand, note, WIDER):
        desk.wait(lambda: note.rect.width > 205, what="a wider note")
        if end == "exit":
            assert hand.kardel.exit() == 0
        else:
            note.command("delete")
            hand.kardel.dialog()
    if end == "delete":
        hand.kardel.dialog().press("Yes")
        desk.wait_equal(lambda: hand.store.each("Titolo"), ["other"])
        assert hand.stored("width") == 3000


# --- The keys of the resize mode

KEYS = {
    "Left": (-STEP, 0), "Right": (STEP, 0), "Up": (0, -STEP), "Down": (0, STEP),
    "ctrl+Left": (-WIDE_STEP, 0), "ctrl+Right": (WIDE_STEP, 0), "ctrl+Up": (0, -WIDE_STEP), "ctrl+Down": (0, WIDE_STEP),
    "shift+Left": (-STEP, 0), "shift+Down": (0, STEP),
}


def test_every_arrow_key_resizes_by_its_step_and_is_stored_at_once(desk, hand):
    note = hand.run().note()
    resize_mode(hand, note)
    width, height = 200, 150
    for key, (x, y) in KEYS.items():
        width, height = width + x, height + y
        desk.key(key)
        desk.wait_equal(lambda: note.rect[2:], (width, height), 5, f"the size after {key}")
        check_stored_as_shown(hand, note)
    assert note.rect[:2] == (400, 300)


@any_store
def test_outside_the_resize_mode_the_arrows_do_nothing(desk, hand):
    note = hand.run().note()
    note.activate()
    before = hand.store.raw()
    desk.key("Left", "Down", "Return")
    assert still(hand, note) == (200, 150) and hand.store.raw() == before
    desk.key("ctrl+Down", "ctrl+Right")  # these move it
    assert still(hand, note) == (200, 150)
    assert (hand.stored("width"), hand.stored("height")) == (3000, 2250)


def test_up_and_down_do_nothing_to_an_iconized_note(desk, hand):
    note = hand.run().note()
    resize_mode(hand, note)
    hand.press(note, "iconize")
    desk.wait_equal(lambda: note.rect.height, 20)
    desk.key("Down", "ctrl+Down", "Up", "Right")
    desk.wait_equal(lambda: note.rect[2:], (202, 20))
    hand.wait_stored(width=3030, height=2250)


def click_the_grip(hand, note):
    width = note.rect.width
    note.click("pic2", *WIDER)
    hand.desk.wait(lambda: note.rect.width > width, 5, "a wider note")
    check_stored_as_shown(hand, note)


LEAVING = {
    "Enter": lambda hand, note: hand.desk.key("Return"),
    "Esc": lambda hand, note: hand.desk.key("Escape"),
    "a click on the title": lambda hand, note: note.click("lbl", 100),
    "a click on the text": lambda hand, note: note.click("nota"),
    "the menu": lambda hand, note: hand.menu(note, "Resize"),
    "the grip": click_the_grip,
}


@any_store
def test_the_resize_mode_is_marked_in_the_menu(desk, hand):
    note = hand.run().note()
    for expected in (False, True, False):
        assert mode_is_on(hand, note) == expected
        hand.menu(note, "Resize")


@any_store
def test_the_resize_mode_is_left_in_many_ways(desk, hand):
    note = hand.run().note()
    for way, leave in LEAVING.items():
        hand.menu(note, "Resize")
        before = note.rect.width
        desk.key("Right")
        desk.wait_equal(lambda: note.rect.width, before + STEP, 5, f"the mode to be on before {way}")
        leave(hand, note)
        size = still(hand, note)
        desk.key("Right", "Down")
        assert still(hand, note) == size, way


@any_store
def test_an_edit_leaves_the_resize_mode_and_has_the_arrows(desk, hand):
    note = hand.run().note()
    resize_mode(hand, note)
    editor = note.edit()
    desk.key("Left", "ctrl+Left", "Up")
    desk.type("x")
    desk.wait(lambda: "x" in editor.text)
    desk.key("Return")
    assert still(hand, note) == (200, 150)
    assert not mode_is_on(hand, note)


POINTERS = {  # what the pointer looks like -> where
    "arrow": [("nota", 100, 60), ("lbl2", 15, 9), ("pic", 9, 17), ("pic2", 2, 2)],
    "hand": [GLYPHS["iconize"], GLYPHS["close"], GLYPHS["delete"]],
    "wider": [("pic2", *WIDER)],
    "taller": [("pic2", *TALLER)],
}


@any_store
def test_the_pointer_distinguishes_the_hot_areas(desk, hand):
    note = hand.run().note()

    def over(part, dx, dy):
        desk.hands.move(*note.part(part).point(dx, dy))
        hand.settled(note)
        return desk.display.pointer()

    def told_apart():
        seen = [{over(*place) for place in places} for places in POINTERS.values()]
        return all(len(pointers) == 1 for pointers in seen) and len(set.union(*seen)) == len(seen)

    desk.wait(told_apart, 10, "one pointer for each kind of place")
