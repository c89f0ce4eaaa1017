"""Use local files: the questions, what is written, and that no change made before the restart is lost."""

import datetime

import pytest
from kardel_desk.stores import KINDS, Store

NOTE = {"Nota": "x", "y": 3000, "width": 3000, "height": 2250}
THREE = [{**NOTE, "Titolo": title, "Nota": f"text of {title}", "x": 1500 + 4500 * n} for n, title in enumerate("abc")]
SWITCH, NEW = "dyn(8)", "dyn(0)"
TO_FILES, TO_REGISTRY = "Use the local files?", "Don't use the local files?"
RESTART = "For this setting to have effect, the program must be restarted."
LOST = "An error has occurred on saving the memo, possible data lost."
MARK = "Use local files"
both_stores = pytest.mark.parametrize("store", KINDS)


def switch(kardel, answer="OK"):
    """Chooses the entry, answers the question and waits until everything is done."""
    kardel.tray.command(SWITCH)
    box = kardel.dialog()
    title = box.text
    box.press(answer)
    kardel.desk.wait(lambda: not kardel.dialogs(), what="the question to close")
    kardel.tray.window().send(0)
    return title


def restart(desk, notes, answer="Yes"):
    """The next start. In registry mode it asks about the local files that are there now."""
    kardel = desk.start()
    if desk.registry("setting")["UseRegistry"] == "True" and desk.read_files().hdr is not None:
        kardel.dialog().press(answer)
    return kardel.wait_ready(notes=notes)


def marked(kardel):
    menu = kardel.tray.menu()
    checked = menu.item(MARK)["checked"]
    menu.close()
    return checked


# --- The questions


@both_stores
def test_the_question_names_the_files_or_the_restart_and_cancel_is_its_default(desk, store):
    Store(desk, store).seed(THREE)
    kardel = desk.run()
    before = Store(desk, "registry").raw(), Store(desk, "files").raw()
    kardel.tray.menu().choose(MARK)
    box = kardel.dialog()
    text = "\n".join(box.texts()).replace("\r", "\n")
    assert box.text == (TO_FILES if store == "registry" else TO_REGISTRY)
    assert RESTART in text
    names = "Do you want to use the local files 'KARDEL.HDR', 'KARDEL.DAT' and 'MEMO'?"
    assert (names in text) == (store == "registry")
    desk.wait(lambda: box.button("Cancel").has_focus, what="Cancel to be the default")
    desk.key("Return")
    desk.wait(lambda: not kardel.dialogs(), what="the question to close")
    kardel.tray.window().send(0)
    assert (Store(desk, "registry").raw(), Store(desk, "files").raw()) == before
    # The entry stays checked after either Cancel, although in one case the registry is used.
    assert marked(kardel)
    assert kardel.exit() == 0
    kardel = desk.run()
    assert marked(kardel) == (store == "files")


def test_after_a_cancel_the_next_click_follows_the_mark_and_loses_nothing(desk):
    store = Store(desk, "registry")
    store.seed(THREE)
    kardel = desk.run()
    assert switch(kardel, "Cancel") == TO_FILES
    assert switch(kardel, "OK") == TO_REGISTRY
    assert not marked(kardel)
    assert fields(store.notes(), THREE) == THREE and desk.registry("setting")["UseRegistry"] == "True"
    assert desk.read_files().hdr is None
    kardel.exit()
    assert [note.title for note in desk.run().notes()] == ["a", "b", "c"]


# --- What is written


def test_switching_to_files_writes_every_note_and_the_choice(desk):
    Store(desk, "registry").seed(THREE)
    kardel = desk.run()
    switch(kardel)
    files = desk.read_files()
    assert (files.count, files.flag, len(files.records), len(files.bodies)) == (3, 0, 3, 3)
    assert [(note["Titolo"], note["Nota"], note["x"], note["memo"]) for note in files.notes] == \
        [(note["Titolo"], note["Nota"], note["x"], number) for number, note in enumerate(THREE, 1)]
    assert desk.registry("setting")["UseRegistry"] == "False"
    assert marked(kardel)


def test_switching_to_files_leaves_nothing_of_older_files(desk):
    Store(desk, "registry").seed(THREE)
    kardel = desk.run()
    desk.seed_files([{**NOTE, "Titolo": f"old {n}", "Nota": "old"} for n in range(9)])
    switch(kardel)
    files = desk.read_files()
    assert [note["Titolo"] for note in files.notes] == ["a", "b", "c"] and len(files.bodies) == 3


