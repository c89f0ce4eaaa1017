"""Two monitors side by side, each 800 pixels wide, a panel below both: every note is where the user put it."""

import pytest

from kardel_desk import Desk
from kardel_desk.one_note import NOTE, TWIP

WIDTH, HEIGHT, PANEL = 800, 700, 24


def at(x, y, title="Shopping"):
    return {**NOTE, "Titolo": title, "x": x * TWIP, "y": y * TWIP}


@pytest.fixture(scope="module")
def session(arch):
    """Takes the place of the usual desk: every test here gets this one, clean."""
    if arch == "win32":
        pytest.skip("the 32-bit Wine has no Xinerama, and knows of one monitor only")
    desk = Desk(arch, size=(2 * WIDTH, HEIGHT), monitors=2)
    try:
        screen = desk.screen()
        assert screen["width"] == WIDTH  # of the primary one
        if screen["monitors"] != [[0, 0, WIDTH, HEIGHT], [WIDTH, 0, WIDTH, HEIGHT]]:
            pytest.skip(f"this Wine sees the two monitors at {screen['monitors']}")
        yield desk
    finally:
        desk.close()


def test_a_note_dragged_to_the_other_monitor_is_there_at_the_next_start(desk, hand):
    note = hand.run(at(400, 300)).note()
    note.drag(by=(600, 50))
    desk.wait_equal(lambda: note.rect[:2], (1000, 350), 5, "the note on the right monitor")
    hand.wait_stored(x=1000 * TWIP, y=350 * TWIP)
    assert hand.kardel.exit() == 0
    note = desk.run().note()
    assert note.rect[:2] == (1000, 350)
    assert hand.stored("x") == 1000 * TWIP


@pytest.mark.parametrize("x, y, shown", [
    (900, 100, (900, 100)),                            # on the right one
    (2500, 100, (2 * WIDTH - 200, 100)),               # right of both: the nearest
    (1000, 2000, (1000, HEIGHT - PANEL - 150)),        # below the right one
    (100, 2000, (100, HEIGHT - PANEL - 150)),          # below the left one
    (100, HEIGHT - PANEL + 2, (100, HEIGHT - PANEL - 150)),  # under the panel
    (-900, 100, (0, 100)),                             # where a monitor was once, left of both
])
def test_a_note_is_shown_where_it_can_be_reached_and_keeps_its_stored_place(hand, x, y, shown):
    note = hand.run(at(x, y)).note()
    assert note.rect[:2] == shown
    assert (hand.stored("x"), hand.stored("y")) == (x * TWIP, y * TWIP)


def test_easy_alignment_snaps_to_the_edges_of_the_monitor_that_the_note_is_on(desk, hand):
    note = hand.run(at(1000, 300), EasyAlign=True).note()
    note.drag(by=(-199, 0))  # one pixel short of the border between the monitors
    desk.wait_equal(lambda: note.rect[:2], (WIDTH, 300), 5, "the note at the left edge of the right monitor")
    hand.wait_stored(x=WIDTH * TWIP)


def test_a_new_note_comes_up_on_the_monitor_with_the_mouse(desk, hand):
    kardel = hand.run(at(100, 100))
    desk.hands.move(1200, 400)
    kardel.tray.command("dyn(0)")
    made = kardel.note("- 2 -")
    assert WIDTH <= made.rect.x and made.rect.right <= 2 * WIDTH


def test_automatic_position_brings_all_notes_to_the_primary_monitor(desk, hand):
    kardel = hand.run(at(100, 20, "a"), at(1000, 300, "b"), at(1300, 400, "c"))
    kardel.tray.command("dyn(5)")
    wanted = {"a": (100, 20), "b": (100, 170), "c": (100, 320)}
    desk.wait_equal(lambda: {note.title: note.rect[:2] for note in kardel.notes()}, wanted, 5, "a column on the left")
    hand.wait_stored(2, x=100 * TWIP, y=170 * TWIP)


def test_a_question_about_a_note_stands_on_its_monitor(desk, hand):
    kardel = hand.run(at(1400, 300))
    kardel.note().command("delete")
    box = kardel.dialog()
    assert WIDTH <= box.rect.x and box.rect.right <= 2 * WIDTH
    box.press("No")
