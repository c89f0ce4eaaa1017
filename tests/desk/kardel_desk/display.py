"""The virtual screen: X server, window manager, tray panel, and what can be seen on it."""

import os
import pathlib
import subprocess

from PIL import Image
from Xlib import X
from Xlib import display as xdisplay
from Xlib.error import XError
from Xlib.protocol import event

from . import processes
from .waiting import wait


class Display:
    """Starts the screen at once. `panel_strut`: the work area leaves out the panel. `monitors` share the width, side by
    side; the left one is the primary."""

    def __init__(self, work: pathlib.Path, width: int = 1280, height: int = 1024, panel_strut: bool = True,
                 monitors: int = 1):
        self.width, self.height, self.monitors = width, height, monitors
        self._work, self._panel_strut = work, panel_strut
        self._servers: list[subprocess.Popen] = []
        home = work / "home"
        home.mkdir(parents=True, exist_ok=True)
        self.env = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "HOME": str(home), "LC_ALL": "C.UTF-8",
                    "XDG_RUNTIME_DIR": str(home), "XDG_CONFIG_HOME": str(home), "XDG_CACHE_HOME": str(home)}
        try:
            self._start()
        except BaseException:
            self.close()
            raise

    def _start(self) -> None:
        read_end, write_end = os.pipe()
        server = processes.start(["Xvfb", "-displayfd", str(write_end), "-screen", "0",
                                  f"{self.width}x{self.height}x24", "-noreset", "-nolisten", "tcp"],
                                 self.env, self._work / "xvfb.log", pass_fds=[write_end])
        self._servers.append(server)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError(f"Xvfb did not start: {(self._work / 'xvfb.log').read_text()}")
        self.env["DISPLAY"] = f":{number}"
        self.x = xdisplay.Display(self.env["DISPLAY"])
        self.root = self.x.screen().root
        self.x.xfixes_query_version()  # pointer() needs this to have been asked once
        if self.monitors > 1:
            self._part()

        self._servers.append(processes.start(["openbox", "--sm-disable"], self.env, self._work / "openbox.log"))
        for name in ("_NET_SUPPORTING_WM_CHECK", "_NET_WORKAREA", "_NET_CLIENT_LIST"):
            wait(lambda: self._property(self.root, name) is not None, 20, f"the window manager to set {name}")
        self._forbid_window_manager_moves()

        self.start_panel()

    def _part(self) -> None:
        """Divides the screen into monitors. The first takes over what the whole screen was."""
        width = self.width // self.monitors
        for number in range(self.monitors):
            place = f"{width}/{width // 4}x{self.height}/{self.height // 4}+{number * width}+0"
            subprocess.run(["xrandr", "--setmonitor", f"monitor-{number}", place, "screen" if number == 0 else "none"],
                           env=self.env, check=True, stdout=subprocess.DEVNULL)

    def start_panel(self) -> None:
        """Starts the tray panel, empty, and waits until programs can find it."""
        # A fixed width, because a panel that grows with its icons moves them while Wine still looks where they are, and
        # the icon then gets neither paint nor clicks.
        panel = ["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel", "--width", "160",
                 "--heighttype", "pixel", "--height", "24", "--SetDockType", "true",
                 "--SetPartialStrut", "true" if self._panel_strut else "false"]
        for attempt in range(5):
            self._panel = processes.start(panel, self.env, self._work / "trayer.log")
            self._servers.append(self._panel)
            wait(lambda: self._tray_owner() != X.NONE, 20, "the tray panel")
            if not self._panel_strut:
                return
            try:
                wait(lambda: self.workarea()[3:] not in ((), (self.height,)), 3, "the work area above the panel")
                return
            except AssertionError:
                # When the panel is started together with the window manager, its request for room is sometimes missed.
                if attempt == 4:
                    raise
                self.stop_panel()

    def _tray_owner(self):
        return self.x.get_selection_owner(self.x.intern_atom("_NET_SYSTEM_TRAY_S0"))

    def stop_panel(self) -> None:
        """Ends the tray panel: no notification area until start_panel()."""
        processes.stop(self._panel)
        self._servers.remove(self._panel)
        wait(lambda: self._tray_owner() == X.NONE, 5, "the old panel to go")

    def restart_panel(self) -> None:
        """Ends the tray panel and starts a new, empty one, as when the shell is restarted."""
        self.stop_panel()
        self.start_panel()

    def _forbid_window_manager_moves(self) -> None:
        # Wine hands drags over to a window manager that offers to do them, and then the program never sees WM_MOVING,
        # which Windows always sends. Without that offer Wine moves the window itself, as Windows does.
        supported = self.x.intern_atom("_NET_SUPPORTED")
        offered = self.root.get_full_property(supported, X.AnyPropertyType).value
        moves = self.x.intern_atom("_NET_WM_MOVERESIZE")
        kept = [atom for atom in offered if atom != moves]
        self.root.change_property(supported, self.x.intern_atom("ATOM"), 32, kept)
        self.x.sync()

    def _property(self, window, name: str):
        try:
            found = window.get_full_property(self.x.intern_atom(name), X.AnyPropertyType)
        except XError:
            return None
        return None if found is None else found.value

    def workarea(self) -> tuple[int, ...]:
        """Left, top, width and height of the screen without the panel, as the window manager reports it."""
        return tuple(self._property(self.root, "_NET_WORKAREA") or ())[:4]

    def background(self, colour: tuple[int, int, int]) -> None:
        red, green, blue = colour
        self.root.change_attributes(background_pixel=red << 16 | green << 8 | blue)
        self.root.clear_area()
        self.x.sync()

    def image(self, x: int = 0, y: int = 0, width: int = 0, height: int = 0) -> Image.Image:
        """The screen as it is now, or a part of it."""
        width, height = width or self.width - x, height or self.height - y
        data = self.root.get_image(x, y, width, height, X.ZPixmap, 0xFFFFFFFF).data
        return Image.frombytes("RGB", (width, height), data, "raw", "BGRX")

    def nearest(self, x: int, y: int) -> tuple[int, int]:
        """The nearest place that is on the screen."""
        return max(0, min(x, self.width - 1)), max(0, min(y, self.height - 1))

    def pixel(self, x: int, y: int) -> tuple[int, int, int]:
        return self.image(x, y, 1, 1).getpixel((0, 0))

    def pointer(self) -> str:
        """The current picture of the mouse pointer, for comparing."""
        return str(self.x.xfixes_get_cursor_image(self.root).cursor_image)

    def screenshot(self, path: pathlib.Path) -> pathlib.Path:
        path = pathlib.Path(path)
        path.parent.mkdir(parents=True, exist_ok=True)
        self.image().save(path)
        return path

    def keys_reach(self, program: str) -> bool:
        """Whether the X server sends keys to one of a program's windows."""
        focus = self.x.get_input_focus().focus
        try:
            return not isinstance(focus, int) and program in (focus.get_wm_class() or ())
        except XError:
            return False  # it went while we looked

    @property
    def keys_reach_nobody(self) -> bool:
        """Whether no program has the keyboard."""
        focus = self.x.get_input_focus().focus
        try:
            return isinstance(focus, int) or not focus.get_wm_class()
        except XError:
            return True  # it went while we looked

    def give_keys(self, window: int) -> None:
        """Asks the window manager to give a window the keyboard, as a task bar would."""
        try:
            known = self._known(window)
        except LookupError:
            return
        from_pager = 2
        message = event.ClientMessage(window=known, client_type=self.x.intern_atom("_NET_ACTIVE_WINDOW"),
                                      data=(32, [from_pager, X.CurrentTime, 0, 0, 0]))
        self.root.send_event(message, X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.x.sync()

    def under_pointer(self) -> list[int]:
        """The X windows below the pointer, from the root to the smallest."""
        window, found = self.root, []
        try:
            while window != X.NONE:
                found.append(window.id)
                window = window.query_pointer().child
        except XError:
            pass  # it went while we looked
        return found

    def _managed(self) -> list:
        """The windows that the window manager knows, the panel included."""
        return [self.x.create_resource_object("window", number)
                for number in self._property(self.root, "_NET_CLIENT_LIST") or []]

    def tray_icons(self) -> list[tuple[int, int, int, int]]:
        """Left, top, width and height of every icon in the panel."""
        try:
            for window in self._managed():
                if "panel" in (window.get_wm_class() or ()):
                    return sorted(self._leaves(window))
        except XError:
            pass  # a window went while we looked; the caller looks again
        return []

    def _leaves(self, window) -> list[tuple[int, int, int, int]]:
        found = []
        for child in window.query_tree().children:
            if child.get_attributes().map_state != X.IsViewable:
                continue
            deeper = self._leaves(child)
            if deeper:
                found += deeper
            else:
                shape = child.get_geometry()
                place = self.root.translate_coords(child, 0, 0)
                if shape.width >= 8 and shape.height >= 8:
                    found.append((place.x, place.y, shape.width, shape.height))
        return found

    def states(self, title: str) -> set[str]:
        """The window manager's state names (such as _NET_WM_STATE_ABOVE) of the window with this title. Wine shows a
        note to the window manager only once it has been active: LookupError before."""
        for window in self._managed():
            name = self._property(window, "_NET_WM_NAME")
            if name is not None and bytes(name).decode("utf-8", "replace") == title:
                return {self.x.get_atom_name(atom) for atom in self._property(window, "_NET_WM_STATE") or []}
        raise LookupError(f"no window with the title {title!r} on the screen")

    def place(self, window: int) -> list[int]:
        """Left and top of an X window as the window manager has it. LookupError when it does not know it."""
        try:
            place = self.root.translate_coords(self._known(window), 0, 0)
        except XError as error:
            raise LookupError(f"the window {window:#x} went") from error
        return [place.x, place.y]

    def tell_place(self, window: int, place: tuple[int, int] | None = None) -> None:
        """Tells a program where its window is, as a window manager should after taking the window over; or that it is
        at another `place`, as one does in the midst of that."""
        known = self._known(window)
        left, top = place or self.place(window)
        size = known.get_geometry()
        known.send_event(event.ConfigureNotify(window=known, event=known, x=left, y=top, width=size.width,
                                               height=size.height, border_width=0, above_sibling=X.NONE, override=0),
                         X.StructureNotifyMask)
        self.x.flush()

    def _known(self, window: int):
        for managed in self._managed():
            if managed.id == window:
                return managed
        raise LookupError(f"the window manager does not know the window {window:#x}")

    def close(self) -> None:
        if hasattr(self, "x"):
            try:
                self.x.close()
            except OSError:
                pass  # the server was gone first
        for server in reversed(self._servers):
            processes.stop(server)
        self._servers.clear()
