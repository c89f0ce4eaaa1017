"""Text is readable for everybody: with Windows' colours for high contrast, and on notes of any colour."""

import pytest

from kardel_desk import rgb
from kardel_desk.alarms import edit_alarm
from kardel_desk.one_note import FAR_ALARM, NOTE

READABLE = 4.5  # the least contrast between text and background that is recommended for people with weak eyes
BLACK, WHITE, YELLOW, GREEN, CYAN = (0, 0, 0), (255, 255, 255), (255, 255, 0), (0, 255, 0), (0, 255, 255)


def scheme(ground, text, chosen, link, grey):
    return {**dict.fromkeys(("Window", "ButtonFace", "Menu", "InfoWindow", "Background", "ButtonAlternateFace"),
                            ground),
            **dict.fromkeys(("WindowText", "ButtonText", "MenuText", "InfoText", "ButtonHilight", "ButtonShadow",
                             "ButtonLight", "ButtonDkShadow", "WindowFrame"), text),
            "Hilight": chosen, "HilightText": ground, "HotTrackingColor": link, "GrayText": grey}


SCHEMES = {"black": scheme(BLACK, WHITE, CYAN, YELLOW, GREEN),
           "yellow on black": scheme(BLACK, YELLOW, GREEN, WHITE, GREEN),
           "white": scheme(WHITE, BLACK, (55, 0, 110), (0, 0, 159), (96, 0, 0)),
           "links lost": scheme(BLACK, WHITE, CYAN, (0, 0, 40), GREEN)}


def light(colour):
    parts = [c / 255 for c in colour]
    red, green, blue = [c / 12.92 if c <= 0.03928 else ((c + 0.055) / 1.055) ** 2.4 for c in parts]
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(one, other):
    bright, dark = sorted((light(one), light(other)), reverse=True)
    return (bright + 0.05) / (dark + 0.05)


def readable(image):
    """The contrast between the commonest colour and the one that differs most from it, as letters are never only
    fringe."""
    colours = sorted(image.convert("RGB").getcolors(1 << 20), reverse=True)
    ground = colours[0][1]
    return max(contrast(ground, colour) for _, colour in colours)


def words_of(part):
    """The picture of a part without what a control draws around its text."""
    picture = part.image()
    if part.info["class"] != "Button":
        return picture
    edge = 7 if picture.height >= 20 else 0  # frame and focus of a push button
    return picture.crop((18, edge, picture.width - edge, picture.height - edge))


def assert_readable(window):
    words = {part.text: words_of(part) for part in window.parts().values() if part.visible and part.text.strip()}
    assert len(words) > 2
    found = {text: readable(picture) for text, picture in words.items()}
    assert {text: n for text, n in found.items() if n < READABLE} == {}


@pytest.mark.parametrize("name", SCHEMES)
def test_dialogs_are_readable_in_colours_for_high_contrast(desk, name):
    desk.seed_registry({}, [{**NOTE, "x": 300, "y": 300}])
    with desk.coloured(SCHEMES[name]):
        kardel = desk.run()
        note = kardel.note()
        note.command("delete")
        box = kardel.dialog()
        assert_readable(box)
        box.press("No")
        desk.wait(lambda: not kardel.dialogs(), what="the question to close")
        editor = edit_alarm(kardel, note)
        editor.choose("cboDay", 8)
        desk.wait(lambda: editor.part("fraWeek").visible, what="the days of the week")
        editor.settle()
        assert_readable(editor)
        editor.post(0x0010)
        editor.wait_gone()
        kardel.tray.command("dyn(11)")
        about = kardel.dialog()
        assert_readable(about)
        about.press("OK")


@pytest.mark.parametrize("colour", [0x000000, 0x0000FF, 0x008000, 0xFF0000, 0x767676, 0x7A7A7A, 0x3F7F7F, 0x80FFFF])
def test_a_note_of_any_colour_is_readable(desk, colour):
    desk.seed_registry({}, [{**NOTE, **FAR_ALARM, "backcolor": colour}])
    kardel = desk.run()
    note = kardel.note()
    note.awake()
    parts = ("lbl", "nota", "pic_time")
    desk.wait_equal(lambda: [part for part in parts if readable(note.part(part).image()) < READABLE], [], 5,
                    "every part that cannot be read")
    assert contrast(note.colour, rgb(colour)) < 1.05, "the note has its colour"
    editor = note.edit()
    desk.key("ctrl+Home")
    desk.wait(lambda: readable(editor.image().crop((4, 0, 180, 60))) >= READABLE, 5,
              "words that can be read in the editor")
