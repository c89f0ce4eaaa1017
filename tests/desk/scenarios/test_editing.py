"""Body and title of a note edited in place: every key, every way out, and what is stored."""

import pytest
from kardel_desk.one_note import FAR_ALARM, LEAD, NOTE, OTHER, WIDER, any_store

PIC_WIDTH, GAP, BUTTONS_ROOM = 18, 2, 33  # of the title strip, in pixels; the room of the two pictures and the border


def edit_title(hand, note):
    """Opens the title's editor with the right button and returns it."""
    note.click("lbl", 100, button=3)
    editor = note.part("txtTitle")
    hand.desk.wait(lambda: editor.visible and editor.has_focus, 5, "the title's editor")
    return editor


def ink(image):
    """Where the picture is dark: letters, whatever the paper's colour."""
    return {(x, y) for x in range(image.width) for y in range(image.height) if sum(image.getpixel((x, y))) < 300}


def painted(desk, look):
    """The picture once there are letters on it."""
    seen = []
    desk.wait(lambda: seen.append(look()) or ink(seen[-1]), 5, "text on the note")
    return seen[-1]


def text_stands_still(before, after):
    """Only a blinking caret, one or two pixels wide, may differ; AssertionError when anything else does."""
    moved = ink(before) ^ ink(after)
    columns = {x for x, _ in moved}
    assert not columns or max(columns) - min(columns) < 2, f"letters moved in columns {sorted(columns)}"
    return True


def lines(image):
    """Top, bottom, left and right end of each line of letters; a caret is no wider than two pixels."""
    rows = {}
    for x, y in ink(image):
        rows.setdefault(y, set()).add(x)
    found = []
    for y in sorted(y for y, columns in rows.items() if max(columns) - min(columns) > 2):
        ends = min(rows[y]), max(rows[y])
        if found and found[-1][1] == y - 1:
            top, _, left, right = found[-1]
            found[-1] = top, y, min(left, ends[0]), max(right, ends[1])
        else:
            found.append((y, y, *ends))
    return found


def lines_stand_still(before, after):
    """Every line stays where it is. Its letters may stand a little closer: Wine measures them one by one for a label,
    and shapes whole words in an editor."""
    was, now = lines(before), lines(after)
    assert len(was) == len(now), (was, now)
    for (top, bottom, left, right), (top_now, bottom_now, left_now, right_now) in zip(was, now):
        assert (top, bottom) == (top_now, bottom_now) and abs(left - left_now) <= 1, (was, now)
        assert abs(right - right_now) <= (right - left) // 12, (was, now)
    return True


# --- The body's keys


def test_enter_keeps_the_body_and_closes_the_editor(desk, hand):
    note = hand.run().note()
    editor = note.edit()
    desk.type(", butter")  # the caret stands at the end
    desk.key("Return")
    desk.wait(lambda: not editor.visible, what="the editor to close")
    hand.wait_stored(Nota="milk and bread, butter")
    assert note.body == "milk and bread, butter"
    assert note.has_focus  # the keyboard stays with the note


@pytest.mark.parametrize("chord, breaks", [("shift+Return", "\r\n"), ("ctrl+Return", "\r\n\r\n")])
def test_line_breaks_come_at_the_caret_and_the_caret_after_them(desk, hand, chord, breaks):
    note = hand.run().note()
    editor = note.edit()
    desk.key("Home", "Right", "Right", "Right", "Right", chord)
    desk.type("x")
    desk.wait_equal(lambda: editor.text, f"milk{breaks}x and bread")
    assert editor.visible  # a line break does not end the edit
    desk.key("Return")
    hand.wait_stored(Nota=f"milk{breaks}x and bread")
    assert note.body == f"milk{breaks}x and bread"


@any_store
def test_a_line_break_replaces_the_selection_and_can_be_undone(desk, hand):
    note = hand.run().note()
    editor = note.edit()
    desk.key("ctrl+a", "shift+Return")
    desk.wait_equal(lambda: editor.text, "\r\n")
    desk.key("ctrl+z")
    desk.wait_equal(lambda: editor.text, "milk and bread")
    desk.key("Return")
    desk.wait(lambda: not editor.visible, what="the editor to close")
    assert hand.stored("Nota") == "milk and bread"


