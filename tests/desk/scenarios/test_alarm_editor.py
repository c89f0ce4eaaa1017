"""The alarm editor under real mouse and keyboard: every kind of alarm, what the store then holds, what is refused."""

import datetime

import pytest
from kardel_desk import alarms
from kardel_desk.alarms import DAY_NAMES, awake, date_text, edit_alarm, editor_of, seconds_of, strip
from kardel_desk.stores import KINDS, Store

NOTE = {"Titolo": "a", "Nota": "x", "x": 600, "y": 600, "width": 3000, "height": 2250, "backcolor": 0xC0FFC0}
FAR = {"alarmdate": "01/01/2999", "alarmtime": "10:00:00"}
NO_ALARM = {"alarmdate": "", "alarmtime": "", "alarmweekday": 0, "alarmrepeatnumber": 0, "alarmrepeatevery": "",
            "interval": "", "alarmday": "", "alarmdaymonth": "", "mute": False, "weekdays": [False] * 7}
NEED_DATE = "Need before to set a full date."
MINUTES, HOURS, DAYS, MONTHS = 1, 2, 3, 4  # entries of the second list when there is a repeat number
WEEK = 8                                   # its last entry otherwise
CLOSE_BOX = (-10, -11)                      # of the window manager, from the top right corner of the client area
both_stores = pytest.mark.parametrize("store", KINDS)


class Editing:
    """One note on the desk and the editor of its alarm. It is about noon there."""

    def __init__(self, desk, note, store="registry", way="command"):
        self.desk, self.store = desk, Store(desk, store)
        self.store.seed([{**NOTE, **note}])
        self.zone = alarms.midday_zone()
        self.kardel = desk.run(env={"TZ": self.zone})
        self.note = self.kardel.note()
        if way == "command":
            self.editor = edit_alarm(self.kardel, self.note)
        else:
            awake(self.note)
            self.press(way)
            self.editor = editor_of(self.kardel)

    def again(self):
        """Opens the editor again."""
        self.editor = edit_alarm(self.kardel, self.note)
        return self.editor

    def now(self):
        return alarms.local_now(self.zone)

    def alarm(self):
        """The alarm as it is stored."""
        note = self.store.notes()[0]
        return {name: note[name] for name in NO_ALARM}

    def wait_alarm(self, **fields):
        self.desk.wait_equal(self.alarm, {**NO_ALARM, **fields}, 5, "the stored alarm")

    def press(self, *keys):
        self.desk.key(*keys)

    def box(self):
        """The message that replaces the editor."""
        return self.desk.wait(lambda: next(d for d in self.kardel.dialogs() if d.text == "Date"), 5, "the refusal")

    def refused(self):
        """Reads the message and closes it."""
        box = self.box()
        assert NEED_DATE in box.texts()
        box.press("OK")
        editor_again(self.desk, self.editor)


def editor_again(desk, editor):
    desk.wait(lambda: editor.text == "Set alarm" and editor.part("data").visible, 5, "the editor to come back")


# --- Opening


def test_without_an_alarm_the_editor_shows_today_and_the_time_now(desk):
    before = datetime.datetime.now(datetime.timezone.utc)
    on = Editing(desk, {}, way="F4")
    editor = on.editor
    waited = datetime.datetime.now(datetime.timezone.utc) - before
    shown = datetime.datetime.combine(on.now().date(), datetime.time.fromisoformat(editor.time))
    assert datetime.timedelta(0) <= on.now() - shown <= waited + datetime.timedelta(seconds=2)
    assert editor.date == date_text(on.now())
    assert editor.part("btnOK").text == "Start" and editor.countdown is None
    assert not editor.part("fraWeek").visible and not editor.ticked("chkMute")
    assert (editor.part("cboRepeat").text, editor.part("cboDay").text) == ("", "Weekday")
    assert not on.note.enabled  # the editor has to be answered first


