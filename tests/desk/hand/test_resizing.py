"""A note made larger and smaller, with the arrows of its grip and with the keys of the resize mode."""

import pytest
from one_note import FAR_ALARM, NOTE, OTHER, TALLER, TWIP, WIDER, hand  # noqa: F401

LEAST = (75, 47)  # pixels of 1130 x 705 twips
STEP, WIDE_STEP = 2, 12  # pixels a key


class Hold:
    """A mouse button held down on the grip, with a key or without."""

    def __init__(self, hand, note, place, button=1, key=None):
        self.desk, self.key, self.button = hand.desk, key, button
        self.at = hand.awake(note).part("pic2").point(*place)

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
    hand.menu(hand.awake(note), "Resize")
    hand.desk.wait(lambda: note.active, 5, "the keyboard at the note")
    hand.settled(note)


def check_stored_as_shown(hand, note):
    hand.wait_stored(width=note.rect.width * TWIP, height=note.rect.height * TWIP)


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
    hand.desk.key("Escape")  # not with a click elsewhere: that is one way to leave
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
            desk.wait(lambda: (note.rect.width - width) * x + (note.rect.height - height) * y >= 3, 5, f"{how} to change")
            assert (hand.stored("width"), hand.stored("height")) == before  # stored once, at the end
        wider, taller = still(hand, note)
        assert (wider == width) == (x == 0) and (taller == height) == (y == 0), how  # the other way nothing changes
        check_stored_as_shown(hand, note)
        assert note.rect[:2] == (400, 300) and not desk.menus(), how
        grip = note.part("pic2").rect
        assert (grip.right, grip.bottom) == (note.rect.right - 1, note.rect.bottom - 1), how


def test_a_click_on_an_arrow_is_one_step_at_least(desk, hand):
    note = hand.awake(hand.run().note())
    note.click("pic2", *WIDER)
    desk.wait(lambda: note.rect.width > 200, what="a wider note")
    still(hand, note)
    assert note.rect.width < 300
    check_stored_as_shown(hand, note)


def test_between_the_arrows_nothing_happens(desk, hand):
    note = hand.run().note()
    before = hand.store.raw()
    for place in ((2, 2), (16, 14)):
        note.click("pic2", *place)
    assert still(hand, note) == (200, 150) and hand.store.raw() == before


def test_the_grip_stops_at_the_smallest_size(desk, hand):
    note = hand.run({**NOTE, "width": 1220, "height": 780}).note()
    with Hold(hand, note, WIDER, key="shift"):
        desk.wait_equal(lambda: note.rect.width, LEAST[0])
    hand.wait_stored(width=1130)
    with Hold(hand, note, TALLER, key="shift"):
        desk.wait_equal(lambda: note.rect.height, LEAST[1])
        desk.stays(lambda: note.rect[2:] == LEAST, 0.15, "the smallest size")
    hand.wait_stored(height=705)


def test_a_step_below_the_smallest_size_is_refused(desk, hand):
    note = hand.run({**NOTE, "width": 1140, "height": 715}).note()
    resize_mode(hand, note)
    before = hand.store.raw()
    desk.key("Left", "Up")
    assert still(hand, note) == (76, 48) and hand.store.raw() == before
    desk.key("Right", "Left", "Left")  # one wider; one narrower; the next is refused again
    hand.wait_stored(width=1140)


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
    assert still(hand, note)[1] == 20
    hand.wait_stored(width=note.rect.width * TWIP, height=2250)


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


@pytest.mark.parametrize("end", ["close", "hideAll", "iconize"])
def test_a_note_that_goes_away_under_the_held_grip_ends_the_resizing(desk, hand, end):
    hand.run(NOTE, OTHER)
    note = hand.note("Shopping")
    with Hold(hand, note, WIDER):
        desk.wait(lambda: note.rect.width > 205, what="a wider note")
        note.command(end)
        desk.wait(lambda: note.rect.height == 20 if end == "iconize" else not note.visible, what=f"{end}")
    still(hand, note)
    check_width = note.rect.width * TWIP
    hand.wait_stored(width=check_width, height=2250)
    other = hand.note("other")
    if end != "hideAll":
        other.activate()  # the program goes on
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


def test_outside_the_resize_mode_the_arrows_do_nothing(desk, hand):
    note = hand.run().note()
    note.activate()
    before = hand.store.raw()
    desk.key("Left", "ctrl+Down", "Return")
    assert still(hand, note) == (200, 150) and hand.store.raw() == before


def test_up_and_down_do_nothing_to_an_iconized_note(desk, hand):
    note = hand.run().note()
    resize_mode(hand, note)
    hand.press(note, "iconize")
    desk.wait_equal(lambda: note.rect.height, 20)
    desk.key("Down", "ctrl+Down", "Up", "Right")
    desk.wait_equal(lambda: note.rect[2:], (202, 20))
    hand.wait_stored(width=3030, height=2250)


LEAVING = {
    "Enter": lambda hand, note: hand.desk.key("Return"),
    "a click on the title": lambda hand, note: note.click("lbl", 100),
    "a click on the text": lambda hand, note: note.click("nota"),
    "the menu": lambda hand, note: hand.menu(note, "Resize"),
    "the grip": lambda hand, note: note.click("pic2", *WIDER),
}


def test_the_resize_mode_is_marked_in_the_menu(desk, hand):
    note = hand.awake(hand.run().note())
    for expected in (False, True, False):
        assert mode_is_on(hand, note) == expected
        hand.menu(note, "Resize")


def test_the_resize_mode_is_left_in_many_ways(desk, hand):
    note = hand.awake(hand.run().note())
    for way, leave in LEAVING.items():
        hand.menu(note, "Resize")
        before = note.rect.width
        desk.key("Right")
        desk.wait_equal(lambda: note.rect.width, before + STEP, 5, f"the mode to be on before {way}")
        leave(hand, note)
        size = still(hand, note)
        desk.key("Right", "Down")
        assert still(hand, note) == size, way


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


def test_the_pointer_tells_the_arrows_of_the_grip_apart(desk, hand):
    note = hand.run().note()
    desk.display.x.xfixes_query_version()

    def pointer(place):
        desk.hands.move(*note.part("pic2").point(*place))
        hand.settled(note)
        return bytes(str(desk.display.x.xfixes_get_cursor_image(desk.display.root).cursor_image), "ascii")

    seen = {}
    for name, place in (("plain", (2, 2)), ("wider", WIDER), ("taller", TALLER)):
        desk.wait(lambda: seen.__setitem__(name, pointer(place)) or list(seen.values()).count(seen[name]) == 1, 5,
                  f"a pointer of its own over {name}")
