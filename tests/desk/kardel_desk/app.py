"""The program under test and its windows, as a user or another program sees them."""

import subprocess
import warnings
from typing import NamedTuple

from .ids import IDS, command_id, part_id
from .waiting import wait

TRAY_CLASS, TRAY_TITLE = "ThunderRT6FormDC", "kardel:trayicon"
NOTE_CLASS = "fpost"
DIALOG_CLASSES = ("fmsg", "#32770")
WM_COMMAND, WM_NULL = 0x0111, 0


class Rect(NamedTuple):
    """On the screen, in pixels."""
    x: int
    y: int
    width: int
    height: int

    @property
    def right(self) -> int:
        return self.x + self.width

    @property
    def bottom(self) -> int:
        return self.y + self.height

    @property
    def centre(self) -> tuple[int, int]:
        return self.x + self.width // 2, self.y + self.height // 2


def rgb(colour: int) -> tuple[int, int, int]:
    """A stored colour number -> red, green, blue."""
    return colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF


class Window:
    """One window of the program. Every property is looked up anew; a window that is gone raises LookupError."""

    def __init__(self, desk, hwnd: int):
        self.desk, self.hwnd = desk, hwnd

    def __eq__(self, other):
        return isinstance(other, Window) and other.hwnd == self.hwnd

    def __hash__(self):
        return hash(self.hwnd)

    def __repr__(self):
        info = self.desk.probe.ask("window", self.hwnd)
        return f"<gone window {self.hwnd:#x}>" if info is None else \
            f"<{info['class']} {info['text']!r} {info['rect']}{'' if info['visible'] else ' hidden'}>"

    @property
    def info(self) -> dict:
        """Everything that the helper reports: class, text, rect, client, style, exstyle, owner, process, ..."""
        info = self.desk.probe.ask("window", self.hwnd)
        if info is None:
            raise LookupError(f"window {self.hwnd:#x} is gone")
        return info

    @property
    def exists(self) -> bool:
        return self.desk.probe.ask("window", self.hwnd) is not None

    @property
    def text(self) -> str:
        return self.desk.probe.ask("text", self.hwnd)

    @property
    def rect(self) -> Rect:
        return Rect(*self.info["rect"])

    @property
    def visible(self) -> bool:
        return self.info["visible"]

    @property
    def enabled(self) -> bool:
        return self.info["enabled"]

    @property
    def topmost(self) -> bool:
        return self.info["topmost"]

    @property
    def has_focus(self) -> bool:
        """Whether keys arrive here: the X server sends them to the program, and Windows to this window."""
        return self.desk.probe.ask("focus")["focus"] == self.hwnd and self.desk.keys_reach_kardel()

    @property
    def active(self) -> bool:
        return self.desk.probe.ask("focus")["foreground"] == self.hwnd

    def post(self, message: int, wparam: int = 0, lparam: int = 0) -> None:
        self.desk.probe.ask("post", self.hwnd, message, wparam, lparam)

    def send(self, message: int, wparam: int = 0, lparam: int = 0, timeout: float = 5.0) -> int:
        """The message's result. AssertionError when the window does not answer in time."""
        answer = self.desk.probe.ask("send", self.hwnd, message, wparam, lparam, int(timeout * 1000))
        assert answer["answered"], f"{self!r} did not answer message {message:#x} within {timeout:g} s"
        return answer["result"]

    def command(self, item: int | str) -> None:
        """Posts a menu command: an id, or its name such as "new" or "dyn(2)"."""
        self.post(WM_COMMAND, command_id(item))

    def point(self, dx: int | None = None, dy: int | None = None) -> tuple[int, int]:
        """A place of the window on the screen, by default its middle. Negative values count from the right or
        bottom."""
        rect = self.rect
        x = rect.centre[0] if dx is None else (rect.x if dx >= 0 else rect.right) + dx
        y = rect.centre[1] if dy is None else (rect.y if dy >= 0 else rect.bottom) + dy
        return x, y

    @property
    def managed(self) -> bool:
        """Whether the window manager manages it."""
        try:
            return bool(self.desk.display.place(self.info["x11"]))
        except LookupError:
            return False

    def settle(self) -> None:
        """Waits until the window manager knows the window and Wine knows where it is. While the window manager takes it
        over, the window lies in the screen's corner; when Wine looks just then, it goes on believing so."""
        wait(lambda: self.desk.display.place(self.info["x11"]), 10, f"the window manager to know {self!r}")
        for _ in range(2):  # Wine reads the X server's events between two messages
            self.send(WM_NULL)
        wait(self.placed, 10, f"Wine and the window manager to agree about {self!r}")

    def placed(self) -> Rect:
        """Where it is, even if the window manager may just be taking it over. As long as Wine believes something else,
        the place is sent again and LookupError raised."""
        info = self.info
        try:
            place = self.desk.display.place(info["x11"])
        except LookupError:  # only Windows knows
            return Rect(*info["rect"])
        if place not in (info["rect"][:2], info["client"][:2]):
            self.desk.display.tell_place(info["x11"])
            raise LookupError(f"{self!r} is at {place} for the window manager")
        return Rect(*info["rect"])

    def reach(self, dx: int | None = None, dy: int | None = None) -> tuple[int, int]:
        """Moves the mouse to a place of the window and returns the place, once the window is really there. It is
        looked up anew: a window that the window manager is just taking over is elsewhere the next moment."""
        def reached():
            at = self.point(dx, dy)
            self.desk.hands.move(*at)
            if self.under_pointer():
                return at
            Window(self.desk, self.info["root"]).placed()
            return None
        return wait(reached, 10, f"the pointer to reach {self!r}")

    def click_at(self, dx: int | None = None, dy: int | None = None, button: int = 1, double: bool = False) -> None:
        self.desk.hands.click(*self.reach(dx, dy), button=button, double=double, ready=self.under_pointer)

    def drag_at(self, by: tuple[int, int], dx: int | None = None, dy: int | None = None, **more) -> None:
        self.desk.hands.drag(*self.reach(dx, dy), by=by, ready=self.under_pointer, **more)

    def under_pointer(self) -> bool:
        """Whether the pointer is on the window as the X server shows it, a little later than Windows."""
        info = self.desk.probe.ask("window", self.hwnd)
        return info is None or info["x11"] in self.desk.display.under_pointer()

    def pixel(self, dx: int | None = None, dy: int | None = None) -> tuple[int, int, int]:
        return self.desk.pixel(*self.point(dx, dy))

    def image(self):
        """The window's place on the screen as a picture."""
        rect = self.rect
        return self.desk.display.image(rect.x, rect.y, rect.width, rect.height)

    def parts(self) -> dict[int, "Part"]:
        """Every child by its id."""
        return {info["id"]: Part(self.desk, info["hwnd"]) for info in self.desk.probe.ask("children", self.hwnd)}

    def part(self, name: int | str) -> "Part":
        """A child by name ("nota", "txtTitle", "chkWeek(3)") or id."""
        wanted = part_id(name)
        parts = self.parts()
        if wanted not in parts:
            raise LookupError(f"{self!r} has no part {name!r}, only {sorted(parts)}")
        return parts[wanted]


