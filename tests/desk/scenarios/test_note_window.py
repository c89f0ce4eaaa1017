"""One note on the desktop: its parts, layout, colours, its properties as seen from outside, its menu and its keys."""

import pytest

PARTS = {"lbl": 101, "lbl2": 102, "pic": 103, "nota": 104, "txtNota": 105, "txtTitle": 106, "pic2": 107,
         "pic_time": 108}
EDITORS = "txtNota", "txtTitle"
EDITOR_IDS = {PARTS[name] for name in EDITORS}
NOTE = {"Titolo": "Shopping", "Nota": "milk\r\nbread", "x": 3000, "y": 1500, "width": 3000, "height": 2250,
        "backcolor": 0xC0FFC0}
WM_CLOSE, WM_SYSCOMMAND, SC_MINIMIZE = 0x10, 0x112, 0xF020
LEAD = " " * 5


def run_with(desk, *notes, settings=None):
    desk.seed_registry(settings or {}, list(notes))
    return desk.run()


def test_every_part_is_a_child_with_its_id_and_text(desk):
    note = run_with(desk, NOTE).note()
    parts = note.parts()
    assert sorted(parts) == sorted(id for name, id in PARTS.items() if name not in EDITORS)
    assert note.part("lbl").text == LEAD + "Shopping"
    assert note.part("nota").text == "milk\r\nbread"
    for picture in ("lbl2", "pic", "pic2"):
        assert len(note.part(picture).text) > 3  # what a screen reader says
    assert note.text == "Shopping"
    assert not note.part("pic_time").visible


def test_an_editor_is_there_while_something_is_edited(desk):
    note = run_with(desk, NOTE).note()
    note.activate()
    for keys, editor in (("F2", "txtNota"), ("shift+F2", "txtTitle")):
        desk.key(keys)
        desk.wait(lambda: note.part(editor).has_focus, what=editor)
        assert set(note.parts()) & EDITOR_IDS == {PARTS[editor]}
        desk.key("Escape")
        desk.wait(lambda: not set(note.parts()) & EDITOR_IDS, what=f"{editor} to go")
        assert note.has_focus


def test_place_size_and_colour_come_from_the_store(desk):
    note = run_with(desk, NOTE).note()
    assert note.rect == (200, 100, 200, 150)
    assert note.colour == (192, 255, 192)


def test_all_seven_surfaces_have_the_notes_colour(desk):
    far = {**NOTE, "alarmdate": "01/01/2999", "alarmtime": "10:00:00"}
    note = run_with(desk, far).note()
    desk.wait(lambda: note.part("pic_time").visible, what="the time strip")
    for name in ("nota", "lbl", "pic", "pic2", "lbl2", "pic_time"):
        assert note.part(name).pixel(0, 0) == (192, 255, 192), name
    assert note.pixel(2, 60) == (192, 255, 192)  # the window itself, in the margin


def test_note_without_a_stored_colour_keeps_the_design_colour(desk):
    note = run_with(desk, {"Titolo": "plain"}).note()
    for name in ("nota", "lbl", "pic", "pic2", "lbl2"):
        assert note.part(name).pixel(0, 0) == (255, 255, 128), name


def test_layout_follows_the_size(desk):
    note = run_with(desk, NOTE).note()
    window, lbl, pic, nota, grip = (note.rect, *(note.part(n).rect for n in ("lbl", "pic", "nota", "pic2")))
    assert (lbl.x, lbl.width) == (window.x + 1, window.width - 2)
    assert pic.right == window.right - 1
    margin = nota.x - lbl.x
    assert nota.width == lbl.width - 2 * margin
    assert nota.bottom == window.bottom - 1 - margin
    assert (grip.right, grip.bottom) == (window.right - 1, window.bottom - 1)


def test_notes_have_no_task_bar_button_and_no_owner(desk):
    """Windows brings all windows of one owner to the front when one of them is clicked."""
    kardel = run_with(desk, NOTE)
    info = kardel.note().info
    assert info["owner"] == 0
    assert info["exstyle"] & 0x80  # a tool window
    assert not info["style"] & 0x00030000  # neither minimise nor maximise box


def test_iconized_note_is_its_strip(desk):
    note = run_with(desk, {**NOTE, "iconized": True}).note()
    assert note.rect == (200, 100, 200, 20)
    assert not note.part("nota").visible
    assert note.part("pic2").rect.right == note.part("pic").rect.x


def test_closed_note_stays_hidden_but_has_its_window(desk):
    kardel = run_with(desk, NOTE, {**NOTE, "Titolo": "put away", "closed": True})
    assert not kardel.note("put away").visible
    assert kardel.note("Shopping").visible


def test_topmost_note_lies_above_a_later_one(desk):
    kardel = run_with(desk, {**NOTE, "topmost": True}, {**NOTE, "Titolo": "later", "x": 3150})
    note, later = kardel.note("Shopping"), kardel.note("later")
    assert note.topmost and not later.topmost
    later.click("lbl", -40)
    desk.wait(lambda: kardel.stacking()[0] == "Shopping", what="the topmost note to be in front")


