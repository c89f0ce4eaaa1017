"""A note given another colour, put away, and deleted; what is asked, what is stored, and what becomes of the rest."""

import pytest
from kardel_desk.one_note import NOTE, OTHER, TWIP, any_store

RED, PALE_GREEN = (255, 0, 0), (192, 255, 192)
RED_BOX = 20, 55  # in the system's colour dialog
QUESTION = "Are you sure you want to delete the kardel titled ''{}'' ?"
WM_CLOSE = 0x10


def colour_dialog(hand, note):
    hand.menu(note, "Back color")
    dialog = hand.kardel.dialog()
    hand.desk.wait(lambda: dialog.active, 5, "the colour dialog")
    return dialog


def choose_red(hand, dialog):
    x, y, *_ = dialog.info["client"]
    hand.desk.click(x + RED_BOX[0], y + RED_BOX[1])


def many(count):
    """Notes that differ in every field, including their bodies."""
    return [{**NOTE, "Titolo": f"n{n}", "Nota": f"body of {n}\r\n" + "line\r\n" * n, "x": 900 * n, "y": 600 * n,
             "width": 3000 + 150 * n, "height": 2250 + 75 * n, "backcolor": 0xC0FF00 + n, "iconized": n % 3 == 0,
             "closed": n % 4 == 0, "alarmdate": f"{n:02}/01/2999", "alarmtime": "10:00:00",
             "weekdays": [day == n for day in range(7)]} for n in range(1, count + 1)]


def contents(notes):
    """Everything that is stored of the notes except where their bodies are."""
    return [{key: value for key, value in note.items() if key != "memo"} for note in notes]


def dialog_gone(hand):
    hand.desk.wait(lambda: not hand.kardel.dialogs(), 5, "the question to go")


def delete(hand, note):
    note.command("delete")
    hand.kardel.dialog().press("Yes")
    dialog_gone(hand)


# --- Colour


@pytest.mark.parametrize("hand, end", [("registry", "mouse"), ("files", "Return")], indirect=["hand"])
def test_a_chosen_colour_paints_the_whole_note_and_is_stored(desk, hand, end):
    note = hand.run({**NOTE, "alarmdate": "01/01/2999", "alarmtime": "10:00:00"}, OTHER).note("Shopping")
    desk.wait(lambda: note.part("pic_time").visible, what="the time strip")
    dialog = colour_dialog(hand, note)
    assert dialog.text == "Color"
    choose_red(hand, dialog)
    dialog.press("OK") if end == "mouse" else desk.key("Return")
    hand.wait_stored(backcolor=255)
    for part in ("nota", "lbl", "pic", "pic2", "lbl2", "pic_time"):
        desk.wait_equal(lambda: note.part(part).pixel(0, 0), RED, 5, f"the colour of {part}")
    desk.wait_equal(lambda: note.pixel(2, 60), RED, 5, "the colour of the margin")
    assert hand.stored("backcolor", 2) == OTHER["backcolor"]


@any_store
def test_a_cancelled_colour_changes_nothing(desk, hand):
    note = hand.run().note()
    before = hand.store.raw()
    for cancel in (lambda dialog: desk.key("Escape"), lambda dialog: dialog.press("Cancel"),
                   lambda dialog: dialog.post(WM_CLOSE)):
        dialog = colour_dialog(hand, note)
        choose_red(hand, dialog)
        cancel(dialog)
        dialog_gone(hand)
        hand.settled(note)
        desk.wait_equal(lambda: note.colour, PALE_GREEN)
        assert hand.store.raw() == before


@any_store
def test_exit_while_the_colour_dialog_is_open_ends_the_program(desk, hand):
    note = hand.run().note()
    colour_dialog(hand, note)
    hand.kardel.tray.command("dyn(13)")
    assert hand.kardel.wait_ended() == 0
    assert hand.stored("backcolor") == NOTE["backcolor"]


# --- Close


def test_a_closed_note_is_put_away_and_kept(desk, hand):
    hand.run(NOTE, OTHER, {**NOTE, "Titolo": "third", "y": 9000})
    for number, (title, close) in enumerate((("Shopping", lambda note: hand.menu(note, "Close")),
                                             ("other", lambda note: hand.press(note, "close"))), 1):
        note = hand.note(title)
        close(note)
        desk.wait(lambda: not note.visible, what="the note to go")
        hand.wait_stored(number, closed=True)
    assert hand.store.each("Titolo") == ["Shopping", "other", "third"] and not hand.kardel.dialogs()
    assert hand.kardel.exit() == 0
    assert [note.title for note in desk.run().visible_notes()] == ["third"]