def test_a_running_alarm_is_counted_down_in_the_editor_too(desk):
    on = Editing(desk, FAR)
    assert on.editor.label == "01/01/2999" and on.editor.time == "10:00:00"
    assert on.editor.part("btnOK").text == "Restart"
    first = seconds_of(on.editor.countdown)
    assert abs(first - (datetime.datetime(2999, 1, 1, 10) - on.now()).total_seconds()) < 3
    desk.wait(lambda: seconds_of(on.editor.countdown) <= first - 1, 5, "the seconds to pass")
    desk.wait(lambda: on.editor.countdown == strip(on.note).text, 5, "the strip to say the same")


def test_what_was_chosen_is_shown_again(desk):
    flags = [True, False, False, True, False, False, False]
    on = Editing(desk, {**FAR, "alarmweekday": WEEK, "weekdays": flags, "mute": True})
    assert on.editor.part("cboDay").text == "**Week**" and on.editor.ticked("chkMute")
    assert [on.editor.ticked(f"chkWeek({day})") for day in range(7)] == flags
    on.press("Escape")
    on.editor.wait_gone()
    assert on.alarm()["weekdays"] == flags


def test_a_repeat_that_is_not_in_the_list_stays_as_it_is(desk):
    on = Editing(desk, {**FAR, "alarmrepeatnumber": 90, "alarmrepeatevery": "mm"})
    assert (on.editor.part("cboRepeat").text, on.editor.part("cboDay").text) == ("90", "Minutes")
    on.editor.start()
    on.wait_alarm(**FAR, alarmrepeatnumber=90, alarmrepeatevery="mm")


# --- Each kind of alarm, set with the mouse


@both_stores
def test_an_alarm_for_one_day(desk, store):
    on = Editing(desk, {}, store)
    time = on.editor.time
    on.editor.step("date")
    tomorrow = on.now().date() + datetime.timedelta(1)
    desk.wait_equal(lambda: on.editor.date, date_text(tomorrow))
    on.editor.part("chkMute").click()
    on.editor.start()
    on.wait_alarm(alarmdate=date_text(tomorrow), alarmtime=time, mute=True)
    desk.wait(lambda: strip(on.note).visible and 86000 < seconds_of(strip(on.note).text) <= 86400, 5, "a day to wait")


@both_stores
def test_an_alarm_for_each_year_month_or_day(desk, store):
    on = Editing(desk, {}, store)
    today, time = on.now(), on.editor.time
    for part, pattern, stored in (("year", f"{today:%d/%m}/****", {"alarmdaymonth": f"{today:%d/%m}"}),
                                  ("month", f"{today:%d}/**/****", {"alarmday": f"{today:%d}"}),
                                  ("day", "**/**/****", {})):
        on.editor.click_date(part)
        desk.wait_equal(lambda: on.editor.label, f"{pattern} {time}")
        assert not on.editor.part("hdate").enabled  # a pattern has no next day
        on.editor.start()
        on.wait_alarm(alarmdate="*", alarmtime=time, interval=f"each{part}", **stored)
        assert on.again().label.strip() == pattern  # and is shown like that again
        assert on.editor.part("btnOK").text == "Restart" and on.editor.time == time


@both_stores
def test_an_alarm_on_a_weekday(desk, store):
    on = Editing(desk, {}, store)
    day = (on.now() + datetime.timedelta(2)).isoweekday()
    on.editor.choose("cboDay", day)
    desk.wait_equal(lambda: on.editor.part("cboDay").text, DAY_NAMES[day - 1])
    time = on.editor.time
    on.editor.start()
    on.wait_alarm(alarmdate=date_text(on.now() + datetime.timedelta(2)), alarmtime=time, alarmweekday=day)


def test_todays_weekday_whose_time_has_passed_is_due_next_week(desk):
    on = Editing(desk, {})
    on.editor.choose("cboDay", on.now().isoweekday())
    on.editor.step("hours", -1)
    time = desk.wait(lambda: on.editor.time if on.editor.time < f"{on.now():%H}" else None, 5, "an hour ago")
    on.editor.start()
    on.wait_alarm(alarmdate=date_text(on.now() + datetime.timedelta(7)), alarmtime=time,
                  alarmweekday=on.now().isoweekday())