def test_esc_shows_the_old_body_and_stores_nothing(desk, hand):
    note = hand.run({**NOTE, **FAR_ALARM}).note()
    strip = note.part("pic_time")
    desk.wait(lambda: strip.visible, what="the time strip")
    editor = note.edit()
    before = hand.store.raw()
    desk.type("nonsense")
    desk.wait_equal(lambda: editor.text, "milk and breadnonsense")
    desk.key("Escape")
    desk.wait(lambda: not editor.visible and strip.visible, what="the label and the time strip")
    assert note.body == "milk and bread"
    desk.click_desktop()  # nor does leaving the note keep it afterwards
    desk.wait(lambda: not note.active)
    assert hand.store.raw() == before


@any_store
def test_the_letter_after_a_line_break_key_is_a_letter(desk, hand):
    """A key that was handled must not affect the next one, whichever that is."""
    note = hand.run().note()
    editor = note.edit()
    desk.key("ctrl+Return", "a", "shift+Return", "b", "BackSpace", "c")
    desk.wait_equal(lambda: editor.text, "milk and bread\r\n\r\na\r\nc")
    assert editor.visible


def test_an_emptied_body_is_stored_empty(desk, hand):
    note = hand.run().note()
    note.edit()
    desk.key("ctrl+a", "Delete", "Return")
    hand.wait_stored(Nota="")
    assert note.body == ""


@any_store
def test_cut_and_paste_work_between_notes(desk, hand):
    hand.run(NOTE, OTHER)
    hand.note("Shopping").edit()
    desk.key("ctrl+a", "ctrl+c", "Escape")
    hand.note("other").edit()
    desk.key("ctrl+a", "ctrl+v", "Return")
    hand.wait_stored(2, Nota="milk and bread")
    assert hand.stored("Nota", 1) == "milk and bread"


@any_store
def test_typing_goes_beyond_the_visible_lines(desk, hand):
    note = hand.run({**NOTE, "height": 705}).note()
    note.edit()
    desk.key(*["shift+Return", "x"] * 8)
    desk.key("Return")
    hand.wait_stored(Nota="milk and bread" + "\r\nx" * 8)


def test_no_more_is_typed_than_the_store_can_keep(desk, hand):
    note = hand.run({**NOTE, "Nota": "x" * 1020}).note()
    note.edit()
    desk.type("123456789")
    desk.key("Return")
    hand.wait_stored(Nota="x" * 1020 + ("123456789" if hand.kind == "registry" else "1234"))


# --- Ways into the editors


@any_store
def test_the_body_is_opened_by_double_click_key_and_menu(desk, hand):
    note = hand.run().note()
    editor = note.part("txtNota")
    for way, begin in (("double click", lambda: note.click("nota", double=True)), ("F2", lambda: desk.key("F2")),
                       ("menu", lambda: hand.menu(note, "Edit"))):
        begin()
        desk.wait(lambda: editor.visible and editor.has_focus, 5, f"the body's editor by {way}")
        assert editor.rect == note.part("nota").rect and editor.text == "milk and bread"
        assert not note.part("txtTitle").visible
        desk.key("Escape")
        desk.wait(lambda: not editor.visible, 5, "the editor to close")


@any_store
def test_an_iconized_note_opens_its_title_instead(desk, hand):
    note = hand.run({**NOTE, "iconized": True}).note()
    editor = note.part("txtTitle")
    for title, begin in (("Shopping", lambda: desk.key("F2")), ("Shopping!", lambda: hand.menu(note, "Edit title"))):
        begin()
        desk.wait(lambda: editor.visible and editor.has_focus, 5, "the title's editor")
        assert editor.text == title and not note.part("txtNota").visible
        desk.type("!")
        desk.key("Return")
        hand.wait_stored(Titolo=title + "!")


@any_store
@pytest.mark.parametrize("last", ["the end: gjpqy AVATAR", "\tthe end: gjpqy"], ids=["letters", "a tab"])
def test_the_body_does_not_jump_when_its_editor_opens(desk, hand, last):
    note = hand.run({**NOTE, "Nota": f"Milk, bread, and a line\r\n\r\n{last}"}).note()
    note.activate()

    def body():
        return note.part("nota").image().crop((0, 0, 170, 90))  # beside the grip

    before = painted(desk, body)
    note.edit()
    desk.wait(lambda: lines_stand_still(before, body()), 5, "the text at its place")
    desk.key("Escape")
    desk.wait(lambda: ink(body()) == ink(before), what="the same picture again")


