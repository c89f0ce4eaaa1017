"""Alarms that ring: the countdown, flashing and sound, every way to end them, and what becomes of the note."""

import datetime
import time

import pytest
from kardel_desk import alarms
from kardel_desk.alarms import WHITE, at, date_text, rings_no_more, seconds_of, strip, time_text, wait_ringing
from kardel_desk.stores import KINDS, Store

GREEN = (192, 255, 192)
NOTE = {"Titolo": "a", "Nota": "x", "x": 600, "y": 600, "width": 3000, "height": 2250, "backcolor": 0xC0FFC0}
OTHER = {**NOTE, "Titolo": "other", "y": 4500}
DUE = {"alarmdate": "01/01/2020", "alarmtime": "10:00:00"}  # a single date that has passed rings at the start
CLEARED = {"alarmdate": "", "alarmtime": "", "alarmweekday": 0, "alarmrepeatnumber": 0, "alarmrepeatevery": "",
           "interval": "", "alarmday": "", "alarmdaymonth": ""}
STRIP_HEIGHT = 20  # pixels of an iconized note
SOUND_EVERY = 3.0  # seconds
SLACK = 0.4
both_stores = pytest.mark.parametrize("store", KINDS)


def run(desk, *notes, store="registry", env=None, **settings):
    kept = Store(desk, store)
    kept.seed([dict(note) for note in notes], **settings)
    return desk.run(env=env), kept


def due_soon(desk, seed, zone, ahead=4):
    """Starts the program with an alarm that is due once it is ready. `seed` stores notes for a due instant."""
    while True:
        due = alarms.local_now(zone).replace(microsecond=0) + datetime.timedelta(seconds=ahead)
        seed(due)
        kardel = desk.run(env={"TZ": zone})
        if alarms.local_now(zone) < due - datetime.timedelta(seconds=2):
            return kardel, due
        kardel.kill()  # on a busy machine it may have taken too long to start
        ahead *= 3


def silence(note):
    strip(note).click(20)


def titles(kardel):
    return [note.title for note in kardel.notes()]


def stored_alarm(kept, number=1):
    note = kept.notes()[number - 1]
    return {name: note[name] for name in CLEARED}


# --- From the countdown to the ring


@both_stores
def test_an_alarm_counts_down_rings_once_and_takes_its_note_along(desk, store):
    zone, kept = alarms.midday_zone(), Store(desk, store)
    kardel, due = due_soon(desk, lambda due: kept.seed([{**NOTE, **at(due)}, OTHER]), zone)
    note, seen = kardel.note("a"), []
    while note.colour != WHITE:
        left = strip(note).text
        if left not in seen:
            seen.append(left)
            assert abs(seconds_of(left) - (due - alarms.local_now(zone)).total_seconds()) < 2
        assert alarms.local_now(zone) < due + datetime.timedelta(seconds=15), "it never rang"
    assert alarms.local_now(zone) >= due
    assert seen == sorted(set(seen), key=seconds_of, reverse=True) and len(seen) >= 2
    silence(note)
    desk.wait_equal(lambda: titles(kardel), ["other"])  # no question
    assert not kardel.dialogs() and kept.each("Titolo") == ["other"]


