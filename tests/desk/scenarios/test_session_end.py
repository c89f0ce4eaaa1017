"""Log-off, shutdown and Exit at a bad moment: text being typed is kept, and no question holds anything up."""

import pytest
from kardel_desk import Desk, Window
from kardel_desk.app import TRAY_CLASS
from kardel_desk.stores import KINDS, Store

NOTE = {"Titolo": "a", "Nota": "first", "x": 1500, "y": 3000, "width": 3000, "height": 2250}
OTHER = {**NOTE, "Titolo": "b", "x": 6000}
QUERY_END_SESSION, END_SESSION = 0x11, 0x16
CLOSE_APP = 1  # with both: only this program is asked to end, so that its file can be replaced
EXIT = "dyn(13)"
PROMPT = 3.0  # seconds; Windows waits five before it complains
both_stores = pytest.mark.parametrize("store", KINDS)


def run(desk, store):
    kept = Store(desk, store)
    kept.seed([NOTE, OTHER])
    return desk.run(), kept


def type_into(desk, kardel, text=" and second"):
    note = kardel.note("a")
    note.append(text)
    desk.wait_equal(lambda: note.part("txtNota").text, "first" + text)


def end_session(kardel):
    """What Windows sends when the user logs off."""
    tray = kardel.tray.window()
    assert tray.send(QUERY_END_SESSION, timeout=PROMPT) == 1
    tray.send(END_SESSION, 1, timeout=PROMPT)


@both_stores
def test_log_off_keeps_the_body_being_typed_and_removes_the_icon(desk, store):
    kardel, kept = run(desk, store)
    type_into(desk, kardel)
    end_session(kardel)
    assert kept.each("Nota") == ["first and second", "first"]
    desk.wait_equal(lambda: kardel.tray.icons, 0)
    kardel.kill()  # as Windows does next
    assert desk.run().note("a").body == "first and second"


@both_stores
def test_log_off_keeps_the_title_being_typed(desk, store):
    kardel, kept = run(desk, store)
    note = kardel.note("a")
    note.click("lbl", 100, button=3)
    editor = note.part("txtTitle")
    desk.wait(lambda: editor.has_focus, what="the title's editor")
    desk.key("End")
    desk.type(" renamed")
    desk.wait_equal(lambda: editor.text, "a renamed")
    end_session(kardel)
    assert kept.each("Titolo") == ["a renamed", "b"]


def test_log_off_that_another_program_refuses_leaves_everything_in_use(desk):
    kardel, kept = run(desk, "registry")
    type_into(desk, kardel)
    tray = kardel.tray.window()
    assert tray.send(QUERY_END_SESSION, timeout=PROMPT) == 1
    tray.send(END_SESSION, 0, timeout=PROMPT)
    assert kept.each("Nota")[0] == "first and second"
    assert kardel.tray.icons == 1 and len(kardel.visible_notes()) == 2
    kardel.note("b").edit()
    assert kardel.exit() == 0


@pytest.mark.parametrize("command", ["delete", "alarm"])
def test_log_off_is_not_held_up_by_an_open_dialog(desk, command):
    kardel, kept = run(desk, "registry")
    before = kept.raw()
    kardel.note("a").command(command)
    kardel.dialog()
    end_session(kardel)
    desk.wait_equal(lambda: kardel.tray.icons, 0)
    assert kept.raw() == before
    kardel.kill()
    assert len(desk.run().visible_notes()) == 2


def test_log_off_is_not_held_up_by_an_open_menu(desk):
    kardel, kept = run(desk, "registry")
    kardel.note("a").click("nota", button=3)
    desk.menu()
    end_session(kardel)
    desk.wait_equal(lambda: kardel.tray.icons, 0)


def test_log_off_while_a_one_shot_alarm_rings_keeps_its_note(desk):
    kept = Store(desk, "registry")
    kept.seed([{**NOTE, "alarmdate": "28/02/2026", "alarmtime": "12:00:00"}, OTHER])
    kardel = desk.run(faketime="2026-02-28 11:59:59")
    note = kardel.note("a")
    desk.wait(lambda: note.colour == (255, 255, 255), what="the note to flash")
    end_session(kardel)
    assert kept.each("Titolo") == ["a", "b"] and kept.each("alarmdate")[0] == "28/02/2026"


@both_stores
def test_exit_keeps_the_body_being_typed(desk, store):
    kardel, kept = run(desk, store)
    type_into(desk, kardel)
    kardel.tray.command(EXIT)
    assert kardel.wait_ended() == 0
    assert kept.each("Nota") == ["first and second", "first"]
    desk.wait_equal(lambda: kardel.tray.icons, 0)


@pytest.mark.parametrize("command", ["delete", "alarm", "color"])
def test_exit_under_an_open_dialog_ends_the_program_and_changes_nothing(desk, command):
    kardel, kept = run(desk, "registry")
    before = kept.raw()
    kardel.note("a").command(command)
    kardel.dialog()
    kardel.tray.command(EXIT)
    assert kardel.wait_ended() == 0
    desk.wait_equal(lambda: kardel.tray.icons, 0)
    assert kept.raw() == before


