"""A note dragged with the mouse: where it ends up, what it snaps to, and what is stored of it."""

import pytest
from kardel_desk.one_note import NOTE, OTHER, TWIP, any_store

SHY = 2  # pixels within which edges meet


def drag_to(hand, note, left=None, top=None):
    """Drags the note by its title so that its corner would come to `left`, `top` without any snapping."""
    rect = note.rect
    left, top = rect.x if left is None else left, rect.y if top is None else top
    note.drag("lbl", by=(left - rect.x, top - rect.y), dx=100)
    hand.desk.wait(lambda: hand.settled(note))


def check_place(hand, note, left, top, number=1):
    hand.desk.wait_equal(lambda: note.rect[:2], (left, top))
    hand.wait_stored(number, x=left * TWIP, y=top * TWIP)


def work_area(desk):
    left, top, width, height = desk.screen()["workarea"]
    return left, top, left + width, top + height


def test_a_note_is_dragged_by_its_title_its_text_and_its_time_strip(desk, hand):
    hand.run({**NOTE, "alarmdate": "01/01/2999", "alarmtime": "10:00:00"}, OTHER)
    note = hand.note("Shopping")
    desk.wait(lambda: note.part("pic_time").visible, what="the time strip")
    for part, by, place in (("lbl", (-120, 75), (280, 375)), ("nota", (60, -100), (340, 275)),
                            ("pic_time", (30, 60), (370, 335))):
        note.drag(part, by=by, dx=100)
        check_place(hand, note, *place)
    assert note.rect[2:] == (200, 150)
    assert hand.store.places() == [(5550, 5025), (12000, 4500)]  # the other one stays where it is
    assert (hand.stored("width"), hand.stored("height")) == (3000, 2250)


def test_the_place_is_kept_for_the_next_start(desk, hand):
    note = hand.run().note()
    note.drag("lbl", by=(33, -47), dx=100)
    check_place(hand, note, 433, 253)
    assert hand.kardel.exit() == 0
    assert desk.run().note().rect[:2] == (433, 253)


@any_store
def test_a_press_with_shift_or_ctrl_or_on_a_picture_does_not_drag(desk, hand):
    note = hand.run().note()
    before = hand.store.raw()
    for key, part in (("shift", "lbl"), ("ctrl", "lbl"), ("shift", "nota"), ("ctrl", "nota")):
        desk.hands.key_down(key)
        try:
            note.drag(part, by=(60, 60), dx=100)
        finally:
            desk.hands.key_up(key)
    for part, dx, dy in (("lbl2", 15, 9), ("pic", 9, 17), ("pic2", 16, 15)):
        note.drag(part, by=(60, 60), dx=dx, dy=dy)
    assert hand.settled(note) and note.rect == (400, 300, 200, 150)
    assert hand.store.raw() == before and not hand.kardel.dialogs()


def test_a_mere_click_stores_nothing(desk, hand):
    """A note whose monitor is gone is shown where it can be reached; its own place stays in the store."""
    note = hand.run({**NOTE, "x": 90000, "y": 90000}).note()
    before = hand.store.raw()
    note.activate()
    note.click("nota")
    assert hand.settled(note) and hand.store.raw() == before
    assert hand.stored("x") == 90000


@any_store
def test_close_to_a_screen_edge_means_exactly_on_it(desk, hand):
    note = hand.run(EasyAlign=True).note()
    left, top, right, bottom = work_area(desk)
    for near, place in (((1, 400), (left, 400)), ((500, 1), (500, top)),
                        ((right - 200 - 1, 400), (right - 200, 400)), ((500, bottom - 150 - 1), (500, bottom - 150))):
        drag_to(hand, note, 500, 400)
        drag_to(hand, note, *near)
        check_place(hand, note, *place)


@any_store
def test_beyond_the_edges_is_pulled_back_into_the_corner(desk, hand):
    note = hand.run(EasyAlign=True).note()
    drag_to(hand, note, -60, -10)
    check_place(hand, note, 0, 0)
    assert note.rect[2:] == (200, 150)


@any_store
def test_a_little_further_from_the_edge_stays_there(desk, hand):
    note = hand.run(EasyAlign=True).note()
    *_, right, bottom = work_area(desk)
    for place in ((2, 400), (500, 2), (right - 200 - 2, 400), (500, bottom - 150 - 2)):
        drag_to(hand, note, *place)
        check_place(hand, note, *place)


@any_store
@pytest.mark.parametrize("align_all", [False, True])
def test_without_easy_alignment_nothing_snaps(desk, hand, align_all):
    hand.run(NOTE, OTHER, EasyAlign=False, AlignAll=align_all)
    note = hand.note("Shopping")
    desk.wait(lambda: hand.settled(note))
    drag_to(hand, note, 601, 401)
    check_place(hand, note, 601, 401)
    drag_to(hand, note, 1, 401)
    check_place(hand, note, 1, 401)
    drag_to(hand, note, -50, 401)  # it may also hang over the edge
    check_place(hand, note, -50, 401)


@any_store
def test_with_automatic_position_a_drag_still_snaps(desk, hand):
    hand.run(NOTE, OTHER, EasyAlign=True, AlignAll=True)
    note = hand.note("Shopping")
    drag_to(hand, note, 500, 500)
    drag_to(hand, note, 1, 500)
    check_place(hand, note, 0, 500)


