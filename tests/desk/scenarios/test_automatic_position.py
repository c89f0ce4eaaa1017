"""Automatic position: the notes in columns below the first one, to the pixel on the screen and likewise in the
store."""

import random

import pytest
from kardel_desk.stores import KINDS, Store

PIXEL = 15  # twips
NOTE = {"Nota": "x", "x": 3000, "y": 1500, "width": 3000, "height": 2250}
POSITION, EASY = "dyn(5)", "dyn(6)"


def columns(rects, visible, work_height):
    """Where every note belongs, in pixels: below the one before it or, where that one ends too low, at the top of a new
    column, which begins where the old column's first note ends. Hidden notes stay and do not count; the first note
    stays."""
    places = [(rect.x, rect.y) for rect in rects]
    first = rects[0]
    column_left, column_width, last_top, last_height = first.x, first.width, first.y, first.height
    for index in range(1, len(rects)):
        if not visible[index]:
            continue
        if last_top + last_height + 1 < work_height:
            places[index] = (column_left, last_top + last_height)
        else:
            column_left, column_width = column_left + column_width, rects[index].width
            places[index] = (column_left, first.y)
        last_top, last_height = places[index][1], rects[index].height
    return places


def work_height(desk):
    return desk.screen()["workarea"][3]


def shown_at(desk, place, rect):
    """Where a note that belongs at `place` is seen: there or, if its title would be on no monitor, inside the work
    area. The store keeps the place where it belongs."""
    left, top, right, bottom = desk.screen()["workarea"]
    on_screen = -rect.width < place[0] < desk.display.width and -20 < place[1] < desk.display.height
    if on_screen:
        return place
    return max(min(place[0], right - rect.width), left), max(min(place[1], bottom - rect.height), top)


def rects_of(kardel):
    return [note.rect for note in kardel.notes()]


@pytest.mark.parametrize("store", KINDS)
def test_fifty_notes_of_all_sizes_stand_in_columns_to_the_pixel(desk, store):
    dice = random.Random(50)
    notes = [{"Titolo": f"n{n:02}", "x": PIXEL * dice.randrange(10, 900), "y": PIXEL * dice.randrange(10, 700),
              "width": PIXEL * dice.randrange(80, 220), "height": PIXEL * dice.randrange(60, 420),
              "iconized": n % 7 == 0, "closed": n % 5 == 4} for n in range(1, 51)]
    notes[0].update(x=PIXEL * 35, y=PIXEL * 41, iconized=False, closed=False)
    kept = Store(desk, store)
    kept.seed(notes)
    kardel = desk.run()
    before = rects_of(kardel)
    visible = [not note["closed"] for note in notes]
    expected = columns(before, visible, work_height(desk))
    assert len({x for (x, _), seen in zip(expected, visible) if seen}) > 5  # the model itself must make columns

    kardel.tray.command(POSITION)
    seen_at = [shown_at(desk, place, rect) for place, rect in zip(expected, before)]
    desk.wait_equal(lambda: kardel.note("n50").rect[:2], seen_at[-1], what="the last note in its place")
    after = rects_of(kardel)
    assert [(rect.x, rect.y) for rect, seen in zip(after, visible) if seen] == \
        [place for place, seen in zip(seen_at, visible) if seen]
    assert seen_at != expected  # some columns run off the screen and can still be reached
    assert [rect[2:] for rect in after] == [rect[2:] for rect in before]
    shown = [(x * PIXEL, y * PIXEL) for x, y in expected]
    untouched = [(note["x"], note["y"]) for note in notes]
    stored = [place if seen else old for place, old, seen in zip(shown, untouched, visible)]
    desk.wait_equal(lambda: kept.places(), stored)


def test_a_tall_last_note_may_reach_below_the_work_area(desk):
    tall = work_height(desk) - 100
    notes = [{**NOTE, "Titolo": "1", "x": 0, "y": 0, "height": 200 * PIXEL},
             {**NOTE, "Titolo": "2", "height": tall * PIXEL}, {**NOTE, "Titolo": "3", "width": 100 * PIXEL}]
    Store(desk, "registry").seed(notes, AlignAll=True)
    one, two, three = rects_of(desk.run())
    assert (two.x, two.y) == (one.x, one.bottom)
    assert two.bottom > work_height(desk)
    assert (three.x, three.y) == (one.right, one.y)


@pytest.mark.parametrize("free, joins", [(2, True), (1, False), (0, False)])
def test_a_note_joins_the_column_while_more_than_a_pixel_is_left(desk, free, joins):
    first = (work_height(desk) - free) * PIXEL
    notes = [{**NOTE, "Titolo": "1", "x": 0, "y": 0, "height": first}, {**NOTE, "Titolo": "2"}]
    Store(desk, "registry").seed(notes, AlignAll=True)
    one, two = rects_of(desk.run())
    assert (two.x, two.y) == ((one.x, one.bottom) if joins else (one.right, one.y))