def test_exit_while_a_one_shot_alarm_rings_keeps_its_note(desk):
    kept = Store(desk, "registry")
    kept.seed([{**NOTE, "alarmdate": "28/02/2026", "alarmtime": "12:00:00"}, OTHER])
    kardel = desk.run(faketime="2026-02-28 11:59:59")
    note = kardel.note("a")
    desk.wait(lambda: note.colour == (255, 255, 255), what="the note to flash")
    assert kardel.exit() == 0
    assert kept.each("Titolo") == ["a", "b"] and kept.each("alarmdate")[0] == "28/02/2026"


def test_a_polite_request_to_end_is_exit(desk):
    kardel, kept = run(desk, "files")
    type_into(desk, kardel)
    kardel.tray.window().post(0x10)  # WM_CLOSE, as a task manager sends it
    assert kardel.wait_ended() == 0
    assert kept.each("Nota")[0] == "first and second"
    desk.wait_equal(lambda: kardel.tray.icons, 0)


@both_stores
def test_an_installer_that_replaces_the_program_ends_it_and_loses_nothing(desk, store):
    kardel, kept = run(desk, store)
    type_into(desk, kardel)
    tray = kardel.tray.window()
    assert tray.send(QUERY_END_SESSION, 0, CLOSE_APP, timeout=PROMPT) == 1
    tray.send(END_SESSION, 1, CLOSE_APP, timeout=PROMPT)
    assert kardel.wait_ended() == 0
    assert kept.each("Nota") == ["first and second", "first"]


# --- before the notes are there: ending the program then is neither a command nor an answer

INTERRUPTED = {"count": "4", "places": "4 1 3 4"}  # an unfinished deletion of the second note


@pytest.fixture
def no_shell(arch):
    """A desk of its own without the shell, so that a start finds no place for its icon."""
    desk = Desk(arch)
    try:
        desk.reset()
        (bar,) = desk.wait(lambda: desk.probe.ask("windows", "Shell_TrayWnd"), 60, "the shell")
        desk.probe.ask("kill", bar["process"])
        desk.wait(lambda: not desk.probe.ask("windows", "Shell_TrayWnd"), 10, "the shell to go")
        yield desk
    finally:
        desk.close()


def all_stored(desk):
    return {section: desk.registry(section) for section in desk.sections()}, desk.read_files()


def waiting_tray(desk, kardel):
    """The tray window of a start that has settled the store and is waiting for the shell; it has no title yet."""
    def found():
        desk.registry("setting")["defaultheight"]
        return [Window(desk, info["hwnd"]) for info in desk.probe.ask("windows", TRAY_CLASS)]
    (tray,) = desk.wait(found, 15, "the window of the waiting start")
    assert desk.stays(lambda: not kardel.notes() and tray.text == "", 0.6, "the start to wait") is None
    return tray


@pytest.mark.parametrize("end", ["log-off", "polite", "exit"])
def test_the_end_while_the_start_waits_for_the_tray_touches_no_note(no_shell, end):
    desk = no_shell
    desk.seed_registry(INTERRUPTED, [{**NOTE, "Titolo": title} for title in "abcd"])
    kardel = desk.start()
    tray = waiting_tray(desk, kardel)
    before = all_stored(desk)
    if end == "log-off":
        assert tray.send(QUERY_END_SESSION, timeout=PROMPT) == 1
        assert all_stored(desk) == before
        tray.send(END_SESSION, 1, timeout=PROMPT)
    elif end == "polite":
        tray.post(0x10)
    else:
        tray.command(EXIT)
    assert kardel.wait_ended() == 0
    assert all_stored(desk) == before
    assert {"kardel-1", "kardel-2", "kardel-3", "kardel-4"} < set(desk.sections())


@pytest.mark.parametrize("end", ["log-off", "polite", "exit"])
def test_the_end_while_the_start_asks_is_no_answer(desk, end):
    desk.seed_registry({"count": "2", "ImportDAT": "1"}, [NOTE, OTHER])
    desk.seed_files([{"Titolo": "left over", "Nota": "kept"}])
    kardel = desk.start()
    kardel.dialog()
    before = all_stored(desk)
    (info,) = desk.probe.ask("windows", TRAY_CLASS)
    tray = Window(desk, info["hwnd"])
    if end == "log-off":
        assert tray.send(QUERY_END_SESSION, timeout=PROMPT) == 1
        tray.send(END_SESSION, 1, timeout=PROMPT)
    elif end == "polite":
        tray.post(0x10)
    else:
        tray.command(EXIT)
    assert kardel.wait_ended() == 0
    assert all_stored(desk) == before
    again = desk.start()
    again.dialog().press("No")  # so it is asked again
    assert again.wait_ready(notes=1).note().body == "kept"
