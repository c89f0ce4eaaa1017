"""Alarms over time: restarts and power cuts, what was missed meanwhile, the ends of months and years, changes of the
clock."""

import datetime

import pytest
from kardel_desk import alarms
from kardel_desk.alarms import at, date_text, rings_no_more, seconds_of, strip, time_text, wait_ringing
from kardel_desk.one_note import FAR_ALARM
from kardel_desk.stores import KINDS, Store

NOTE = {"Titolo": "a", "Nota": "x", "x": 600, "y": 600, "width": 3000, "height": 2250, "backcolor": 0xC0FFC0}
both_stores = pytest.mark.parametrize("store", KINDS)


def due_text(desk, note):
    """When the alarm is due according to the strip, which shows the time left again afterwards."""
    line = strip(note)
    line.click(20, button=3)
    text = desk.wait(lambda: line.text.endswith("h.") and line.text, 5, "the due time")
    line.click(20, button=3)
    desk.wait(lambda: not line.text.endswith("h."), 5, "the countdown")
    return text.removesuffix("  h.")


# --- Restarts


@both_stores
@pytest.mark.parametrize("end", ("exit", "kill"))
def test_an_alarm_set_just_before_the_end_is_there_after_a_restart(desk, store, end):
    kept, zone = Store(desk, store), alarms.midday_zone()
    kept.seed([NOTE])
    kardel = desk.run(env={"TZ": zone})
    editor = alarms.edit_alarm(kardel, kardel.note())
    editor.step("date")
    time = editor.time
    editor.start()
    desk.wait(lambda: strip(kardel.note()).visible, 5, "the countdown")
    tomorrow = alarms.local_now(zone) + datetime.timedelta(1)
    desk.wait_equal(lambda: (kept.each("alarmdate"), kept.each("alarmtime")), ([date_text(tomorrow)], [time]))
    if end == "exit":
        assert kardel.exit() == 0
    else:
        kardel.kill()
    note = desk.run(env={"TZ": zone}).note()
    desk.wait(lambda: 80000 < seconds_of(strip(note).text) <= 86400, 5, "the countdown goes on")
    assert due_text(desk, note) == f"{date_text(tomorrow)} {time[:5]}"


@both_stores
def test_a_missed_repeat_goes_on_in_step(desk, store):
    kept, zone = Store(desk, store), alarms.midday_zone()
    now = alarms.local_now(zone).replace(microsecond=0)
    missed = now - datetime.timedelta(hours=5)  # in steps of 90 minutes: due 3:30, 2:00 and 0:30 ago, then in 1:00
    kept.seed([{**NOTE, **at(missed), "alarmrepeatnumber": 90, "alarmrepeatevery": "mm"}])
    note = desk.run(env={"TZ": zone}).note()
    following = missed + datetime.timedelta(hours=6)
    desk.wait(lambda: 3400 < seconds_of(strip(note).text) <= 3600, 5, "an hour to wait")
    desk.wait_equal(lambda: (kept.each("alarmdate"), kept.each("alarmtime")),
                    ([date_text(following)], [time_text(following)]))
    rings_no_more(note)


@both_stores
def test_a_missed_daily_alarm_waits_for_tomorrow_and_a_missed_single_one_rings(desk, store):
    kept, zone = Store(desk, store), alarms.midday_zone()
    earlier = alarms.local_now(zone) - datetime.timedelta(hours=1)
    kept.seed([{**NOTE, "Titolo": "daily", "alarmdate": "*", "interval": "eachday", "alarmtime": time_text(earlier)},
               {**NOTE, **at(earlier), "Titolo": "single", "y": 4500}])
    kardel = desk.run(env={"TZ": zone})
    wait_ringing(kardel.note("single"))
    daily = kardel.note("daily")
    assert 82000 < seconds_of(strip(daily).text) <= 82800
    rings_no_more(daily)


# --- Where months and years end


