"""A note used without a mouse: real keys for what the menu does not offer."""

from kardel_desk.alarms import rings_no_more, strip, wait_ringing
from kardel_desk.one_note import FAR_ALARM, NOTE, OTHER, TWIP, any_store

WM_SYSCOMMAND, SC_KEYMENU = 0x0112, 0xF100
STEP = 8  # pixels by which an arrow key moves a note


def test_ctrl_and_the_arrows_move_a_note(desk, hand):
    note = hand.run(NOTE, OTHER).note("Shopping")
    note.activate()
    x, y = 400, 300
    for key, by_x, by_y in (("ctrl+Right", STEP, 0), ("ctrl+Down", 0, STEP), ("ctrl+Left", -STEP, 0),
                            ("ctrl+Up", 0, -STEP)):
        desk.key(*[key] * 3)
        x, y = x + 3 * by_x, y + 3 * by_y
        desk.wait_equal(lambda: note.rect[:2], (x, y))
        hand.wait_stored(x=x * TWIP, y=y * TWIP)
    assert note.rect[2:] == (200, 150) and not note.editing
    assert hand.store.places()[1] == (12000, 4500)


def test_a_moved_note_lies_there_at_the_next_start(desk, hand):
    note = hand.run().note()
    note.activate()
    desk.key("ctrl+Down", "ctrl+Down")
    hand.wait_stored(y=4500 + 2 * STEP * TWIP)
    assert hand.kardel.exit() == 0
    assert desk.run().note().rect[:2] == (400, 300 + 2 * STEP)


@any_store
def test_alt_and_space_open_the_menu_of_the_note(desk, hand):
    note = hand.run(NOTE).note()
    note.activate()
    note.post(WM_SYSCOMMAND, SC_KEYMENU, ord(" "))  # what Windows turns the keys into; here the window manager takes them
    menu = desk.menu()
    assert menu.item("Resize")["enabled"]
    menu.close()


@any_store
def test_from_note_to_note_and_back(desk, hand):
    hand.run(NOTE, OTHER, {**OTHER, "Titolo": "third", "y": 8000})
    notes = [hand.note(title) for title in ("Shopping", "other", "third")]
    notes[0].activate()
    for key, arrives in (("ctrl+Tab", 1), ("F6", 2), ("ctrl+Tab", 0), ("ctrl+shift+Tab", 2), ("shift+F6", 1)):
        desk.key(key)
        desk.wait(lambda: notes[arrives].active and notes[arrives].has_focus, what=f"{key} to reach {arrives}")
    desk.key("F2")
    desk.wait(lambda: notes[1].part("txtNota").has_focus, what="the editor of the note that was reached")


def test_a_title_is_edited_and_an_edit_left_for_another_note(desk, hand):
    note = hand.run(NOTE, OTHER).note("Shopping")
    note.activate()
    desk.key("shift+F2")
    desk.wait(lambda: note.part("txtTitle").has_focus, what="the title's editor")
    desk.key("ctrl+a")
    desk.type("Errands")
    desk.key("Return")
    hand.wait_stored(Titolo="Errands")
    desk.key("F2")
    desk.wait(lambda: note.part("txtNota").has_focus, what="the text's editor")
    desk.type(" and jam")
    desk.key("ctrl+Tab")
    hand.wait_stored(Nota="milk and bread and jam")
    desk.wait(lambda: hand.note("other").has_focus, what="the other note to have the keyboard")


@any_store
def test_the_strip_shows_when_it_rings_and_the_time_left(desk, hand):
    note = hand.run({**NOTE, **FAR_ALARM}).note()
    note.activate()
    desk.wait(lambda: " d   " in strip(note).text, what="the time left")
    desk.key("shift+F4")
    desk.wait(lambda: "01/01/2999" in strip(note).text, what="the due time")
    desk.key("shift+F4")
    desk.wait(lambda: " d   " in strip(note).text, what="the time left")


def test_a_note_that_rings_is_silenced_with_a_key(desk, hand):
    missed = {"alarmdate": "01/01/2020", "alarmtime": "08:00:00", "mute": True}
    note = hand.run({**NOTE, **missed}, {**OTHER, **missed}, DontDeleteWhenPlay=True).note("Shopping")
    other = hand.note("other")
    note.awake()  # not with a click, which would silence it
    for ringing in (note, other):
        wait_ringing(ringing)
        desk.wait(lambda: ringing.active and ringing.has_focus, what=f"the keyboard to be on {ringing!r}")
        desk.key("space")
        desk.stays(lambda: ringing.part("pic_time").visible, 1, "the ringing")
        desk.key("Escape")
        rings_no_more(ringing)
        desk.key("ctrl+Tab")
    assert len(hand.kardel.visible_notes()) == 2


@any_store
def test_esc_held_down_ends_an_edit_and_deletes_no_note(desk, hand):
    past = {"alarmdate": "01/01/2020", "alarmtime": "08:00:00", "mute": True}
    note = hand.run({**NOTE, **past}).note()
    note.awake()
    wait_ringing(note)
    desk.key("F2")
    desk.wait(lambda: note.part("txtNota").has_focus, what="the editor")
    desk.type(" and jam")
    desk.hands.key_down("Escape")
    try:
        desk.wait(lambda: not note.part("txtNota").visible, what="the edit to end")
        desk.stays(lambda: note.exists and note.visible, 2.5, "the note, while the key repeats")
    finally:
        desk.hands.key_up("Escape")
    wait_ringing(note)
    desk.key("Escape")
    desk.wait(lambda: not note.exists, what="a key of its own to end the alarm that came once")
