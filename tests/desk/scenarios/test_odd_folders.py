"""Unusual program folders: odd letters, long paths, missing rights."""

import pytest

from kardel_desk.stores import KINDS, Store

FAILED = "An error has occurred on saving the memo, possible data lost."
BOX = {"x": 3000, "y": 3000, "width": 3900, "height": 2400}
NOTES = [{"Titolo": "a", "Nota": "first", **BOX}, {"Titolo": "b", "Nota": "second", **BOX, "x": 9000}]


def edit(desk, note, text):
    note.edit()
    desk.key("ctrl+a")
    desk.type(text)
    desk.click_desktop()
    desk.wait_equal(lambda: note.body, text)


@pytest.mark.parametrize("store", KINDS)
@pytest.mark.parametrize("name", ["\u00c4rger \u00e9t\u00e9  \u6f22\u5b57 \u0130\u0131\u0142 & (1)", "long"])
def test_notes_live_in_a_folder_of_any_name(desk, store, name):
    if name == "long":
        name = "\\".join("folder %d of a path beyond two hundred and sixty characters" % n for n in range(5))
    desk.folder = desk.program_folder(desk.folder[3:] + "\\" + name)
    Store(desk, store).seed(NOTES)
    kardel = desk.run()
    assert desk.run_value == desk.folder + "\\Kardel.exe"
    edit(desk, kardel.note("a"), "changed")
    kardel.note("b").command("delete")
    kardel.dialog().press("Yes")
    desk.wait_equal(lambda: Store(desk, store).each("Titolo"), ["a"])
    assert kardel.exit() == 0
    assert Store(desk, store).each("Nota") == ["changed"]
    kardel = desk.start().wait_ready(notes=1)
    assert kardel.note("a").body == "changed"
    assert desk.start().wait_ended() == 0
    kardel.dialog().press("OK")
    assert kardel.exit() == 0
    files = {"KARDEL.HDR", "KARDEL.DAT", "MEMO"} if store == "files" else set()
    assert {path.name for path in desk.path().iterdir()} == {"Kardel.exe"} | files


def test_notes_in_the_registry_need_no_folder_to_write_in(desk):
    Store(desk, "registry").seed(NOTES)
    with desk.wine.read_only(desk.path()):
        kardel = desk.run()
        edit(desk, kardel.note("a"), "changed")
        kardel.note("b").command("delete")
        kardel.dialog().press("Yes")
        desk.wait_equal(desk.sections, ["kardel-1", "setting"])
        assert kardel.exit() == 0
        assert not kardel.dialogs()
    assert Store(desk, "registry").each("Nota") == ["changed"]


def test_notes_in_a_read_only_folder_stay_on_the_screen_and_are_stored_later(desk):
    store = Store(desk, "files")
    store.seed(NOTES)
    kardel = desk.run()
    with desk.wine.read_only(desk.path()):
        before = store.raw()
        edit(desk, kardel.note("a"), "changed")
        box = kardel.dialog()
        assert FAILED in box.texts()
        box.press("OK")
        desk.wait(lambda: not kardel.dialogs(), what="the box to close")
        kardel.note("b").command("topmost")
        box = kardel.dialog()
        assert FAILED in box.texts()
        box.press("OK")
        desk.wait(lambda: not kardel.dialogs(), what="the box to close")
        assert store.raw() == before
    assert kardel.note("a").body == "changed" and kardel.note("b").topmost
    assert kardel.exit() == 0
    assert store.each("Nota") == ["changed", "second"]
    assert store.each("topmost") == [False, True]


def test_first_start_in_a_read_only_folder_says_so_and_offers_a_note(desk):
    with desk.wine.read_only(desk.path()):
        kardel = desk.start()
        box = kardel.dialog()
        assert FAILED in box.texts()
        box.press("OK")
        kardel.wait_ready(notes=1)
        note = kardel.notes()[0]
        note.awake()
    edit(desk, note, "kept")  # the folder is writable now
    desk.wait_equal(lambda: desk.read_files().bodies, ["kept"])
    assert kardel.exit() == 0
    assert desk.run().notes()[0].body == "kept"


@pytest.mark.parametrize("name", ["KARDEL.HDR", "KARDEL.DAT", "MEMO"])
def test_files_held_by_another_program_at_the_start_lose_nothing(desk, name):
    """A note that cannot be read comes up empty and takes no text, which could not be kept; as soon as it can be read,
    it appears."""
    store = Store(desk, "files")
    store.seed(NOTES[:1])
    before = store.raw()
    with desk.held(name):
        kardel = desk.run()
        note = kardel.notes()[0]
        if name == "KARDEL.HDR":
            assert note.body == "first"
        else:
            assert note.body == ""
            note.awake()
            note.click("nota", double=True)
            desk.type("typed over")
            note.command("topmost")
            box = kardel.dialog()
            assert any("cannot be read" in text for text in box.texts())
            box.press("OK")
            assert not note.editing and note.body == ""
    desk.wait_equal(lambda: [note.body for note in kardel.notes()], ["first"])
    assert kardel.exit() == 0
    assert store.raw() == before
    assert [note.body for note in desk.run().notes()] == ["first"]
