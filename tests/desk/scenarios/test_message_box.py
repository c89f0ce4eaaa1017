"""Questions, messages and the About box: what they show, how they are answered, and what they keep from being done."""

from kardel_desk.ids import part_id
from kardel_desk.one_note import NOTE, OTHER, any_store

WM_CLOSE = 0x10
ABOUT = "dyn(11)"
pytestmark = any_store


def ask(hand, title="Shopping"):
    """Opens the question before a delete, by the note's Delete key."""
    note = hand.note(title)
    note.activate()
    hand.desk.key("Delete")
    box = hand.kardel.dialog()
    hand.desk.wait(lambda: box.active and box.part("btn1").has_focus, 5, "the question to have the keyboard")
    return box


def gone(hand):
    hand.desk.wait(lambda: not hand.kardel.dialogs(), 5, "the box to go")


def about(hand):
    hand.kardel.tray.command(ABOUT)
    box = hand.kardel.dialog()
    hand.desk.wait(lambda: box.part("btn1").has_focus, 5, "the About box")
    return box


# Ways to answer the question, whose default button is Yes.
YES = {
    "a click": lambda desk, box: box.press("Yes"),
    "Enter": lambda desk, box: desk.key("Return"),
    "Space": lambda desk, box: desk.key("space"),
    "Alt+Y": lambda desk, box: desk.key("alt+y"),
    "Y": lambda desk, box: desk.key("y"),
    "Tab, Shift+Tab and Space": lambda desk, box: desk.key("Tab", "shift+Tab", "space"),
}
NO = {
    "a click": lambda desk, box: box.press("No"),
    "Escape": lambda desk, box: desk.key("Escape"),
    "the close box": lambda desk, box: box.post(WM_CLOSE),
    "Alt+N": lambda desk, box: desk.key("alt+n"),
    "N": lambda desk, box: desk.key("n"),
    "Tab and Enter": lambda desk, box: desk.key("Tab", "Return"),
    "Right and Enter": lambda desk, box: desk.key("Right", "Return"),
    "Tab and Space": lambda desk, box: desk.key("Tab", "space"),
}


def test_a_question_takes_yes_in_every_way(desk, hand):
    hand.run(*({**NOTE, "Titolo": way, "x": 300 + 3100 * n} for n, way in enumerate(YES)), {**OTHER, "y": 9000})
    left = [*YES, "other"]
    for way, answer in YES.items():
        box = ask(hand, way)
        assert (box.part("btn1").text, box.part("btn2").text) == ("&Yes", "&No")
        answer(desk, box)
        left.remove(way)
        desk.wait_equal(lambda: hand.store.each("Titolo"), left, 5, way)
        gone(hand)


def test_a_question_takes_no_in_every_way(desk, hand):
    hand.run(NOTE, OTHER)
    for way, answer in NO.items():
        box = ask(hand)
        answer(desk, box)
        gone(hand)
        desk.wait(lambda: hand.note("Shopping").has_focus, 5, f"the keyboard back at the note after {way}")
        assert hand.store.each("Titolo") == ["Shopping", "other"], way


def test_a_question_shows_its_icon_and_its_text_side_by_side(desk, hand):
    hand.run()
    box = ask(hand)
    icon, text, first, second = (box.part(name) for name in ("mIcon", "lblmsg", "btn1", "btn2"))
    assert icon.visible and icon.text == "Question" and len(icon.image().getcolors(100000)) > 3
    assert icon.rect.right < text.rect.x and first.rect.right < second.rect.x
    assert first.rect.bottom <= box.rect.bottom and second.rect.right < box.rect.right
    assert text.rect.bottom <= first.rect.y
    for part in ("btnCancel", "lblmailto", "lblweburl", "data", "btnOK"):
        found = box.parts().get(part_id(part))
        assert found is None or not found.visible, part


def test_nothing_else_can_be_done_while_a_question_waits(desk, hand):
    hand.run(NOTE, OTHER)
    box = ask(hand)
    other = hand.note("other")
    assert not other.enabled and not hand.note("Shopping").enabled
    other.click("nota", double=True)
    other.drag("lbl", by=(50, 50))
    hand.kardel.tray.window().send(0)
    assert not other.editing and other.rect[:2] == (800, 300)
    desk.wait(lambda: hand.kardel.dialogs() == [box])
    box.press("No")
    gone(hand)
    other.edit()  # afterwards everything works again