@any_store
@pytest.mark.parametrize("iconized", [False, True])
def test_the_title_does_not_jump_when_its_editor_opens(desk, hand, iconized):
    note = hand.run({**NOTE, "Titolo": "Shopping gjpqy", "iconized": iconized}).note()
    note.activate()
    strip = note.part("lbl").rect  # without its pictures, which give way to the editor
    area = strip.x + 32, strip.y, strip.width - 32 - (42 if iconized else 22), strip.height
    before = painted(desk, lambda: desk.display.image(*area))
    desk.key("F2") if iconized else edit_title(hand, note)
    desk.wait(lambda: note.part("txtTitle").has_focus, what="the title's editor")
    desk.wait(lambda: text_stands_still(before, desk.display.image(*area)), 5, "the title at its place")


# --- The title


@any_store
def test_the_titles_editor_fills_the_strip_and_hides_its_pictures(desk, hand):
    note = hand.run().note()
    editor = edit_title(hand, note)
    desk.wait_equal(lambda: editor.rect.x, note.rect.x + BUTTONS_ROOM)
    assert editor.rect.right == note.rect.right - 1 - PIC_WIDTH - GAP
    assert not note.part("lbl2").visible and not note.part("pic").visible
    desk.key("Escape")
    desk.wait(lambda: note.part("lbl2").visible and note.part("pic").visible, what="the pictures back")


def test_enter_keeps_the_title(desk, hand):
    hand.run()
    note = hand.note()
    editor = edit_title(hand, note)
    desk.type(" list")
    desk.key("Return")
    hand.wait_stored(Titolo="Shopping list")
    assert not editor.visible and note.part("pic").visible
    assert note.text == "Shopping list" and note.part("lbl").text == LEAD + "Shopping list"
    menu = hand.kardel.tray.menu()
    menu.choose("Open")
    desk.wait(lambda: "Shopping list" in desk.menu().captions, what="the new title in the tray menu")
    menu.close()


def test_esc_keeps_the_old_title(desk, hand):
    note = hand.run().note()
    editor = edit_title(hand, note)
    before = hand.store.raw()
    desk.type("nonsense")
    desk.wait_equal(lambda: editor.text, "Shoppingnonsense")
    desk.key("Escape")
    desk.wait(lambda: not editor.visible, what="the editor to close")
    desk.click_desktop()
    desk.wait(lambda: not note.active)
    assert note.part("lbl").text == LEAD + "Shopping" and note.text == "Shopping"
    assert hand.store.raw() == before


def test_an_empty_title_leaves_only_its_indent(desk, hand):
    note = hand.run().note()
    edit_title(hand, note)
    desk.key("ctrl+a", "Delete", "Return")
    hand.wait_stored(Titolo="")
    assert note.part("lbl").text == LEAD and note.text == ""
    desk.wait(lambda: len(note.part("lbl").image().crop((34, 1, 170, 17)).getcolors()) == 1, 5, "an empty strip")


def test_a_long_title_widens_an_iconized_note_but_not_beyond_the_screen(desk, hand):
    note = hand.run({**NOTE, "iconized": True, "x": 0}).note()
    note.activate()
    desk.key("F2")
    desk.wait(lambda: note.part("txtTitle").has_focus)
    desk.type(" and all that we need for Sunday")
    desk.key("Return")
    desk.wait(lambda: note.rect.width > 200, what="a wider note")
    hand.wait_stored(width=note.rect.width * 15)
    assert note.part("pic").rect.right == note.rect.right - 1

    def title_end():
        strip = note.part("lbl").image()
        return max((x for x, _ in ink(strip) if x < strip.width - 40), default=0)

    # The whole title and some room: nothing is cut.
    desk.wait(lambda: 200 < title_end() < note.part("lbl").rect.width - 36 - 4, 5, "the whole title on the strip")

    desk.key("F2")
    desk.wait(lambda: note.part("txtTitle").has_focus)
    desk.key("ctrl+a")
    desk.type("W" * 130)
    desk.key("Return")
    desk.wait_equal(lambda: note.rect.width, 1280)
    hand.wait_stored(width=1280 * 15)
    assert hand.stored("Titolo") == "W" * (130 if hand.kind == "registry" else 128)  # as much as the store can keep


# --- Leaving an editor by hand


