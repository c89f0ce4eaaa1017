"""New Kardel: from the tray, from a note's menu and by key; what the new note is, where it appears, what is stored."""

import pytest
from kardel_desk.stores import KINDS, Store

NOTE = {"Nota": "x", "x": 9000, "y": 3000, "width": 3000, "height": 2250}
NEW = "dyn(0)"
LIMIT = "You have got the # 50 kardel. To add new other you before need to delete one old."
both_stores = pytest.mark.parametrize("store", KINDS)


def delete(kardel, title):
    before = len(kardel.notes())
    kardel.note(title).command("delete")
    kardel.dialog().press("Yes")
    kardel.desk.wait(lambda: len(kardel.notes()) == before - 1, what=f"{title!r} to go")


@pytest.mark.parametrize("store, way", [("registry", "tray menu"), ("files", "tray menu"), ("registry", "note menu"),
                                        ("files", "key")])
def test_a_new_note_stands_on_the_desk_and_in_the_store(desk, store, way):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "old", "Nota": "old text"}], defaultwidth="3000", defaultheight="2400")
    kardel = desk.run()
    old = kardel.note("old")
    if way == "tray menu":
        kardel.tray.menu().choose("New Kardel")
    elif way == "note menu":
        old.click("nota", button=3)
        desk.menu().choose("New Kardel")
    else:
        old.activate()
        desk.key("ctrl+n")
    note = kardel.note("- 2 -")
    desk.wait(lambda: note.visible and note.active, what="the new note in front with the keyboard")
    place = desk.wait(note.placed)
    assert place[2:] == (200, 160) and note.body == "" and note.colour == (255, 255, 128)
    fields = {"Titolo": "- 2 -", "Nota": "", "x": place.x * 15, "y": place.y * 15, "width": 3000,
              "height": 2400, "closed": False, "iconized": False, "topmost": False}
    desk.wait_equal(lambda: {key: store.notes()[1][key] for key in fields}, fields)
    assert store.notes()[0]["Nota"] == "old text"
    menu = kardel.tray.menu()
    menu.choose("Open")
    desk.wait_equal(lambda: desk.menu().captions, ["old", "- 2 -"])
    desk.menu().close()


@both_stores
def test_text_of_a_new_note_is_its_own(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "old", "Nota": "old text"}])
    kardel = desk.run()
    for title, text in (("- 2 -", "second"), ("- 3 -", "third")):
        kardel.tray.command(NEW)
        kardel.note(title).edit()
        desk.type(text)
        desk.click_desktop()
    desk.wait_equal(lambda: [note["Nota"] for note in store.notes()], ["old text", "second", "third"])
    assert kardel.exit() == 0
    kardel = desk.start().wait_ready(notes=3)
    assert [kardel.note(title).body for title in ("old", "- 2 -", "- 3 -")] == ["old text", "second", "third"]


@both_stores
def test_new_notes_do_not_cover_each_other(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "old"}])
    kardel = desk.run()
    for number in (2, 3, 4, 5):
        kardel.tray.command(NEW)
        kardel.note(f"- {number} -")
    places = [desk.wait(note.placed)[:2] for note in kardel.notes()]
    assert len(set(places)) == 5
    left, top, width, height = desk.screen()["workarea"]
    for note in kardel.notes():
        rect = note.rect
        assert left <= rect.x and rect.right <= left + width and top <= rect.y and rect.bottom <= top + height


@both_stores
def test_the_fifty_first_note_is_refused_and_nothing_is_written(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": f"n{n:02}"} for n in range(1, 51)])
    kardel = desk.run()
    before = store.raw()
    kardel.tray.command(NEW)
    box = kardel.dialog()
    assert LIMIT in box.texts()
    box.press("OK")
    desk.wait(lambda: not kardel.dialogs(), what="the box to close")
    assert len(kardel.notes()) == 50
    assert store.raw() == before
    delete(kardel, "n07")
    kardel.tray.command(NEW)
    kardel.note("- 50 -")
    desk.wait_equal(lambda: len(store.notes()), 50)
    assert store.notes()[49]["Titolo"] == "- 50 -" and store.notes()[6]["Titolo"] == "n08"


@both_stores
def test_the_first_note_after_all_were_deleted_enables_the_tray_commands_again(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "only"}])
    kardel = desk.run()
    delete(kardel, "only")
    menu = kardel.tray.menu()
    commands = ("Hide All", "Iconize All", "Automatic position")
    assert [menu.item(command)["enabled"] for command in commands] == [False] * 3
    assert menu.item("New Kardel")["enabled"]
    menu.choose("Open")
    desk.wait_equal(lambda: desk.menu().captions, ["(none)"])
    assert not desk.menu().item("(none)")["enabled"]
    desk.menu().close()
    kardel.tray.command("dyn2(0)")  # an entry without a note
    kardel.tray.menu().choose("New Kardel")
    assert kardel.note("- 1 -").visible
    menu = kardel.tray.menu()
    assert [menu.item(command)["enabled"] for command in commands] == [True] * 3
    menu.choose("Open")
    desk.wait_equal(lambda: desk.menu().captions, ["- 1 -"])
    desk.menu().close()
    desk.wait_equal(lambda: [note["Titolo"] for note in store.notes()], ["- 1 -"])


