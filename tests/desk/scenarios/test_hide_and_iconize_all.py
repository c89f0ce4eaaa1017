"""Hide All and Show All, Iconize All and Restore All: what is seen, what the menus say, what is stored."""

import pytest
from kardel_desk.stores import KINDS, Store

NOTE = {"Nota": "x", "y": 3000, "width": 3000, "height": 2250}
THREE = [{**NOTE, "Titolo": title, "x": 1500 + 4500 * n} for n, title in enumerate("abc")]
HIDE, ICONIZE = "dyn(2)", "dyn(3)"
both_stores = pytest.mark.parametrize("store", KINDS)


def titles(notes):
    return [note.title for note in notes]


def tray_captions(kardel):
    menu = kardel.tray.menu()
    captions = menu.captions
    menu.close()
    return captions


def note_captions(kardel, title):
    kardel.note(title).click("lbl2", 2, button=3)
    menu = kardel.desk.menu()
    captions = menu.captions
    menu.close()
    return captions


@both_stores
def test_hide_all_hides_every_note_and_stores_nothing(desk, store):
    store = Store(desk, store)
    store.seed(THREE)
    kardel = desk.run()
    before = store.raw()
    kardel.tray.menu().choose("Hide All")
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    captions = tray_captions(kardel)
    assert "Show All" in captions and "Hide All" not in captions
    assert store.raw() == before


@both_stores
def test_show_all_brings_every_note_back_where_it_was(desk, store):
    store = Store(desk, store)
    store.seed(THREE)
    kardel = desk.run()
    before = {note.title: note.rect for note in kardel.notes()}
    kardel.tray.command(HIDE)
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    kardel.tray.menu().choose("Show All")
    desk.wait(lambda: len(kardel.visible_notes()) == 3, what="the notes to show")
    assert {note.title: note.rect for note in kardel.notes()} == before
    assert "Hide All" in tray_captions(kardel)
    for title in "abc":
        captions = note_captions(kardel, title)
        assert "Hide All" in captions and "Show All" not in captions


def test_a_notes_own_menu_hides_all(desk):
    store = Store(desk, "registry")
    store.seed(THREE)
    kardel = desk.run()
    kardel.note("b").click("nota", button=3)
    desk.menu().choose("Hide All")
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    assert "Show All" in tray_captions(kardel)
    kardel.note("b").command("hideall")  # sent from outside, as the note itself cannot be clicked
    desk.wait(lambda: len(kardel.visible_notes()) == 3, what="the notes to show")


@both_stores
def test_show_all_reopens_closed_notes_and_stores_that(desk, store):
    store = Store(desk, store)
    store.seed([THREE[0], {**THREE[1], "closed": True}, {**THREE[2], "closed": True}])
    kardel = desk.run()
    kardel.note("a").command("close")
    desk.wait_equal(lambda: store.each("closed"), [True] * 3)
    assert "Show All" in tray_captions(kardel)  # with the last note the whole desk is hidden
    kardel.tray.command(HIDE)
    desk.wait(lambda: len(kardel.visible_notes()) == 3, what="the closed notes to open")
    desk.wait_equal(lambda: store.each("closed"), [False] * 3)
    assert "Hide All" in tray_captions(kardel)
    kardel.exit()
    assert len(desk.start().wait_ready(notes=3).visible_notes()) == 3


@both_stores
def test_show_all_takes_place_size_and_order_from_the_store(desk, store):
    store = Store(desk, store)
    store.seed(THREE)
    kardel = desk.run()
    kardel.tray.command(HIDE)
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    changed = {**THREE[1], "x": 6150, "y": 7500, "width": 3750, "height": 3000, "topmost": True}
    if store.kind == "files":
        desk.seed_files([THREE[0], changed, THREE[2]])
    else:
        desk.set_registry("kardel-2", changed)
    kardel.tray.command(HIDE)
    desk.wait_equal(lambda: kardel.note("b").rect, (410, 500, 250, 200))
    assert kardel.note("b").topmost
    assert kardel.note("a").rect == (100, 200, 200, 150) and not kardel.note("a").topmost


def test_fields_missing_in_the_store_read_as_their_fallbacks(desk):
    store = Store(desk, "registry")
    store.seed([{**THREE[0], "topmost": True}])
    kardel = desk.run()
    assert kardel.note("a").topmost
    kardel.tray.command(HIDE)
    desk.wait(lambda: not kardel.visible_notes(), what="the note to hide")
    key = r"HKCU\Software\VB and VBA Program Settings\Kardel\kardel-1"
    for name in ("x", "y", "width", "height", "topmost"):
        desk.probe.ask("regdelete", key, name)
    kardel.tray.command(HIDE)
    # Place 0, 0; a note without a size has the usual one.
    desk.wait_equal(lambda: (kardel.note("a").visible, kardel.note("a").rect), (True, (0, 0, 194, 126)))
    assert not kardel.note("a").topmost


@both_stores
def test_iconize_all_shrinks_every_note_and_restore_all_brings_it_back(desk, store):
    store = Store(desk, store)
    store.seed(THREE)
    kardel = desk.run()
    before = [note.rect for note in kardel.notes()]
    kardel.tray.menu().choose("Iconize All")
    desk.wait_equal(lambda: [note.rect.height for note in kardel.notes()], [20] * 3)
    assert store.each("iconized") == [True] * 3
    assert store.each("height") == [2250] * 3  # the full height, for later
    assert "Restore All" in tray_captions(kardel)
    for title in "abc":
        captions = note_captions(kardel, title)
        assert "Restore All" in captions and "Restore" in captions
    kardel.tray.menu().choose("Restore All")
    desk.wait_equal(lambda: [note.rect for note in kardel.notes()], before)
    assert store.each("iconized") == [False] * 3
    captions = tray_captions(kardel)
    assert "Iconize All" in captions and "Restore All" not in captions