@pytest.mark.parametrize("store", KINDS)
def test_switching_it_on_and_off_is_stored_and_excludes_easy_alignment(desk, store):
    kept = Store(desk, store)
    kept.seed([{**NOTE, "Titolo": "1"}, {**NOTE, "Titolo": "2", "x": 9000}])
    kardel = desk.run()
    kardel.tray.menu().choose("Automatic position")
    desk.wait_equal(lambda: desk.registry("setting")["AlignAll"], "True")
    desk.wait_equal(lambda: kardel.note("2").rect[:2], (200, 250))
    desk.wait_equal(lambda: kept.places(), [(3000, 1500), (3000, 3750)])
    menu = kardel.tray.menu()
    assert menu.item("Automatic position")["checked"] and menu.item("Automatic position")["enabled"]
    assert not menu.item("Easy alignment")["checked"] and not menu.item("Easy alignment")["enabled"]
    menu.choose("Automatic position")
    desk.wait_equal(lambda: desk.registry("setting")["AlignAll"], "False")
    menu = kardel.tray.menu()
    assert not menu.item("Automatic position")["checked"] and menu.item("Easy alignment")["enabled"]
    menu.close()


def test_easy_alignment_is_stored_and_excludes_automatic_position(desk):
    Store(desk, "registry").seed([{**NOTE, "Titolo": "1"}, {**NOTE, "Titolo": "2", "x": 9000}])
    kardel = desk.run()
    kardel.tray.menu().choose("Easy alignment")
    desk.wait_equal(lambda: desk.registry("setting")["EasyAlign"], "True")
    menu = kardel.tray.menu()
    assert menu.item("Easy alignment")["checked"] and menu.item("Easy alignment")["enabled"]
    assert not menu.item("Automatic position")["checked"] and not menu.item("Automatic position")["enabled"]
    menu.close()
    kardel.tray.command(POSITION)  # it is greyed, so it does nothing when a script sends it, either
    kardel.tray.window().send(0)
    assert desk.registry("setting")["AlignAll"] == "False"
    assert kardel.note("2").rect.x == 600
    kardel.tray.command(EASY)
    desk.wait_equal(lambda: desk.registry("setting")["EasyAlign"], "False")
    menu = kardel.tray.menu()
    assert menu.item("Automatic position")["enabled"] and not menu.item("Easy alignment")["checked"]
    menu.close()


def test_both_stored_as_true_are_both_checked_and_grey_at_the_next_start(desk):
    # Neither key is cleared by the other, so both may be set at a start.
    Store(desk, "registry").seed([{**NOTE, "Titolo": "1"}], AlignAll=True, EasyAlign=True)
    kardel = desk.run()
    menu = kardel.tray.menu()
    for entry in ("Automatic position", "Easy alignment"):
        assert menu.item(entry)["checked"] and not menu.item(entry)["enabled"], entry
    menu.close()


@pytest.mark.parametrize("store", KINDS)
def test_places_are_stored_even_when_it_is_switched_off(desk, store):
    kept = Store(desk, store)
    kept.seed([{**NOTE, "Titolo": "1"}, {**NOTE, "Titolo": "2"}], AlignAll=True)
    kardel = desk.run()
    place = kardel.note("2").rect
    kardel.tray.command(POSITION)
    desk.wait_equal(lambda: desk.registry("setting")["AlignAll"], "False")
    desk.wait_equal(lambda: kept.places()[1], (place.x * PIXEL, place.y * PIXEL))
    assert kardel.note("2").rect == place


@pytest.mark.parametrize("store", KINDS)
def test_the_column_closes_up_when_a_note_is_closed_iconized_or_gone(desk, store):
    kept = Store(desk, store)
    kept.seed([{**NOTE, "Titolo": str(n)} for n in range(1, 6)], AlignAll=True)
    kardel = desk.run()

    def stacked(*titles):
        """Whether the notes with these titles touch, one below the other, and are stored like that."""
        rects = [kardel.note(title).rect for title in titles]
        return all((low.x, low.y) == (high.x, high.bottom) for high, low in zip(rects, rects[1:]))

    assert stacked(*"12345")
    kardel.note("2").command("close")
    desk.wait(lambda: stacked(*"1345"), what="the notes below to move up")
    kardel.note("3").command("iconize")
    desk.wait(lambda: kardel.note("3").rect.height == 20 and stacked(*"1345"), what="the notes below to follow")
    kardel.note("4").command("delete")
    kardel.dialog().press("Yes")
    desk.wait(lambda: len(kardel.notes()) == 4, what="the note to go")
    last = kardel.note("5").rect
    desk.wait_equal(lambda: kept.places()[3], (last.x * PIXEL, last.y * PIXEL))
    assert kardel.exit() == 0
    kardel = desk.start().wait_ready(notes=4)
    assert stacked(*"135")  # the gap that a deleted note leaves closes with the next layout
