"""Watches a screen: where top-level windows are, when they are mapped, and when the picture changed last. Everything
comes as events of the X server, so that watching costs the measured program nothing but the few events."""

import select
import time
from collections.abc import Callable

from Xlib import X
from Xlib import display as xdisplay
from Xlib.ext import damage

_LEAST_SIDE = 60  # pixels; smaller windows are the tray's icons and Wine's helpers


class Screen:
    """`height`: what happens below this line (in the panel) is ignored."""

    def __init__(self, name: str, height: int):
        self._height = height
        self._x = xdisplay.Display(name)
        self._x.damage_query_version()
        root = self._x.screen().root
        root.change_attributes(event_mask=X.SubstructureNotifyMask)
        root.damage_create(damage.DamageReportRawRectangles)
        self._x.sync()
        self._damaged = self._x.extension_event.DamageNotify
        self._places: dict[int, tuple[int, int, int, int]] = {}
        self._mapped: set[int] = set()
        self.forget()

    def forget(self) -> None:
        """Begins a new count. Windows that are on the screen already are not counted again."""
        self._drain()
        self.maps: list[float] = []  # when each window was mapped; all times are of time.monotonic()
        self.last_change = 0.0       # when the picture changed last

    @property
    def empty(self) -> bool:
        """No window of a note's size is on the screen."""
        self._drain()
        return not self._mapped

    @property
    def places(self) -> list[tuple[int, int, int, int]]:
        """X, y, width and height of the windows that were as large as a note when they came, in no order that
        means something."""
        self._drain()
        return sorted(self._places[window] for window in self._mapped)

    @property
    def painted(self) -> float:
        """When the last window was mapped and nothing more was drawn."""
        return max(self.last_change, *self.maps[-1:], 0.0)

    def settle(self, done: Callable[[], bool], quiet: float, limit: float, what: str) -> None:
        """Returns when `done` holds and the screen has not changed for `quiet` seconds. RuntimeError after `limit`
        seconds. It is only checked again when there is an event."""
        end = time.monotonic() + limit
        while True:
            self._drain()
            now = time.monotonic()
            if now > end:
                raise RuntimeError(f"waited {limit:g} s for {what}: {len(self.maps)} windows came, {len(self._mapped)} "
                                   f"are there, the last change was {now - self.last_change:.1f} s ago")
            if not done():
                self._sleep(end - now)
            elif now - self.painted < quiet:
                self._sleep(quiet - (now - self.painted))
            else:
                return

    def _sleep(self, seconds: float) -> None:
        """Waits until the next event, or for so long."""
        if not self._x.pending_events():
            select.select([self._x], [], [], max(seconds, 0))

    def _drain(self) -> None:
        while self._x.pending_events():
            event = self._x.next_event()
            if event.type == X.MapNotify:
                self._on_map(event.window.id)
            elif event.type in (X.UnmapNotify, X.DestroyNotify):
                if event.window.id in self._mapped:
                    self._mapped.discard(event.window.id)
                    self.last_change = time.monotonic()
                if event.type == X.DestroyNotify:
                    self._places.pop(event.window.id, None)
            elif event.type in (X.CreateNotify, X.ConfigureNotify):
                self._places[event.window.id] = (event.x, event.y, event.width, event.height)
                if event.window.id in self._mapped:
                    self.last_change = time.monotonic()
            elif event.type == self._damaged and event.area.y < self._height:
                self.last_change = time.monotonic()

    def _on_map(self, window: int) -> None:
        if min(self._places.get(window, (0, 0, 0, 0))[2:]) >= _LEAST_SIDE and window not in self._mapped:
            self._mapped.add(window)
            self.maps.append(time.monotonic())

    def close(self) -> None:
        self._x.close()
