"""The icon and its menu under real clicks: what a click does, what the menu shows, how an entry acts."""

import pytest
from kardel_desk.stores import KINDS, Store

NOTE = {"Nota": "x", "y": 3000, "width": 3000, "height": 2250}
TWO = [{**NOTE, "Titolo": "a", "x": 1500}, {**NOTE, "Titolo": "b", "x": 6000}]
MENU = ["Open", "New Kardel", "-", "Hide All", "Iconize All", "-", "Automatic position", "Easy alignment", "-",
        "Use local files", "-", "About...", "-", "Exit"]
RUNNING = "Kardel application is already running."
HIDE, ICONIZE, ABOUT = "dyn(2)", "dyn(3)", "dyn(11)"
both_stores = pytest.mark.parametrize("store", KINDS)


def run(desk, notes=TWO, store="registry", **settings):
    Store(desk, store).seed(notes, **settings)
    return desk.run()


def shown(kardel):
    return [note.title for note in kardel.visible_notes()]


def open_menu(desk, kardel, which):
    if which == "tray":
        kardel.tray.menu()
    else:
        kardel.note("a").click("nota", button=3)
        desk.menu()


def settled(kardel):
    """Waits until every message so far has been handled."""
    kardel.tray.window().send(0)
    return True


# --- Clicks


def test_each_single_click_toggles_hide_all_and_show_all(desk):
    kardel = run(desk)
    for expected in ([], ["a", "b"], [], ["a", "b"]):
        kardel.tray.click()
        desk.wait_equal(lambda: shown(kardel), expected)


def test_a_double_click_toggles_once(desk):
    kardel = run(desk)
    kardel.tray.click(double=True)
    desk.wait_equal(lambda: shown(kardel), [])
    desk.stays(lambda: shown(kardel) == [], 0.6, "the notes stay hidden after the second release")
    kardel.tray.click()
    desk.wait_equal(lambda: shown(kardel), ["a", "b"])  # and the next click counts again


def test_a_click_with_the_middle_button_does_nothing(desk):
    kardel = run(desk)
    kardel.tray.click(2)
    desk.stays(lambda: shown(kardel) == ["a", "b"] and not desk.menus(), 0.5)


def test_a_right_click_shows_the_menu_with_the_click_action_bold(desk):
    kardel = run(desk)
    menu = kardel.tray.menu()
    assert menu.captions == MENU
    assert [item["text"] for item in menu.items if item["default"]] == ["Hide All"]
    menu.close()
    kardel.tray.click()
    desk.wait_equal(lambda: shown(kardel), [])
    menu = kardel.tray.menu()
    assert [item["text"] for item in menu.items if item["default"]] == ["Show All"]
    menu.close()


def test_a_click_elsewhere_closes_the_menu_and_nothing_happens(desk):
    kardel = run(desk)
    before = Store(desk, "registry").raw()
    for _ in range(3):  # every time, not just the first
        kardel.tray.menu()
        desk.click_desktop()
        desk.wait(lambda: not desk.menus(), what="the menu to close")
    assert shown(kardel) == ["a", "b"] and Store(desk, "registry").raw() == before


def test_a_click_on_a_note_closes_the_menu(desk):
    kardel = run(desk)
    kardel.tray.menu()
    kardel.note("a").click("lbl", 100)
    desk.wait(lambda: not desk.menus(), what="the menu to close")


def test_menu_on_an_empty_desk_and_in_registry_mode(desk):
    kardel = run(desk, [{**NOTE, "Titolo": "only", "x": 1500}])
    menu = kardel.tray.menu()
    assert not menu.item("Use local files")["checked"]
    menu.close()
    kardel.note().command("delete")
    kardel.dialog().press("Yes")
    desk.wait(lambda: not kardel.notes(), what="the note to go")
    kardel.tray.click()
    kardel.tray.command(HIDE)
    settled(kardel)
    menu = kardel.tray.menu()
    assert "Hide All" in menu.captions and not menu.item("Hide All")["enabled"]
    menu.close()


def test_use_local_files_is_checked_in_local_files(desk):
    kardel = run(desk, store="files")
    menu = kardel.tray.menu()
    assert menu.item("Use local files")["checked"]
    menu.close()


# --- Open