def test_a_closed_note_comes_back_from_the_tray(desk, hand):
    hand.run(NOTE, OTHER)
    note = hand.note("Shopping")
    hand.press(note, "close")
    hand.wait_stored(closed=True)
    menu = hand.kardel.tray.menu()
    menu.choose("Open")
    desk.wait(lambda: "Shopping" in desk.menu().captions, what="the note in the tray menu")
    desk.menu().choose("Shopping")
    desk.wait(lambda: note.visible, what="the note to come back")
    hand.wait_stored(closed=False)
    assert note.rect == (400, 300, 200, 150)


@any_store
def test_closing_keeps_what_was_being_typed(desk, hand):
    note = hand.run().note()
    note.edit()
    desk.type("!")
    desk.wait_equal(lambda: note.part("txtNota").text, "milk and bread!")
    hand.press(note, "close")
    hand.wait_stored(Nota="milk and bread!", closed=True)


@any_store
def test_closing_the_last_visible_note_offers_show_all(desk, hand):
    hand.run(NOTE, OTHER)
    shopping, other = hand.note("Shopping"), hand.note("other")
    hand.press(shopping, "close")
    desk.wait(lambda: not shopping.visible)
    assert "Hide All" in hand.entries(other)
    hand.press(other, "close")
    desk.wait(lambda: not other.visible)
    hand.wait_stored(2, closed=True)
    menu = hand.kardel.tray.menu()
    menu.choose("Show All")
    desk.wait(lambda: shopping.visible and other.visible, what="both notes back")
    desk.wait_equal(lambda: hand.store.each("closed"), [False, False])
    assert "Hide All" in hand.entries(other)


@any_store
def test_with_automatic_position_the_others_close_the_gap(desk, hand):
    hand.run(*({**NOTE, "Titolo": f"n{n}", "y": 1500 + 2250 * n} for n in range(3)), AlignAll=True)
    middle, last = hand.note("n1"), hand.note("n2")
    desk.wait(lambda: last.rect.y == middle.rect.bottom, what="the notes in their column")
    top = middle.rect.y
    hand.press(middle, "close")
    desk.wait_equal(lambda: last.rect.y, top)
    hand.wait_stored(3, y=top * TWIP)


# --- The question before a delete

# Name -> how to bring up the question, and how to refuse it.
ASKING = {
    "menu": (lambda hand, note: hand.menu(note, "Delete"), lambda hand, box: box.press("No")),
    "Delete key": (lambda hand, note: (note.activate(), hand.desk.key("Delete")),
                   lambda hand, box: hand.desk.key("Escape")),
    "picture": (lambda hand, note: hand.press(note, "delete"), lambda hand, box: box.post(WM_CLOSE)),
}


def test_a_delete_asks_and_no_changes_nothing(desk, hand):
    hand.run(NOTE, OTHER)
    note = hand.note("Shopping")
    before = hand.store.raw()
    for way, (ask, refuse) in ASKING.items():
        ask(hand, note)
        box = hand.kardel.dialog()
        assert box.text == "Delete" and QUESTION.format("Shopping") in box.texts(), way
        assert "&Yes" in box.texts() and "&No" in box.texts()
        refuse(hand, box)
        dialog_gone(hand)
        assert hand.settled(note) and note.visible and hand.store.raw() == before, way


def test_yes_deletes_the_note(desk, hand):
    hand.run(*({**NOTE, "Titolo": way, "x": 1500 + 4500 * n} for n, way in enumerate(ASKING)), OTHER | {"y": 9000})
    left = [*ASKING, "other"]
    for way, (ask, _) in ASKING.items():
        ask(hand, hand.note(way))
        hand.kardel.dialog().press("Yes")
        left.remove(way)
        desk.wait_equal(lambda: hand.store.each("Titolo"), left)
        desk.wait_equal(lambda: [note.title for note in hand.kardel.notes()], sorted(left))
    assert hand.kardel.exit() == 0
    assert [note.title for note in desk.start().wait_ready(notes=1).notes()] == ["other"]


@any_store
def test_below_the_delete_picture_nothing_is_asked(desk, hand):
    note = hand.run().note()
    note.click("pic", 9, 17)
    assert hand.settled(note) and not hand.kardel.dialogs()


@any_store
def test_a_note_without_a_title_gets_its_question_too(desk, hand):
    note = hand.run({**NOTE, "Titolo": ""}).note()
    hand.press(note, "delete")
    assert QUESTION.format("") in hand.kardel.dialog().texts()
    desk.key("Escape")


