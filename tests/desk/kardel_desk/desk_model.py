"""What must be on the desk after what was done to it: a plain model of the notes, without a window or a store."""

import dataclasses
import datetime

TWIPS = 15                          # a pixel at 96 dpi
MOST_NOTES = 8  # enough to cover one another, few enough to be told apart
NEW_SIZE = 2910 // TWIPS, 1890 // TWIPS
LEAST_WIDTH, LEAST_HEIGHT = 1130, 705  # twips
YELLOW = 8454143
ONCE, EACH_DAY, WEEKLY, REPEATED = "once", "each day", "weekly", "repeated"


@dataclasses.dataclass
class Alarm:
    """As it is stored. `date` is the day when it is next due, even where the store has "*"."""
    kind: str
    date: datetime.date
    time: str
    weekday: int = 0  # Monday is 1
    days: int = 0     # from one time to the next
    mute: bool = False

    def advance(self) -> None:
        """Moves on to its next time, after it has rung and was stopped."""
        self.date += datetime.timedelta(days={EACH_DAY: 1, WEEKLY: 7}.get(self.kind, self.days))


NO_ALARM = {"alarmdate": "", "alarmtime": "", "alarmweekday": 0, "alarmrepeatnumber": 0, "alarmrepeatevery": "",
            "interval": "", "mute": False}


def stored_alarm(alarm: Alarm | None) -> dict:
    if alarm is None:
        return NO_ALARM
    return {"alarmdate": "*" if alarm.kind == EACH_DAY else f"{alarm.date:%d/%m/%Y}", "alarmtime": alarm.time,
            "alarmweekday": alarm.weekday, "alarmrepeatnumber": alarm.days,
            "alarmrepeatevery": "dd" if alarm.days else "", "interval": "eachday" if alarm.kind == EACH_DAY else "",
            "mute": alarm.mute}


@dataclasses.dataclass(eq=False)
class Note:
    """One note; place and size in pixels. `window` is whatever the caller knows its window by."""
    window: int
    title: str
    body: str = ""
    x: int = 0
    y: int = 0
    width: int = NEW_SIZE[0]
    height: int = NEW_SIZE[1]
    colour: int = YELLOW
    topmost: bool = False
    iconized: bool = False
    closed: bool = False
    visible: bool = True
    ringing: bool = False
    alarm: Alarm | None = None

    def stored(self) -> dict:
        """The fields that the store must hold for it."""
        return {"Titolo": self.title, "Nota": self.body, "x": self.x * TWIPS, "y": self.y * TWIPS,
                "width": self.width * TWIPS, "height": self.height * TWIPS, "backcolor": self.colour,
                "topmost": self.topmost, "iconized": self.iconized, "closed": self.closed,
                **stored_alarm(self.alarm)}

    def __str__(self) -> str:
        return repr(self.title)