@pytest.mark.parametrize("x, y", [(-90000, -90000), (90000, 90000), (0, 60000)])
def test_note_on_no_monitor_is_shown_where_it_can_be_reached(desk, x, y):
    kardel = run_with(desk, {**NOTE, "x": x, "y": y})
    rect = kardel.note().rect
    assert rect.x >= 0 and rect.right <= 1280 and rect.y >= 0 and rect.bottom <= 1024
    kardel.exit()
    assert (desk.stored_note(1)["x"], desk.stored_note(1)["y"]) == (str(x), str(y))


@pytest.mark.parametrize("width, height, pixels", [("1", "1", (75, 47)), ("0", "0", (194, 126)),
                                                   ("abc", "-5", (194, 126))])
def test_tiny_and_nonsense_sizes(desk, width, height, pixels):
    kardel = run_with(desk, {**NOTE, "width": width, "height": height})
    assert kardel.note().rect[2:] == pixels
    kardel.exit()
    assert desk.stored_note(1)["width"] == width


@pytest.mark.parametrize("colour", [0x000000, 0xFFFFFF, 0x0000FF, 0x800000, 0x808080, 0x80FFFF])
def test_text_is_legible_on_any_colour(desk, colour):
    note = run_with(desk, {**NOTE, "backcolor": colour, "Nota": "WWWW WWWW\r\nMMMM MMMM"}).note()

    def light(rgb):
        return sum(weight * (c / 255) ** 2.2 for weight, c in zip((0.2126, 0.7152, 0.0722), rgb))

    def ratio():
        shown = {note.image().getpixel((x, y)) for x in range(6, 60) for y in range(24, 50)}
        lights = sorted(light(rgb[:3]) for rgb in shown)
        return (lights[-1] + 0.05) / (lights[0] + 0.05)

    desk.wait(lambda: ratio() >= 4, what="ink that can be read")


def test_two_overlapping_notes_of_one_colour_can_be_told_apart(desk):
    kardel = run_with(desk, NOTE, {**NOTE, "Titolo": "second", "x": 3600, "y": 2100})
    front = kardel.note(kardel.stacking()[0])
    edge, inside = front.pixel(0, 60), front.pixel(3, 60)
    assert sum(abs(a - b) for a, b in zip(edge, inside)) > 150


def test_system_minimise_is_undone(desk):
    kardel = run_with(desk, NOTE)
    note = kardel.note()
    before = note.rect
    note.post(WM_SYSCOMMAND, SC_MINIMIZE)
    note.send(0)
    desk.wait(lambda: note.visible and note.rect == before, what="the note at its place")
    kardel.exit()
    assert desk.stored_note(1)["x"] == "3000"


def test_close_message_neither_closes_nor_deletes(desk):
    kardel = run_with(desk, NOTE)
    kardel.note().send(WM_CLOSE)
    assert kardel.note().visible
    kardel.exit()
    assert desk.stored_note(1).get("closed", "False") == "False"


def test_ampersands_tabs_and_line_breaks_are_shown_as_typed(desk):
    note = run_with(desk, {**NOTE, "Titolo": "R&D &x", "Nota": "a&b\n&c\tend"}).note()
    assert note.text == "R&D &x"
    assert note.part("lbl").text == LEAD + "R&D &x"
    assert note.body == "a&b\r\n&c\tend"


def test_accents_and_other_scripts_come_through(desk):
    title = "\u039a\u03b1\u03bb\u03b7\u03bc\u03ad\u03c1\u03b1 \u4f60\u597d"
    body = "\u041f\u0440\u0438\u0432\u0435\u0442 \u00e8"
    note = run_with(desk, {**NOTE, "Titolo": title, "Nota": body}).note()
    assert note.text == title and note.body == body


def test_old_system_colour_numbers_are_looked_up(desk):
    note = run_with(desk, {**NOTE, "backcolor": "-2147483643"}).note()  # the window background
    assert note.colour == (255, 255, 255)


EXPECTED_MENU = ["&New Kardel\tCTRL+N", "-", "&Edit\tF2", "Back color", "-", "Set alarm\tF4", "-", "Close",
                 "&Delete\tCANC", "-", "Always on Top", "&Resize", "Iconize", "-", "Hide All", "Iconize All", "-",
                 "Exit"]


@pytest.mark.parametrize("part, dx", [("nota", None), ("lbl2", 2), ("pic", None)])
def test_right_click_opens_the_menu(desk, part, dx):
    note = run_with(desk, NOTE).note()
    note.click(part, dx, button=3)
    assert desk.menu().captions == EXPECTED_MENU
    desk.key("Escape")
    desk.wait(lambda: not desk.menus(), what="the menu to close")


def test_right_click_on_an_iconized_title_opens_its_menu(desk):
    note = run_with(desk, {**NOTE, "iconized": True}).note()
    note.click("lbl", 60, button=3)
    menu = desk.menu()
    assert "&Edit title\tF2" in menu.captions and "Restore" in menu.captions
    assert not menu.item("Resize")["enabled"]
    desk.key("Escape")


