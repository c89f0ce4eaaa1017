"""A user who does anything at any time, checked against a model of the desk.

What he does follows from his seed alone; what only the screen decides (where a drag with snapping ends, how wide a title
is) is taken from the window, and the store must then say the same. Everything else is predicted."""

import datetime
import os
import pathlib
import random

from . import alarms
from .app import WM_COMMAND, Note as NoteWindow
from .desk_model import EACH_DAY, NEW_SIZE, ONCE, REPEATED, TWIPS, WEEKLY, Alarm, DeskModel, Note
from .ids import command_id, part_id
from .stores import Store

STRIP = 20                # pixels; the height of an iconized note
MOST_NOTES = 8            # enough to cover one another, few enough to be told apart
REACH = 500, 500          # no note is dragged further right or down, so that columns of notes stay on the screen
WORDS = ("milk", "bread", "call back", "42", "(sic)", "100 %s", "a & b", "\u00e8 vero", "so?", r"C:\n", "''")
RED, RED_BOX = 255, (20, 55)  # in the system's colour dialog
SNAP_SLACK = 20               # pixels that a snapped note may be off under Wine
RING_SECONDS = 3.0            # by then a note that is due has rung for certain
ACTION_SECONDS = 20


class RandomUser:
    """act() does one thing, check() compares the desk and the store with the model."""

    def __init__(self, desk, kind: str, seed: int, notes: int = 4):
        self.desk, self.seed, self.store = desk, seed, Store(desk, kind)
        self.kind = kind  # of the first start; the replay needs it
        self.done = self.restarts = self.checks = 0
        self.log: list[str] = []
        self.env = {"TZ": alarms.midday_zone()}
        left, top, width, height = desk.screen()["workarea"]
        self.model = DeskModel((left + width, top + height), STRIP)
        self.mark = kind == "files"  # the check mark at "Use local files"
        self.leaves = True           # whether he may end the program and start it again
        self.loud = False            # whether every alarm is to be heard
        seeded = [Note(0, f"note {n}", f"body {n}", 60 + 50 * n, 60 + 40 * n) for n in range(1, notes + 1)]
        self.store.seed([{key: value for key, value in note.stored().items()} for note in seeded])
        self.kardel = desk.run(env=self.env)
        windows = {window.title: window.hwnd for window in self.kardel.notes()}
        for note in seeded:
            note.window = windows[note.title]
        self.model.notes = seeded
        self.actions = [
            (self.new, 6), (self.new_by_key, 1), (self.delete, 4), (self.delete_by_key, 1), (self.think_better, 2),
            (self.topmost, 9), (self.iconize, 10), (self.close, 8), (self.open, 12), (self.hide_all, 8),
            (self.hide_all_by_icon, 1), (self.hide_all_by_note, 2), (self.iconize_all, 5), (self.iconize_all_by_note, 2),
            (self.automatic_position, 4), (self.easy_alignment, 3), (self.keep_when_elapsed, 3),
            (self.restore_when_elapsed, 3), (self.colour, 1), (self.drag, 4), (self.resize_by_key, 3),
            (self.resize_by_grip, 1), (self.title_buttons, 3), (self.edit_body, 4), (self.edit_title, 3),
            (self.escape, 2), (self.set_alarm, 2), (self.clear_alarm, 3), (self.leave_alarm, 1), (self.ring, 3),
            (self.stop_ringing, 4), (self.note_menu, 1), (self.tray_menu, 1), (self.about, 0.5),
            (self.second_start, 0.4), (self.restart, 0.7), (self.kill, 0.7), (self.switch_store, 0.4)]

    # --- the run

    def act(self, action=None) -> None:
        """One thing that is possible now; whatever it is, unless told."""
        self.done += 1
        self.dice = random.Random(f"{self.seed}/{self.kind}/{self.done}")
        if action is None:
            fitting = [(action, weight) for action, weight in self.actions if self._possible(action)]
            (action,) = self.dice.choices([a for a, _ in fitting], [w for _, w in fitting])
        self.log.append(action.__name__)
        try:
            self._settled()
            action()
            if self.model.lost_places:
                self._read_places()
        except (AssertionError, LookupError) as error:
            raise self._failure(error) from error

    def try_everything(self) -> None:
        """Each thing once, as far as it is possible: much of the system is loaded when it is first needed."""
        self.loud = True
        for action, _ in self.actions:
            if not self._some(self._full):
                self.act(self.hide_all)
            if not self._some(self._full):
                self.act(self.iconize_all)
            if self._possible(action):
                self.act(action)
        self.loud = False

    def _settled(self) -> None:
        """Wine knows where every note is: a program that asks while the window manager takes one over is told lies."""
        for note in self.model.notes:
            if note.visible:
                self.desk.wait(lambda: self._window(note).placed() and self._right_size(note), 5,
                               f"Wine to know where {note} is")

    def _right_size(self, note: Note) -> bool:
        info = self._window(note).info
        size = self.desk.display.x.create_resource_object("window", info["x11"]).get_geometry()
        right = [size.width, size.height] == info["rect"][2:]
        if not right:
            self._say(f"({note} is {size.width} x {size.height} for the X server, {info['rect'][2:]} for Wine)")
        return right

    def check(self) -> None:
        """The desk and the store must be as the model has them."""
        self.checks += 1
        try:
            self._settled()
            self.desk.wait_equal(self._differences, [], 5, "the desk to be as expected")
        except AssertionError as error:
            raise self._failure(error) from None

    def _failure(self, error) -> AssertionError:
        last = "\n".join(f"  {self.done - len(self.log[-25:]) + n}. {line}" for n, line in enumerate(self.log[-25:], 1))
        actions = os.environ.get("KARDEL_ACTIONS")
        return AssertionError(
            f"{error}\nafter {self.done} actions, the last of them:\n{last}\n"
            f"To see it again: KARDEL_SEED={self.seed} {f'KARDEL_ACTIONS={actions} ' if actions else ''}"
            f"./test desk -k 'random_user and {self.kind}'")

    def _say(self, what) -> None:
        self.log[-1] += f" {what}"

    def _possible(self, action) -> bool:
        notes = self.model.notes
        name = action.__name__
        if name in ("new", "new_by_key"):
            return len(notes) < MOST_NOTES and (name == "new" or self._some(self._calm))
        if name in ("delete", "delete_by_key"):
            return len(notes) > 1 and self._some(self._shown if name == "delete" else self._calm)
        if name in ("restart", "kill", "second_start", "switch_store"):
            return self.leaves and bool(notes)  # a start never shows an empty desk
        needs = {"colour": self._calm, "drag": self._calm, "resize_by_key": self._full, "resize_by_grip": self._full,
                 "title_buttons": self._shown, "edit_body": self._full, "edit_title": self._calm, "escape": self._full,
                 "set_alarm": self._unset, "clear_alarm": self._armed, "leave_alarm": self._calm, "ring": self._unset,
                 "stop_ringing": lambda note: note.ringing, "note_menu": self._calm, "think_better": self._shown,
                 "topmost": self._shown, "iconize": self._shown, "close": self._shown,
                 "hide_all_by_note": self._shown, "iconize_all_by_note": self._shown, "keep_when_elapsed": self._calm,
                 "restore_when_elapsed": self._calm, "open": lambda note: True}
        return name not in needs or self._some(needs[name])

    # Which notes a thing can be done to.

    def _some(self, fits) -> bool:
        return any(fits(note) for note in self.model.notes)

    @staticmethod
    def _shown(note: Note) -> bool:
        return note.visible

    @staticmethod
    def _calm(note: Note) -> bool:
        return note.visible and not note.ringing

    @staticmethod
    def _full(note: Note) -> bool:
        return note.visible and not note.ringing and not note.iconized

    @staticmethod
    def _unset(note: Note) -> bool:
        return note.visible and note.alarm is None

    @staticmethod
    def _armed(note: Note) -> bool:
        return note.visible and not note.ringing and note.alarm is not None

    def _any(self, fits) -> Note:
        note = self.dice.choice([note for note in self.model.notes if fits(note)])
        self._say(note)
        return note

    # --- comparing

    def _differences(self) -> list[str]:
        """What differs from the model, in words."""
        model, notes = self.model, self.model.notes
        if not self.kardel.alive:
            return [f"the program ended: {self.kardel.output()}"]
        found = [f"a box is open: {box.texts()}" for box in self.kardel.dialogs()]
        windows = {info["hwnd"]: info for info in self.desk.probe.ask("windows", "fpost")}
        if set(windows) != {note.window for note in notes}:
            return found + [f"windows {[info['text'] for info in windows.values()]} for {[n.title for n in notes]}"]
        stored = self.store.notes()
        if len(stored) != len(notes):
            return found + [f"stored {[record['Titolo'] for record in stored]} for {[n.title for n in notes]}"]
        for number, (note, record) in enumerate(zip(notes, stored), 1):
            wanted = note.stored()
            found += [f"note {number}, {key} in the store: {record[key]!r}, not {value!r}"
                      for key, value in wanted.items() if record[key] != value]
            found += [f"note {number}, {what} on screen: {seen!r}, not {value!r}"
                      for what, seen, value in self._on_screen(note, windows[note.window]) if seen != value]
        settings = self.desk.registry("setting") or {}
        found += [f"{key} is stored as {settings.get(key)}" for key, value in (
            ("AlignAll", model.align), ("EasyAlign", model.easy), ("DontDeleteWhenPlay", model.keep_elapsed),
            ("RestoreWhenPlay", model.restore_to_ring)) if settings.get(key) != str(value)]
        if self.store.kind == "registry":
            sections = {name for name in self.desk.sections() if name.startswith("kardel-")}
            if sections != {f"kardel-{number}" for number in range(1, len(notes) + 1)}:
                found.append(f"the registry holds {sorted(sections)}")
        found += [f"{log.name}: {log.read_text(errors='replace')[-300:]}"
                  for log in self.desk.path().glob("*.[lL][oO][gG]")]
        return found

    def _on_screen(self, note: Note, info: dict):
        """What is seen of a note and what the model says, in turn."""
        parts = self._parts(note)
        yield "title", info["text"], note.title
        yield "title strip", parts["lbl"].text, " " * 5 + note.title
        yield "body", parts["nota"].text, note.body
        yield "shown", info["visible"], note.visible
        yield "always on top", info["topmost"], note.topmost
        yield "editor", parts["txtNota"].visible or parts["txtTitle"].visible, False
        # Wine may lose the place of a window that it hides, and the program puts it right when it shows it.
        if note.visible and self._in_reach(note):
            yield "rectangle", tuple(info["rect"]), (note.x, note.y, note.width, self.model.shown_height(note))
        if note.visible:
            yield "body shown", parts["nota"].visible, not note.iconized
            yield "time strip", parts["pic_time"].visible, note.alarm is not None and not note.iconized

    def _in_reach(self, note: Note) -> bool:
        """Whether it is shown where it lies. A note of a column that goes beyond the screen is shown elsewhere, by the
        program when its title could not be seen, otherwise by the window manager."""
        return self.model.is_on_screen(note)

    def _parts(self, note: Note):
        parts = self._window(note).parts()
        return {name: parts[part_id(name)] for name in ("lbl", "nota", "txtNota", "txtTitle", "pic_time")}

    # --- hands

    def _window(self, note: Note) -> NoteWindow:
        return NoteWindow(self.desk, note.window)

    def _command(self, note: Note, name: str) -> None:
        """A command of a note's menu, done when this returns."""
        self._window(note).send(WM_COMMAND, command_id(name), timeout=ACTION_SECONDS)

    def _tray(self, name: str) -> None:
        self.kardel.tray.window().send(WM_COMMAND, command_id(name), timeout=ACTION_SECONDS)

    def _finished(self) -> None:
        """What was typed and clicked so far has been handled. Wine reads its X server's events between two messages."""
        for _ in range(2):
            self.kardel.tray.window().send(0, timeout=ACTION_SECONDS)

    def _reach(self, part, dx: int | None, dy: int | None = None) -> bool:
        """Moves the mouse to a place of a window. False when something lies over it there: nobody would click then."""
        x, y = part.point(dx, dy)
        if not (0 <= x < self.model.right and 0 <= y < self.model.bottom):
            return False
        self.desk.hands.keep_apart(x, y)
        self.desk.hands.move(x, y)
        try:
            return self.desk.wait(part.under_pointer, 0.4, "the window under the mouse")
        except AssertionError:
            return False

    def _in_front(self, note: Note) -> NoteWindow:
        """Opens a note through the tray, so that it lies on top of all but those that are always on top."""
        self._open(note)
        window = self._window(note)
        for _ in range(3):  # the window manager may give the keyboard to another note meanwhile
            self.desk.probe.ask("forward", note.window)
            try:
                self.desk.wait(lambda: window.active, 1, f"{note} to become active")
                break
            except AssertionError:
                self._say("(not active)")
        window.settle()
        return window

    def _open(self, note: Note) -> None:
        self._tray(f"dyn2({self.model.notes.index(note)})")
        self.model.open(note)

    def _place_to_press(self, note: Note, window) -> int | None:
        """How far from the left of its title strip a note can be pressed. None when all of it is covered."""
        title = window.part("lbl")
        for dx in (40, note.width // 2, note.width - 45):
            if 36 <= dx <= note.width - 30 and self._reach(title, dx):
                return dx
        self._say("(covered)")
        return None

    def _in_hand(self, note: Note) -> NoteWindow | None:
        """Gives a note the keyboard, as a user does with a click on its title. None when it is covered."""
        window = self._in_front(note)
        dx = self._place_to_press(note, window)
        if dx is None:
            return None
        window.click("lbl", dx)
        self.desk.wait(lambda: window.active and self.desk.display.keys_reach("kardel.exe"), 5, "the keyboard")
        self._finished()
        return window

    def _read_place(self, note: Note, window) -> None:
        rect = self.desk.wait(window.placed, 5, "the note's place")
        note.x, note.y = rect.x, rect.y

    def _read_places(self) -> None:
        """Columns that begin at a note that is shown elsewhere: where, the program alone knows."""
        self.model.lost_places = False
        self._say("(places read)")
        for note, record in zip(self.model.notes, self.store.notes()):
            note.x, note.y = record["x"] // TWIPS, record["y"] // TWIPS

    def _dialog(self, title: str):
        box = self.kardel.dialog()
        self.desk.wait_equal(lambda: box.text, title, 5, "the box's title")
        return box

    def _answer(self, box, button: str, key: str) -> None:
        """With the mouse, or by key where a note that is always on top covers the button."""
        self.desk.wait(lambda: box.active, 5, "the box to have the keyboard")
        if self.dice.random() < 0.7 and self._reach(box.button(button), None):
            box.press(button)
        else:
            self.desk.key(key)

    def _press_in_box(self, button: str) -> None:
        self.kardel.dialog().press(button)

    def _gone(self) -> None:
        self.desk.wait(lambda: not self.kardel.dialogs(), 10, "the box to close")
        self._finished()

    def _words(self) -> str:
        """Some text that was not typed before."""
        return f"{self.dice.choice(WORDS)} {self.done}"

    # --- notes that come and go

    def _made(self, before: set[int]) -> None:
        fresh = self.desk.wait(lambda: {n.hwnd for n in self.kardel.notes()} - before, 10, "the new note")
        note = Note(fresh.pop(), f"- {len(self.model.notes) + 1} -", "", 0, 0, *NEW_SIZE)
        self._finished()
        self._read_place(note, self._window(note))
        self.model.new(note)

    def new(self) -> None:
        before = {note.window for note in self.model.notes}
        self._tray("dyn(0)")
        self._made(before)

    def new_by_key(self) -> None:
        before = {note.window for note in self.model.notes}
        if self._in_hand(self._any(self._calm)):
            self.desk.key("ctrl+n")
            self._made(before)

    def _delete(self, note: Note) -> None:
        self._answer(self._dialog("Delete"), "Yes", "y")
        self.desk.wait(lambda: not self._window(note).exists, 10, "the deleted note to go")
        self._gone()
        self.model.remove(note)

    def delete(self) -> None:
        note = self._any(self._shown)
        self._window(note).command("delete")
        self._delete(note)

    def delete_by_key(self) -> None:
        note = self._any(self._calm)
        if self._in_hand(note):
            self.desk.key("Delete")
            self._delete(note)

    def think_better(self) -> None:
        self._window(self._any(self._shown)).command("delete")
        self._answer(self._dialog("Delete"), "No", "Escape")
        self._gone()

    def close(self) -> None:
        note = self._any(self._shown)
        self._command(note, "close")
        self.model.close(note)

    def open(self) -> None:
        self._open(self._any(lambda note: True))

    # --- all at once

    def hide_all(self) -> None:
        self._tray("dyn(2)")
        self.model.hide_or_show_all()

    def hide_all_by_note(self) -> None:
        self._command(self._any(self._shown), "hideall")
        self.model.hide_or_show_all()

    def hide_all_by_icon(self) -> None:
        self.kardel.tray.click()
        self.model.hide_or_show_all()
        wanted = {note.window: note.visible for note in self.model.notes}
        self.desk.wait_equal(lambda: {note.hwnd: note.visible for note in self.kardel.notes()}, wanted, 10,
                             "the click on the icon to do something")

    def iconize_all(self) -> None:
        self._tray("dyn(3)")
        self.model.iconize_or_restore_all()

    def iconize_all_by_note(self) -> None:
        self._command(self._any(self._shown), "iconizeall")
        self.model.iconize_or_restore_all()

    def automatic_position(self) -> None:
        self._tray("dyn(5)")
        self.model.toggle_align()

    def easy_alignment(self) -> None:
        self._tray("dyn(6)")
        self.model.toggle_easy()

    # --- one note

    def topmost(self) -> None:
        note = self._any(self._shown)
        self._command(note, "topmost")
        note.topmost = not note.topmost

    def iconize(self) -> None:
        note = self._any(self._shown)
        self._command(note, "iconize")
        self.model.iconize(note)

    def keep_when_elapsed(self) -> None:
        """The menu offers it for an alarm that comes once."""
        note = self._any(self._calm)
        self._command(note, "dontdelete")
        if note.alarm is not None and note.alarm.kind == ONCE:
            self.model.keep_elapsed = not self.model.keep_elapsed

    def restore_when_elapsed(self) -> None:
        """The menu offers it for an iconized note with an alarm."""
        note = self._any(self._calm)
        self._command(note, "rewhenplay")
        if note.alarm is not None and note.iconized:
            self.model.restore_to_ring = not self.model.restore_to_ring

    def colour(self) -> None:
        note = self._any(self._calm)
        self._window(note).command("color")
        dialog = self._dialog("Color")
        left, top, *_ = dialog.info["rect"]
        x, y, *_ = dialog.info["client"]
        if self._reach(dialog, x - left + RED_BOX[0], y - top + RED_BOX[1]):
            dialog.click_at(x - left + RED_BOX[0], y - top + RED_BOX[1])
            if self.dice.random() < 0.7:
                note.colour = RED
        self._answer(dialog, *(("OK", "Return") if note.colour == RED else ("Cancel", "Escape")))
        self._gone()

    def title_buttons(self) -> None:
        """The pictures in the title strip, with the mouse."""
        note = self._any(self._shown)
        window = self._in_front(note)
        part, dx, dy, name = self.dice.choice(
            (("lbl2", 7, 9, "iconize"), ("lbl2", 23, 9, "close"), ("pic", 9, 7, "delete")))
        self._say(name)
        if name == "delete" and len(self.model.notes) == 1 or not self._reach(window.part(part), dx, dy):
            self._say("(not done)")
            return
        window.click(part, dx, dy)
        if name == "delete":
            self._delete(note)
            return
        getattr(self.model, name)(note)
        self._finished()
        if note in self.model.notes:
            wanted = note.visible, self.model.shown_height(note)
            self.desk.wait_equal(lambda: (window.visible, window.rect.height), wanted, 5, f"the picture to {name}")

    def drag(self) -> None:
        note = self._any(self._calm)
        window = self._in_front(note)
        dx = self._place_to_press(note, window)
        if dx is None:
            return
        x, y = self.dice.randrange(20, REACH[0]), self.dice.randrange(20, REACH[1])
        title = window.part("lbl")
        self.desk.hands.drag(*title.point(dx), by=(x - note.x, y - note.y))
        self.desk.wait(lambda: not self.desk.probe.ask("focus")["moving"], 5, "the drag to end")
        self._finished()
        self._read_place(note, window)
        # Wine drops moves of a drag that meets a note's new X window, and what snapped stays off the pointer.
        if max(abs(note.x - x), abs(note.y - y)) > (SNAP_SLACK if self.model.easy else 0):
            self._say(f"(off: {note.x}, {note.y} and not {x}, {y})")

    def resize_by_key(self) -> None:
        note = self._any(self._full)
        window = self._in_hand(note)
        if not window:
            return
        self._command(note, "resize")
        keys = [(self.dice.choice(("Right", "Left", "Down", "Up")), self.dice.random() < 0.3)
                for _ in range(self.dice.randrange(1, 6))]
        for key, wide in keys:
            self.model.resize(note, key, wide)
        self.desk.key(*(f"ctrl+{key}" if wide else key for key, wide in keys), "Return")
        self.desk.wait_equal(lambda: window.rect[2:], (note.width, note.height), 5, f"the note after {keys}")
        self._finished()

    def resize_by_grip(self) -> None:
        note = self._any(self._full)
        window = self._in_front(note)
        if not self._reach(window.part("pic2"), 13, 4):
            self._say("(covered)")
            return
        self.desk.hands.press(*window.part("pic2").point(13, 4))
        try:
            self.desk.wait(lambda: window.rect.width > note.width, 1, "the note to grow")
        except AssertionError:
            self._say("(at its largest)")
        self.desk.hands.release()
        self.desk.wait(lambda: not self.desk.probe.ask("focus")["capture"], 5, "the grip to be let go")
        self._finished()
        width = window.rect.width
        assert note.width <= width <= max(note.width, self.model.right - note.x), f"{width} wide after {note.width}"
        if width != note.width:
            note.width = width
            self.model.realign()

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
        """Opens the body and types, without an end yet."""
        opened = self._open_body(note)
        if not opened:
            return None
        window, editor = opened
        body = note.body
        if len(body) > 200:  # a body that grew long is begun anew
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
        """Opens the editor, and once more when the window manager left next to nothing of it on the screen."""
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
        """Fills in an alarm of a kind for today at the time that is shown."""
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
        """One that does not come before tomorrow."""
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
        """An alarm that comes in a moment, whatever is done meanwhile."""
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
        if self._now() >= due and kind != ONCE:  # a slow machine: whether it rings now or next time, who knows
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
        """Sets the time of the editor so far from now: a click on the arrow of the seconds, the rest by key."""
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
        # One that is covered is not seen to flash, and another one that flashes may be what is seen.
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

    # --- menus and boxes

    def note_menu(self) -> None:
        """Looks at a note's menu and leaves it."""
        note = self._any(self._calm)
        window = self._in_hand(note)
        if not window or not self._reach(window.part("lbl2"), 15, 9):
            return
        window.click("lbl2", 15, 9, button=3)
        menu = self.desk.menu()
        menu.close()
        assert menu.item("Always on Top")["checked"] == note.topmost, f"{menu.items}"
        for caption in ("Restore" if note.iconized else "Iconize", *self._all_captions()):
            assert caption in menu.captions, f"{caption} is not in {menu.captions}"
        self._finished()

    def _all_captions(self) -> tuple[str, str]:
        return ("Show All" if self.model.all_hidden else "Hide All",
                "Restore All" if self.model.all_iconized else "Iconize All")

    def tray_menu(self) -> None:
        menu = self.kardel.tray.menu()
        menu.close()
        for caption in self._all_captions():
            assert caption in menu.captions, f"{caption} is not in {menu.captions}"
        checks = {caption: menu.item(caption)["checked"]
                  for caption in ("Automatic position", "Easy alignment", "Use local files")}
        assert list(checks.values()) == [self.model.align, self.model.easy, self.mark], f"{checks}"
        self._finished()

    def about(self) -> None:
        self.kardel.tray.command("dyn(11)")
        box = self.kardel.dialog()
        self.desk.wait(lambda: box.active, 5, "the box to have the keyboard")
        self.desk.key("Escape")
        self._gone()

    # --- the end and the start

    def second_start(self) -> None:
        assert self.desk.start(env=self.env).wait_ended() == 0
        self._answer(self.kardel.dialog(), "OK", "Return")
        self._gone()

    def restart(self) -> None:
        if not self.model.notes:
            self.new()
        self.check()
        assert self.kardel.exit() == 0
        self._start()

    def kill(self) -> None:
        """As a power cut would, sometimes in the middle of an edit: its text must be there again."""
        self.check()
        if self.dice.random() < 0.5 and self._some(self._full):
            note = self._any(self._full)
            written = self._write_body(note)
            if written:
                _, note.body = written
                draft = self.desk.path() / "KARDEL.TMP"
                self.desk.wait(lambda: draft.exists() and note.body.encode("utf-16-le") in draft.read_bytes(), 10,
                               "the draft")
        self.kardel.kill()
        self._start()

    def switch_store(self) -> None:
        """Changes to the other store, or thinks better of it, and starts the program again."""
        self.check()
        self.mark = not self.mark
        self.kardel.tray.command("dyn(8)")
        box = self._dialog("Use the local files?" if self.mark else "Don't use the local files?")
        agreed = self.dice.random() < 0.7
        self._say("OK" if agreed else "Cancel")
        self._answer(box, *(("OK", "O") if agreed else ("Cancel", "Escape")))
        self._gone()
        if not agreed:
            self.mark = True
            return
        was, self.store.kind = self.store.kind, "files" if self.mark else "registry"
        self.check()
        assert self.kardel.exit() == 0
        back = was == "files" and self.store.kind == "registry" and self.dice.random() < 0.3
        self._start("No" if back else "Yes")

    def _start(self, keep_registry: str = "Yes") -> None:
        """The next start. In registry mode it asks whether the files that are there may go."""
        self.restarts += 1
        self.kardel = self.desk.start(env=self.env)
        if self.store.kind == "registry" and self.desk.read_files().hdr is not None:
            self._press_in_box(keep_registry)
            if keep_registry == "No":
                self.store.kind = "files"
        self.kardel.wait_ready(notes=len(self.model.notes))
        self.mark = self.store.kind == "files"
        self.model.restart()
        self.desk.wait(self._recognised, 10, "the notes to be there again as they were")
        for note in [note for note in self.model.notes if note.ringing]:
            self._rung(note)
        self.check()

    def _recognised(self) -> bool:
        """Finds the new window of every note: notes may have the same title."""
        left = {window.hwnd: (window.title, window.body, window.topmost, window.placed(), window.visible)
                for window in self.kardel.notes()}
        for note in self.model.notes:
            rect = note.x, note.y, note.width, self.model.shown_height(note)
            wanted = note.title, note.body, note.topmost, rect, note.visible
            known = 3 if note.ringing or not self._in_reach(note) else 5  # it may be restored, or shown elsewhere
            note.window = next((window for window, seen in left.items() if seen[:known] == wanted[:known]), 0)
            if not note.window:
                raise LookupError(f"no window is {wanted} among {list(left.values())}")
            del left[note.window]
        return True

    # --- what piles up

    def resources(self) -> dict[str, int]:
        """What the program holds now: handles, graphics objects, private memory in KB; and the session's windows,
        menus and pointers."""
        found = self.desk.probe.ask("resources", self.kardel.tray.window().info["process"])
        rollup = pathlib.Path(f"/proc/{self.kardel.process.pid}/smaps_rollup").read_text().splitlines()
        memory = next(int(line.split()[1]) for line in rollup if line.startswith("Private_Dirty:"))
        return {**found, "memory": memory}

    def _silence_all(self) -> None:
        for note in list(self.model.notes):
            if note.ringing:
                self._command(note, "iconize")
                self.model.iconize(note)

    def tidy(self, notes: int = 3) -> None:
        """Leaves so many plain notes on the desk, all in sight, so that two moments can be compared."""
        self.log.append("tidy")
        self.dice = random.Random(f"{self.seed}/{self.kind}/{self.done}/tidy")
        if self.model.align:
            self.automatic_position()
        if self.model.all_hidden:
            self.hide_all()
        for note in list(self.model.notes):
            if not note.visible:
                self._open(note)
        self._silence_all()
        while len(self.model.notes) < notes:
            self.new()
        self.loud, loud = True, self.loud  # what plays a sound stays loaded for a while
        if not self._some(self._unset):
            self.clear_alarm()
        self.ring()
        self.loud = loud
        self._silence_all()
        while len(self.model.notes) > notes:
            self.delete()
        while len(self.model.notes) < notes:
            self.new()
        for note in self.model.notes:
            if note.iconized:
                self._command(note, "iconize")
                self.model.iconize(note)
        self.check()