@both_stores
def test_an_alarm_on_several_weekdays(desk, store):
    on = Editing(desk, {}, store)
    editor, days = on.editor, [(on.now() + datetime.timedelta(ahead)).isoweekday() for ahead in (2, 4)]
    low = editor.rect.height
    editor.choose("cboDay", WEEK)
    desk.wait(lambda: editor.part("fraWeek").visible and editor.rect.height > low, 5, "the weekdays")
    for day in days:
        editor.part(f"chkWeek({day - 1})").click()
        desk.wait(lambda: editor.ticked(f"chkWeek({day - 1})"), 5, "a tick")
    time = editor.time
    editor.start()
    on.wait_alarm(alarmdate=date_text(on.now() + datetime.timedelta(2)), alarmtime=time, alarmweekday=WEEK,
                  weekdays=[day in days for day in range(1, 8)])


@both_stores
def test_an_alarm_that_repeats(desk, store):
    on = Editing(desk, FAR, store)
    on.editor.choose("cboRepeat", 3)
    desk.wait_equal(lambda: on.editor.part("cboDay").text, "Minutes")
    for unit, code in ((MINUTES, "mm"), (HOURS, "hh"), (DAYS, "dd"), (MONTHS, "MM")):
        if unit != MINUTES:
            on.again().choose("cboDay", unit)
            desk.wait_equal(lambda: on.editor.chosen("cboDay"), unit)
        on.editor.start()
        on.wait_alarm(**FAR, alarmrepeatnumber=3, alarmrepeatevery=code)


def test_the_empty_repeat_number_brings_the_weekdays_back(desk):
    on = Editing(desk, {**FAR, "alarmrepeatnumber": 2, "alarmrepeatevery": "hh"})
    assert (on.editor.part("cboRepeat").text, on.editor.part("cboDay").text) == ("2", "Hours")
    on.editor.choose("cboRepeat", 0)
    desk.wait_equal(lambda: on.editor.part("cboDay").text, "Weekday")
    on.editor.start()
    on.wait_alarm(**FAR)


# --- The bars turn over like a clock


def test_hours_from_23_turn_into_the_next_day_and_back(desk):
    on = Editing(desk, {"alarmdate": "31/12/2998", "alarmtime": "23:30:15"})
    on.editor.step("hours")
    desk.wait_equal(lambda: (on.editor.time, on.editor.label), ("00:30:15", "01/01/2999"))
    on.editor.step("hours", -1)
    desk.wait_equal(lambda: (on.editor.time, on.editor.label), ("23:30:15", "31/12/2998"))


def test_seconds_and_minutes_carry_into_the_hours_and_the_day(desk):
    on = Editing(desk, {"alarmdate": "28/02/2999", "alarmtime": "23:59:59"})
    on.editor.step("seconds")
    desk.wait_equal(lambda: (on.editor.time, on.editor.label), ("00:00:00", "01/03/2999"))
    on.editor.step("minutes", -1)
    desk.wait_equal(lambda: (on.editor.time, on.editor.label), ("23:59:00", "28/02/2999"))
    on.editor.start()
    on.wait_alarm(alarmdate="28/02/2999", alarmtime="23:59:00")


def test_hours_of_each_day_turn_without_a_date(desk):
    on = Editing(desk, {"alarmdate": "*", "interval": "eachday", "alarmtime": "23:30:00"})
    on.editor.step("hours")
    desk.wait_equal(lambda: on.editor.time, "00:30:00")
    assert on.editor.date == "**/**/****"
    on.editor.start()
    on.wait_alarm(alarmdate="*", alarmtime="00:30:00", interval="eachday")


def test_the_wheel_turns_the_bar_under_it(desk):
    on = Editing(desk, FAR)
    on.editor.part("hmin").click(5)
    desk.wait_equal(lambda: on.editor.time, "09:59:00")
    on.desk.hands.click(*on.editor.part("hmin").point(), button=4)
    desk.wait_equal(lambda: on.editor.time, "10:00:00")


# --- Wildcards