def test_open_lists_the_titles_as_they_are(desk):
    titles = ["R&D", "tab\there", "", "W" * 128, "ünïcode \u4f60", "-"]
    kardel = run(desk, [{**NOTE, "Titolo": title, "x": 1500} for title in titles])
    kardel.tray.menu().choose("Open")
    captions = desk.wait(lambda: len(desk.menu().captions) == 6 and desk.menu().captions)
    assert captions == ["R&&D", "tab here", "- 3 -", "W" * 79 + "\u2026", "ünïcode \u4f60", "-"]
    desk.menu().choose("-")  # an entry like any other, not a separator
    desk.wait(lambda: kardel.note("-").active, what="the note to come to the front")


def test_open_follows_a_renamed_title(desk):
    kardel = run(desk)
    note = kardel.note("a")
    note.click("lbl", 100, button=3)
    editor = note.part("txtTitle")
    desk.wait(lambda: editor.has_focus, what="the title's editor")
    desk.key("ctrl+a", "Home", "shift+End")
    desk.type("renamed & more")
    desk.key("Return")
    desk.wait_equal(lambda: note.title, "renamed & more")
    kardel.tray.menu().choose("Open")
    desk.wait_equal(lambda: desk.menu().captions, ["renamed && more", "b"])
    desk.menu().close()


@both_stores
def test_open_reopens_a_closed_note_and_stores_that(desk, store):
    kardel = run(desk, store=store)
    kept = Store(desk, store)
    kardel.note("b").command("close")
    desk.wait_equal(lambda: kept.each("closed"), [False, True])
    kardel.tray.menu().choose("Open")
    desk.wait_equal(lambda: desk.menu().captions, ["a", "b"])
    desk.menu().choose("b")
    desk.wait(lambda: kardel.note("b").visible and kardel.note("b").active, what="the closed note in front")
    desk.wait_equal(lambda: kept.each("closed"), [False, False])
    kardel.note("a").command("iconize")  # a later save of everything keeps it open
    kardel.exit()
    assert shown(desk.run()) == ["a", "b"]


@pytest.mark.parametrize("way", ["menu", "command"])
def test_open_brings_a_covered_note_to_the_front_and_gives_it_the_keyboard(desk, way):
    kardel = run(desk, [{**NOTE, "Titolo": "under", "x": 3000, "backcolor": 0x0000FF},
                        {**NOTE, "Titolo": "over", "x": 3300, "y": 3300, "backcolor": 0x00FF00}])
    over = kardel.note("over")
    place = over.rect.x + 40, over.rect.y + 60  # both notes are there
    desk.wait_equal(lambda: desk.pixel(*place), (0, 255, 0))
    for slot, title, colour in ((0, "under", (255, 0, 0)), (1, "over", (0, 255, 0)), (0, "under", (255, 0, 0))):
        if way == "menu":
            kardel.tray.menu().choose("Open")
            desk.wait_equal(lambda: desk.menu().captions, ["under", "over"])
            desk.menu().choose(title)
        else:
            kardel.tray.command(f"dyn2({slot})")
        desk.wait(lambda: kardel.note(title).active, what=f"{title} to become active")
        desk.wait_equal(lambda: (kardel.stacking()[0], desk.pixel(*place)), (title, colour))
    kardel.tray.command("dyn2(0)")  # it is in front already and stays there
    settled(kardel)
    desk.stays(lambda: kardel.stacking()[0] == "under" and desk.pixel(*place) == (255, 0, 0), 0.3)
    desk.key("F2")
    editor = kardel.note("under").part("txtNota")
    desk.wait(lambda: editor.visible and editor.has_focus, what="the keyboard in the opened note")


def test_open_one_note_of_a_hidden_desk(desk):
    kardel = run(desk)
    kardel.tray.click()
    desk.wait_equal(lambda: shown(kardel), [])
    kardel.tray.command("dyn2(1)")
    desk.wait_equal(lambda: shown(kardel), ["b"])
    menu = kardel.tray.menu()
    assert "Hide All" in menu.captions
    menu.close()
    kardel.note("b").command("close")
    desk.wait_equal(lambda: shown(kardel), [])
    menu = kardel.tray.menu()
    assert "Show All" in menu.captions  # no note is visible, although the other one is not closed
    menu.close()


def test_a_note_off_screen_is_opened_where_it_can_be_reached(desk):
    kardel = run(desk, [{**TWO[0], "x": -90000, "closed": True}, TWO[1]])
    kardel.tray.command("dyn2(0)")
    note = kardel.note("a")
    desk.wait(lambda: note.visible, what="the note")
    assert note.rect.x >= 0
    assert desk.stored_note(1)["x"] == "-90000"


