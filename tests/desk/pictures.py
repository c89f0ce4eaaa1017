"""Takes the pictures of docs/pictures from the real program: every face at 96 and at 192 dpi, and the sample desk.

    pictures.py FOLDER [dpi ...]     default: 96 192

A face is a note, a box or a menu in some state, cut out of the screen with a little of the desktop around it."""

import datetime
import pathlib
import signal
import sys

import sample_desk
from kardel_desk import Desk, Rect
from sample_desk import BLUE, GREEN, ORANGE, YELLOW, note

AROUND = 8  # pixels of desktop, at 96 dpi
WM_CLOSE = 0x0010


def in_days(days: int) -> str:
    """A date that leaves a typical countdown."""
    return f"{datetime.date.today() + datetime.timedelta(days):%d/%m/%Y}"


class Pictures:
    """One session at one resolution."""

    def __init__(self, folder: pathlib.Path, dpi: int):
        self.folder, self.dpi = folder, dpi
        scale = dpi / 96
        self.desk = Desk("win64", size=(int(1280 * scale), int(1024 * scale)), dpi=dpi)
        self.desk.wine.link_font("Liberation Sans", "wqy-microhei.ttc", "WenQuanYi Micro Hei")
        folder.mkdir(parents=True, exist_ok=True)

    def take(self, name: str, *rects: Rect) -> None:
        """Saves what is inside the rectangles."""
        gap = AROUND * self.dpi // 96
        left, top = (max(0, min(r[i] for r in rects) - gap) for i in (0, 1))
        right = min(self.desk.display.width, max(r.right for r in rects) + gap)
        bottom = min(self.desk.display.height, max(r.bottom for r in rects) + gap)
        image = self.desk.display.image(left, top, right - left, bottom - top)
        image.quantize(128).save(self.folder / f"{name}-{self.dpi}.png", optimize=True)
        print(f"{name}-{self.dpi}.png")

    def start(self, *notes: dict, **settings):
        """Starts the program with these notes on a plain desktop."""
        self.desk.reset()
        self.desk.display.background(sample_desk.BACKGROUND)
        self.desk.seed_registry({**settings} or None, list(notes))
        return self.desk.run()

    def settled(self, window) -> None:
        """Waits until a window looks the same twice."""
        looks: list[bytes] = [b""]

        def still() -> bool:
            looks.append(window.image().tobytes())
            return looks[-1] == looks[-2]

        self.desk.wait(still, 10, "a picture that stands still")

    def menu_of(self, name: str, open_menu) -> None:
        menu = open_menu()
        rects = [Rect(*item["rect"]) for item in menu.items if item["rect"]]
        self.desk.hands.move(self.desk.display.width - 20, 20)
        self.take(name, *rects)
        menu.close()

    # --- the faces

    def notes(self) -> None:
        kardel = self.start(
            note("Shopping", 40, 40, 190, 142, YELLOW, "Milk, butter\r\nBread (the dark one)\r\nBirthday card for Åse"),
            note("Iconized", 280, 40, 190, 142, GREEN, "", iconized=True),
            note("Call the plumber", 40, 240, 190, 142, ORANGE, "Mr Kowal, 0555 01 42.\r\nThe kitchen tap again.",
                 alarmdate=in_days(1), alarmtime="18:00:00"),
            note("Dark", 280, 240, 190, 142, sample_desk.colour(40, 60, 90), "Readable on any colour"))
        shopping = kardel.note("Shopping")
        self.take("note", shopping.rect)
        self.take("note-iconized", kardel.note("Iconized").rect)
        self.take("note-armed", kardel.note("Call the plumber").rect)
        self.take("note-dark", kardel.note("Dark").rect)
        shopping.edit()
        self.take("note-edited", shopping.rect)
        self.desk.key("Escape")
        shopping.click("lbl", 100 * self.dpi // 96, button=3)
        self.desk.wait(lambda: shopping.part("txtTitle").visible, what="the title's editor")
        self.take("note-title-edited", shopping.rect)
        self.desk.key("Escape")
        self.desk.wait(lambda: not shopping.editing, what="the editor to close")
        shopping.activate()
        self.desk.hands.click(*shopping.part("nota").rect.centre, button=3)
        self.menu_of("menu-note", self.desk.menu)
        self.menu_of("menu-tray", kardel.tray.menu)

    def languages(self) -> None:
        """Letters of many scripts side by side, on notes that overlap: each must look as if it were alone."""
        kardel = self.start(
            note("Receipt – “Café”", 40, 40, 200, 120, YELLOW, "3 × 12,50 € = 37,50 €\r\n“Keep it” … she said – twice"),
            note("Ψώνια", 200, 120, 200, 120, GREEN, "γάλα, ψωμί, ελιές\r\nστις 7 μ.μ.; ναι!"),
            note("買い物", 40, 220, 200, 120, BLUE, "牛乳とパン\r\n三時に駅で会う、雨なら喫茶店"),
            note("Список дел", 260, 260, 200, 120, ORANGE, "Хлеб и молоко — «свежие»\r\nпозвонить маме"),
            note("购物清单", 420, 60, 200, 140, sample_desk.PINK, "牛奶、面包、鸡蛋\r\nабвг αβγδ abcd 你好"),
            note("Shopping", 440, 180, 190, 120, sample_desk.VIOLET, "Milk, butter\r\nBread (the dark one)"))
        notes = kardel.notes()
        self.desk.hands.click(*notes[-1].part("lbl").rect.centre)
        self.settled(notes[-1])
        self.take("languages", *(one.rect for one in notes))
        kardel.note("Список дел").edit()
        self.take("languages-edited", *(one.rect for one in notes))
        self.desk.key("Escape")

    def ringing(self) -> None:
        kardel = self.start(note("Tea", 40, 40, 190, 142, BLUE, "Four minutes are over.", alarmdate="01/01/2020",
                                 alarmtime="08:00:00"), Mute="True", DontDeleteWhenPlay="True")
        tea = kardel.note("Tea")
        for name, white in (("note-ringing", False), ("note-ringing-white", True)):
            self.desk.wait(lambda: (tea.colour == (255, 255, 255)) == white, what=name)
            self.take(name, tea.rect)

    def boxes(self) -> None:
        desk = self.desk
        kardel = self.start(note("Shopping", 40, 40, 190, 142, YELLOW, "Milk"))
        kardel.note("Shopping").command("delete")
        self.box(kardel, "box-question", "No")
        kardel.tray.command("dyn(11)")
        self.box(kardel, "about", None)
        kardel.tray.command("dyn(8)")
        self.box(kardel, "box-store", "Cancel")
        kardel.kill()

        desk.reset()
        desk.seed_files([note("Left over", 40, 40, 190, 142, YELLOW, "")])
        desk.seed_registry({}, [note("Shopping", 40, 40, 190, 142, YELLOW, "Milk")])
        kardel = desk.start()
        self.box(kardel, "box-critical", None)
        kardel.kill()

    def box(self, kardel, name: str, answer: str | None) -> None:
        box = self.desk.wait(lambda: kardel.dialogs(), 10, name)[0]
        self.desk.wait(lambda: box.active, 10, f"{name} to be in front")
        self.settled(box)
        self.take(name, box.rect)
        if answer is None:
            box.post(WM_CLOSE)
        else:
            box.press(answer)
        self.desk.wait(lambda: box not in kardel.dialogs(), 10, f"{name} to close")

    def editor(self) -> None:
        when = {"alarmtime": "08:30:00"}
        kinds = {
            "none": {},
            "once": {"alarmdate": in_days(3), **when},
            "every-day": {"alarmdate": "*", "interval": "eachday", **when},
            "every-month": {"alarmdate": "*", "interval": "eachmonth", "alarmday": "15", **when},
            "every-year": {"alarmdate": "*", "interval": "eachyear", "alarmdaymonth": "24/12", **when},
            "weekday": {"alarmdate": "01/01/2020", "alarmweekday": 5, **when},
            "week": {"alarmdate": "01/01/2020", "alarmweekday": 8, "weekdays": (True,) * 5 + (False, False), **when},
            "repeat": {"alarmdate": in_days(1), "alarmrepeatnumber": 35, "alarmrepeatevery": "mm", **when},
        }
        kardel = self.start(*(note(kind, 40, 40 + 24 * row, 190, 142, YELLOW, "", iconized=True, **alarm)
                              for row, (kind, alarm) in enumerate(kinds.items())))
        for kind in kinds:
            kardel.note(kind).command("alarm")
            self.box(kardel, f"alarm-{kind}", None)

    def all(self) -> None:
        self.notes()
        self.languages()
        self.ringing()
        self.boxes()
        self.editor()
        if self.dpi == 96:
            sample_desk.draw(self.desk, self.folder / "desk.png")


def main() -> None:
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    folder = pathlib.Path(sys.argv[1]).resolve()
    for dpi in map(int, sys.argv[2:] or ("96", "192")):
        pictures = Pictures(folder, dpi)
        try:
            pictures.all()
        finally:
            pictures.desk.close()


if __name__ == "__main__":
    main()