class Part(Window):
    """A child window: click() and drag() take its own places."""

    def click(self, dx: int | None = None, dy: int | None = None, button: int = 1, double: bool = False) -> None:
        self.click_at(dx, dy, button, double)

    def drag(self, by: tuple[int, int], dx: int | None = None, dy: int | None = None, **more) -> None:
        self.drag_at(by, dx, dy, **more)


class EditorPart(Part):
    """The editor of a note's text or title, which exists only during an edit: it is looked up whenever it is used, and
    while it is not there it is invisible, empty and takes no input."""

    def __init__(self, note: Window, wanted: int):
        self.desk, self._note, self._wanted = note.desk, note, wanted

    @property
    def hwnd(self) -> int:
        found = (info["hwnd"] for info in self.desk.probe.ask("children", self._note.hwnd)
                 if info["id"] == self._wanted)
        return next(found, 0)

    @property
    def visible(self) -> bool:
        info = self.desk.probe.ask("window", self.hwnd)
        return info is not None and info["visible"]

    @property
    def text(self) -> str:
        hwnd = self.hwnd
        return self.desk.probe.ask("text", hwnd) if hwnd else ""

    @property
    def has_focus(self) -> bool:
        return self.hwnd != 0 and super().has_focus

    def send(self, message: int, wparam: int = 0, lparam: int = 0, timeout: float = 5.0) -> int:
        return super().send(message, wparam, lparam, timeout) if self.hwnd else 0


_EDITORS = IDS["ID_TXTNOTA"], IDS["ID_TXTTITLE"]