def test_numbers_that_are_no_commands_do_nothing(desk):
    kardel = run(desk)
    before = Store(desk, "registry").raw()
    separators_and_help = [f"dyn({index})" for index in (1, 4, 7, 9, 10, 12)]
    for command in [*separators_and_help, 399, 414, 499, "dyn2(2)", "dyn2(49)", 550]:
        kardel.tray.command(command)
    settled(kardel)
    assert shown(kardel) == ["a", "b"] and not kardel.dialogs()
    assert Store(desk, "registry").raw() == before


# --- With a dialog open


def test_about_opens_once_and_says_what_it_is(desk):
    kardel = run(desk)
    kardel.tray.menu().choose("About...")
    box = kardel.dialog()
    assert any("Kardel" in text for text in box.texts())
    kardel.tray.command(ABOUT)
    settled(kardel)
    assert kardel.dialogs() == [box]
    box.press("OK")
    desk.wait(lambda: not kardel.dialogs(), what="the box to close")


def test_a_click_on_the_icon_answers_an_open_question_with_no(desk):
    kardel = run(desk)
    kardel.note("a").command("delete")
    kardel.dialog()
    kardel.tray.click()
    desk.wait(lambda: not kardel.dialogs() and shown(kardel) == [], what="the question to go and the notes to hide")
    assert len(kardel.notes()) == 2 and desk.registry("setting")["count"] == "2"
    kardel.tray.click()
    desk.wait_equal(lambda: shown(kardel), ["a", "b"])
    kardel.note("a").edit()  # the notes take input again


def test_a_click_on_the_icon_closes_the_alarm_editor_without_an_alarm(desk):
    kardel = run(desk)
    kardel.note("a").command("alarm")
    kardel.dialog()
    kardel.tray.click()
    desk.wait(lambda: not kardel.dialogs() and shown(kardel) == [], what="the editor to go and the notes to hide")
    assert not desk.stored_note(1).get("alarmdate")


def test_what_would_pull_notes_away_is_grey_while_a_question_is_open(desk):
    kardel = run(desk)
    kardel.note("a").command("delete")
    box = kardel.dialog()
    menu = kardel.tray.menu()
    enabled = [item["text"] for item in menu.items if item["enabled"] and not item["separator"] and not item["submenu"]]
    assert enabled == ["Hide All", "Exit"]
    menu.close()
    box.press("No")
    desk.wait(lambda: not kardel.dialogs(), what="the question to close")


# --- While a menu is open


@pytest.mark.parametrize("menu", ["tray", "note"])
@pytest.mark.parametrize("command, answer", [("delete", "No"), ("alarm", None)])
def test_a_dialog_takes_the_place_of_an_open_menu(desk, menu, command, answer):
    kardel = run(desk)
    open_menu(desk, kardel, menu)
    kardel.note("b").command(command)
    box = kardel.dialog()
    desk.wait(lambda: not desk.menus(), what="the menu to close")
    if answer:
        box.press(answer)  # the first click must count, as no menu has the mouse
        desk.wait(lambda: not kardel.dialogs(), what="the question to close")
    assert len(kardel.notes()) == 2


@pytest.mark.parametrize("menu", ["tray", "note"])
def test_exit_ends_the_program_even_while_a_menu_is_open(desk, menu):
    kardel = run(desk)
    open_menu(desk, kardel, menu)
    assert kardel.exit() == 0
    desk.wait_equal(lambda: kardel.tray.icons, 0)


@pytest.mark.parametrize("menu", ["tray", "note"])
def test_a_second_start_replaces_an_open_menu_with_its_message(desk, menu):
    kardel = run(desk)
    open_menu(desk, kardel, menu)
    assert desk.start().wait_ended() == 0
    box = kardel.dialog()
    assert RUNNING in box.texts()
    desk.wait(lambda: not desk.menus(), what="the menu to close")
    box.press("OK")
    desk.wait(lambda: not kardel.dialogs(), what="the box to close")


@pytest.mark.parametrize("settings, command, caption, back", [
    ({}, HIDE, "Show All", lambda note: note.visible),
    ({"RestoreWhenPlay": True}, ICONIZE, "Restore All", lambda note: note.rect.height == 150)])