class DeskModel:
    """The notes in the order of their numbers, and what the menus show. `work` is the work area's right and bottom
    edge, `strip` the height of an iconized note, all in pixels."""

    def __init__(self, work: tuple[int, int], strip: int):
        self.right, self.bottom, self.strip = *work, strip
        self.notes: list[Note] = []
        self.all_hidden = self.all_iconized = False
        self.align = self.easy = False              # Automatic position, Easy alignment
        self.keep_elapsed = self.restore_to_ring = False
        self.lost_places = False                    # columns began at a note that is not shown where it belongs

    # --- what follows from a change

    def _all(self, flag: str) -> bool:
        return bool(self.notes) and all(getattr(note, flag) for note in self.notes)

    def _nothing_in_sight(self) -> bool:
        return bool(self.notes) and not any(note.visible for note in self.notes)

    def changed(self) -> None:
        """Follows up on a note that was closed, iconized, restored or renamed."""
        self.all_hidden = self.all_hidden or self._nothing_in_sight()
        if len(self.notes) > 1:
            self.all_iconized = self._all("iconized")

    def shown_height(self, note: Note) -> int:
        return self.strip if note.iconized else note.height

    def is_on_screen(self, note: Note) -> bool:
        """Follows up on anything."""
        return 0 <= note.x <= self.right - note.width and 0 <= note.y <= self.bottom - self.shown_height(note)

    def realign(self) -> None:
        """Automatic position, if it is on: columns of touching notes, beginning at the first note's place."""
        if not self.align or not self.notes:
            return
        first = self.notes[0]
        self.lost_places = self.lost_places or not self.is_on_screen(first)
        left, width, below = first.x, first.width, first.y + self.shown_height(first)
        for note in self.notes[1:]:
            if not note.visible:
                continue
            if below + 1 < self.bottom:
                note.x, note.y = left, below
            else:
                note.x, note.y = left + width, first.y
                left, width = note.x, note.width
            below = note.y + self.shown_height(note)

    # --- notes that come and go

    def new(self, note: Note) -> None:
        self.notes.append(note)
        self.all_hidden = self.all_iconized = False
        if len(self.notes) > 1:
            self.realign()

    def remove(self, note: Note) -> None:
        self.notes.remove(note)
        self.all_hidden = self._nothing_in_sight()
        self.all_iconized = self._all("iconized")

    def close(self, note: Note) -> None:
        if not self.silence(note):
            return
        note.closed, note.visible = True, False
        self.changed()
        self.realign()

    def open(self, note: Note) -> None:
        note.closed, note.visible = False, True
        self.all_hidden = False

    def retitle(self, note: Note, title: str, width: int) -> None:
        """`width`: how wide it has become for its title."""
        grown = width != note.width
        note.title, note.width = title, width
        if grown and not note.iconized and note.visible:
            self.realign()
        self.changed()

    # --- sizes

    def iconize(self, note: Note) -> None:
        """Iconizes or restores."""
        stays = self.silence(note)
        if not stays:
            return
        note.iconized = not note.iconized
        self.changed()
        self.realign()

    def resize(self, note: Note, key: str, wide: bool, shown: tuple[int, int]) -> None:
        """An arrow key of the resize mode; `wide`: with Ctrl. `shown`: its left and top edge on the screen, since what
        is seen grows up to the work area's edges, even if the note itself is elsewhere."""
        step = 12 if wide else 2
        if key in ("Left", "Right"):
            note.width = self._resized(note.width, step if key == "Right" else -step, LEAST_WIDTH, self.right - shown[0])
        elif not note.iconized:
            note.height = self._resized(note.height, step if key == "Down" else -step, LEAST_HEIGHT,
                                        self.bottom - shown[1])
        if not note.iconized:
            self.realign()

    @staticmethod
    def _resized(size: int, by: int, least: int, most: int) -> int:
        if by < 0:
            return size + by if (size + by) * TWIPS >= least else size
        return max(size, min(size + by, most))

    # --- all at once

    def hide_or_show_all(self) -> None:
        if not self.notes:
            return
        hide = not self.all_hidden
        for note in list(self.notes):
            if not self.silence(note):
                continue
            note.visible = not hide
            note.closed = note.closed and hide
        self.all_hidden = hide and bool(self.notes)
        if not hide:
            self.realign()

    def iconize_or_restore_all(self) -> None:
        if not self.notes:
            return
        wanted = not self.all_iconized
        for note in list(self.notes):
            if note.iconized != wanted and self.silence(note):
                note.iconized = wanted
        self.all_iconized = wanted and bool(self.notes)
        self.realign()

    def toggle_align(self) -> None:
        if self.easy or not self.notes:
            return
        self.align = not self.align
        self.realign()

    def toggle_easy(self) -> None:
        if not self.align:
            self.easy = not self.easy

    # --- alarms

    def ring(self, note: Note) -> None:
        """A note's time has come."""
        note.ringing = True
        note.closed = self.all_hidden = False
        if note.iconized and self.restore_to_ring:
            note.iconized = False
            if note.visible:
                self.realign()
        note.visible = True
        self.changed()

    def silence(self, note: Note) -> bool:
        """Stops a note that rings. False when that takes it away."""
        if not note.ringing:
            return True
        note.ringing = False
        if note.alarm.kind != ONCE:
            note.alarm.advance()
            return True
        note.alarm = None
        if not self.keep_elapsed:
            self.remove(note)
        return self.keep_elapsed

    # --- the program ends, and starts again

    def restart(self) -> None:
        """An alarm that rings once is still due and will ring; one that recurs moves on to its next time."""
        for note in self.notes:
            note.visible = not note.closed
            if note.ringing and note.alarm.kind != ONCE:
                note.ringing = False
                note.alarm.advance()
        self.all_hidden, self.all_iconized = self._all("closed"), self._all("iconized")
        self.realign()