LEAVING = {
    "desktop": lambda hand, note: hand.desk.click_desktop(),
    "another note": lambda hand, note: hand.note("other").click("nota"),
    "grip beside its arrows": lambda hand, note: note.click("pic2", 16, 15),
    "time strip": lambda hand, note: note.click("pic_time", 100),
    "menu key": lambda hand, note: (hand.desk.key("Menu"), hand.desk.menu(), hand.desk.key("Escape")),
    "command from outside": lambda hand, note: note.command("topmost"),
}
BODY_ONLY = {"title strip": lambda hand, note: note.click("lbl", -40)}
TITLE_ONLY = {"text": lambda hand, note: note.click("nota")}


def test_leaving_the_body_in_any_way_keeps_it(desk, hand):
    note = hand.run(NOTE, OTHER).note("Shopping")
    body = "milk and bread"
    for way, leave in {**LEAVING, **BODY_ONLY}.items():
        if way == "time strip":
            continue  # the editor covers it
        editor = note.edit()
        desk.type("!")
        body += "!"
        desk.wait_equal(lambda: editor.text, body, 5, way)
        leave(hand, note)
        hand.wait_stored(Nota=body)
        assert note.body == body and not editor.visible, way


def test_leaving_the_title_in_any_way_keeps_it(desk, hand):
    hand.run({**NOTE, **FAR_ALARM}, OTHER)
    note, title = hand.note("Shopping"), "Shopping"
    desk.wait(lambda: note.part("pic_time").visible, what="the time strip")
    for way, leave in {**LEAVING, **TITLE_ONLY}.items():
        editor = edit_title(hand, note)
        desk.type("!")
        title += "!"
        desk.wait_equal(lambda: editor.text, title, 5, way)
        leave(hand, note)
        hand.wait_stored(Titolo=title)
        assert note.text == title and not editor.visible, way


def test_the_title_strip_stores_the_body_before_the_drag_begins(desk, hand):
    note = hand.run().note()
    note.edit()
    desk.type("!")
    desk.wait_equal(lambda: note.part("txtNota").text, "milk and bread!")
    x, y = note.part("lbl").point(100)
    desk.hands.press(x, y)
    hand.wait_stored(Nota="milk and bread!")  # while the button is still down
    assert hand.stored("x") == 6000
    for step in (20, 40, 60):
        desk.hands.move(x + step, y + step // 2)
    desk.wait_equal(lambda: note.rect[:2], (460, 330))
    desk.hands.release()
    hand.wait_stored(x=6900, y=4950, Nota="milk and bread!")


@any_store
def test_the_two_editors_are_never_open_at_once(desk, hand):
    note = hand.run().note()
    body, title = note.edit(), note.part("txtTitle")
    desk.type("!")
    edit_title(hand, note)
    assert not body.visible
    hand.wait_stored(Nota="milk and bread!")
    desk.type("?")
    desk.key("F2")
    desk.wait(lambda: body.visible and body.has_focus, what="the body's editor")
    assert not title.visible
    hand.wait_stored(Titolo="Shopping?")


@any_store
def test_the_grip_ends_an_edit_before_it_resizes(desk, hand):
    note = hand.run().note()
    editor = note.edit()
    desk.type("!")
    desk.wait_equal(lambda: editor.text, "milk and bread!")
    note.click("pic2", *WIDER)
    hand.wait_stored(Nota="milk and bread!")
    desk.wait(lambda: hand.stored("width") > 3000, what="a wider note in the store")
    assert not editor.visible


def test_a_body_that_could_not_be_stored_is_reported_and_stored_the_next_time(desk):
    desk.seed_registry({"UseRegistry": False})
    desk.seed_files([NOTE])
    kardel = desk.run()
    note, memo = kardel.note(), desk.path() / "MEMO"
    note.edit()
    desk.type("!")
    kept = memo.read_bytes()
    memo.unlink()
    memo.mkdir()  # no program can write to it now
    desk.key("Return")
    box = kardel.dialog()
    assert len(max(box.texts(), key=len)) > 20  # says what went wrong
    memo.rmdir()
    memo.write_bytes(kept)
    desk.key("Return")
    desk.wait(lambda: not kardel.dialogs(), what="the message to go")
    assert note.body == "milk and bread!"
    note.edit()
    desk.key("Return")
    desk.wait_equal(lambda: desk.read_files().notes[0]["Nota"], "milk and bread!")