def test_each_part_of_the_date_clicked_twice_is_a_full_date_again(desk):
    on = Editing(desk, {"alarmdate": "24/12/2998", "alarmtime": "10:00:00"})
    today = on.now()
    for part, wild, full in (("year", "24/12/****", f"24/12/{today:%Y}"), ("month", "24/**/****", f"24/{today:%m/%Y}"),
                             ("day", "**/**/****", date_text(today))):
        on.editor.click_date(part)
        desk.wait_equal(lambda: on.editor.label, f"{wild} 10:00:00")
        on.editor.click_date(part)
        desk.wait_equal(lambda: on.editor.label, f"{full} 10:00:00")
    assert on.editor.part("hdate").enabled


def test_a_click_between_the_parts_changes_nothing(desk):
    on = Editing(desk, FAR)
    for twips in (350, 645, 1200):
        on.editor.click_date(twips)
    desk.stays(lambda: on.editor.label == "01/01/2999", 0.3)


def test_the_hint_appears_under_the_mouse(desk):
    on = Editing(desk, FAR)

    def hints():
        return [part.text for part in on.editor.parts().values() if part.visible and "repeatable" in part.text]

    assert not hints()
    desk.hands.move(*on.editor.part("data").point())
    # Neither has an id of its own: they are recognised by their texts.
    desk.wait(lambda: {" Clic over any portion of date to set a repeatable date ", "*"} <= visible_texts(on), 5,
              "hint and mark")
    desk.hands.move(*on.editor.part("btnOK").point())
    desk.wait(lambda: not hints() and "*" not in visible_texts(on), 5, "the hint to go")


def visible_texts(on):
    return {info["text"] for info in on.desk.probe.ask("children", on.editor.hwnd) if info["visible"]}


def test_a_weekday_or_a_repeat_on_a_pattern_is_refused(desk):
    on = Editing(desk, {"alarmdate": "*", "interval": "eachday", "alarmtime": "10:00:00"})
    before = on.store.raw()
    on.editor.choose("cboDay", 3)
    on.refused()
    assert (on.editor.chosen("cboDay"), on.editor.part("cboDay").text) == (0, "Weekday")
    on.editor.choose("cboRepeat", 2)
    on.refused()
    assert on.editor.chosen("cboRepeat") == 0 and on.editor.part("cboDay").text == "Weekday"
    assert on.editor.date == "**/**/****" and on.store.raw() == before


def test_a_wildcard_beside_a_weekday_is_refused(desk):
    on = Editing(desk, {})
    today = on.editor.date
    on.editor.choose("cboDay", 3)
    on.editor.click_date("year")
    on.refused()
    assert on.editor.date == today and on.editor.chosen("cboDay") == 3


# --- Leaving


@both_stores
def test_stop_clears_the_alarm(desk, store):
    on = Editing(desk, {"alarmdate": "*", "interval": "eachyear", "alarmdaymonth": "24/12", "alarmtime": "10:00:00",
                        "mute": True}, store)
    assert strip(on.note).visible
    on.editor.stop()
    desk.wait(lambda: not strip(on.note).visible, 5, "the strip to go")
    on.wait_alarm()
    assert on.kardel.exit() == 0
    assert not strip(desk.run().note()).visible


def test_closing_the_editor_changes_nothing(desk):
    on = Editing(desk, FAR)
    before = on.store.raw()
    for way in ("close box", "Escape", "alt+F4"):
        on.editor.click_date("day")
        on.editor.part("chkMute").click()
        on.editor.step("hours")
        desk.wait_equal(lambda: (on.editor.time, on.editor.ticked("chkMute")), ("11:00:00", True))
        if way == "close box":
            left, top, width, _ = on.editor.info["client"]
            desk.click(left + width + CLOSE_BOX[0], top + CLOSE_BOX[1])
        else:
            on.press(way)
        on.editor.wait_gone()
        assert on.again().label == "01/01/2999" and not on.editor.ticked("chkMute")
        assert on.store.raw() == before


def test_the_note_has_the_keyboard_again_afterwards(desk):
    on = Editing(desk, FAR, way="F4")
    on.editor.start()
    desk.wait(lambda: on.note.has_focus and on.note.enabled, 5, "the note to have the keyboard")
    on.press("F4")
    editor_of(on.kardel)


