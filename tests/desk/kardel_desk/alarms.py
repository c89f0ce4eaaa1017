"""Alarms as a user sees them: the editor under mouse and keyboard, a note that counts down or rings, and local time."""

import datetime

from .app import Dialog, Note, Part, Window
from .ids import part_id
from .waiting import stays, wait, wait_equal

WHITE = (255, 255, 255)
FLASH_SECONDS = 0.5
DAY_NAMES = ("Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday")

CB_GETCURSEL, CB_GETITEMHEIGHT, CB_GETDROPPEDSTATE, LB_GETTOPINDEX, BM_GETCHECK = 0x147, 0x154, 0x157, 0x18E, 0xF0

DATE_PLACES = {"day": 210, "month": 510, "year": 880}  # twips from the left of the date label, within its border
BARS = {"date": "hdate", "hours": "hore", "minutes": "hmin", "seconds": "hsec"}
TIME_LABEL, COUNTDOWN_LABEL = 242, 243


def midday_zone() -> str:
    """A value of TZ that makes it about noon now, so that what a test sets for today does not slip into tomorrow."""
    hours = 12 - datetime.datetime.now(datetime.timezone.utc).hour
    return f"MID{-hours:+d}"


def local_now(zone: str) -> datetime.datetime:
    """The time in a zone of midday_zone()."""
    utc = datetime.datetime.now(datetime.timezone.utc).replace(tzinfo=None)
    return utc - datetime.timedelta(hours=int(zone[3:]))


def date_text(moment: datetime.date) -> str:
    return f"{moment.day:02}/{moment.month:02}/{moment.year:04}"


def time_text(moment: datetime.datetime) -> str:
    return f"{moment.hour:02}:{moment.minute:02}:{moment.second:02}"


def at(moment: datetime.datetime) -> dict:
    """The fields of a note that is due once, at this moment."""
    return {"alarmdate": date_text(moment), "alarmtime": time_text(moment)}


def seconds_of(strip: str) -> int:
    """"2 d   5:07:09" -> seconds."""
    days, _, clock = strip.rpartition(" d   ")
    hours, minutes, seconds = clock.split(":")
    return int(days or 0) * 86400 + int(hours) * 3600 + int(minutes) * 60 + int(seconds)


# --- A note with an alarm


def strip(note: Note) -> Part:
    return note.part("pic_time")


def wait_ringing(note: Note, timeout: float = 30.0) -> None:
    wait(lambda: note.visible and note.colour == WHITE, timeout, f"{note!r} to flash")


def rings_no_more(note: Note) -> None:
    """Waits for the note's own colour: a ringing note is white half of the time."""
    wait(lambda: note.colour != WHITE, 2, f"{note!r} to have its colour back")
    stays(lambda: note.colour != WHITE, 2.4 * FLASH_SECONDS, f"the colour of {note!r}")


def awake(note: Note) -> None:
    """Gives the note the keyboard and waits until the click that does so is over, since a drag takes no keys."""
    note.activate()
    wait(lambda: not note.desk.probe.ask("focus")["moving"], 5, "the click to be over")


# --- The editor


class AlarmEditor(Dialog):
    """The alarm editor; open it with edit_alarm()."""

    @property
    def label(self) -> str:
        """The date label's text, which after a click has the time behind the date."""
        return self.part("data").text

    @property
    def date(self) -> str:
        return self.label.split()[0]

    @property
    def time(self) -> str:
        return self.part(TIME_LABEL).text

    @property
    def countdown(self) -> str | None:
        """The time left, as the editor shows it."""
        label = self.part(COUNTDOWN_LABEL)
        return label.text if label.visible else None

    def click_date(self, which: str | int) -> None:
        """Clicks the day, the month or the year, or a place in twips."""
        self.part("data").click(1 + DATE_PLACES.get(which, which) // 15)

    def step(self, bar: str, by: int = 1) -> None:
        """Clicks an arrow of a scroll bar: "date", "hours", "minutes" or "seconds"."""
        for _ in range(abs(by)):
            self.part(BARS[bar]).click(-5 if by > 0 else 5)

    def choose(self, name: str, entry: int) -> None:
        """Opens a list with the mouse and clicks one of its first entries, counted from 0."""
        field = self.part(name)
        field.click(-10)
        opened = wait(lambda: [Window(self.desk, info["hwnd"]) for info in self.desk.probe.ask("windows", "ComboLBox")
                               if info["visible"]], 5, f"the list of {name}")[0]
        if opened.send(LB_GETTOPINDEX) > 0:
            self.desk.key("Home")
            wait(lambda: opened.send(LB_GETTOPINDEX) == 0, 5, f"the top of the list of {name}")
        height = field.send(CB_GETITEMHEIGHT)
        opened.click_at(12, 1 + height * entry + height // 2)
        wait_equal(lambda: field.send(CB_GETDROPPEDSTATE), 0, 5, f"the list of {name} to close")

    def chosen(self, name: str) -> int:
        return self.part(name).send(CB_GETCURSEL)

    def ticked(self, name: str) -> bool:
        return self.part(name).send(BM_GETCHECK) == 1

    def focused(self, name: str | int) -> bool:
        return self.parts()[part_id(name)].has_focus

    def wait_focus(self, name: str | int) -> None:
        wait(lambda: self.focused(name), 5, f"the keyboard in {name}")

    def wait_gone(self) -> None:
        wait(lambda: not self.exists or not self.visible, 5, "the editor to close")

    def start(self) -> None:
        """Clicks Start, or Restart."""
        self.part("btnOK").click()
        self.wait_gone()

    def stop(self) -> None:
        self.part("btnCancel").click()
        self.wait_gone()


def edit_alarm(kardel, note: Note) -> AlarmEditor:
    """Opens the editor as the note's menu does, and waits until it has the keyboard."""
    note.command("alarm")
    return editor_of(kardel)


def editor_of(kardel) -> AlarmEditor:
    """Waits for the editor to be open and to have the keyboard."""
    editor = AlarmEditor(kardel.desk, kardel.dialog().hwnd)
    wait(lambda: editor.text == "Set alarm" and editor.active and editor.focused("data"), 5, "the alarm editor")
    return editor
