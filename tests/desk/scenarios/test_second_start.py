"""A second start only wakes the running copy and ends; it never touches a note."""


def stored(desk):
    return desk.registry("setting"), desk.registry("kardel-1"), desk.run_value


def test_second_start_ends_and_the_first_says_it_is_running(desk):
    desk.seed_registry({}, [{"Titolo": "a"}])
    first = desk.run()
    before = stored(desk)
    second = desk.start()
    assert second.wait_ended() == 0
    box = first.dialog()
    assert "Kardel application is already running." in box.texts()
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


def test_two_starts_at_once_leave_one_running(desk):
    copies = [desk.start(), desk.start()]
    desk.wait(lambda: sum(not copy.alive for copy in copies) == 1, 20, "one of the two to end")
    (running,) = [copy for copy in copies if copy.alive]
    for box in desk.wait(lambda: running.dialogs() or [None], 3):
        if box is not None:
            box.press("OK")
    desk.wait(lambda: len(running.notes()) == 1 and running.tray.window(), 20, "the other to be ready")
    assert desk.read_files().count == 1


def test_message_1126_brings_a_vanished_icon_back_silently(desk):
    kardel = desk.run()
    desk.display.restart_panel()
    kardel.tray.window().send(1126)
    desk.wait(lambda: kardel.tray.icons == 1, what="the icon in the new panel")
