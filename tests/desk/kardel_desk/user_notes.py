"""What the random user does with whole notes: makes, deletes, hides, shrinks, colours, drags and resizes them."""

from .desk_model import NEW_SIZE, ONCE, Note

REACH = 500, 500              # no note is dragged further right or down, to keep columns on the screen
RED, RED_BOX = 255, (20, 55)  # in the system's colour dialog
SNAP_SLACK = 20               # pixels by which a snapped note may be off under Wine


class NoteActions:
    """A part of RandomUser."""

    # --- notes that come and go

    def _made(self, before: set[int]) -> None:
        def made():  # a note that was silenced and deleted just before may still have its window
            fresh = {n.hwnd for n in self.kardel.notes()} - before
            return fresh if len(fresh) == 1 else None
        note = Note(self.desk.wait(made, 10, "the new note").pop(), f"- {len(self.model.notes) + 1} -", "", 0, 0, *NEW_SIZE)
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
        """The menu offers this for an alarm that rings once."""
        note = self._any(self._calm)
        self._command(note, "dontdelete")
        if note.alarm is not None and note.alarm.kind == ONCE:
            self.model.keep_elapsed = not self.model.keep_elapsed

    def restore_when_elapsed(self) -> None:
        """The menu offers this for an iconized note with an alarm."""
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
        """Presses the pictures in the title strip with the mouse."""
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
        title, at = window.part("lbl"), window.rect  # of a note beyond the screen's edge, another than the model's
        self.desk.hands.drag(*title.point(dx), by=(x - at.x, y - at.y))
        self.desk.wait(lambda: not self.desk.probe.ask("focus")["moving"], 5, "the drag to end")
        self._finished()
        self._read_place(note, window)
        # Wine drops moves of a drag during which a note gets a new X window, and a snapped note stays away from the
        # pointer.
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
            self.model.resize(note, key, wide, window.rect[:2])
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
        left, _, width, _ = window.rect
        assert note.width <= width <= max(note.width, self.model.right - left), f"{width} wide after {note.width}"
        if width != note.width:
            note.width = width
            self.model.realign()