def test_switching_to_the_registry_writes_settings_count_and_every_note(desk):
    Store(desk, "files").seed(THREE, AlignAll=False, EasyAlign=True, RestoreWhenPlay=True, DontDeleteWhenPlay=False,
                              defaultwidth="3300", defaultheight="2100")
    desk.set_registry("kardel-7", {"Titolo": "left over"})
    kardel = desk.run()
    switch(kardel)
    assert desk.registry("setting") == {
        "AlignAll": "False", "EasyAlign": "True", "RestoreWhenPlay": "True", "DontDeleteWhenPlay": "False",
        "UseRegistry": "True", "count": "3", "defaultwidth": "3300", "defaultheight": "2100"}
    assert desk.sections() == ["kardel-1", "kardel-2", "kardel-3", "setting"]
    assert [(note["Titolo"], note["Nota"], note["x"]) for note in Store(desk, "registry").notes()] == \
        [(note["Titolo"], note["Nota"], note["x"]) for note in THREE]
    assert not marked(kardel)


# --- Between the switch and the restart


def edit(desk, kardel, title, text):
    kardel.note(title).append(text)
    desk.click_desktop()
    desk.wait(lambda: not kardel.note(title).editing, what="the editor to close")


@pytest.mark.parametrize("store, end", [("registry", "kill"), ("files", "kill"), ("files", "exit")])
def test_what_changes_before_the_restart_is_there_after_it(desk, store, end):
    Store(desk, store).seed(THREE)
    kardel = desk.run()
    switch(kardel)
    edit(desk, kardel, "a", " and more")
    kardel.tray.command(NEW)
    edit(desk, kardel, "- 4 -", "new text")
    kardel.note("b").command("delete")
    kardel.dialog().press("Yes")
    desk.wait(lambda: len(kardel.notes()) == 3, what="the note to go")
    kardel.note("c").command("iconize")
    kardel.note("a").command("topmost")
    kardel.note("- 4 -").command("close")
    desk.wait(lambda: not kardel.note("- 4 -").visible, what="the note to close")
    kardel.tray.window().send(0)
    expected = [("a", "text of a and more", True, False, False), ("c", "text of c", False, True, False),
                ("- 4 -", "new text", False, False, True)]
    for kind in KINDS:  # the one in use and the next one
        assert [(n["Titolo"], n["Nota"], n["topmost"], n["iconized"], n["closed"])
                for n in Store(desk, kind).notes()] == expected, kind
    if end == "exit":
        assert kardel.exit() == 0
    else:
        kardel.kill()
    kardel = restart(desk, 3)
    assert sorted((note.title, note.body) for note in kardel.notes()) == sorted(note[:2] for note in expected)
    assert kardel.note("a").topmost and kardel.note("c").rect.height == 20 and not kardel.note("- 4 -").visible
    assert marked(kardel) == (store == "registry")


def test_going_back_to_the_files_at_the_next_start_loses_nothing_either(desk):
    Store(desk, "files").seed(THREE)
    kardel = desk.run()
    switch(kardel)
    edit(desk, kardel, "a", " and more")
    kardel.kill()
    kardel = restart(desk, 3, answer="No")
    assert [note.body for note in kardel.notes()] == ["text of a and more", "text of b", "text of c"]
    assert desk.registry("setting")["UseRegistry"] == "False"
    assert marked(kardel)


@both_stores
def test_there_and_back_in_one_run_keeps_the_store_that_was_in_force(desk, store):
    Store(desk, store).seed(THREE)
    kardel = desk.run()
    questions = [switch(kardel), switch(kardel)]
    assert sorted(questions) == sorted([TO_FILES, TO_REGISTRY])
    edit(desk, kardel, "c", " at last")
    kardel.note("a").command("delete")
    kardel.dialog().press("Yes")
    desk.wait(lambda: len(kardel.notes()) == 2, what="the note to go")
    kardel.kill()
    kardel = restart(desk, 2)
    assert [note.body for note in kardel.notes()] == ["text of b", "text of c at last"]
    assert marked(kardel) == (store == "files")


@both_stores
def test_a_desk_of_no_notes_comes_back_as_one_empty_note(desk, store):
    Store(desk, store).seed(THREE[:1])
    kardel = desk.run()
    switch(kardel)
    kardel.note("a").command("delete")
    kardel.dialog().press("Yes")
    desk.wait(lambda: not kardel.notes(), what="the note to go")
    assert kardel.exit() == 0
    assert restart(desk, 1).note().body == ""


