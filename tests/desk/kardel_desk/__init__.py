"""A desk on which Kardel is tested: a virtual screen with a window manager and a tray panel, a Wine prefix, and a
helper process that inspects windows and registry from outside. See ../README.md for a tour."""

from .app import Dialog, Kardel, Note, Part, Rect, Tray, Window, rgb
from .datafiles import DataFiles, read_folder, write_folder
from .desk import Desk
from .ids import IDS
from .processes import Unavailable
from .waiting import wait, wait_equal

__all__ = ["DataFiles", "Desk", "Dialog", "IDS", "Kardel", "Note", "Part", "Rect", "Tray", "Unavailable", "Window",
           "read_folder", "rgb", "wait", "wait_equal", "write_folder"]
