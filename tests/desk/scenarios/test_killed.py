"""What the next start shows after the program was ended as by a power cut."""

import pytest

from kardel_desk.stores import KINDS, Store

NOTES = [{"Titolo": "first", "Nota": "one", "x": 900, "y": 900},
         {"Titolo": "second", "Nota": "two", "x": 6000, "y": 900}]


@pytest.fixture(params=KINDS)
def store(request, desk):
    return Store(desk, request.param)


def draft(store, number):
    """What the store in use keeps of an open edit, as UTF-16."""
    if store.kind == "registry":
        return (store.desk.registry(f"kardel-{number}") or {}).get("draft", "").encode("utf-16-le")
    path = store.desk.path() / "KARDEL.TMP"
    return path.read_bytes() if path.exists() else b""


def edited(desk, store):
    """The program, and a note in it that is being edited and has a draft."""
    store.seed(NOTES)
    kardel = desk.run()
    note = kardel.note("first")
    note.edit()
    desk.type("never mind")
    desk.wait(lambda: draft(store, 1), 5, "the draft")
    return kardel, note


def test_what_was_typed_a_second_before_is_there_again(desk, store):
    store.seed(NOTES)
    kardel = desk.run()
    kardel.note("second").append(" and \u00e8 half a thought")
    desk.wait(lambda: "half a thought".encode("utf-16-le") in draft(store, 2), 5, "the draft of what was typed")
    assert store.notes()[1]["Nota"] == "two"
    kardel.kill()

    kardel = desk.run()
    assert kardel.note("second").body == "two and \u00e8 half a thought"
    assert kardel.note("first").body == "one"
    assert store.notes()[1]["Nota"] == "two and \u00e8 half a thought"
    assert draft(store, 2) == b""


def test_a_title_that_was_being_typed_is_there_again(desk, store):
    store.seed(NOTES)
    kardel = desk.run()
    note = kardel.note("first")
    note.click("lbl", 40, button=3)
    editor = note.part("txtTitle")
    desk.wait(lambda: editor.visible and editor.has_focus, 5, "the title's editor")
    desk.type(" of all")
    desk.wait(lambda: "first of all".encode("utf-16-le") in draft(store, 1), 5, "the draft of what was typed")
    kardel.kill()

    kardel = desk.run()
    assert kardel.note("first of all").body == "one"
    assert store.notes()[0]["Titolo"] == "first of all"
    assert draft(store, 1) == b""


def test_escape_leaves_neither_draft_nor_text(desk, store):
    kardel, note = edited(desk, store)
    note.cancel_edit()
    assert draft(store, 1) == b""
    kardel.kill()
    assert desk.run().note("first").body == "one"


def test_what_escape_dropped_stays_dropped_although_its_file_was_held(desk):
    store = Store(desk, "files")
    kardel, note = edited(desk, store)
    with desk.held("KARDEL.TMP"):
        note.cancel_edit()
        assert kardel.exit() == 0
    assert desk.run().note("first").body == "one"
    assert store.notes()[0]["Nota"] == "one"
    desk.wait(lambda: draft(store, 1) == b"", 5, "the draft to go")


def test_what_was_typed_before_a_kill_is_not_written_over_although_its_file_was_held(desk):
    store = Store(desk, "files")
    store.seed(NOTES)
    kardel = desk.run()
    kardel.note("second").append(" and \u20ac half a thought")
    desk.wait(lambda: "half a thought".encode("utf-16-le") in draft(store, 2), 5, "the draft of what was typed")
    kardel.kill()
    with desk.held("KARDEL.TMP"):
        kardel = desk.run()
        note = kardel.note("second")
        assert note.body == "two"
    note.append("!")
    desk.key("Return")
    desk.wait_equal(lambda: store.notes()[1]["Nota"], "two and \u20ac half a thought!")
    desk.wait(lambda: draft(store, 2) == b"", 5, "the draft to go")


def test_what_was_typed_in_a_deleted_note_does_not_come_up_in_one_that_is_alike(desk):
    store = Store(desk, "files")
    store.seed([{"Titolo": "caf\u00e9", "Nota": "one", "x": x, "y": 900} for x in (900, 6000)])
    kardel = desk.run()
    left = min(kardel.notes(), key=lambda note: note.rect.x)
    left.append(" and \u20ac half a thought")
    desk.wait(lambda: "half a thought".encode("utf-16-le") in draft(store, 1), 5, "the draft of what was typed")
    kardel.kill()
    with desk.held("KARDEL.TMP"):
        kardel = desk.run()
        min(kardel.notes(), key=lambda note: note.rect.x).command("delete")
        kardel.dialog().press("Yes")
        desk.wait_equal(lambda: len(kardel.notes()), 1)
    desk.wait(lambda: draft(store, 1) == b"", 20, "the draft to go")
    assert kardel.note("caf\u00e9").body == "one" and not kardel.note("caf\u00e9").editing
    assert [note["Nota"] for note in store.notes()] == ["one"]