def test_the_menu_does_what_it_says_even_if_a_note_has_rung_meanwhile(desk, settings, command, caption, back):
    clock = desk.clock("2026-02-28 11:50:00")
    due = {"alarmdate": "28/02/2026", "alarmtime": "12:00:00"}
    Store(desk, "registry").seed([TWO[0], {**TWO[1], **due}], DontDeleteWhenPlay=True, **settings)
    kardel = desk.run(clock=clock)
    kardel.tray.command(command)
    desk.wait(lambda: not any(back(note) for note in kardel.notes()), what="the notes to hide or shrink")
    menu = kardel.tray.menu()
    assert caption in menu.captions
    clock.jump("2026-02-28 12:00:00")
    desk.wait(lambda: back(kardel.note("b")), what="the note to ring")
    menu.choose(caption)
    desk.wait(lambda: not desk.menus() and all(back(note) for note in kardel.notes()), what="all notes to come back")
    settled(kardel)
    assert all(back(note) for note in kardel.notes())


# --- The icon


def test_a_second_start_brings_a_vanished_icon_back_without_a_word(desk):
    kardel = run(desk)
    kardel.tray.window().send(0x16, 1)  # WM_ENDSESSION: the program takes its icon away, and then lives on
    desk.wait_equal(lambda: kardel.tray.icons, 0)
    assert desk.start().wait_ended() == 0
    desk.wait(lambda: kardel.tray.icons == 1 and kardel.tray.painted, what="the icon")
    settled(kardel)
    assert not kardel.dialogs()
    kardel.tray.click()
    desk.wait_equal(lambda: shown(kardel), [])


def test_a_new_task_bar_gets_the_icon_without_a_word(desk):
    kardel = run(desk)
    kardel.tray.window().send(0x16, 1)  # WM_ENDSESSION: the program takes its icon away, and then lives on
    desk.wait_equal(lambda: kardel.tray.icons, 0)
    for _ in range(2):  # the second time it is there already
        desk.probe.ask("broadcast", "TaskbarCreated")
        desk.wait(lambda: kardel.tray.icons == 1 and kardel.tray.painted, what="the icon")
    settled(kardel)
    assert not kardel.dialogs() and kardel.tray.icons == 1
    kardel.tray.click()
    desk.wait_equal(lambda: shown(kardel), [])


def test_a_start_before_the_notification_area_gets_its_icon_when_that_comes(desk):
    Store(desk, "registry").seed(TWO)
    desk.display.stop_panel()
    try:
        kardel = desk.start()
        desk.wait(lambda: kardel.alive and desk.probe.ask("processes", "Kardel.exe"), what="the program to start")
    finally:
        desk.display.start_panel()
    kardel.wait_ready()
    assert shown(kardel) == ["a", "b"] and kardel.tray.icons == 1 and not kardel.dialogs()
    kardel.tray.click()
    desk.wait_equal(lambda: shown(kardel), [])


def test_a_second_start_with_the_icon_there_says_so_and_changes_nothing(desk):
    kardel = run(desk)
    before = Store(desk, "registry").raw()
    assert desk.start().wait_ended() == 0
    box = kardel.dialog()
    assert RUNNING in box.texts()
    assert desk.start().wait_ended() == 0
    settled(kardel)
    assert kardel.dialogs() == [box]
    box.press("OK")
    desk.wait(lambda: not kardel.dialogs(), what="the box to close")
    assert Store(desk, "registry").raw() == before and shown(kardel) == ["a", "b"] and kardel.tray.icons == 1


# --- Exit


@pytest.mark.parametrize("way", ["tray menu", "note menu"])
@both_stores
def test_exit_leaves_no_icon_and_no_process_and_the_notes_as_they_were(desk, store, way):
    kardel = run(desk, store=store)
    kept = Store(desk, store)
    before = kept.raw()
    if way == "tray menu":
        kardel.tray.menu().choose("Exit")
    else:
        kardel.note("a").click("nota", button=3)
        desk.menu().choose("Exit")
    assert kardel.wait_ended() == 0
    desk.wait_equal(lambda: kardel.tray.icons, 0)
    assert not desk.probe.ask("processes", "Kardel.exe")
    assert kept.raw() == before


@pytest.mark.parametrize("command", ["delete", "color"])
def test_a_menu_over_an_open_box_gives_the_keyboard_back_to_it(desk, command):
    desk.seed_registry({}, [{"Titolo": "a", "x": 3000, "y": 3000}])
    kardel = desk.run()
    kardel.note("a").command(command)
    box = kardel.dialog()
    kardel.tray.menu()
    desk.key("Escape")
    desk.wait(lambda: not desk.menus() and box.active, what="the keyboard to come back to the box")
    desk.key("Escape")
    desk.wait(lambda: not kardel.dialogs(), what="the box to hear of the key")
    assert len(kardel.notes()) == 1
