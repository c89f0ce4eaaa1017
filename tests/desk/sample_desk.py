"""Draws a desk of notes as somebody might have it: sample_desk.py PICTURE. Prints the picture's path.

The notes come from the data files, as after an ordinary start; the program ends through its tray menu."""

import datetime
import pathlib
import signal
import sys

from kardel_desk import Desk

BACKGROUND = (66, 104, 126)


def colour(red: int, green: int, blue: int) -> int:
    return red | green << 8 | blue << 16


YELLOW, GREEN, BLUE = colour(255, 255, 128), colour(198, 239, 178), colour(189, 220, 250)
PINK, ORANGE, VIOLET, WHITE = colour(255, 205, 215), colour(255, 208, 140), colour(220, 205, 250), colour(248, 246, 236)


def note(title: str, x: int, y: int, width: int, height: int, back: int, body: str, **more) -> dict:
    """Places and sizes in pixels."""
    return {"Titolo": title, "Nota": body, "x": x * 15, "y": y * 15, "width": width * 15, "height": height * 15,
            "backcolor": back, **more}


def notes(now: datetime.datetime) -> list[dict]:
    call = now + datetime.timedelta(days=1, hours=2, minutes=17)
    # The note on top comes last, because Wine shows windows that have not been clicked yet in the order of their
    # creation.
    return [
        note("Shopping", 48, 40, 210, 200, YELLOW,
             "Milk, butter\nBread (the dark one)\nTomatoes, 1 kg\nCoffee\nBatteries AA\nBirthday card for Åse\n"
             "Light bulb for the hall"),
        note("Sunday dinner", 208, 172, 220, 130, YELLOW,
             "Six of us, Marta brings the cake.\nTable at 19:30 if it rains.\n\nAsk Paul about the chairs."),
        note("Call the plumber", 500, 48, 240, 116, ORANGE,
             "Mr Kowal, 0555 01 42.\nThe kitchen tap again; he wanted to see the old valve.",
             alarmdate=f"{call:%d/%m/%Y}", alarmtime=f"{call:%H:%M:%S}"),
        note("Ricetta: torta di mele", 800, 40, 220, 206, GREEN,
             "3 mele, 250 g di farina\n2 uova, 120 g di zucchero\n1 bustina di lievito\nscorza di limone\n\n"
             "180° per 40 minuti, finché è dorata. Più cannella!"),
        note("Réunion d'équipe", 1056, 40, 190, 126, BLUE,
             "Mardi à 10 h, salle Éléonore\n- budget prévu\n- congés d'été\n- où déplacer l'imprimante ?"),
        note("Geburtstage", 500, 214, 200, 130, PINK,
             "Jürgen  4. März\nÄnne  19. Mai\nFlöhchen  30. Juni\n\nGrüße nicht vergessen!"),
        note("Garden", 48, 360, 230, 140, GREEN,
             "Roses: cut back by half\nSow beans after the 15th\nWater barrel leaks\nHedge: neighbour's turn?"),
        note("Train to Málaga", 330, 400, 240, 110, VIOLET,
             "Salida 08:35, vía 7, coche 12\nAsiento 4A, ventana\n¿Llevar el paraguas? ¡Sí!"),
        note("Books to read", 1056, 196, 190, 190, BLUE, "The long way north.\nTwo on bees.", iconized=True),
        note("Wi-Fi at the cottage", 1056, 224, 190, 150, VIOLET, "It is on the back of the router.", iconized=True),
        note("Ideas", 690, 420, 310, 190, WHITE,
             "A shelf over the door for the atlases.\n\nMake the long walk in two days and sleep at the mill.\n\n"
             "Write to the library: do they still lend telescopes? And since when is Monday the quiet day?"),
        note("Tax papers", 400, 700, 220, 150, ORANGE, "All sent. Keep until the answer comes.", closed=True),
        note("Já feito", 96, 590, 220, 110, ORANGE, "Pão, café e açúcar\nO cartão da mãe\nLição 12"),
        note("Lån af boremaskine", 400, 590, 220, 100, PINK, "Søren får den tilbage på lørdag.\nBor 6 og 8 mangler!"),
        note("Stand-up 9:30", 930, 330, 200, 110, YELLOW, "Yesterday, today, blockers.\nTwo minutes each.",
             topmost=True),
    ]


def draw(desk: Desk, picture: pathlib.Path) -> pathlib.Path:
    desk.reset()
    desk.display.background(BACKGROUND)
    desk.seed_files(notes(datetime.datetime.now(datetime.timezone.utc)))
    kardel = desk.run()
    desk.wait(lambda: kardel.note("Call the plumber").part("pic_time").text.strip(), what="the time strip")
    path = desk.screenshot(picture)
    kardel.tray.menu().choose("Exit")
    code = kardel.wait_ended()
    if code != 0:
        raise SystemExit(f"Kardel ended with code {code}: {kardel.output()}")
    return path


def main() -> None:
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    desk = Desk("win64")
    try:
        print(draw(desk, pathlib.Path(sys.argv[1]).resolve()))
    finally:
        desk.close()


if __name__ == "__main__":
    main()
