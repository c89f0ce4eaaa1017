"""Screens that are scaled, rescaled, or gone: a note keeps its place and size, and can be reached."""

import pytest

from kardel_desk.one_note import GLYPHS, NOTE

GEOMETRY = ("x", "y", "width", "height")


def pixels(twips, dpi):
    return int(twips * dpi / 1440 + 0.5)


def press(note, picture):
    part, dx, dy = GLYPHS[picture]
    note.click(part, dx * note.desk.dpi // 96, dy * note.desk.dpi // 96)


def iconize_and_restore(desk, note):
    before = note.rect
    for height in (note.desk.dpi * 20 // 96, before.height):
        press(note, "iconize")
        desk.wait(lambda: abs(note.rect.height - height) < 5, 5, "the note to be iconized and restored")
    return note.rect == before


@pytest.mark.parametrize("dpi", [120, 144])
def test_a_note_that_is_used_on_a_scaled_screen_does_not_creep(desk, dpi):
    desk.seed_registry({}, [NOTE])
    with desk.scaled(dpi):
        kardel = desk.run()
        note = kardel.note("Shopping")
        assert note.rect == tuple(pixels(n, dpi) for n in (6000, 4500, 3000, 2250))
        kardel.tray.menu().choose("New Kardel")
        made = kardel.note("- 2 -")
        assert (made.rect.width, made.rect.height) == (pixels(2910, dpi), pixels(1890, dpi))
        note.awake()
        before = note.rect
        note.drag(by=(37, -23), dx=100 * dpi // 96)
        desk.wait_equal(lambda: note.rect[:2], (before.x + 37, before.y - 23), 5, "the note where it was dragged")
        note.edit()
        desk.type("more ")
        desk.click_desktop()
        desk.wait(lambda: "more" in desk.stored_note(1)["Nota"], what="the edit to be stored")
        assert iconize_and_restore(desk, note)
        rects = [note.rect, made.rect]
        stored = [{key: desk.stored_note(n)[key] for key in GEOMETRY} for n in (1, 2)]
        assert kardel.exit() == 0
        for _ in range(3):
            kardel = desk.start().wait_ready(notes=2)
            note = kardel.note("Shopping")
            note.awake()
            assert iconize_and_restore(desk, note)
            assert [note.rect, kardel.note("- 2 -").rect] == rects
            assert kardel.exit() == 0
            assert [{key: desk.stored_note(n)[key] for key in GEOMETRY} for n in (1, 2)] == stored


def reachable(desk, note):
    """Whether its title, with the buttons, is on the screen."""
    return note.rect.x >= 0 and note.rect.y >= 0 and note.rect.right <= desk.display.width


def test_a_note_at_the_right_edge_is_reachable_on_a_rescaled_screen(desk):
    desk.seed_registry({}, [{**NOTE, "x": 16200}])
    kardel = desk.run()
    assert kardel.note().rect.right == desk.display.width
    assert kardel.exit() == 0
    with desk.scaled(144):
        kardel = desk.run()
        note = kardel.note()
        assert reachable(desk, note)
        note.awake()
        press(note, "iconize")
        desk.wait(lambda: desk.stored_note(1)["iconized"] == "True", what="the click on its button")
        press(note, "iconize")
        desk.wait(lambda: desk.stored_note(1)["iconized"] == "False", what="the click on its button")
        assert kardel.exit() == 0
    assert desk.run().note().rect == (1080, 300, 200, 150), "the old scaling has the note at its old place"


def test_a_note_partly_beyond_the_left_edge_stays_there(desk):
    """On a desk of several screens, places left of the first one are negative and as good as any other."""
    desk.seed_registry({}, [{**NOTE, "x": -1500}])
    for _ in range(2):
        kardel = desk.run()
        assert kardel.note().rect == (-100, 300, 200, 150)
        assert kardel.exit() == 0
        assert desk.stored_note(1)["x"] == "-1500"


@pytest.mark.parametrize("dpi", [168, 192])
def test_notes_snap_to_the_screen_and_to_one_another_on_a_scaled_screen(desk, dpi):
    other = {**NOTE, "Titolo": "other", "x": 6000, "y": 4500, "width": 2000, "height": 1500}
    desk.seed_registry({"EasyAlign": "True"}, [{**NOTE, "x": 1500, "y": 1500, "width": 2000, "height": 1500}, other])
    with desk.scaled(dpi):
        kardel = desk.run()
        note, other = kardel.note("Shopping"), kardel.note("other")
        for one in (other, note):
            one.awake()

        def drag_to(left, top):
            desk.wait(note.placed, 5, "Wine and the window manager to agree")
            rect = note.rect
            note.drag(by=(left - rect.x, top - rect.y), dx=100 * dpi // 96)

        def check(left, top):
            desk.wait_equal(lambda: note.rect[:2], (left, top), 5, "the note to snap")
            desk.wait_equal(lambda: [pixels(int(desk.stored_note(1)[key]), dpi) for key in ("x", "y")], [left, top])

        left, top, width, height = desk.screen()["workarea"]
        size = note.rect[2:]
        drag_to(left + width - size[0] - 1, 150)
        check(left + width - size[0], 150)
        drag_to(300, 200)
        drag_to(300, top + height - size[1] - 1)
        check(300, top + height - size[1])
        drag_to(300, 200)
        edge = other.rect.x - size[0]
        drag_to(edge - 2, other.rect.y + 9)
        check(edge, other.rect.y + 9)
        drag_to(300, 200)
        drag_to(edge - 3, other.rect.y + 9)
        check(edge - 3, other.rect.y + 9)