@any_store
def test_what_was_being_typed_is_kept_when_the_delete_is_refused(desk, hand):
    note = hand.run().note()
    note.edit()
    desk.type("!")
    desk.wait_equal(lambda: note.part("txtNota").text, "milk and bread!")
    hand.press(note, "delete")
    hand.kardel.dialog().press("No")
    hand.wait_stored(Nota="milk and bread!")
    assert note.body == "milk and bread!"


@any_store
def test_the_question_about_a_title_typed_a_moment_ago_names_the_new_one(desk, hand):
    note = hand.run().note()
    note.click("lbl", 100, button=3)
    desk.wait(lambda: note.part("txtTitle").has_focus, what="the title's editor")
    desk.type("!")
    desk.wait_equal(lambda: note.part("txtTitle").text, "Shopping!")
    note.command("delete")
    assert QUESTION.format("Shopping!") in hand.kardel.dialog().texts()
    desk.key("Escape")


# --- What a delete leaves


@pytest.mark.parametrize("count, gone", [(2, 1), (4, 2), (6, 6)])
def test_the_notes_behind_move_down_with_all_they_have(desk, hand, count, gone):
    hand.run(*many(count))
    left = contents(hand.store.notes())
    del left[gone - 1]
    delete(hand, hand.note(f"n{gone}"))
    desk.wait_equal(lambda: contents(hand.store.notes()), left)
    if hand.kind == "registry":
        assert desk.sections() == sorted(["setting", *(f"kardel-{n}" for n in range(1, count))])
    else:
        files = desk.read_files()
        assert len(files.records) == count - 1 and len(files.bodies) == count - 1
    assert hand.kardel.exit() == 0
    again = desk.start().wait_ready(notes=count - 1)
    assert sorted((note.title, note.body) for note in again.notes()) == [(n["Titolo"], n["Nota"]) for n in left]


def test_a_note_that_moved_down_goes_on_in_its_new_place(desk, hand):
    hand.run(*many(3))
    delete(hand, hand.note("n1"))
    desk.wait_equal(lambda: hand.store.each("Titolo"), ["n2", "n3"])
    note = hand.note("n2")
    note.edit()
    desk.key("ctrl+a")
    desk.type("fresh")
    desk.key("Return")
    desk.wait_equal(lambda: hand.store.each("Nota"), ["fresh", "body of 3\r\n" + "line\r\n" * 3])
    delete(hand, note)
    desk.wait_equal(lambda: hand.store.each("Titolo"), ["n3"])
    assert hand.stored("Nota") == "body of 3\r\n" + "line\r\n" * 3


def test_deleting_the_last_note_leaves_none_in_the_tray_menu(desk, hand):
    note = hand.run().note()
    delete(hand, note)
    desk.wait_equal(lambda: hand.store.notes(), [])
    desk.wait_equal(hand.kardel.notes, [])
    assert hand.kardel.alive
    menu = hand.kardel.tray.menu()
    menu.choose("Open")
    desk.wait(lambda: "(none)" in desk.menu().captions, what="an empty list in the tray menu")
    desk.menu().close()
    if hand.kind == "files":
        assert not (desk.path() / "KARDEL.DAT").exists() and not (desk.path() / "MEMO").exists()
    else:
        assert desk.sections() == ["setting"]


@any_store
def test_when_only_closed_notes_remain_they_are_offered_again(desk, hand):
    hand.run(NOTE, {**OTHER, "closed": True})
    delete(hand, hand.note("Shopping"))
    menu = hand.kardel.tray.menu()
    assert "Show All" in menu.captions
    menu.choose("Show All")
    desk.wait(lambda: hand.note("other").visible, what="the closed note back")
    hand.wait_stored(closed=False)


@any_store
def test_when_only_iconized_notes_remain_they_can_be_restored_together(desk, hand):
    hand.run(NOTE, {**OTHER, "iconized": True}, {**OTHER, "Titolo": "third", "x": 1500, "iconized": True})
    delete(hand, hand.note("Shopping"))
    assert "Restore All" in hand.entries(hand.note("other"))


def test_the_settings_survive_a_delete(desk, hand):
    hand.run(NOTE, OTHER, EasyAlign=False, RestoreWhenPlay=True, defaultwidth="4000")
    before = desk.registry("setting")
    delete(hand, hand.note("Shopping"))
    desk.wait_equal(lambda: hand.store.each("Titolo"), ["other"])
    after = desk.registry("setting")
    for key in ("EasyAlign", "RestoreWhenPlay", "UseRegistry", "defaultwidth"):
        assert after[key] == before[key], key