# --- By keyboard alone


def test_tab_visits_every_control_in_the_order_of_reading(desk):
    on = Editing(desk, FAR)
    for name in ("hdate", "hore", "hmin", "hsec", "cboRepeat", "cboDay", "chkMute", "btnOK", "btnCancel", "data"):
        on.press("Tab")
        on.editor.wait_focus(name)
    on.press("shift+Tab")
    on.editor.wait_focus("btnCancel")


def test_alt_with_a_letter_reaches_every_row(desk):
    on = Editing(desk, FAR)
    for letter, name in (("h", "hore"), ("r", "cboRepeat"), ("d", "data")):
        on.press(f"alt+{letter}")
        on.editor.wait_focus(name)
    on.press("alt+m")
    desk.wait(lambda: on.editor.ticked("chkMute"), 5, "the tick")
    on.press("alt+s")
    on.editor.wait_gone()
    on.wait_alarm(**FAR, mute=True)
    on.again()
    on.press("alt+t")
    on.editor.wait_gone()
    on.wait_alarm()


@both_stores
def test_each_year_by_keyboard(desk, store):
    on = Editing(desk, {}, store)
    today = on.now()
    on.press("Right", "Right", "space")
    desk.wait_equal(lambda: on.editor.date, f"{today:%d/%m}/****")
    on.press("alt+h", "Home", "Right", "Right", "Tab", "Home", "Tab", "Home")
    desk.wait_equal(lambda: on.editor.time, "02:00:00")
    on.press("Return")
    on.editor.wait_gone()
    on.wait_alarm(alarmdate="*", alarmtime="02:00:00", interval="eachyear", alarmdaymonth=f"{today:%d/%m}")


def test_a_repeat_by_keyboard(desk):
    on = Editing(desk, FAR)
    on.press("alt+r", "End", "Up", "Up", "Up", "Up", "Up", "Tab", "Down", "Down")
    desk.wait_equal(lambda: (on.editor.part("cboRepeat").text, on.editor.part("cboDay").text), ("35", "Days"))
    on.press("Return")
    on.editor.wait_gone()
    on.wait_alarm(**FAR, alarmrepeatnumber=35, alarmrepeatevery="dd")


def test_weekdays_from_an_open_list_by_keyboard(desk):
    on = Editing(desk, {})
    editor, low, time = on.editor, on.editor.rect.height, on.editor.time
    on.press("alt+r", "Tab", "alt+Down")
    desk.wait(lambda: editor.part("cboDay").send(alarms.CB_GETDROPPEDSTATE), 5, "the open list")
    on.press("End")
    desk.wait_equal(lambda: editor.chosen("cboDay"), WEEK)
    assert editor.part("cboDay").send(alarms.CB_GETDROPPEDSTATE), "the list stays open until it is left"
    on.press("Return")
    desk.wait(lambda: editor.part("fraWeek").visible and editor.rect.height > low, 5, "the weekdays")
    day = (on.now() + datetime.timedelta(1)).isoweekday()
    on.press(*["Tab"] * day, "space")
    desk.wait(lambda: editor.ticked(f"chkWeek({day - 1})"), 5, "the tick")
    on.press("Return")
    editor.wait_gone()
    on.wait_alarm(alarmdate=date_text(on.now() + datetime.timedelta(1)), alarmtime=time, alarmweekday=WEEK,
                  weekdays=[d == day for d in range(1, 8)])


def test_weekdays_of_a_pattern_are_refused_once_the_open_list_is_left(desk):
    on = Editing(desk, {"alarmdate": "*", "interval": "eachday", "alarmtime": "10:00:00"})
    on.press("alt+r", "Tab", "alt+Down", "Down", "Down")
    desk.wait_equal(lambda: on.editor.chosen("cboDay"), 2)
    on.press("Return")
    on.box()
    on.press("Return")
    editor_again(desk, on.editor)
    desk.wait_equal(lambda: on.editor.chosen("cboDay"), 0)
