"""The random user without hands: he sends his commands, texts and keys as messages, as other programs can, so that
nothing that the window manager does can get in his way."""

import contextlib
import datetime

from .app import WM_COMMAND, Dialog
from .desk_model import ONCE, Alarm
from .ids import part_id
from .probe import ProbeError
from .random_user import RandomUser

WM_KEYDOWN, WM_CHAR, WM_HSCROLL, WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_RBUTTONUP = 0x100, 0x102, 0x114, 0x201, 0x204, 0x205
VK_RETURN, VK_ESCAPE = 13, 27
ARROWS = {"Left": 37, "Up": 38, "Right": 39, "Down": 40}
SB_LINERIGHT = 1
TRIES = 5  # an editor closes, keeping its text, whenever another window gets the keyboard


class SteadyUser(RandomUser):
    def __init__(self, *how):
        super().__init__(*how)
        by_hand = {"new_by_key", "delete_by_key", "hide_all_by_icon", "colour", "drag", "resize_by_grip",
                   "title_buttons", "note_menu", "tray_menu"}
        self.actions = [(action, weight) for action, weight in self.actions if action.__name__ not in by_hand]

    def _settled(self) -> None:
        """Nothing to wait for, as nothing was done by hand."""

    # --- boxes

    def _box(self, title: str | None = None) -> Dialog:
        box = self.desk.wait(self.kardel.dialogs, 10, "a box")[0]
        if title is not None:
            self.desk.wait_equal(lambda: box.text, title, 5, "the box's title")
        return box

    _dialog = _box

    def _answer(self, box, button: str, key: str) -> None:
        pressed = self.desk.wait(lambda: box.button(button), 5, f"the button {button}")
        box.post(WM_COMMAND, pressed.info["id"], pressed.hwnd)

    def _press_in_box(self, button: str) -> None:
        self._answer(self._box(), button, "")

    def about(self) -> None:
        self.kardel.tray.command("dyn(11)")
        self._answer(self._box(), "OK", "")
        self._gone()

    def second_start(self) -> None:
        assert self.desk.start(env=self.env).wait_ended() == 0
        self._answer(self._box(), "OK", "")
        self._gone()

    # --- editing

    def new(self) -> None:
        """Gives a new note a text at once, as it could not be told from another one without a text after a start."""
        super().new()
        note = self.model.notes[-1]
        note.body = f"new {self.done}"
        self._fill(note, "txtNota", note.body, lambda editor: self._press(editor, VK_RETURN))

    @staticmethod
    def _press(editor, key: int) -> None:
        """A key for an editor, which goes with the edit: it may be gone before the key, or before its character."""
        with contextlib.suppress(ProbeError):
            editor.send(WM_KEYDOWN, key)
            editor.send(WM_CHAR, key)

    def _open_editor(self, note, name: str):
        """Opens the body or the title."""
        window = self._window(note)
        if name == "txtNota" or note.iconized:
            self._command(note, "edit")
        else:
            title = window.part("lbl")
            for message in (WM_RBUTTONDOWN, WM_RBUTTONUP):
                title.send(message, 0, 0x00050028)
        return window, window.part(name)

    def _put(self, editor, text: str) -> None:
        """Replaces the text of an editor, unless the edit has ended."""
        with contextlib.suppress(ProbeError):
            self.desk.probe.ask("settext", editor.hwnd, text)

    def _fill(self, note, name: str, text: str, end) -> None:
        """Puts a text into an editor and ends the edit; does so again if the edit ended before the text was there."""
        for _ in range(TRIES):
            window, editor = self._open_editor(note, name)
            self._put(editor, text)
            end(editor)
            self.desk.wait(lambda: not window.exists or not window.editing, 10, "the edit to end")
            if (window.title if name == "txtTitle" else window.body) == text:
                return
            self._say("(again)")
        raise AssertionError(f"{text!r} is not kept")

    def edit_body(self) -> None:
        note = self._any(self._full)
        text = (note.body + "\r\n" if note.body and len(note.body) < 200 else "") + self._words()
        ends = [lambda editor: self._press(editor, VK_RETURN), lambda editor: self._turn_topmost(note),
                lambda editor: self._window(note).part("lbl").send(WM_LBUTTONDOWN, 0, 0x00050028)]
        way = self.dice.randrange(len(ends))
        self._say(("Return", "topmost", "title")[way])
        self._fill(note, "txtNota", text, ends[way])
        note.body = text

    def _turn_topmost(self, note) -> None:
        self._command(note, "topmost")
        note.topmost = not note.topmost

    def edit_title(self) -> None:
        note = self._any(self._calm)
        title = "" if self.dice.random() < 0.1 else self._words()
        self._fill(note, "txtTitle", title, lambda editor: self._press(editor, VK_RETURN))
        width = self._window(note).rect.width
        assert width >= note.width, f"narrower by a title: {width}, not {note.width}"
        self.model.retitle(note, title, width)

    def escape(self) -> None:
        note = self._any(self._full)
        window, editor = self._open_editor(note, "txtNota")
        self._put(editor, "never mind")
        left_open = editor.visible
        self._press(editor, VK_ESCAPE)
        self.desk.wait(lambda: not window.editing, 10, "the edit to be left")
        if not left_open and window.body == "never mind":
            self._say("(too late)")  # the editor had closed, which keeps the text
            note.body = "never mind"

    def _close(self, window, editor) -> None:
        """Leaves an edit without its text, if there still is one."""
        self._press(editor, VK_ESCAPE)
        self.desk.wait(lambda: not window.editing, 10, "the edit to be left")

    def _write_body(self, note):
        text = note.body[:200] + self._words()
        for _ in range(TRIES):
            window, editor = self._open_editor(note, "txtNota")
            self._put(editor, text[1:])
            with contextlib.suppress(ProbeError):
                editor.send(WM_CHAR, ord(text[0]))  # a key at the caret, at the beginning; it causes the draft
            if editor.visible and editor.text == text:
                return window, text
            self._say("(again)")
            self._close(window, editor)
            note.body = window.body
        return None

    def resize_by_key(self) -> None:
        note = self._any(self._full)
        self._command(note, "resize")
        for _ in range(self.dice.randrange(1, 6)):
            key = self.dice.choice(tuple(ARROWS))
            self.model.resize(note, key, False, self._window(note).rect[:2])
            self._window(note).send(WM_KEYDOWN, ARROWS[key])
        self._window(note).send(WM_KEYDOWN, VK_RETURN)

    # --- alarms

    def _editor(self, note):
        self._window(note).command("alarm")
        return self._box("Set alarm")

    def _scroll(self, editor, bar: str, steps: int) -> None:
        for _ in range(steps):
            editor.send(WM_HSCROLL, SB_LINERIGHT, editor.part(bar).hwnd)

    def _end_editor(self, editor, button: str) -> None:
        editor.post(WM_COMMAND, part_id(button), editor.part(button).hwnd)
        self._gone()

    def set_alarm(self) -> None:
        note = self._any(self._unset)
        editor = self._editor(note)
        self._scroll(editor, "hdate", 2)
        note.alarm = Alarm(ONCE, self._now().date() + datetime.timedelta(days=2), editor.part(242).text)
        self._end_editor(editor, "btnOK")

    def clear_alarm(self) -> None:
        note = self._any(self._armed)
        self._end_editor(self._editor(note), "btnCancel")
        note.alarm = None

    def leave_alarm(self) -> None:
        editor = self._editor(self._any(self._calm))
        editor.post(0x10)  # WM_CLOSE
        self._gone()

    def ring(self) -> None:
        """Leaves the time with which the editor opened, so that the alarm is due at once."""
        note = self._any(self._unset)
        editor = self._editor(note)
        note.alarm = Alarm(ONCE, self._now().date(), editor.part(242).text)
        self._end_editor(editor, "btnOK")
        self._rung(note)

    def stop_ringing(self) -> None:
        note = self._any(lambda note: note.ringing)
        window = self._window(note)
        window.part("lbl" if note.iconized else "pic_time").send(WM_LBUTTONDOWN, 0, 0x00050028)
        self.model.silence(note)
        if note not in self.model.notes:
            self.desk.wait(lambda: not window.exists, 5, "the note to go with its alarm")