@pytest.mark.parametrize("fields", [{"Titolo": "T" * 129}, {"Nota": "B" * 1025}, {"Nota": "\u4f60\u597d"}],
                         ids=["title too long", "body too long", "letters of another script"])
def test_what_the_files_cannot_hold_is_reported_once_and_stays_in_the_registry(desk, fields):
    store = Store(desk, "registry")
    store.seed([{**THREE[0], **fields}, {**THREE[1], **fields}])
    kardel = desk.run()
    before = store.notes()
    kardel.tray.command(SWITCH)
    question = kardel.dialog()
    question.press("OK")
    box = desk.wait(lambda: [d for d in kardel.dialogs() if LOST in d.texts()], what="the message")[0]
    box.press("OK")
    desk.wait(lambda: not kardel.dialogs(), what="the message to close")
    kardel.tray.window().send(0)
    assert not kardel.dialogs()
    assert [desk.stored_note(n)["Titolo"] for n in (1, 2)] == [note["Titolo"] for note in before]
    assert [desk.stored_note(n)["Nota"] for n in (1, 2)] == [note["Nota"] for note in before]


# --- Fifty full notes


def full_notes():
    """Fifty notes with every field in use, among them every kind of alarm, none of which is due soon."""
    later = (datetime.datetime.now() + datetime.timedelta(hours=12)).strftime("%H:00:00")
    rules = [
        {"alarmdate": "31/12/2040", "alarmtime": "23:59:59"},
        {"alarmdate": "01/02/2041", "alarmtime": "00:00:00", "alarmrepeatnumber": 90, "alarmrepeatevery": "mm"},
        {"alarmdate": "*", "interval": "eachday", "alarmtime": later},
        {"alarmdate": "*", "interval": "eachmonth", "alarmday": "07", "alarmtime": later},
        {"alarmdate": "*", "interval": "eachyear", "alarmdaymonth": "24/12", "alarmtime": later},
        {"alarmdate": "06/01/2042", "alarmtime": "08:30:00", "alarmweekday": 8,
         "weekdays": [True, False, True, False, False, True, False]},
        {"alarmdate": "", "alarmtime": ""},
    ]
    notes = []
    for n in range(1, 51):
        title = f"{n:02} " + "Größe & Maß " * 12
        body = f"{n:02}\r\n" + "è una riga, naïve café; " * 60
        notes.append({"Titolo": title[:127] + "!", "Nota": body[:1023] + ".", "backcolor": 0x80C0FF + n, "x": 30 * n,
                      "y": 45 * n, "width": 2400 + 15 * n, "height": 1800 + 15 * n, "topmost": n % 3 == 0,
                      "iconized": n % 4 == 0, "closed": n % 5 == 0, "mute": n % 2 == 0,
                      "alarmdate": "", "alarmtime": "", "interval": "", "alarmday": "", "alarmdaymonth": "",
                      "alarmweekday": 0, "alarmrepeatnumber": 0, "alarmrepeatevery": "", "weekdays": [False] * 7,
                      **rules[n % len(rules)]})
    return notes


def fields(notes, like):
    """The fields of `notes` that `like` has, without what only one of the stores has."""
    return [{key: note[key] for key in wanted} for note, wanted in zip(notes, like)]


def test_fifty_full_notes_with_alarms_go_to_the_registry_and_back_unchanged(desk):
    notes = full_notes()
    files, registry = Store(desk, "files"), Store(desk, "registry")
    files.seed(notes)
    kardel = desk.run()
    # The start may set a weekly alarm to its next day; nothing else of a note changes from here on.
    arrived = fields(files.notes(), notes)
    weekly = [note for note in notes if note["alarmweekday"]]
    assert [note for note in arrived if not note["alarmweekday"]] == [note for note in notes if note not in weekly]
    notes = arrived
    switch(kardel)
    assert kardel.exit() == 0
    kardel = restart(desk, 50)
    assert desk.read_files().dat is None and desk.read_files().memo is None and desk.read_files().hdr is None
    assert fields(registry.notes(), notes) == notes
    switch(kardel)
    assert kardel.exit() == 0
    kardel = restart(desk, 50)
    assert len(files.notes()) == 50 and fields(files.notes(), notes) == notes
    assert [note.title for note in kardel.notes()] == [note["Titolo"] for note in notes]
    assert len(kardel.visible_notes()) == 40