@pytest.mark.parametrize("alarm, rings, following", (
    ({"alarmdate": "*", "interval": "eachmonth", "alarmday": "31"}, "2026-01-31", "03/03/2026"),
    ({"alarmdate": "*", "interval": "eachmonth", "alarmday": "31"}, "2028-01-31", "02/03/2028"),
    ({"alarmdate": "*", "interval": "eachmonth", "alarmday": "15"}, "2026-12-15", "15/01/2027"),
    ({"alarmdate": "*", "interval": "eachyear", "alarmdaymonth": "29/02"}, "2028-02-29", "01/03/2029"),
    ({"alarmdate": "*", "interval": "eachday"}, "2026-12-31", "01/01/2027"),
    ({"alarmdate": "28/12/2026", "alarmweekday": 1}, "2026-12-28", "04/01/2027"),
    ({"alarmdate": "30/11/2026", "alarmrepeatnumber": 25, "alarmrepeatevery": "MM"}, "2026-11-30", "30/12/2028"),
))
def test_the_next_time_after_the_end_of_a_month_or_year(desk, alarm, rings, following):
    clock = desk.clock(f"{rings} 09:59:00")
    desk.seed_registry({}, [{**NOTE, **alarm, "alarmtime": "10:00:00"}])
    note = desk.run(clock=clock).note()
    desk.wait(lambda: 0 < seconds_of(strip(note).text) <= 60, 5, "the last minute")
    clock.jump(f"{rings} 10:00:00")
    wait_ringing(note)
    strip(note).click(20)
    desk.wait(lambda: seconds_of(strip(note).text) > 60, 5, "the next countdown")
    assert due_text(desk, note) == f"{following} 10:00"
    stored = desk.stored_note(1)
    if alarm["alarmdate"] == "*":
        kept = {name: stored.get(name) for name in alarm}
        assert kept == alarm  # the day that February lacks is kept
    else:
        assert stored["alarmdate"] == following


# --- The clock is changed, the computer sleeps


def test_an_alarm_that_was_due_while_the_computer_slept_rings_once(desk):
    clock = desk.clock("2026-06-15 20:00:00")
    desk.seed_registry({}, [{**NOTE, "alarmdate": "*", "interval": "eachday", "alarmtime": "21:00:00"}])
    note = desk.run(clock=clock).note()
    desk.wait(lambda: 3500 < seconds_of(strip(note).text) <= 3600, 5, "an hour to wait")
    clock.jump("2026-06-18 08:00:00")
    wait_ringing(note)
    strip(note).click(20)
    rings_no_more(note)
    assert due_text(desk, note) == "19/06/2026 21:00"


def test_a_clock_set_back_only_lengthens_the_wait(desk):
    clock = desk.clock("2026-06-15 20:59:30")
    desk.seed_registry({}, [{**NOTE, "alarmdate": "15/06/2026", "alarmtime": "21:00:00"}])
    note = desk.run(clock=clock).note()
    desk.wait(lambda: seconds_of(strip(note).text) <= 30, 5, "half a minute")
    clock.jump("2026-06-15 20:00:00")
    desk.wait(lambda: 3590 <= seconds_of(strip(note).text) <= 3600, 5, "an hour")
    clock.jump("2026-06-15 20:59:59")
    wait_ringing(note)


def test_summer_time_neither_loses_nor_doubles_an_alarm(desk):
    clock = desk.clock("2026-03-29 01:59:59", "Europe/Rome")
    desk.seed_registry({"DontDeleteWhenPlay": True}, [{**NOTE, "alarmdate": "29/03/2026", "alarmtime": "03:00:01"}])
    kardel = desk.run(clock=clock)
    note = kardel.note()
    wait_ringing(note)  # two seconds later: there is no hour from two to three
    strip(note).click(20)
    desk.wait(lambda: not strip(note).visible, 5, "the strip to go")
    rings_no_more(note)


