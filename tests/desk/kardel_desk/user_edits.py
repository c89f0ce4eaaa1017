"""What the random user does inside a note: edits its title and text, sets, clears and silences its alarm."""

import datetime

from . import alarms
from .desk_model import EACH_DAY, MOST_NOTES, ONCE, REPEATED, WEEKLY, Alarm, Note

RING_SECONDS = 3.0  # by then a note that is due has certainly rung


class EditActions:
    """A part of RandomUser."""

    # --- editing

    def _type(self, editor, text: str, shown: str | None = None) -> None:
        self.desk.wait(lambda: editor.visible and editor.has_focus, 10, "the editor")
        before = editor.text
        self.desk.type(text)
        self.desk.wait_equal(lambda: editor.text, before + text if shown is None else shown, 10, "the typed text")

    def _emptied(self, editor) -> None:
        self.desk.wait(lambda: editor.visible and editor.has_focus, 10, "the editor")
        self.desk.key("ctrl+a", "Delete")
        self.desk.wait_equal(lambda: editor.text, "", 10, "the editor to be emptied")

    def _open_body(self, note: Note):
        """Opens the body in one of the ways there are. None when the note is covered."""
        window = self._in_hand(note)
        if not window:
            return None
        way = self.dice.choice(("F2", "command", "mouse"))
        if way == "mouse" and self._reach(window.part("nota"), None):
            window.click("nota", double=True)
        elif way == "command":
            self._command(note, "edit")
        else:
            self.desk.key("F2")
        editor = window.part("txtNota")
        self.desk.wait(lambda: editor.visible and editor.has_focus, 10, f"the editor, by {way}")
        return window, editor

    def _write_body(self, note: Note):
        """Opens the body and types, and leaves the edit open."""
        opened = self._open_body(note)
        if not opened:
            return None
        window, editor = opened
        body = note.body
        if len(body) > 200:  # a body that has grown long is replaced
            self._emptied(editor)
            body = ""
        if body and self.dice.random() < 0.3:
            lines = self.dice.choice((1, 2))
            self.desk.key(("shift+Return", "ctrl+Return")[lines - 1])
            body += "\r\n" * lines
        text = self._words()
        self._type(editor, text, body + text)
        return window, body + text

    def _end_edit(self, note: Note, window) -> None:
        """Leaves an editor in one of the ways that keep what was typed."""
        way = self.dice.choice(("Return", "desktop", "title", "hide", "iconize", "topmost", "new"))
        self._say(f"ended by {way}")
        if way == "desktop":
            self.desk.click_desktop()
        elif way == "title" and self._reach(window.part("lbl"), 60):
            window.click("lbl", 60)
        elif way == "hide":
            for _ in range(2):
                self.hide_all()
        elif way == "topmost":
            self._command(note, "topmost")
            note.topmost = not note.topmost
        elif way == "iconize":
            self._command(note, "iconize")
            self.model.iconize(note)
        elif way == "new" and len(self.model.notes) < MOST_NOTES:
            self.new()
        else:
            self.desk.key("Return")
        self.desk.wait(lambda: not window.exists or not window.editing, 10, f"the edit to end by {way}")
        self._finished()

    def edit_body(self) -> None:
        note = self._any(self._full)
        written = self._write_body(note)
        if written:
            window, note.body = written
            self._end_edit(note, window)

    def edit_title(self) -> None:
        note = self._any(self._calm)
        window = self._in_hand(note)
        if not window:
            return
        if note.iconized:
            self.desk.key("F2")
        elif self._reach(window.part("lbl"), 40):
            window.click("lbl", 40, button=3)
        else:
            self._say("(covered)")
            return
        editor = window.part("txtTitle")
        self._emptied(editor)
        title = "" if self.dice.random() < 0.1 else self._words()
        self._type(editor, title)
        if self.dice.random() < 0.3:
            self.desk.key("Escape")
            self.desk.wait(lambda: not window.editing, 10, "the edit to be left")
            self._finished()
            return
        self.desk.key("Return")
        self.desk.wait(lambda: not window.editing and window.title == title, 10, "the new title")
        self._finished()
        width = window.rect.width
        assert width >= note.width, f"narrower by a title: {width}, not {note.width}"
        self.model.retitle(note, title, width)

    def escape(self) -> None:
        opened = self._open_body(self._any(self._full))
        if opened:
            window, editor = opened
            self._type(editor, "never mind")
            self.desk.key("Escape")
            self.desk.wait(lambda: not window.editing, 10, "the edit to be left")
            self._finished()

    # --- alarms

    def _editor(self, note: Note) -> alarms.AlarmEditor:
        """Opens the editor, and does so again if the window manager left next to nothing of it on the screen."""
        for _ in range(3):
            self._window(note).command("alarm")
            editor = alarms.editor_of(self.kardel)
            if self._reach(editor.part("data"), None):
                return editor
            self._say("(no editor seen)")
            self.desk.key("Escape")
            self._gone()
        raise AssertionError("the alarm editor is not on the screen")

    def _choose_kind(self, editor, kind: str) -> Alarm:
        """Fills in an alarm of some kind for today at the time that is shown."""
        today = self._now().date()
        alarm = Alarm(kind, today, editor.time)
        if kind == EACH_DAY:
            editor.click_date("day")
            self.desk.wait_equal(lambda: editor.date, "**/**/****", 5, "every day")
        elif kind == WEEKLY:
            alarm.weekday = today.isoweekday()
            editor.choose("cboDay", alarm.weekday)
        elif kind == REPEATED:
            alarm.days = self.dice.randrange(2, 6)
            editor.choose("cboRepeat", alarm.days)
            editor.choose("cboDay", 3)
        alarm.mute = self.dice.random() < 0.5 and not self.loud
        if editor.ticked("chkMute") != alarm.mute:
            editor.part("chkMute").click()
            self.desk.wait_equal(lambda: editor.ticked("chkMute"), alarm.mute, 5, "mute")
        return alarm

    def set_alarm(self) -> None:
        """Sets an alarm that is not due before tomorrow."""
        note = self._any(self._unset)
        kind = self.dice.choice((ONCE, EACH_DAY, WEEKLY, REPEATED))
        self._say(kind)
        editor = self._editor(note)
        if kind == ONCE:
            editor.step("date", 2)
        alarm = self._choose_kind(editor, kind)
        if kind == ONCE:
            alarm.date += datetime.timedelta(days=2)
            self.desk.wait_equal(lambda: editor.date, f"{alarm.date:%d/%m/%Y}", 5, "the date")
        else:
            alarm.advance()  # the time that the editor opened with has passed
        editor.start()
        self._gone()
        note.alarm = alarm

    def clear_alarm(self) -> None:
        note = self._any(self._armed)
        self._editor(note).stop()
        self._gone()
        note.alarm = None

    def leave_alarm(self) -> None:
        note = self._any(self._calm)
        self._editor(note)
        self.desk.key("Escape")
        self._gone()

    def ring(self) -> None:
        """Sets an alarm that is due in a moment, whatever is done meanwhile."""
        note = self._any(self._unset)
        kind = self.dice.choice((ONCE, ONCE, EACH_DAY, WEEKLY, REPEATED))
        meanwhile = self.dice.choice(("wait", "hide_all", "close", "iconize", "iconize_all"))
        self._say(f"{kind}, {meanwhile}")
        editor = self._editor(note)
        alarm = self._choose_kind(editor, kind)
        self._later(editor, 4)
        alarm.time = editor.time
        due = self._moment(alarm.time)
        editor.start()
        self._gone()
        if self._now() >= due and kind != ONCE:  # on a slow machine it may ring now or at its next time
            self._say("(too late)")
            self._editor(note).stop()
            self._gone()
            return
        note.alarm = alarm
        if meanwhile != "wait" and self._now() + datetime.timedelta(seconds=1) < due:
            if meanwhile in ("hide_all", "iconize_all"):
                getattr(self, meanwhile)()
            else:
                self._command(note, meanwhile)
                getattr(self.model, meanwhile)(note)
        self.desk.wait(lambda: self._now() >= due, 10, "the time to come")
        self._rung(note)

    def _later(self, editor, seconds: int) -> None:
        """Sets the editor's time to so many seconds from now: by a click on the arrow of the seconds, then by key."""
        opened = self._moment(editor.time)
        editor.part("hsec").click(-5)
        self.desk.wait(lambda: self._moment(editor.time) > opened, 5, "the next second")
        due = self._now().replace(microsecond=0) + datetime.timedelta(seconds=seconds)
        steps = int((due - self._moment(editor.time)).total_seconds())
        if steps > 0:
            self.desk.key(*["Right"] * steps)
        self.desk.wait(lambda: self._moment(editor.time) >= due, 5, "the time of the alarm")

    def _now(self) -> datetime.datetime:
        return alarms.local_now(self.env["TZ"])

    def _moment(self, time: str) -> datetime.datetime:
        return datetime.datetime.combine(self._now().date(), datetime.time.fromisoformat(time))

    def _rung(self, note: Note) -> None:
        """A note is due: waits until it rings."""
        others = any(other.ringing for other in self.model.notes)
        self.model.ring(note)
        window = self._window(note)
        self.desk.wait(lambda: window.visible, 5, "the ringing note to be shown")

        def white():
            rect, screen = window.rect, self.desk.display
            left, top = max(0, rect.x), max(0, rect.y)
            right, bottom = min(screen.width, rect.right), min(screen.height, rect.bottom)
            if left >= right or top >= bottom:
                return False
            image = screen.image(left, top, right - left, bottom - top)
            return sum(n for n, colour in image.getcolors(1 << 16) or () if colour == alarms.WHITE) > 1000
        # A covered note cannot be seen flashing, and what is seen flashing may be another one.
        try:
            if others or self.desk.wait(white, RING_SECONDS, "a white note") is None:
                self.desk.stays(lambda: True, RING_SECONDS)
        except AssertionError:
            self._say("(covered)")

    def stop_ringing(self) -> None:
        note = self._any(lambda note: note.ringing)
        window = self._in_front(note)
        part = window.part("lbl" if note.iconized else self.dice.choice(("lbl", "pic_time", "nota")))
        if not self._reach(part, 40):
            self._say("(covered)")
            return
        part.click(40)
        self.model.silence(note)
        self._finished()
        if note in self.model.notes:
            self.desk.wait_equal(lambda: self._stored(note, "alarmtime"), note.stored()["alarmtime"], 5, "the alarm")
        else:
            self.desk.wait(lambda: not window.exists, 5, "the note to go with its alarm")

    def _stored(self, note: Note, key: str):
        return self.store.notes()[self.model.notes.index(note)][key]
