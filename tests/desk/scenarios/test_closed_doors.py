"""What another program, a strange folder or a strange text may try, and must not get."""

import shutil

from kardel_desk.ids import IDS
from kardel_desk.paths import helper

STRANGE = "%s%n%1 &File\\..\\x"


def test_nothing_is_taken_from_the_current_folder(desk):
    """Neither a note file nor a library: the program's own folder and the system's are all that counts."""
    desk.seed_registry({"UseRegistry": False})
    desk.seed_files([{"Titolo": "mine", "Nota": "from the program's folder"}])
    elsewhere = desk.wine.path("C:\\elsewhere")
    shutil.rmtree(elsewhere, ignore_errors=True)
    elsewhere.mkdir()
    names = ("KARDEL.HDR", "KARDEL.DAT", "MEMO", "KARDEL.TMP", "KARDEL.log")
    for name in names:
        (elsewhere / name).write_bytes(b"not this one")
    libraries = ("uxtheme.dll", "version.dll", "winmm.dll", "imm32.dll", "comctl32.dll", "dwmapi.dll", "msacm32.dll",
                 "comdlg32.dll", "shell32.dll", "kardel.dll")
    for name in libraries:
        shutil.copy(helper(desk.arch, "kardel_probe_hook.dll"), elsewhere / name)

    kardel = desk.start(cwd="C:\\elsewhere", env={"WINEDEBUG": "+loaddll"}).wait_ready()
    assert kardel.note().title == "mine"
    kardel.note().edit()
    desk.type("more")
    desk.click_desktop()
    desk.wait(lambda: "more" in desk.read_files().notes[0]["Nota"], what="the edit to be stored")
    loaded = kardel.output().lower()
    assert "shell32.dll" in loaded, "the list of loaded libraries is there"
    assert "elsewhere" not in loaded
    assert kardel.exit() == 0
    assert sorted(path.name for path in elsewhere.iterdir()) == sorted(names + libraries)
    assert all((elsewhere / name).read_bytes() == b"not this one" for name in names)


def test_a_title_is_only_ever_text(desk):
    """No format, no mnemonic, no path, whatever a title looks like."""
    desk.seed_registry({}, [{"Titolo": STRANGE, "Nota": STRANGE, "x": 1500, "y": 1500, "width": 4500, "height": 1890}])
    kardel = desk.run()
    note = kardel.note(STRANGE)
    assert note.body == STRANGE
    menu = kardel.tray.menu()
    assert menu.item("Open")["submenu"]
    menu.close()
    note.command("delete")
    box = kardel.dialog()
    assert f"Are you sure you want to delete the kardel titled ''{STRANGE}'' ?" in box.texts()
    box.press("No")
    desk.wait(lambda: not kardel.dialogs(), what="the box to close")
    assert desk.stored_note(1)["Titolo"] == STRANGE
    assert kardel.exit() == 0
    assert [path.name for path in desk.path().iterdir()] == ["Kardel.exe"]


def test_other_programs_can_do_no_more_than_the_menus(desk):
    """Commands and messages that no menu sends change nothing and break nothing."""
    desk.seed_registry({}, [{"Titolo": "a", "Nota": "b"}])
    kardel = desk.run()
    note, tray = kardel.note("a"), kardel.tray.window()
    before = {section: desk.registry(section) for section in desk.sections()}
    known = {value for name, value in IDS.items() if name.startswith("IDM_")}
    for command in (0, 1, 2, 8, 399, 414, 499, 501, 530, 549, 550, 1000, 1039, 0x7FFF, 0xFFFF):
        for window in (note, tray):
            if command not in known or window is tray:
                window.send(0x0111, command)
    for message in (0x0400, 0x0465, 0x0466, 0x8000, 0x8001, 0x8002, 0x8003, 0xBFFF, 0xC000, 0xFFFF):
        for wparam, lparam in ((0, 0), (-1, -1), (101, 0x7FFFFFFF), (0x7FFF, 12345)):
            note.send(message, wparam, lparam)
    for wparam in (0, 1, 99, 0x7FFF):
        note.send(0x0113, wparam)  # WM_TIMER of no timer
        tray.send(0x0113, wparam)
    desk.wait_equal(lambda: [n.title for n in kardel.notes()], ["a"], what="the note to be there still")
    assert {section: desk.registry(section) for section in desk.sections()} == before
    assert kardel.exit() == 0
