"""A second start only wakes the running copy and ends; it never touches a note."""

import random
import time

import pytest

from kardel_desk.stores import KINDS, Store

RUNNING = "Kardel application is already running."


def stored(desk):
    return desk.registry("setting"), desk.registry("kardel-1"), desk.run_value


def test_second_start_ends_and_the_first_says_it_is_running(desk):
    desk.seed_registry({}, [{"Titolo": "a"}])
    first = desk.run()
    before = stored(desk)
    second = desk.start()
    assert second.wait_ended() == 0
    box = first.dialog()
    assert RUNNING in box.texts()
    assert stored(desk) == before
    box.press("OK")
    desk.wait(lambda: not first.dialogs(), what="the box to close")
    assert first.alive and first.note("a").visible


def test_second_start_from_another_folder_leaves_the_log_on_entry_alone(desk):
    first = desk.run()
    mine = desk.run_value
    other = desk.program_folder("desk\\another copy")
    assert desk.start(folder=other).wait_ended() == 0
    assert desk.run_value == mine
    assert desk.read_files(other).hdr is None
    first.dialog().press("OK")


def test_many_second_starts_make_one_box(desk):
    first = desk.run()
    for _ in range(3):
        assert desk.start().wait_ended() == 0
    first.dialog()
    assert desk.stays(lambda: len(first.dialogs()) == 1, 0.5, "a single box") is None
    first.dialog().press("OK")
    desk.wait(lambda: not first.dialogs(), what="the box to close")


@pytest.mark.parametrize("command, answer, left", [("delete", "Yes", ["b"]), ("alarm", "btnCancel", ["a", "b"])])
def test_a_dialog_that_is_open_waits_until_the_message_has_been_read(desk, command, answer, left):
    desk.seed_registry({}, [{"Titolo": title, "x": 3000, "y": 3000} for title in "ab"])
    first = desk.run()
    first.note("a").command(command)
    caption = first.dialog().text
    assert desk.start().wait_ended() == 0
    (box,) = desk.wait(lambda: [dialog for dialog in first.dialogs() if RUNNING in dialog.texts()], what="the message")
    box.settle()
    box.press("OK")
    desk.wait(lambda: [dialog.text for dialog in first.dialogs()] == [caption], what="the dialog to come back")
    first.dialog().press(answer)
    desk.wait_equal(lambda: ([note.title for note in first.notes()], first.dialogs()), (left, []))


def test_the_choice_of_a_colour_stays_open_and_its_note_waits_for_it(desk):
    desk.seed_registry({}, [{"Titolo": title, "x": 3000, "y": 3000} for title in "ab"])
    first = desk.run()
    first.note("a").command("color")
    colours = first.dialog()
    assert desk.start().wait_ended() == 0
    (box,) = desk.wait(lambda: [dialog for dialog in first.dialogs() if RUNNING in dialog.texts()], what="the message")
    box.settle()
    box.press("OK")
    desk.wait(lambda: first.dialogs() == [colours] and first.note("b").enabled, what="the message to go")
    assert not first.note("a").enabled
    first.note("a").command("color")
    first.note("a").send(0)
    assert first.dialogs() == [colours]  # and no second one
    assert first.exit() == 0


def test_two_starts_at_once_leave_one_running(desk):
    copies = [desk.start(), desk.start()]
    desk.wait(lambda: sum(not copy.alive for copy in copies) == 1, 20, "one of the two to end")
    (running,) = [copy for copy in copies if copy.alive]
    for box in desk.wait(lambda: running.dialogs() or [None], 3):
        if box is not None:
            box.press("OK")
    desk.wait(lambda: len(running.notes()) == 1 and running.tray.window(), 20, "the other to be ready")
    assert desk.read_files().count == 1


@pytest.mark.parametrize("store", KINDS)
def test_starts_within_milliseconds_leave_one_running_ten_times_over(desk, store):
    notes = Store(desk, store)
    notes.seed([{"Titolo": title, "Nota": "text of " + title, "x": 3000, "y": 3000 * n, "width": 3000, "height": 2000}
                for n, title in enumerate("ab")])
    before = notes.notes()
    dice = random.Random(10)
    for _ in range(5):
        copies = [desk.start()]
        time.sleep(dice.choice((0, 0.002, 0.01, 0.03, 0.1)))  # the time between them is what is being tested
        copies.append(desk.start())
        desk.wait(lambda: sum(copy.alive for copy in copies) == 1, 20, "one of the two to end")
        (running,) = [copy for copy in copies if copy.alive]
        desk.wait(lambda: [note.title for note in running.notes()] == ["a", "b"] and running.tray.window(), 20,
                  "the notes of the other")
        assert running.exit() == 0
        assert all(copy.process.returncode == 0 for copy in copies)
        assert notes.notes() == before


def mutex_of_folder(folder):
    """The name by which all sessions of a machine see that a folder's files are in use. Whatever a session calls the
    folder, Windows has one name for it."""
    mark = 14695981039346656037
    for letter in ("\\\\?\\" + folder).lower():
        mark = (mark ^ ord(letter)) * 1099511628211 % (1 << 64)
    return f"Global\\Kardel.Folder.{mark >> 1}"


def test_files_in_use_by_another_session_are_left_alone(desk):
    """Two users of one machine may start the same program from one folder: the second one is told so and has to
    wait."""
    desk.seed_files([{"Titolo": "a", "Nota": "theirs"}])
    before = desk.read_files()
    with desk.named(mutex_of_folder(desk.folder)):
        kardel = desk.start()
        box = kardel.dialog()
        assert RUNNING in box.texts()
        assert kardel.notes() == []
        box.press("OK")
        assert kardel.wait_ended() == 0
        other = desk.program_folder("desk\\a folder of its own")
        assert desk.start(folder=other).wait_ready(notes=1).exit() == 0
    after = desk.read_files()
    assert (after.hdr, after.dat, after.memo) == (before.hdr, before.dat, before.memo)
    assert desk.run().note("a").body == "theirs"


def test_message_1126_brings_a_vanished_icon_back_silently(desk):
    kardel = desk.run()
    desk.display.restart_panel()
    kardel.tray.window().send(1126)
    desk.wait(lambda: kardel.tray.icons == 1, what="the icon in the new panel")
