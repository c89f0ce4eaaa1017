"""The same work under five locales: every letter typed comes back, and numbers stay as they are."""

import datetime

import pytest

from kardel_desk.alarms import date_text, edit_alarm, local_now, midday_zone, strip
from kardel_desk.stores import NUMBERS

WEEK = 8  # "Week" in the editor's list of days
LOCALES = {
    "de_DE": ("cp1252", "Stra\u00dfe & \u00c4rger", "1,5 Pfund \u00d6l, K\u00e4se f\u00fcr 3,20 \u20ac"),
    "it_IT": ("cp1252", "Perch\u00e9 no?", "citt\u00e0: 2,75 \u20ac, per\u00f2 cos\u00ec"),
    "tr_TR": ("cp1254", "\u0130stanbul I\u015f\u0131k", "\u0131\u0130iI \u011f\u015f\u00e7 1,5"),
    "pl_PL": ("cp1250", "\u0141\u00f3d\u017a \u017b\u00f3\u0142\u0107",
              "za\u017c\u00f3\u0142\u0107 g\u0119\u015bl\u0105 ja\u017a\u0144 0,5"),
    "ja_JP": ("cp932", "\u65e5\u672c\u8a9e\u30e1\u30e2", "\u8cb7\u3044\u7269: \u725b\u4e73\u3001\u8868 1.5"),
}


def type_title(desk, note, text):
    note.awake()
    note.click("lbl", 100, button=3)
    desk.wait(lambda: note.part("txtTitle").has_focus, what="the title's editor")
    desk.type(text)
    desk.key("Return")
    desk.wait_equal(lambda: note.title, text)


def tick_days(desk, kardel, note, days):
    editor = edit_alarm(kardel, note)
    editor.choose("cboDay", WEEK)
    for day in days:
        editor.part(f"chkWeek({day - 1})").click()
        desk.wait(lambda: editor.ticked(f"chkWeek({day - 1})"), 5, "a tick")
    editor.start()


@pytest.mark.parametrize("locale", LOCALES)
def test_what_is_typed_in_any_language_is_kept_by_both_stores(desk, locale):
    page, title, body = LOCALES[locale]
    zone = midday_zone()
    env = {"LC_ALL": f"{locale}.UTF-8", "TZ": zone}
    desk.seed_registry({"UseRegistry": False, "defaultwidth": "3000.5"})
    kardel = desk.start(env=env).wait_ready(notes=1)
    note = kardel.note("")
    type_title(desk, note, title)
    note.drag(by=(150, 120))
    desk.wait_equal(lambda: (note.rect.x, note.rect.y), (150, 120))
    note.edit()
    desk.type(body)
    desk.click_desktop()
    today = local_now(zone)
    days = sorted((today + datetime.timedelta(ahead)).isoweekday() for ahead in (2, 4))
    tick_days(desk, kardel, note, days)

    def in_files():
        return desk.read_files(code_page=page).notes[0]

    desk.wait_equal(lambda: in_files()["alarmweekday"], WEEK)
    stored = in_files()
    assert (stored["Titolo"], stored["Nota"]) == (title, body)
    assert stored["alarmdate"] == date_text(today + datetime.timedelta(2))
    assert stored["weekdays"] == [day in days for day in range(1, 8)]

    kardel.tray.command("dyn(8)")  # the notes go into the registry
    kardel.dialog().press("OK")
    desk.wait(lambda: "kardel-1" in desk.sections(), what="the note in the registry")
    assert kardel.exit() == 0
    kardel = desk.start(env=env)
    kardel.dialog().press("Yes")
    kardel.wait_ready(notes=1)
    note = kardel.note(title)
    assert note.body == body
    assert (note.rect.x, note.rect.y, note.rect.width) == (150, 120, 200)
    assert strip(note).visible, "the alarm is on"
    editor = edit_alarm(kardel, note)
    assert [day for day in range(1, 8) if editor.ticked(f"chkWeek({day - 1})")] == days
    editor.post(0x0010)  # WM_CLOSE
    editor.wait_gone()
    assert kardel.exit() == 0

    values = desk.stored_note(1)
    assert (values["Titolo"], values["Nota"]) == (title, body)
    assert (stored["x"], stored["y"]) == (2250, 1800)
    assert {key: int(values[key]) for key in NUMBERS} == {key: stored[key] for key in NUMBERS}
    assert (values["alarmdate"], values["alarmtime"]) == (stored["alarmdate"], stored["alarmtime"])
    assert sorted(flag for key, flag in values.items() if key.startswith("w.")) == ["False"] * 5 + ["True"] * 2
    assert not [text for text in desk.registry("setting").values() if "," in text]