@both_stores
def test_iconize_all_leaves_a_note_that_is_iconized_already_as_it_is(desk, store):
    store = Store(desk, store)
    store.seed([{**THREE[0], "iconized": True}, THREE[1], THREE[2]])
    kardel = desk.run()
    assert "Iconize All" in tray_captions(kardel)
    kardel.tray.command(ICONIZE)
    desk.wait_equal(lambda: [note.rect.height for note in kardel.notes()], [20] * 3)
    assert store.each("iconized") == [True] * 3
    kardel.tray.command(ICONIZE)
    desk.wait_equal(lambda: [note.rect.height for note in kardel.notes()], [150] * 3)


def test_iconizing_one_by_one_ends_in_restore_all(desk):
    store = Store(desk, "registry")
    store.seed(THREE)
    kardel = desk.run()
    for title in "ab":
        kardel.note(title).command("iconize")
    desk.wait_equal(lambda: [note.rect.height for note in kardel.notes()], [20, 20, 150])
    assert "Iconize All" in tray_captions(kardel)
    kardel.note("c").command("iconize")
    desk.wait_equal(lambda: kardel.note("c").rect.height, 20)
    assert "Restore All" in tray_captions(kardel)
    kardel.note("a").command("iconize")
    desk.wait_equal(lambda: kardel.note("a").rect.height, 150)
    assert "Iconize All" in tray_captions(kardel)


@both_stores
def test_hiding_and_showing_an_iconized_desk_keeps_it_iconized(desk, store):
    store = Store(desk, store)
    store.seed(THREE)
    kardel = desk.run()
    kardel.tray.command(ICONIZE)
    kardel.tray.command(HIDE)
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    kardel.tray.command(HIDE)
    desk.wait(lambda: len(kardel.visible_notes()) == 3, what="the notes to show")
    assert [note.rect.height for note in kardel.notes()] == [20] * 3
    kardel.tray.command(ICONIZE)
    desk.wait_equal(lambda: [note.rect.height for note in kardel.notes()], [150] * 3)


def test_a_note_iconized_by_itself_stays_so_through_hide_and_show(desk):
    store = Store(desk, "registry")
    store.seed(THREE)
    kardel = desk.run()
    kardel.note("b").command("iconize")
    desk.wait_equal(lambda: kardel.note("b").rect.height, 20)
    for _ in range(2):
        kardel.tray.command(HIDE)
    kardel.tray.window().send(0)
    desk.wait_equal(lambda: [note.rect.height for note in kardel.visible_notes()], [150, 20, 150])
    kardel.note("b").command("iconize")
    desk.wait_equal(lambda: kardel.note("b").rect.height, 150)


def test_hiding_keeps_a_deleted_and_a_hidden_note_apart_from_closed_ones(desk):
    store = Store(desk, "registry")
    store.seed(THREE)
    kardel = desk.run()
    kardel.tray.command(HIDE)
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    kardel.note("a").command("delete")
    kardel.dialog().press("Yes")
    desk.wait(lambda: len(kardel.notes()) == 2, what="the note to go")
    assert store.each("closed") == [False, False]
    kardel.exit()
    kardel = desk.start().wait_ready(notes=2)
    assert titles(kardel.visible_notes()) == ["b", "c"]


def test_an_open_edit_is_kept_by_hide_all(desk):
    store = Store(desk, "registry")
    store.seed(THREE)
    kardel = desk.run()
    note = kardel.note("a")
    note.append(" and more")
    kardel.tray.command(HIDE)
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    assert desk.stored_note(1)["Nota"] == "x and more"
    assert not note.editing


@both_stores
def test_automatic_position_follows_show_all_and_iconize_all(desk, store):
    store = Store(desk, store)
    store.seed(THREE, AlignAll=True)
    kardel = desk.run()

    def in_a_column():
        rects = [note.rect for note in kardel.notes()]
        return all((low.x, low.y) == (high.x, high.bottom) for high, low in zip(rects, rects[1:]))

    assert in_a_column()
    kardel.tray.command(ICONIZE)
    desk.wait(lambda: in_a_column() and kardel.note("c").rect.y == 240, what="a column of strips")
    assert store.each("y") == [3000, 3300, 3600]
    kardel.tray.command(HIDE)
    kardel.tray.command(HIDE)
    desk.wait(lambda: len(kardel.visible_notes()) == 3 and in_a_column(), what="the column again")
    kardel.tray.command(ICONIZE)
    desk.wait(lambda: in_a_column() and kardel.note("c").rect.y == 500, what="a column of notes")
    assert store.each("y") == [3000, 5250, 7500]


@both_stores
@pytest.mark.parametrize("keep", [True, False])
def test_hide_all_silences_a_ringing_note_first(desk, store, keep):
    once = {**THREE[1], "alarmdate": "28/02/2026", "alarmtime": "12:00:00"}
    store = Store(desk, store)
    store.seed([THREE[0], once, THREE[2]], DontDeleteWhenPlay=keep)
    kardel = desk.run(faketime="2026-02-28 11:59:59")
    note = kardel.note("b")
    desk.wait(lambda: note.colour == (255, 255, 255), what="the note to flash")
    kardel.tray.command(HIDE)
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    left = ["a", "b", "c"] if keep else ["a", "c"]  # an alarm that rings once takes its note along
    desk.wait_equal(lambda: titles(kardel.notes()), left)
    desk.wait_equal(lambda: store.each("Titolo"), left)
    if keep:
        assert store.each("alarmdate") == ["", "", ""]
    kardel.tray.command(HIDE)
    desk.wait_equal(lambda: titles(kardel.visible_notes()), left)
    assert "Hide All" in tray_captions(kardel)
