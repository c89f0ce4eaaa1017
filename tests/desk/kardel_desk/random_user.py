"""A user who does anything at any time, and is checked against a model of the desk.

What he does follows from his seed alone. What only the screen decides (where a drag with snapping ends, how wide a
title is) is read from the window, and the store must then agree. Everything else is predicted."""

import os
import pathlib
import random

from . import alarms
from .app import WM_COMMAND, Note as NoteWindow
from .desk_model import MOST_NOTES, TWIPS, DeskModel, Note
from .ids import command_id, part_id
from .stores import KINDS, Store
from .user_edits import EditActions
from .user_notes import NoteActions

STRIP = 20  # pixels; the height of an iconized note
WORDS = ("milk", "bread", "call back", "42", "(sic)", "100 %s", "a & b", "\u00e8 vero", "so?", r"C:\n", "''")
ACTION_SECONDS = 20


class RandomUser(NoteActions, EditActions):
    """act() does one thing, check() compares the desk and the store with the model."""

    def __init__(self, desk, kind: str, seed: int, notes: int = 4):
        self.desk, self.seed, self.store = desk, seed, Store(desk, kind)
        self.kind = kind  # of the first start, which a replay needs
        self.both = False            # whether a switch in this run keeps both stores in step
        self.done = self.restarts = self.checks = self.switches = 0
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
            (self.second_start, 0.4), (self.restart, 0.7), (self.kill, 0.7), (self.switch_store, 1.5)]

    # --- the run

    def act(self, action=None) -> None:
        """Does something that is currently possible: the thing named, or any."""
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
        """Does each thing once, as far as possible, because much of the system is loaded when it is first needed."""
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
        """Makes sure that Wine knows where every note is, since a program that asks while the window manager takes one
        over is told a wrong place, and that the window manager knows every note, since others lie above all boxes."""
        for note in self.model.notes:
            if note.visible:
                if not self._window(note).managed:
                    self._window(note).awake()
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

    # Which notes something can be done to.

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
        """Describes what differs from the model."""
        model, notes = self.model, self.model.notes
        if not self.kardel.alive:
            return [f"the program ended: {self.kardel.output()}"]
        found = [f"a box is open: {box.texts()}" for box in self.kardel.dialogs()]
        windows = {info["hwnd"]: info for info in self.desk.probe.ask("windows", "fpost")}
        if set(windows) != {note.window for note in notes}:
            return found + [f"windows {[info['text'] for info in windows.values()]} for {[n.title for n in notes]}"]
        for number, note in enumerate(notes, 1):
            found += [f"note {number}, {what} on screen: {seen!r}, not {value!r}"
                      for what, seen, value in self._on_screen(note, windows[note.window]) if seen != value]
        for kind in self._kept():
            found += self._differences_in(Store(self.desk, kind))
        settings = self.desk.registry("setting") or {}
        found += [f"{key} is stored as {settings.get(key)}" for key, value in (
            ("AlignAll", model.align), ("EasyAlign", model.easy), ("DontDeleteWhenPlay", model.keep_elapsed),
            ("RestoreWhenPlay", model.restore_to_ring)) if settings.get(key) != str(value)]
        found += [f"{log.name}: {log.read_text(errors='replace')[-300:]}"
                  for log in self.desk.path().glob("*.[lL][oO][gG]")]
        return found

    def _kept(self) -> tuple[str, ...]:
        """The stores that must currently hold every note."""
        return KINDS if self.both else (self.store.kind,)

    def _differences_in(self, store: Store) -> list[str]:
        """Describes what one store holds differently from the model."""
        stored, notes = store.notes(), self.model.notes
        if len(stored) != len(notes):
            return [f"{store.kind}: {[record['Titolo'] for record in stored]} for {[note.title for note in notes]}"]
        found = [f"{store.kind}: note {number}, {key}: {record[key]!r}, not {value!r}"
                 for number, (note, record) in enumerate(zip(notes, stored), 1)
                 for key, value in note.stored().items() if record[key] != value]
        if store.kind == "registry":
            sections = {name for name in self.desk.sections() if name.startswith("kardel-")}
            if sections != {f"kardel-{number}" for number in range(1, len(notes) + 1)}:
                found.append(f"the registry holds {sorted(sections)}")
        return found

    def _on_screen(self, note: Note, info: dict):
        """Pairs of what is seen of a note and what the model says."""
        parts = self._parts(note)
        yield "title", info["text"], note.title
        yield "title strip", parts["lbl"].text, " " * 5 + note.title
        yield "body", parts["nota"].text, note.body
        yield "shown", info["visible"], note.visible
        if not note.ringing:  # a ringing note comes above what covers it, unless it has the keyboard
            yield "always on top", info["topmost"], note.topmost
        yield "editor", self._window(note).editing, False
        # Wine may lose the place of a hidden window; the program corrects that when it shows the window.
        if note.visible and self._in_reach(note):
            yield "rectangle", tuple(info["rect"]), (note.x, note.y, note.width, self.model.shown_height(note))
        if note.visible:
            yield "body shown", parts["nota"].visible, not note.iconized
            yield "time strip", parts["pic_time"].visible, note.alarm is not None and not note.iconized

    def _in_reach(self, note: Note) -> bool:
        """Whether it is shown where it belongs. A note in a column that goes beyond the screen is shown elsewhere: by
        the program if its title could not be seen, otherwise by the window manager."""
        return self.model.is_on_screen(note)

    def _parts(self, note: Note):
        parts = self._window(note).parts()
        return {name: parts[part_id(name)] for name in ("lbl", "nota", "pic_time")}

    # --- hands

    def _window(self, note: Note) -> NoteWindow:
        return NoteWindow(self.desk, note.window)

    def _command(self, note: Note, name: str) -> None:
        """Gives a command of a note's menu, which is done when this returns."""
        self._window(note).send(WM_COMMAND, command_id(name), timeout=ACTION_SECONDS)

    def _tray(self, name: str) -> None:
        self.kardel.tray.window().send(WM_COMMAND, command_id(name), timeout=ACTION_SECONDS)

    def _finished(self) -> None:
        """Waits until everything typed and clicked so far has been handled. Wine reads its X server's events between
        two messages."""
        for _ in range(2):
            self.kardel.tray.window().send(0, timeout=ACTION_SECONDS)

    def _reach(self, part, dx: int | None, dy: int | None = None) -> bool:
        """Moves the mouse to a place of a window. False when something covers it there, so that nobody would click."""
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
        self.desk.wait(lambda: window.active and self.desk.keys_reach_kardel(), 5, "the keyboard")
        self._finished()
        return window

    def _read_place(self, note: Note, window) -> None:
        rect = self.desk.wait(window.placed, 5, "the note's place")
        note.x, note.y = rect.x, rect.y

    def _read_places(self) -> None:
        """For columns that begin at a note that is shown elsewhere: only the program knows where that is."""
        self.model.lost_places = False
        self._say("(places read)")
        for note, record in zip(self.model.notes, self.store.notes()):
            note.x, note.y = record["x"] // TWIPS, record["y"] // TWIPS

    def _dialog(self, title: str):
        box = self.kardel.dialog()
        self.desk.wait_equal(lambda: box.text, title, 5, "the box's title")
        return box

    def _answer(self, box, button: str, key: str) -> None:
        """Presses a button with the mouse, or by key where a note that is always on top covers the button."""
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

    # --- menus and boxes

    def note_menu(self) -> None:
        """Opens a note's menu and leaves it."""
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
        """Ends the program as a power cut would, sometimes in the middle of an edit, whose text must be there again."""
        self.check()
        if self.dice.random() < 0.5 and self._some(self._full):
            note = self._any(self._full)
            written = self._write_body(note)
            if written:
                _, note.body = written
                self._say("in an edit")
                self.desk.wait(lambda: all(self._drafted(note, kind) for kind in self._kept()), 10, "the draft")
        self.kardel.kill()
        self._start()

    def _drafted(self, note: Note, kind: str) -> bool:
        """Whether a store holds the text of a note, as its body or as the draft of an edit."""
        number = self.model.notes.index(note) + 1
        if Store(self.desk, kind).notes()[number - 1]["Nota"] == note.body:
            return True
        if kind == "registry":
            return note.body in self.desk.registry(f"kardel-{number}").get("draft", "")
        drafts = self.desk.path() / "KARDEL.TMP"
        return drafts.exists() and note.body.encode("utf-16-le") in drafts.read_bytes()

    def switch_store(self) -> None:
        """Changes to the other store, or changes his mind. Until the next start both hold every note."""
        self.check()
        self.mark = not self.mark
        self.kardel.tray.command("dyn(8)")
        box = self._dialog("Use the local files?" if self.mark else "Don't use the local files?")
        agreed = self.dice.random() < 0.7
        wanted = "files" if self.mark else "registry"
        self._say(f"{wanted}: {'OK' if agreed else 'Cancel'}")
        self._answer(box, *(("OK", "O") if agreed else ("Cancel", "Escape")))
        self._gone()
        if not agreed:
            self.mark = True
            return
        self.switches += 1
        self.both = self.both or wanted != self.store.kind
        self.store.kind = wanted
        self.check()

    def _start(self) -> None:
        """The next start. In registry mode it asks whether the files that are there may go."""
        self.restarts += 1
        self.kardel = self.desk.start(env=self.env)
        if self.store.kind == "registry" and self.desk.read_files().hdr is not None:
            keep_registry = self.dice.choice(("Yes", "No"))
            self._say(f"delete the files: {keep_registry}")
            self._press_in_box(keep_registry)
            if keep_registry == "No":
                self.store.kind = "files"
        self.both = False
        self.kardel.wait_ready(notes=len(self.model.notes))
        self.mark = self.store.kind == "files"
        self.model.restart()
        if self.model.lost_places:
            self._read_places()
        self.desk.wait(self._recognised, 10, "the notes to be there again as they were")
        for note in [note for note in self.model.notes if note.ringing]:
            self._rung(note)
        self.check()

    def _recognised(self) -> bool:
        """Finds the new window of every note: notes may have the same title."""
        left = {window.hwnd: (window.title, window.body, window.topmost, window.placed(), window.visible)
                for window in self.kardel.notes()}
        # A ringing note may be restored, and one beyond the screen is shown elsewhere: those are looked for last.
        def known(note: Note) -> int:
            if note.ringing:
                return 2  # it may have come up above the others
            return 5 if self._in_reach(note) else 3

        for note in sorted(self.model.notes, key=known, reverse=True):
            rect = note.x, note.y, note.width, self.model.shown_height(note)
            wanted = note.title, note.body, note.topmost, rect, note.visible
            note.window = next((window for window, seen in left.items() if seen[:known(note)] == wanted[:known(note)]), 0)
            if not note.window:
                raise LookupError(f"no window is {wanted} among {list(left.values())}")
            del left[note.window]
        return True

    # --- what piles up

    def resources(self) -> dict[str, int]:
        """What the program currently holds: handles, graphics objects, allocated blocks of memory, the size of these
        and of all its private memory in KB; and the session's windows, menus and pointers."""
        found = self.desk.probe.ask("resources", self.kardel.tray.window().hwnd)
        rollup = pathlib.Path(f"/proc/{self.kardel.process.pid}/smaps_rollup").read_text().splitlines()
        memory = next(int(line.split()[1]) for line in rollup if line.startswith("Private_Dirty:"))
        return {**found, "memory": memory}

    def _silence_all(self) -> None:
        for note in list(self.model.notes):
            if note.ringing:
                self._command(note, "iconize")
                self.model.iconize(note)

    def tidy(self, notes: int = 3) -> None:
        """Leaves so many plain notes on the desk, all visible, so that two moments can be compared."""
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
        self.loud, loud = True, self.loud  # the code that plays sounds stays loaded for a while
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