def test_a_question_lies_above_a_note_that_is_always_on_top(desk, hand):
    hand.run({**NOTE, "x": 3000, "y": 3000, "width": 13000, "height": 9000}, OTHER)
    hand.menu(hand.note("Shopping"), "Always on Top")
    hand.wait_stored(topmost=True)
    box = ask(hand)
    inside = box.part("lblmsg").rect
    note = hand.note("Shopping").rect
    assert note.x < inside.x and inside.right < note.right and note.y < inside.y and inside.bottom < note.bottom
    desk.wait(lambda: box.part("lblmsg").pixel(0, 0) != (192, 255, 192), 5, "the question to be seen")


def test_a_long_title_wraps_and_the_box_stays_on_the_screen(desk, hand):
    hand.run({**NOTE, "Titolo": "word " * 1000})
    hand.kardel.note().activate()
    desk.key("Delete")
    box = hand.kardel.dialog()
    left, top, width, height = desk.screen()["workarea"]
    rect = box.rect
    assert rect.x >= left and rect.y >= top and rect.right <= left + width and rect.bottom <= top + height
    assert rect.width <= width * 0.6
    for button in ("btn1", "btn2"):
        assert box.part(button).visible and box.part(button).rect.bottom < rect.bottom
    box.press("No")
    gone(hand)


def test_a_short_question_is_a_small_box_in_the_middle(desk, hand):
    hand.run()
    box = ask(hand)
    left, top, width, height = desk.screen()["workarea"]
    assert box.rect.width < width // 2 and box.rect.height < 200
    assert abs(box.rect.centre[0] - (left + width // 2)) <= 2 and abs(box.rect.centre[1] - (top + height // 2)) <= 2


def test_an_ampersand_in_a_title_is_shown_as_it_is(desk, hand):
    hand.run({**NOTE, "Titolo": "R&D && more"})
    box = ask(hand, "R&D && more")
    assert "Are you sure you want to delete the kardel titled ''R&D && more'' ?" in box.texts()


def test_about_names_the_program_its_version_and_its_links(desk, hand):
    hand.run()
    box = about(hand)
    assert box.text == "About"
    lines = box.part("lblmsg").text.splitlines()
    assert lines[0].startswith("Kardel - version ") and lines[0].count(".") == 2
    assert lines[1] == "" and lines[2].startswith("Copyright") and lines[3]
    mail, site = box.part("lblmailto"), box.part("lblweburl")
    assert mail.visible and "@" in mail.text and site.visible and site.text.startswith("https://")
    assert box.part("lblmsg").rect.bottom <= mail.rect.y < site.rect.y
    assert box.part("btn1").text == "OK" and not box.part("btn2").visible
    assert box.part("mIcon").visible


def test_about_is_closed_in_every_way(desk, hand):
    hand.run()
    for close in (lambda box: desk.key("Return"), lambda box: desk.key("Escape"), lambda box: box.press("OK"),
                  lambda box: box.post(WM_CLOSE)):
        close(about(hand))
        gone(hand)
        assert hand.kardel.alive and hand.note().enabled


def test_a_question_after_about_and_about_after_a_question_show_their_own_face(desk, hand):
    hand.run()
    box = ask(hand)
    box.press("No")
    gone(hand)
    box = about(hand)
    assert "&Yes" not in box.texts() and box.part("lblmailto").visible
    box.press("OK")
    gone(hand)
    box = ask(hand)
    assert not box.part("lblmailto").visible and not box.part("lblweburl").visible
    assert box.part("mIcon").text == "Question" and box.part("btn2").visible


def test_a_second_start_while_a_question_waits_brings_its_message_and_then_the_question_again(desk, hand):
    hand.run(NOTE, OTHER)
    box = ask(hand)
    second = desk.start()
    desk.wait_equal(lambda: box.part("lblmsg").text, "Kardel application is already running.")
    assert not box.part("btn2").visible
    desk.key("Return")
    desk.wait(lambda: box.visible and box.part("btn2").visible and "titled" in box.part("lblmsg").text,
              what="the question again")
    assert second.wait_ended() == 0
    assert hand.store.each("Titolo") == ["Shopping", "other"]
    box.press("Yes")
    desk.wait_equal(lambda: hand.store.each("Titolo"), ["other"])


def test_exit_while_a_question_waits_deletes_nothing(desk, hand):
    hand.run(NOTE, OTHER)
    ask(hand)
    assert hand.kardel.exit() == 0
    assert hand.store.each("Titolo") == ["Shopping", "other"]


def test_the_pointer_is_a_hand_over_a_link(desk, hand):
    hand.run()
    box = about(hand)

    def pointer(part):
        desk.hands.move(*box.part(part).rect.centre)
        box.send(0)
        return desk.display.pointer()

    def a_hand_over_both():
        over_mail, over_site, elsewhere = pointer("lblmailto"), pointer("lblweburl"), pointer("lblmsg")
        return over_mail == over_site != elsewhere

    desk.wait(a_hand_over_both, 10, "a hand over the links")