@both_stores
def test_a_new_note_on_a_hidden_desk_brings_hide_all_back_and_leaves_the_others_hidden(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "a"}, {**NOTE, "Titolo": "b"}])
    kardel = desk.run()
    kardel.tray.command("dyn(2)")
    desk.wait(lambda: not kardel.visible_notes(), what="the notes to hide")
    kardel.tray.command(NEW)
    new = kardel.note("- 3 -")
    desk.wait(lambda: new.visible, what="the new note")
    assert [note.title for note in kardel.visible_notes()] == ["- 3 -"]
    menu = kardel.tray.menu()
    assert "Hide All" in menu.captions
    menu.close()
    new.click("nota", button=3)
    menu = desk.menu()
    assert "Hide All" in menu.captions and "Show All" not in menu.captions
    menu.close()
    assert [note["closed"] for note in store.notes()] == [False] * 3


@both_stores
def test_a_new_note_on_an_iconized_desk_brings_iconize_all_back(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "a"}, {**NOTE, "Titolo": "b", "x": 3000}])
    kardel = desk.run()
    kardel.tray.command("dyn(3)")
    desk.wait_equal(lambda: [note.rect.height for note in kardel.notes()], [20, 20])
    kardel.tray.command(NEW)
    new = kardel.note("- 3 -")
    assert new.rect.height == 126
    menu = kardel.tray.menu()
    assert "Iconize All" in menu.captions
    menu.close()
    new.click("nota", button=3)
    menu = desk.menu()
    assert "Iconize All" in menu.captions
    menu.close()
    assert [note["iconized"] for note in store.notes()] == [True, True, False]
    assert kardel.note("a").rect.height == 20


@both_stores
def test_a_second_note_stands_under_the_first_with_automatic_position(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "first"}], AlignAll=True)
    kardel = desk.run()
    kardel.tray.command(NEW)
    first, second = kardel.note("first").rect, kardel.note("- 2 -")
    desk.wait_equal(lambda: second.placed()[:2], (first.x, first.bottom))
    desk.wait_equal(lambda: (store.notes()[1]["x"], store.notes()[1]["y"]),
                    (first.x * 15, first.bottom * 15))


@both_stores
def test_the_default_size_is_read_for_every_new_note(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "first"}])
    kardel = desk.run()
    desk.set_registry("setting", {"defaultwidth": "4500", "defaultheight": "3000"})
    kardel.tray.command(NEW)
    assert kardel.note("- 2 -").rect[2:] == (300, 200)
    desk.wait_equal(lambda: (store.notes()[1]["width"], store.notes()[1]["height"]), (4500, 3000))


def test_a_left_over_section_lends_nothing_to_the_new_note(desk):
    desk.seed_registry({}, [{**NOTE, "Titolo": "a"}])
    desk.set_registry("kardel-2", {"Titolo": "ghost", "Nota": "boo", "closed": True, "backcolor": 255,
                                   "alarmdate": "*", "interval": "eachday", "alarmtime": "10:00:00"})
    kardel = desk.start().wait_ready(notes=1)
    kardel.tray.command(NEW)
    assert kardel.note("- 2 -").visible
    kardel.exit()
    left = desk.stored_note(2)
    assert left["Nota"] == "" and left["closed"] == "False" and not left.get("alarmdate")
    kardel = desk.start().wait_ready(notes=2)
    assert kardel.note("- 2 -").visible and kardel.note("- 2 -").colour == (255, 255, 128)


@both_stores
def test_a_new_note_is_refused_while_a_question_is_open_and_the_count_stays(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "a"}])
    kardel = desk.run()
    kardel.note("a").command("delete")
    box = kardel.dialog()
    kardel.tray.command(NEW)
    kardel.note("a").command("new")
    kardel.tray.window().send(0)
    assert len(kardel.notes()) == 1 and kardel.dialogs() == [box]
    box.press("No")
    desk.wait(lambda: not kardel.dialogs(), what="the question to close")
    assert [note["Titolo"] for note in store.notes()] == ["a"]


@both_stores
def test_an_open_edit_is_kept_when_a_note_is_made(desk, store):
    store = Store(desk, store)
    store.seed([{**NOTE, "Titolo": "a", "Nota": ""}])
    kardel = desk.run()
    kardel.note("a").edit()
    desk.type("half a thought")
    kardel.tray.command(NEW)
    kardel.note("- 2 -")
    desk.wait_equal(lambda: store.notes()[0]["Nota"], "half a thought")
    assert store.notes()[1]["Nota"] == ""
