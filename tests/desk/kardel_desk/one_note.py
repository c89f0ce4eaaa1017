"""What scenarios about one note share: a note to handle, in either store, and what the store says about it."""

import pytest

from .stores import Store

TWIP = 15  # twips per pixel at 96 dpi
LEAD = " " * 5
GLYPHS = {"iconize": ("lbl2", 7, 9), "close": ("lbl2", 23, 9), "delete": ("pic", 9, 7)}  # where each picture is pressed
WIDER, TALLER = (13, 4), (4, 12)  # the two arrows of the grip

# In the middle of the screen, away from its edges; 200 x 150 pixels at 400, 300.
NOTE = {"Titolo": "Shopping", "Nota": "milk and bread", "x": 6000, "y": 4500, "width": 3000, "height": 2250,
        "backcolor": 0xC0FFC0}
OTHER = {**NOTE, "Titolo": "other", "Nota": "second", "x": 12000, "y": 4500, "backcolor": 0xFFC0C0}
FAR_ALARM = {"alarmdate": "01/01/2999", "alarmtime": "10:00:00"}


class Hand:
    """One store of the desk, the program running on it, and short ways to both."""

    def __init__(self, desk, kind: str):
        self.desk, self.kind = desk, kind
        self.store = Store(desk, kind)

    def run(self, *notes, **settings):
        """Stores the notes, by default an ordinary one, starts the program and wakes its notes; returns the program."""
        self.store.seed([dict(note) for note in notes or (NOTE,)], **settings)
        self.kardel = self.desk.run()
        for note in self.kardel.visible_notes():
            note.awake()
        return self.kardel

    def note(self, title: str | None = None):
        return self.kardel.note(title)

    def stored(self, key: str, number: int = 1):
        return self.store.notes()[number - 1][key]

    def wait_stored(self, number: int = 1, **fields) -> None:
        """Waits until the store holds these fields of a note."""
        for key, value in fields.items():
            self.desk.wait_equal(lambda: self.stored(key, number), value, 5, f"{key} in the store")

    def press(self, note, picture: str, **how) -> None:
        """Clicks a picture of the title strip: "iconize", "close" or "delete"."""
        part, dx, dy = GLYPHS[picture]
        note.click(part, dx, dy, **how)

    def open_menu(self, note):
        """Opens the note's menu with the right button, between the two pictures at its left end."""
        note.click("lbl2", 15, 9, button=3)
        return self.desk.menu()

    def entries(self, note) -> list[str]:
        """What the note's menu offers; the menu is closed again."""
        menu = self.open_menu(note)
        menu.close()
        return menu.captions

    def menu(self, note, entry: str) -> None:
        """Chooses an entry of the note's menu with the mouse."""
        self.open_menu(note).choose(entry)
        self.desk.wait(lambda: not self.desk.menus(), 5, "the menu to close")

    def settled(self, note) -> bool:
        """Waits until everything typed and clicked so far has been handled and the note has answered."""
        for _ in range(2):  # Wine reads its X server's events between two messages
            note.send(0)
        return True


# For what happens only on the screen: once rather than once for each store.
any_store = pytest.mark.parametrize("hand", ["registry"], indirect=True)