def test_menu_key_and_shift_f10_open_the_menu(desk):
    note = run_with(desk, NOTE).note()
    note.activate()
    for key in ("Menu", "shift+F10"):
        desk.key(key)
        assert desk.menu().captions == EXPECTED_MENU
        desk.key("Escape")
        desk.wait(lambda: not desk.menus(), what="the menu to close")


def test_click_elsewhere_closes_the_menu(desk):
    note = run_with(desk, NOTE).note()
    note.click("nota", button=3)
    desk.menu()
    desk.click_desktop()
    desk.wait(lambda: not desk.menus(), what="the menu to close")


@pytest.mark.parametrize("alarm, iconized, shown", [
    ({}, False, []),
    ({"alarmdate": "01/01/2999", "alarmtime": "10:00:00"}, False, ["Don't delete when elapsed"]),
    ({"alarmdate": "01/01/2999", "alarmtime": "10:00:00"}, True, ["Restore when elapsed", "Don't delete when elapsed"]),
    ({"alarmdate": "*", "interval": "eachday", "alarmtime": "10:00:00"}, True, ["Restore when elapsed"]),
    ({"alarmdate": "*", "interval": "eachday", "alarmtime": "10:00:00"}, False, []),
])
@pytest.mark.parametrize("store", ["registry", "files"])
def test_alarm_entries_of_the_menu(desk, store, alarm, iconized, shown):
    fields = {**NOTE, **alarm, "iconized": iconized}
    if store == "registry":
        desk.seed_registry({"DontDeleteWhenPlay": True}, [fields])
    else:
        desk.seed_registry({"UseRegistry": False, "DontDeleteWhenPlay": True})
        desk.seed_files([fields])
    note = desk.run().note()
    note.click("pic", 2, -2, button=3)
    menu = desk.menu()
    entries = ("Restore when elapsed", "Don't delete when elapsed")
    assert [entry for entry in menu.captions if entry in entries] == shown
    if "Don't delete when elapsed" in shown:
        assert menu.item("Don't delete when elapsed")["checked"]
    desk.key("Escape")


def test_toggling_an_alarm_setting_from_a_note(desk):
    far = {**NOTE, "alarmdate": "01/01/2999", "alarmtime": "10:00:00"}
    kardel = run_with(desk, far, {**far, "Titolo": "other", "x": 8000})
    kardel.note("Shopping").command("dontdelete")
    desk.wait_equal(lambda: desk.registry("setting")["DontDeleteWhenPlay"], "True")
    kardel.note("other").click("nota", button=3)
    assert desk.menu().item("Don't delete when elapsed")["checked"]
    desk.key("Escape")
    kardel.note("other").command("dontdelete")
    desk.wait_equal(lambda: desk.registry("setting")["DontDeleteWhenPlay"], "False")


def test_hidden_and_greyed_commands_do_nothing(desk):
    kardel = run_with(desk, {**NOTE, "iconized": True})
    note = kardel.note()
    for command in ("dontdelete", "rewhenplay", "resize"):
        note.command(command)
    note.send(0)
    desk.key("Down")
    assert note.rect.height == 20
    assert desk.registry("setting")["DontDeleteWhenPlay"] == "False"
    assert desk.registry("setting")["RestoreWhenPlay"] == "False"


def test_delete_key_in_the_open_editors_edits_and_never_asks(desk):
    kardel = run_with(desk, NOTE)
    note = kardel.note()
    note.edit()
    desk.key("Home", "Delete")
    desk.wait_equal(lambda: note.part("txtNota").text, "milk\r\nread")
    assert kardel.dialogs() == []
    desk.key("Return")
    note.click("lbl", 100, button=3)
    desk.wait(lambda: note.part("txtTitle").has_focus, what="the title's editor")
    desk.key("Home", "Delete")
    desk.wait_equal(lambda: note.part("txtTitle").text, "hopping")
    assert kardel.dialogs() == []


def test_f1_does_nothing(desk):
    kardel = run_with(desk, NOTE)
    kardel.note().activate()
    desk.key("F1")
    kardel.note().send(0)
    assert len(kardel.notes()) == 1 and kardel.dialogs() == [] and not kardel.note().editing


def test_automatic_position_runs_at_the_start_and_is_stored(desk):
    notes = [{**NOTE, "Titolo": f"n{n}", "x": 1500 + 777 * n, "y": 1500 + 111 * n} for n in range(1, 4)]
    kardel = run_with(desk, *notes, settings={"AlignAll": True})
    first, second, third = (kardel.note(f"n{n}").rect for n in (1, 2, 3))
    assert (second.x, second.y) == (first.x, first.bottom)
    assert (third.x, third.y) == (first.x, second.bottom)
    desk.wait_equal(lambda: desk.stored_note(2)["x"], str(first.x * 15))
    assert desk.stored_note(2)["y"] == str(first.bottom * 15)
