"""Real mouse and keyboard input, through xdotool."""

import subprocess
import time

from Xlib import XK

from .display import Display
from .waiting import wait

DOUBLE_CLICK_SECONDS = 0.55  # two clicks within this time and 4 pixels are a double click
KEYBOARD_CHANGE_SECONDS = 0.3
STEP = 0.03                  # seconds between the moves of a drag, so that the program sees each

# xdotool's names for characters on every keyboard.
_NAMES = {chr(symbol): name[3:] for name, symbol in vars(XK).items()
          if name.startswith("XK_") and 0x20 <= symbol < 0x7F}
_NAMES |= {"\n": "Return", "\t": "Tab"}


class Hands:
    def __init__(self, display: Display):
        self._display = display
        self._clicks: list[tuple[float, int, int]] = []  # when and where, the latest ones
        self._spare = self._take_spare_keys()  # key code -> the character on it

    def _do(self, *words) -> None:
        subprocess.run(["xdotool", *map(str, words)], env=self._display.env, check=True, stdout=subprocess.DEVNULL,
                       timeout=60)

    def move(self, x: int, y: int) -> None:
        self._do("mousemove", "--sync" if self._at() != (x, y) else "--", x, y)

    def _at(self) -> tuple[int, int]:
        pointer = self._display.root.query_pointer()
        return pointer.root_x, pointer.root_y

    def click(self, x: int, y: int, button: int = 1, double: bool = False, ready=None) -> None:
        """Clicks at a place of the screen, far enough apart from the click before that the two are no double click.
        With the pointer in place, `ready` is called until what is to be clicked is really there."""
        self.keep_apart(x, y)
        self.move(x, y)
        if ready:
            wait(ready, 10, f"what is to be clicked at {x}, {y}")
        once = ["mousedown", button, "sleep", 0.02, "mouseup", button]
        self._do(*(once + ["sleep", 0.05] + once if double else once))
        self._clicks.append((time.monotonic(), x, y))

    def keep_apart(self, x: int, y: int) -> None:
        """Waits until a press at this place can no longer form a double click with an earlier one. A click on the
        desktop in between does not help, since no Windows program sees it."""
        now = time.monotonic()
        self._clicks = [click for click in self._clicks if click[0] + DOUBLE_CLICK_SECONDS > now]
        near = [when for when, last_x, last_y in self._clicks if abs(x - last_x) <= 4 and abs(y - last_y) <= 4]
        if near:
            time.sleep(max(near) + DOUBLE_CLICK_SECONDS - now)

    def press(self, x: int, y: int, button: int = 1, ready=None) -> None:
        """The first half of a click; one that follows at the same place is kept apart from it."""
        self.keep_apart(x, y)
        self.move(x, y)
        if ready:
            wait(ready, 10, f"what is to be pressed at {x}, {y}")
        self._do("mousedown", button)
        self._clicks.append((time.monotonic(), x, y))

    def release(self, button: int = 1) -> None:
        self._do("mouseup", button)

    def drag(self, x: int, y: int, by: tuple[int, int], steps: int = 8, release: bool = True,
             ready=None) -> None:
        """Presses at a place, moves in `steps` steps, and lets go unless told not to. The mouse does not go beyond the
        screen's edges."""
        self.press(x, y, ready=ready)
        words: list = []
        for step in range(1, steps + 1):
            at = x + by[0] * step // steps, y + by[1] * step // steps
            words += ["sleep", STEP, "mousemove", *self._display.nearest(*at)]
        self._do(*words, "sleep", STEP)
        if release:
            self.release()

    def place_window(self, window: int, x: int, y: int) -> None:
        """Moves a window of the X server as another program would, without the mouse."""
        self._do("windowmove", window, x, y)

    def key(self, *names: str) -> None:
        """Presses keys or chords in turn: key("ctrl+n"), key("Return"), key("Delete", "F2")."""
        self._do("key", "--delay", 20, *names)

    def key_down(self, name: str) -> None:
        self._do("keydown", name)

    def key_up(self, name: str) -> None:
        self._do("keyup", name)

    def type(self, text: str) -> None:
        """Types any text. A line end is Return, a tab is Tab. Characters that are not on the keyboard are given a spare
        key."""
        start = 0
        while start < len(text):
            end, missing = start, set()
            while end < len(text) and end - start < 100:
                char = text[end]
                if char not in _NAMES and len(missing | {char}) > len(self._spare):
                    break
                if char not in _NAMES:
                    missing.add(char)
                end += 1
            self._bind(missing)
            names = {**_NAMES, **{char: str(key) for key, char in self._spare.items()}}
            self._do("key", "--delay", 8, *(names[char] for char in text[start:end]))
            start = end

    def _take_spare_keys(self) -> dict[int, str]:
        """Key codes that the keyboard does not use, with the character now on each. Wine accepts a few of them as keys
        if they have a character when it starts."""
        x = self._display.x
        first, last = x.display.info.min_keycode, x.display.info.max_keycode
        mapping = x.get_keyboard_mapping(first, last - first + 1)
        free = [first + offset for offset, symbols in enumerate(mapping) if not any(symbols) and offset > 0]
        spare = dict(zip(free[:6], "àèéìòù"))
        for key, char in spare.items():
            self._put(key, char)
        return spare

    def _put(self, key: int, char: str) -> None:
        code = ord(char)
        self._display.x.change_keyboard_mapping(key, [[code if code < 0x100 else 0x01000000 | code] * 4])
        self._display.x.sync()

    def _bind(self, chars: set[str]) -> None:
        fresh = chars - set(self._spare.values())
        if not fresh:
            return
        time.sleep(KEYBOARD_CHANGE_SECONDS)  # what was typed is interpreted with the keyboard as it is when it is read
        unused = [key for key, char in self._spare.items() if char not in chars]
        for key, char in zip(unused, sorted(fresh)):
            self._put(key, char)
            self._spare[key] = char
        time.sleep(KEYBOARD_CHANGE_SECONDS)