class Note(Window):
    def part(self, name: int | str) -> Part:
        wanted = part_id(name)
        return EditorPart(self, wanted) if wanted in _EDITORS else super().part(name)

    @property
    def title(self) -> str:
        return self.text

    @property
    def body(self) -> str:
        return self.part("nota").text

    @property
    def editing(self) -> bool:
        """Whether the body or the title is open for editing."""
        return any(self.part(editor).visible for editor in _EDITORS)

    @property
    def colour(self) -> tuple[int, int, int]:
        """The colour on the screen, taken at the left edge of the text, halfway down, where there is no letter."""
        return self.part("nota").pixel(1, None)

    def click(self, part: int | str = "nota", dx: int | None = None, dy: int | None = None, button: int = 1,
              double: bool = False) -> None:
        self.part(part).click(dx, dy, button, double)

    def drag(self, part: int | str = "lbl", by: tuple[int, int] = (0, 0), dx: int | None = 40, dy: int | None = None,
             **more) -> None:
        self.part(part).drag(by, dx, dy, **more)

    def awake(self) -> None:
        """Brings the note to the front with the keyboard. Wine gives a note a window of another kind at the first
        change while it is active; this provokes the change and waits until it is over. The change itself may give the
        keyboard to the desktop: then the note is brought to the front once more."""
        for tries in range(3, 0, -1):
            self.desk.probe.ask("forward", self.hwnd)
            try:
                wait(lambda: self.active, 3, f"{self!r} to become active")
                break
            except AssertionError:
                if tries == 1:
                    raise
        self.settle()

    def activate(self) -> None:
        """Gives the note the keyboard with a click on its title."""
        self.awake()
        self.click("lbl", 40 * self.desk.dpi // 96)
        wait(lambda: self.active and self.desk.keys_reach_kardel(), 5, f"{self!r} to become active")

    def edit(self) -> Part:
        """Opens the body's editor with a double click and returns it, ready for typing."""
        self.click("nota", double=True)
        editor = self.part("txtNota")
        wait(lambda: editor.visible and editor.has_focus, 5, f"the editor of {self!r}")
        return editor

    def append(self, text: str) -> None:
        """Opens the body's editor and types at the end of the text; the edit stays open."""
        self.edit()
        self.desk.key("ctrl+End")
        self.desk.type(text)

    def cancel_edit(self) -> None:
        """Leaves the open editor with Esc."""
        self.desk.key("Escape")
        wait(lambda: not self.editing, 5, "the edit to end")


class Dialog(Window):
    """A message box, the About box or the alarm editor."""

    def press(self, button: int | str) -> None:
        """Clicks a button, by name, id or its text ("OK", "&Yes"; "&" may be left out)."""
        self.button(button).click()

    def button(self, which: int | str) -> Part:
        if isinstance(which, str) and which.upper() not in ("BTN1", "BTN2", "BTNOK", "BTNCANCEL"):
            for part in self.parts().values():
                if part.text.replace("&", "").lower() == which.replace("&", "").lower():
                    return part
            raise LookupError(f"{self!r} has no button {which!r}")
        return self.part(which)

    def texts(self) -> list[str]:
        """Every text that can be read in it."""
        return [part.text for part in self.parts().values() if part.visible and part.text]


class Menu:
    """An open popup menu; `items` as dictionaries: id, text, checked, enabled, default, separator, submenu, rect."""

    def __init__(self, desk, items: list[dict]):
        self.desk, self.items = desk, items

    def __repr__(self):
        return f"<menu {self.captions}>"

    @property
    def captions(self) -> list[str]:
        """Texts from top to bottom; "-" for a separator."""
        return ["-" if item["separator"] else item["text"] for item in self.items]

    def item(self, which: int | str) -> dict:
        """By id, or by text without "&" and without the shortcut."""
        for item in self.items:
            plain = item["text"].split("\t")[0].replace("&", "")
            if not item["separator"] and which in (item["id"], item["text"], plain):
                return item
        raise LookupError(f"no entry {which!r} in {self.captions}")

    def choose(self, which: int | str) -> None:
        """Clicks an entry with the mouse."""
        self.desk.hands.click(*Rect(*self.item(which)["rect"]).centre)

    def close(self) -> None:
        """Closes it without choosing, by a click elsewhere. (Its keys work only while a note has the keyboard.)"""
        self.desk.click_desktop()
        wait(lambda: not self.desk.menus(), 5, "the menu to close")


class Tray:
    """The program's icon in the tray panel, and the hidden window behind it."""

    def __init__(self, desk):
        self.desk = desk

    def window(self) -> Window:
        for info in self.desk.probe.ask("windows", TRAY_CLASS):
            if info["text"] == TRAY_TITLE:
                return Window(self.desk, info["hwnd"])
        raise LookupError("no tray window")

    def icon(self) -> Rect:
        icons = self.desk.display.tray_icons()
        if not icons:
            raise LookupError("no icon in the tray panel")
        return Rect(*icons[0])

    @property
    def painted(self) -> bool:
        """Whether the icon's picture is there, which also means that it takes clicks; assumed when a note covers it."""
        icon = self.icon()
        if len(self.desk.display.image(*icon).getcolors(1 << 16)) > 1:
            return True
        x, y = icon.centre
        return any(rect.x <= x < rect.right and rect.y <= y < rect.bottom for rect in
                   (Rect(*info["rect"]) for info in self.desk.probe.ask("windows", NOTE_CLASS) if info["visible"]))

    @property
    def icons(self) -> int:
        """How many icons the panel shows."""
        return len(self.desk.display.tray_icons())

    def click(self, button: int = 1, double: bool = False) -> None:
        icon = wait(self.icon, 10, "the tray icon")
        self.desk.hands.click(*icon.centre, button=button, double=double)

    def menu(self) -> Menu:
        """Right-clicks the icon and returns the menu."""
        self.click(3)
        return self.desk.menu()

    def command(self, item: int | str) -> None:
        """An id (400 and up), or "dyn(2)", "dyn2(0)"."""
        self.window().command(item)


class Kardel:
    """A running copy of the program."""

    def __init__(self, desk, process: subprocess.Popen, folder: str, expected_notes: int, log):
        self.desk, self.process, self.folder = desk, process, folder
        self.tray = Tray(desk)
        self._expected_notes, self.log = expected_notes, log
        self.killed = False

    @property
    def alive(self) -> bool:
        return self.process.poll() is None

    def wait_ready(self, notes: int | None = None, timeout: float = 20.0) -> "Kardel":
        """Waits until the icon is there, every note has its window, and the program takes input. `notes`: how many note
        windows to expect, including closed ones; by default as many as were seeded. Returns itself."""
        expected = self._expected_notes if notes is None else notes

        def ready():
            assert self.alive, f"the program ended with code {self.process.returncode}: {self.output()}"
            dialogs = self.dialogs()
            assert not dialogs, f"a dialog is open: {[(d.text, d.texts()) for d in dialogs]}"
            self.tray.window()
            seen = len(self.notes())
            assert seen == expected, f"{seen} of {expected} notes"
            return True

        wait(ready, timeout, "the program to be ready")
        self.tray.window().send(WM_NULL, timeout=timeout)  # answered once the start is over and messages are processed
        self._wait_for_icon(timeout)
        return self

    def _wait_for_icon(self, timeout: float) -> None:
        try:
            wait(lambda: self.tray.painted, timeout, "the tray icon")
        except AssertionError:
            # Once in some thousand starts the panel does not take in what Wine offers, and is empty. Restarted once per
            # session, it asks every program for its icon: one that never shows any fails at the next start.
            if self.tray.icons or self.desk.panel_restarted:
                raise
            self.desk.panel_restarted = True
            warnings.warn("the panel took in no icon and was restarted")
            self.desk.display.restart_panel()
            wait(lambda: self.tray.painted, timeout, "the tray icon of a new panel")

    def notes(self) -> list[Note]:
        """Every note window by title, including hidden ones."""
        found = self.desk.probe.ask("windows", NOTE_CLASS)
        return [Note(self.desk, info["hwnd"]) for info in sorted(found, key=lambda info: info["text"])]

    def visible_notes(self) -> list[Note]:
        return [note for note in self.notes() if note.visible]

    def note(self, title: str | None = None) -> Note:
        """The note with this title; without one, the only note there is. Waits for it for a little while."""
        def look():
            notes = self.notes()
            matching = [note for note in notes if title is None or note.title == title]
            if len(matching) != 1:
                raise LookupError(f"{len(matching)} notes match {title!r} among {notes!r}")
            return matching[0]
        return wait(look, 5, f"the note {title!r}")

    def stacking(self) -> list[str]:
        """Titles of the visible notes, front to back."""
        return [info["text"] for info in self.desk.probe.ask("windows", NOTE_CLASS) if info["visible"]]

    def dialogs(self) -> list[Dialog]:
        return [Dialog(self.desk, info["hwnd"]) for kind in DIALOG_CLASSES
                for info in self.desk.probe.ask("windows", kind) if info["visible"]]

    def dialog(self, timeout: float = 10.0) -> Dialog:
        """Waits for a message box, the About box or the alarm editor, ready to be clicked."""
        dialog = wait(lambda: self.dialogs(), timeout, "a dialog")[0]
        dialog.settle()
        return dialog

    def exit(self, timeout: float = 15.0) -> int:
        """Ends the program through the tray menu's Exit and returns its exit code."""
        self.tray.command(IDS["IDM_DYN_LAST"])
        return self.wait_ended(timeout)

    def wait_ended(self, timeout: float = 15.0) -> int:
        try:
            return self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the program did not end within {timeout:g} s; "
                                 f"dialogs: {[(d.text, d.texts()) for d in self.dialogs()]}") from None

    def kill(self) -> None:
        """Ends the program as a power cut would. The stores stay as they are."""
        self.killed = True
        self.process.kill()
        self.process.wait()
        wait(lambda: not self.desk.probe.ask("windows", TRAY_CLASS), 10, "the killed program's windows to go")

    def output(self) -> str:
        """What it wrote to its console, where a crash leaves a report, and to its own log."""
        own = self.desk.path(f"{self.folder}\\KARDEL.log")
        return "".join(log.read_text(errors="replace") for log in (self.log, own) if log.exists())