ALL_DAY = [{**NOTE, "Titolo": "daily", "alarmdate": "*", "interval": "eachday", "alarmtime": "21:00:00"},
           {**NOTE, "Titolo": "weekly", "x": 4500, "alarmdate": "15/06/2026", "alarmweekday": 1, "alarmtime": "21:00:00"},
           {**NOTE, "Titolo": "hourly", "x": 8400, "alarmdate": "15/06/2026", "alarmtime": "21:00:00",
            "alarmrepeatnumber": 1, "alarmrepeatevery": "hh"}]


def test_alarms_follow_a_clock_that_was_a_year_ahead_and_is_corrected(desk):
    clock = desk.clock("2026-06-15 20:59:00")
    desk.seed_registry({}, ALL_DAY)
    kardel = desk.run(clock=clock)
    clock.jump("2027-06-15 21:00:00")
    for title in ("daily", "weekly", "hourly"):
        wait_ringing(kardel.note(title))
        strip(kardel.note(title)).click(20)
        rings_no_more(kardel.note(title))
    clock.jump("2026-06-15 20:30:00")
    for title in ("daily", "weekly", "hourly"):
        note = kardel.note(title)
        desk.wait(lambda: 1700 < seconds_of(strip(note).text) <= 1800, 5, f"{title}: half an hour to wait")
        assert due_text(desk, note) == "15/06/2026 21:00"
    assert desk.stored_note(2)["alarmdate"] == "15/06/2026"  # Tuesday by the wrong clock
    assert (desk.stored_note(3)["alarmdate"], desk.stored_note(3)["alarmtime"]) == ("15/06/2026", "21:00:00")
    clock.jump("2026-06-15 21:00:00")
    for title in ("daily", "weekly", "hourly"):
        wait_ringing(kardel.note(title))


def test_what_rang_does_not_ring_again_when_the_clock_goes_back_by_an_hour(desk):
    clock = desk.clock("2026-10-25 02:29:50", "Europe/Rome")
    at_half_past = {"alarmtime": "02:30:00", "alarmdate": "25/10/2026"}
    desk.seed_registry({}, [{**ALL_DAY[0], **at_half_past, "alarmdate": "*"},
                            {**ALL_DAY[2], **at_half_past}])
    kardel = desk.run(clock=clock)
    daily, hourly = kardel.note("daily"), kardel.note("hourly")
    for note in (daily, hourly):
        wait_ringing(note)
        strip(note).click(20)
        rings_no_more(note)
    clock.jump("2026-10-25 01:40:00")
    desk.wait(lambda: seconds_of(strip(hourly).text) > 6500, 5, "the hourly one to see it")
    assert due_text(desk, hourly) == "25/10/2026 03:30"
    assert due_text(desk, daily) == "26/10/2026 02:30"
    clock.jump("2026-10-25 02:30:01")
    rings_no_more(daily)
    rings_no_more(hourly)


def ends_in_dots(strip):
    """Whether the time left ends in something as low as dots, after digits of full height."""
    picture = strip.image().convert("L")
    columns = [[y for y in range(picture.height) if picture.getpixel((x, y)) < 128] for x in range(picture.width)]
    inked = [column for column in columns if column]
    tall = max(max(column) - min(column) for column in inked)
    return tall >= 6 and all(max(column) - min(column) <= 2 for column in inked[-3:])


def test_a_narrow_note_shows_by_dots_that_its_time_left_is_cut(desk):
    """"12 d   5" would be read as five hours."""
    desk.seed_registry({}, [{**NOTE, "Titolo": "narrow", "width": 1140, **FAR_ALARM},
                            {**NOTE, "Titolo": "wide", "x": 12000, "width": 3000, **FAR_ALARM}])
    kardel = desk.run()
    desk.wait(lambda: ends_in_dots(strip(kardel.note("narrow"))), 5, "the dots")
    assert not ends_in_dots(strip(kardel.note("wide")))