# The other note is at 800..1000, 300..450, and the dragged one has 200 x 150 pixels. Each row says where they touch,
# and which direction leads away.
BESIDE = [((1000, 340), (1, 0)), ((600, 340), (-1, 0)), ((840, 450), (0, 1)), ((840, 150), (0, -1))]


@any_store
def test_facing_edges_of_two_notes_meet(desk, hand):
    hand.run(NOTE, OTHER, EasyAlign=True)
    note = hand.note("Shopping")
    for (left, top), (x, y) in BESIDE:
        drag_to(hand, note, left + 40 * x, top + 40 * y)  # from further away
        drag_to(hand, note, left + SHY * x, top + SHY * y)
        check_place(hand, note, left, top)


@any_store
def test_edges_further_apart_do_not_meet(desk, hand):
    hand.run(NOTE, OTHER, EasyAlign=True)
    note = hand.note("Shopping")
    for (left, top), (x, y) in BESIDE:
        drag_to(hand, note, left + 40 * x, top + 40 * y)
        drag_to(hand, note, left + (SHY + 1) * x, top + (SHY + 1) * y)
        check_place(hand, note, left + (SHY + 1) * x, top + (SHY + 1) * y)


@any_store
def test_edges_on_the_same_side_do_not_meet(desk, hand):
    hand.run(NOTE, OTHER, EasyAlign=True)
    note = hand.note("Shopping")
    drag_to(hand, note, 801, 600)  # left edge beside left edge, well below
    check_place(hand, note, 801, 600)


@any_store
def test_a_note_put_away_attracts_nothing(desk, hand):
    hand.run(NOTE, {**OTHER, "closed": True}, EasyAlign=True)
    note = hand.note("Shopping")
    drag_to(hand, note, 1001, 340)
    check_place(hand, note, 1001, 340)


def test_the_drag_moves_the_note_under_the_pointer(desk, hand):
    note = hand.run().note()
    x, y = note.part("lbl").point(100)
    desk.hands.drag(x, y, by=(80, 40), release=False)
    desk.wait_equal(lambda: note.rect[:2], (480, 340))  # the note follows at once
    assert hand.stored("x") == 6000  # but is only stored when it is let go
    desk.hands.release()
    check_place(hand, note, 480, 340)


@any_store
def test_the_pointer_shows_that_a_note_is_moved(desk, hand):
    note = hand.run().note()

    def pointer():
        hand.settled(note)
        return desk.display.pointer()

    def drag(x):
        desk.hands.drag(*note.part("lbl").point(100), by=(x, 0), release=False)
        during = pointer()
        desk.hands.release()
        return during

    desk.wait(lambda: drag(20) == drag(-20) != pointer(), 10, "a pointer of its own during a drag")


@any_store
def test_two_drags_in_a_row_work_as_one(desk, hand):
    """What a drag sets up for as long as it lasts is gone afterwards."""
    hand.run(NOTE, OTHER, EasyAlign=True)
    for title, number, place in (("Shopping", 1, (400, 600)), ("other", 2, (900, 100)), ("Shopping", 1, (420, 640))):
        drag_to(hand, hand.note(title), *place)
        check_place(hand, hand.note(title), *place, number)
    assert hand.kardel.exit() == 0


# --- Moves that do not begin on the note, and a desk that changes meanwhile

WM_SETTINGCHANGE, WM_DISPLAYCHANGE, WM_SYSCOMMAND, SC_MOVE = 0x1A, 0x7E, 0x112, 0xF010
DESK_CHANGES = (WM_SETTINGCHANGE, WM_DISPLAYCHANGE)


def test_a_note_moved_by_the_systems_command_stays_there(desk, hand):
    note = hand.run().note()
    note.activate()
    note.post(WM_SYSCOMMAND, SC_MOVE)
    desk.wait(lambda: desk.probe.ask("focus")["moving"], 5, "the move by keys")
    desk.key("Right")
    desk.wait(lambda: note.rect.x > 400, 5, "the key to move it to the right")
    desk.key("Return")
    desk.wait(lambda: not desk.probe.ask("focus")["moving"], 5, "the end of the move")
    hand.settled(note)
    left, top = note.rect[:2]
    assert left > 400
    check_place(hand, note, left, top)
    for message in DESK_CHANGES:
        note.send(message)
    check_place(hand, note, left, top)


def test_a_note_moved_by_another_program_stays_there(desk, hand):
    note = hand.run().note()
    desk.hands.place_window(note.info["x11"], 520, 410)
    check_place(hand, note, 520, 410)
    for message in DESK_CHANGES:
        note.send(message)
    check_place(hand, note, 520, 410)


@any_store
@pytest.mark.parametrize("change", DESK_CHANGES)
def test_a_change_of_the_desk_waits_for_the_end_of_a_drag(desk, hand, change):
    note = hand.run().note()
    desk.hands.drag(*note.part("lbl").point(100), by=(80, 40), release=False)
    desk.wait_equal(lambda: note.rect[:2], (480, 340))
    note.send(change)
    desk.stays(lambda: note.rect[:2] == (480, 340), 0.3, "the note in the hand")
    desk.hands.release()
    check_place(hand, note, 480, 340)