def test_a_ringing_note_turns_white_and_back_every_half_second(desk):
    kardel, _ = run(desk, {**NOTE, **DUE})
    note = kardel.note()
    wait_ringing(note)
    changes, last, end = [], WHITE, time.monotonic() + 3.2
    while time.monotonic() < end:
        colour = note.colour
        assert colour in (WHITE, GREEN)
        if colour != last:
            changes.append(time.monotonic())
            last = colour
    gaps = [later - earlier for earlier, later in zip(changes, changes[1:])]
    assert 4 <= len(changes) <= 8 and 0.35 < sorted(gaps)[len(gaps) // 2] < 0.65
    assert strip(note).visible and strip(note).text == "0:00:00"
    assert strip(note).pixel(-30, -2) in (WHITE, GREEN)  # the strip flashes along


def test_several_notes_ring_at_once_and_each_is_stopped_by_itself(desk):
    kardel, kept = run(desk, {**NOTE, **DUE}, {**OTHER, **DUE}, DontDeleteWhenPlay=True)
    first, second = kardel.note("a"), kardel.note("other")
    wait_ringing(first)
    wait_ringing(second)
    silence(first)
    rings_no_more(first)
    wait_ringing(second)
    silence(second)
    rings_no_more(second)
    assert titles(kardel) == ["a", "other"]


# --- The sound


def test_the_alarm_sounds_at_once_and_every_three_seconds_until_it_is_stopped(desk):
    ears = desk.ears
    since = ears.seconds
    kardel, _ = run(desk, {**NOTE, **DUE}, env=ears.env)
    note = kardel.note()
    first = desk.wait(lambda: ears.onsets(since), 15, "the first sound")[0]
    wait_ringing(note)
    second = desk.wait(lambda: ears.onsets(since)[1:], SOUND_EVERY + 3, "the second sound")[0]
    assert abs(second - first - SOUND_EVERY) < SLACK
    silence(note)
    desk.wait(lambda: not kardel.notes(), 5, "the note to go")
    desk.stays(lambda: len(ears.onsets(since)) == 2, SOUND_EVERY + SLACK + 0.3, "silence")


def test_a_muted_alarm_flashes_in_silence(desk):
    ears = desk.ears
    since = ears.seconds
    kardel, _ = run(desk, {**NOTE, **DUE, "mute": True}, env=ears.env)
    note = kardel.note()
    wait_ringing(note)
    desk.stays(lambda: not ears.onsets(since), SOUND_EVERY + SLACK + 0.3, "silence")
    wait_ringing(note)
    silence(note)
    desk.wait(lambda: not kardel.notes(), 5, "the note to go")


# --- What comes after


@both_stores
def test_a_note_that_is_to_stay_loses_its_alarm_and_does_not_ring_again(desk, store):
    kardel, kept = run(desk, {**NOTE, **DUE}, store=store, DontDeleteWhenPlay=True)
    note = kardel.note()
    wait_ringing(note)
    silence(note)
    desk.wait(lambda: not strip(note).visible, 5, "the strip to go")
    rings_no_more(note)
    desk.wait_equal(lambda: stored_alarm(kept), CLEARED)
    assert kardel.exit() == 0
    note = desk.run().note()
    assert not strip(note).visible
    rings_no_more(note)


@both_stores
def test_recurring_alarms_are_armed_for_their_next_time(desk, store):
    zone, kept = alarms.midday_zone(), Store(desk, store)

    def seed(due):
        spots = iter([(x, y) for y in (600, 4500) for x in (600, 4500, 9000)])
        kinds = {"day": {"alarmdate": "*", "interval": "eachday"},
                 "month": {"alarmdate": "*", "interval": "eachmonth", "alarmday": f"{due:%d}"},
                 "year": {"alarmdate": "*", "interval": "eachyear", "alarmdaymonth": f"{due:%d/%m}"},
                 "weekday": {"alarmdate": date_text(due), "alarmweekday": due.isoweekday()},
                 "repeat": {"alarmdate": date_text(due), "alarmrepeatnumber": 90, "alarmrepeatevery": "mm"}}
        kept.seed([{**NOTE, "Titolo": title, "x": x, "y": y, "mute": True, "alarmtime": time_text(due), **kind}
                   for (title, kind), (x, y) in zip(kinds.items(), spots)])

    kardel, due = due_soon(desk, seed, zone)
    notes = kardel.notes()
    for note in notes:
        wait_ringing(note)
    for note in notes:
        silence(note)
    day = datetime.timedelta(1)
    desk.wait(lambda: all(seconds_of(strip(note).text) > 60 for note in notes), 5, "the next countdowns")
    for note in notes:
        strip(note).click(20, button=3)
    month = due.replace(year=due.year + due.month // 12, month=due.month % 12 + 1, day=1) + (due.day - 1) * day
    year = due.replace(year=due.year + 1) if (due.month, due.day) != (2, 29) else due + 366 * day
    expected = {"day": due + day, "month": month, "year": year, "weekday": due + 7 * day,
                "repeat": due + datetime.timedelta(minutes=90)}
    for note in notes:
        desk.wait_equal(lambda: strip(note).text, f"{expected[note.title]:%d/%m/%Y %H:%M}  h.", 5, note.title)
    assert kept.each("alarmdate") == ["*", "*", "*", date_text(due + 7 * day), date_text(expected["repeat"])]
    assert kept.each("alarmtime") == [time_text(due)] * 4 + [time_text(expected["repeat"])]
    assert kept.each("interval") == ["eachday", "eachmonth", "eachyear", "", ""]
    assert all(note.colour == GREEN for note in notes)


# --- The strip under the right button


def test_a_right_click_shows_when_it_is_due_and_the_next_one_what_is_left(desk):
    kardel, _ = run(desk, {**NOTE, "alarmdate": "24/12/2998", "alarmtime": "18:30:15"})
    line = strip(kardel.note())
    assert seconds_of(line.text) > 86400 and " d   " in line.text
    line.click(20, button=3)
    desk.wait_equal(lambda: line.text, "24/12/2998 18:30  h.")
    desk.stays(lambda: line.text == "24/12/2998 18:30  h.", 0.8, "the due time")
    line.click(20, button=3)
    first = seconds_of(desk.wait(lambda: " d   " in line.text and line.text, 5, "the countdown"))
    desk.wait(lambda: seconds_of(line.text) < first, 5, "the seconds to pass")


def test_a_right_click_does_not_stop_the_alarm(desk):
    kardel, kept = run(desk, {**NOTE, **DUE})
    note = kardel.note()
    wait_ringing(note)
    strip(note).click(20, button=3)
    desk.wait_equal(lambda: strip(note).text, "01/01/2020 10:00  h.")
    wait_ringing(note)
    desk.wait(lambda: note.colour == GREEN, 5, "it to flash on")
    wait_ringing(note)
    assert kept.each("alarmtime") == ["10:00:00"]


# --- Iconized, hidden, closed


@both_stores
def test_an_iconized_note_is_restored_to_ring_if_that_is_wanted(desk, store):
    kardel, kept = run(desk, {**NOTE, **DUE, "iconized": True}, store=store, RestoreWhenPlay=True)
    note = kardel.note()
    desk.wait_equal(lambda: note.rect, (40, 40, 200, 150))
    wait_ringing(note)
    assert strip(note).visible
    desk.wait_equal(lambda: kept.each("iconized"), [False])
    silence(note)
    desk.wait(lambda: not kardel.notes(), 5, "the note to go")


def test_otherwise_its_title_flashes_and_a_press_on_it_ends_that(desk):
    kardel, kept = run(desk, {**NOTE, **DUE, "iconized": True}, DontDeleteWhenPlay=True)
    note = kardel.note()
    title = note.part("lbl2")
    desk.wait(lambda: title.pixel(-30, 3) == WHITE, 10, "a white title")
    desk.wait(lambda: title.pixel(-30, 3) != WHITE, 5, "it to flash")
    assert note.rect.height == STRIP_HEIGHT and not strip(note).visible
    note.click("lbl", 60)
    desk.wait_equal(lambda: stored_alarm(kept), CLEARED)
    desk.stays(lambda: title.pixel(-30, 3) != WHITE, 1.2, "the title's own colour")
    assert note.rect.height == STRIP_HEIGHT


def test_hidden_notes_come_back_when_one_of_them_rings(desk):
    zone = alarms.midday_zone()
    kardel, _ = due_soon(desk, lambda due: desk.seed_registry({}, [{**NOTE, **at(due)}, OTHER]), zone)
    kardel.tray.click()
    desk.wait_equal(kardel.visible_notes, [], 2)
    note = kardel.note("a")
    desk.wait(lambda: note.visible, 30, "the ringing note")
    wait_ringing(note)
    menu = kardel.tray.menu()
    assert "Hide All" in menu.captions  # no longer "Show All"
    menu.close()
    silence(note)
    desk.wait_equal(lambda: titles(kardel), ["other"])


@both_stores
def test_a_closed_note_opens_to_ring(desk, store):
    kardel, kept = run(desk, {**NOTE, **DUE, "closed": True}, store=store)
    note = kardel.note()
    wait_ringing(note)
    desk.wait_equal(lambda: kept.each("closed"), [False])
    silence(note)
    desk.wait(lambda: not kardel.notes(), 5, "the note to go")


# --- Other things done to a ringing note


def press_title(desk, kardel, note):
    note.drag("lbl", by=(120, 60), dx=60)


def close_picture(desk, kardel, note):
    note.click("lbl2", 23, 9)


def iconize_picture(desk, kardel, note):
    note.click("lbl2", 7, 9)


def hide_all(desk, kardel, note):
    kardel.tray.click()


def iconize_all(desk, kardel, note):
    kardel.tray.menu().choose("Iconize All")


WAYS = {way.__name__: way for way in (press_title, close_picture, iconize_picture, hide_all, iconize_all)}


@pytest.mark.parametrize("way", WAYS)
def test_whatever_is_done_to_a_ringing_note_ends_its_alarm(desk, way):
    kardel, kept = run(desk, {**NOTE, **DUE}, OTHER)
    note = kardel.note("a")
    wait_ringing(note)
    WAYS[way](desk, kardel, note)
    desk.wait_equal(lambda: titles(kardel), ["other"])
    desk.wait_equal(lambda: kept.each("Titolo"), ["other"])
    kardel.tray.window().send(0)
    assert not kardel.dialogs() and kardel.exit() == 0


@pytest.mark.parametrize("way", WAYS)
def test_and_is_done_to_it_as_usual_when_the_note_is_to_stay(desk, way):
    kardel, kept = run(desk, {**NOTE, **DUE}, OTHER, DontDeleteWhenPlay=True)
    note = kardel.note("a")
    wait_ringing(note)
    WAYS[way](desk, kardel, note)
    desk.wait_equal(lambda: stored_alarm(kept), CLEARED)
    iconized, shown = way in ("iconize_picture", "iconize_all"), way not in ("close_picture", "hide_all")
    desk.wait_equal(lambda: (note.visible, note.rect), (shown, (40, 40, 200, STRIP_HEIGHT if iconized else 150)))
    desk.wait_equal(lambda: kept.each("closed"), [way == "close_picture", False])
    if shown:
        rings_no_more(note) if not iconized else desk.stays(lambda: note.part("lbl2").pixel(-30, 3) != WHITE, 1.2)


@both_stores
def test_exit_keeps_a_ringing_note_and_it_rings_again(desk, store):
    kardel, kept = run(desk, {**NOTE, **DUE}, store=store)
    wait_ringing(kardel.note())
    assert kardel.exit() == 0
    assert (kept.each("alarmdate"), kept.each("alarmtime")) == (["01/01/2020"], ["10:00:00"])
    wait_ringing(desk.run().note())


def test_deleting_a_ringing_note_asks_as_always(desk):
    kardel, kept = run(desk, {**NOTE, **DUE}, OTHER)
    note = kardel.note("a")
    wait_ringing(note)
    note.click("pic", 9, 7)
    box = kardel.dialog()
    wait_ringing(note)  # it does not wait for the answer
    box.press("Yes")
    desk.wait_equal(lambda: titles(kardel), ["other"])
    desk.wait_equal(lambda: kept.each("Titolo"), ["other"])


def test_what_is_being_typed_when_the_alarm_comes_is_kept(desk):
    zone, kept = alarms.midday_zone(), Store(desk, "registry")
    kardel, _ = due_soon(desk, lambda due: kept.seed([{**NOTE, **at(due)}], DontDeleteWhenPlay=True), zone)
    note = kardel.note()
    note.append("yz")
    desk.wait(lambda: note.part("txtNota").pixel(-30, -3) == WHITE, 30, "the alarm")
    desk.type("!")
    desk.wait_equal(lambda: note.part("txtNota").text, "xyz!")
    desk.click_desktop()
    desk.wait(lambda: strip(note).visible, 5, "the strip to stop it with")
    silence(note)
    rings_no_more(note)
    assert kept.each("Nota") == ["xyz!"]


def test_a_note_that_rings_comes_above_what_covers_it_and_goes_back(desk):
    zone, kept = alarms.midday_zone(), Store(desk, "registry")
    kardel, _ = due_soon(desk, lambda due: kept.seed(
        [{**NOTE, **at(due), "alarmrepeatnumber": 1, "alarmrepeatevery": "hh"},
         {**OTHER, "y": NOTE["y"], "topmost": True}]), zone)
    note, other = kardel.note("a"), kardel.note("other")
    other.awake()
    wait_ringing(note)
    assert note.topmost and kardel.stacking()[0] == "a"
    desk.stays(lambda: other.has_focus, 1, "the keyboard")
    silence(note)
    rings_no_more(note)
    assert not note.topmost and other.topmost
    assert kept.each("topmost") == [False, True]


@pytest.mark.parametrize("part", ("pic_time", "nota", "lbl"))
def test_a_note_that_rings_is_silenced_while_a_dialog_waits(desk, part):
    kardel, kept = run(desk, {**NOTE, **DUE}, OTHER, DontDeleteWhenPlay=True)
    note = kardel.note("a")
    wait_ringing(note)
    kardel.tray.command("dyn(11)")
    box = kardel.dialog()
    desk.wait(lambda: not note.enabled, 5, "the dialog to want its answer")
    wait_ringing(note)
    desk.click(*note.part(part).point(20, 5))
    rings_no_more(note)
    assert box.visible and not note.enabled
    desk.wait_equal(lambda: stored_alarm(kept), CLEARED)
    box.press("OK")
    desk.wait(lambda: note.enabled, 5, "the answer")


def test_a_note_that_rings_while_it_is_edited_shows_something_to_click(desk):
    zone, kept = alarms.midday_zone(), Store(desk, "registry")
    kardel, _ = due_soon(desk, lambda due: kept.seed([{**NOTE, **at(due)}], DontDeleteWhenPlay=True), zone)
    note = kardel.note()
    note.append("yz")
    desk.wait(lambda: strip(note).visible, 30, "the strip")
    silence(note)
    rings_no_more(note)
    desk.wait_equal(lambda: kept.each("Nota"), ["xyz"])


def test_a_new_alarm_set_on_a_ringing_note_silences_it(desk):
    kardel, kept = run(desk, {**NOTE, **DUE})
    note = kardel.note()
    wait_ringing(note)
    editor = alarms.edit_alarm(kardel, note)
    wait_ringing(note)  # while the editor is open
    assert editor.part("btnOK").text == "Start"
    editor.click_date("day")
    editor.step("hours")
    editor.start()
    rings_no_more(note)
    desk.wait(lambda: seconds_of(strip(note).text) > 0, 5, "the new countdown")
    assert kept.each("interval") == ["eachday"] and kept.each("alarmtime") == ["11:00:00"]


def test_stop_in_the_editor_of_a_ringing_note_keeps_the_note(desk):
    kardel, kept = run(desk, {**NOTE, **DUE})
    note = kardel.note()
    wait_ringing(note)
    alarms.edit_alarm(kardel, note).stop()
    rings_no_more(note)
    assert not strip(note).visible and stored_alarm(kept) == CLEARED


# --- The menu's two choices


def test_the_menu_offers_to_keep_the_note_and_to_restore_it(desk):
    kardel, _ = run(desk, {**NOTE, "alarmdate": "01/01/2999", "alarmtime": "10:00:00"})
    note = kardel.note()
    for entry, key in (("Don't delete when elapsed", "DontDeleteWhenPlay"), ("Restore when elapsed", "RestoreWhenPlay")):
        if key == "RestoreWhenPlay":  # which is offered on iconized notes
            note.click("lbl2", 7, 9)
            desk.wait_equal(lambda: note.rect.height, STRIP_HEIGHT)
        for flag in ("True", "False"):
            note.click("lbl2", 15, 9, button=3)
            menu = desk.menu()
            assert menu.item(entry)["checked"] == (flag == "False")
            menu.choose(entry)
            desk.wait_equal(lambda: desk.registry("setting").get(key), flag)
            desk.wait(lambda: not desk.menus(), 5, "the menu to close")
