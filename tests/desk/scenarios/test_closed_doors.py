"""What another program, a strange folder or a strange text may try, but must not achieve."""

import re
import shutil

from kardel_desk.ids import IDS
from kardel_desk.paths import helper

STRANGE = "%s%n%1 &File\\..\\x"
# Windows' own numbers.
QUERY, SET, SUB_KEY, ENUMERATE, DELETE = 1, 2, 4, 8, 0x10000
READ, WRITE, EVERY_FILE = 0x80000000, 0x40000000, 0x100080
USES = {"NtQueryValueKey": QUERY, "NtEnumerateValueKey": QUERY, "NtSetValueKey": SET, "NtDeleteValueKey": SET,
        "RegEnumKeyExW": ENUMERATE}
STORE = ("KARDEL.HDR", "KARDEL.DAT", "MEMO", "KARDEL.TMP")


def keys_opened(kardel):
    """Every opening of one of the program's keys in Wine's trace: the path below the user's root, the rights asked for,
    and the rights that the calls on the open key needed."""
    opened, handles, path = [], {}, None
    for line in kardel.output().splitlines():
        asked = re.search(r'(?:NtOpenKeyEx|NtCreateKey) \((\w+),L"([^"]*)",(?:.*,)?([0-9a-f]+),0x\w+\)$', line)
        answer = re.search(r"(?:NtOpenKeyEx|NtCreateKey) <- 0x(\w+)", line)
        used = re.search(r":(\w+) \((?:0x)?([0-9A-Fa-f]+),", line)
        if asked:
            path, rights = asked[2].replace("\\\\", "\\"), int(asked[3], 16)
        elif answer and path:
            handles.pop(int(answer[1], 16), None)
            if path.startswith(("Software\\VB and VBA", "Software\\Microsoft\\Windows\\CurrentVersion\\Run")):
                opened.append([path.rpartition("\\")[2], rights, 0])
                handles[int(answer[1], 16)] = opened[-1]
            path = None
        elif used and int(used[2], 16) in handles:
            handles[int(used[2], 16)][2] |= USES.get(used[1], 0)
    return opened


def files_opened(kardel):
    """The same for the note files: name and rights, without those that every opening has."""
    folder = "\\??\\" + kardel.folder + "\\"
    found = [(path.replace("\\\\", "\\"), int(rights, 16) & ~EVERY_FILE)
             for rights, path in re.findall(r'Nt(?:Create|Open)File handle=\w+ access=(\w+) name=L"([^"]*)"',
                                            kardel.output())]
    return [(path[len(folder):], rights) for path, rights in found
            if path.startswith(folder) and path[len(folder):].removesuffix(".tmp") in STORE]


def test_registry_keys_are_opened_with_no_more_rights_than_they_need(desk):
    """Each opening asks only for what the calls on the key then need, so that reading still works where a policy lets a
    user only read. The log-on entry may have to make its key, and removing a section may list what is in it."""
    desk.seed_registry({}, [{"Titolo": name, "x": 1500, "y": 1500 + 3000 * n, "width": 3000, "height": 2000}
                            for n, name in enumerate("abc")])
    kardel = desk.start(env={"WINEDEBUG": "+reg"}).wait_ready()
    kardel.note("b").edit()
    desk.type("more")
    desk.click_desktop()
    desk.wait(lambda: desk.stored_note(2).get("Nota") == "more", what="the edit to be stored")
    kardel.note("a").command("delete")
    kardel.dialog().press("Yes")
    desk.wait_equal(desk.sections, ["kardel-1", "kardel-2", "setting"], what="the last section to go")
    kardel.tray.command("dyn(6)")
    desk.wait_equal(lambda: desk.registry("setting")["EasyAlign"], "True")
    assert kardel.exit() == 0

    opened = keys_opened(kardel)
    for name, rights, used in opened:
        extra = {"Run": SUB_KEY if used == SET else 0, "Kardel": DELETE | ENUMERATE | QUERY if used == 0 else 0}
        assert rights == used | extra.get(name, 0), f"{name} opened with {rights:#x}, {used:#x} would do"
    for name, rights in (("setting", QUERY), ("setting", SET), ("kardel-1", QUERY), ("kardel-2", SET), ("Run", QUERY),
                         ("Run", SET | SUB_KEY), ("Kardel", DELETE | ENUMERATE | QUERY)):
        assert rights in [seen[1] for seen in opened if seen[0] == name], f"{name} with {rights:#x} was seen"


def test_files_are_opened_with_no_more_rights_than_they_need(desk):
    desk.seed_registry({"UseRegistry": False})
    desk.seed_files([{"Titolo": name, "Nota": "text", "x": 1500, "y": 1500 + 3000 * n, "width": 3000, "height": 2000}
                     for n, name in enumerate("ab")])
    kardel = desk.start(env={"WINEDEBUG": "+file"}).wait_ready()
    start = files_opened(kardel)
    assert {("KARDEL.HDR", READ), ("KARDEL.DAT", READ), ("MEMO", READ)} <= set(start)
    assert {rights for _, rights in start} <= {READ, 0}, "a start reads only"
    kardel.note("b").edit()
    desk.type("more")
    desk.click_desktop()
    desk.wait(lambda: "more" in desk.read_files().notes[1]["Nota"], what="the edit to be stored")
    kardel.note("a").command("delete")
    kardel.dialog().press("Yes")
    desk.wait_equal(lambda: desk.read_files().count, 1)
    assert kardel.exit() == 0
    assert {rights for _, rights in files_opened(kardel)} == {READ, WRITE, DELETE, 0}, "one right at a time"


def test_nothing_is_taken_from_the_current_folder(desk):
    """Neither a note file nor a library: only the program's own folder and the system's count."""
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


def test_libraries_beside_the_program_do_not_replace_windows_own(desk):
    """Those that are loaded when they are first needed: for the sound of an alarm, and when a screen reader asks."""
    planted = ("winmm.dll", "oleacc.dll", "ole32.dll", "oleaut32.dll")
    for name in planted:
        shutil.copy(helper(desk.arch, "kardel_probe_hook.dll"), desk.path() / name)
    desk.seed_registry({}, [{"Titolo": "a", "alarmdate": "28/02/2026", "alarmtime": "12:00:00", "x": 1500, "y": 1500,
                             "width": 3000, "height": 2250}])
    kardel = desk.run(faketime="2026-02-28 11:59:59", env={"WINEDEBUG": "+loaddll"})
    note = kardel.note("a")
    desk.wait(lambda: note.colour == (255, 255, 255), what="the note to flash")
    desk.probe.ask("accessible", note.hwnd)
    loaded = [line.lower() for line in kardel.output().splitlines() if "loaded" in line.lower()]
    for name in ("winmm.dll", "oleacc.dll"):
        (line,) = [line for line in loaded if f"\\{name}\"" in line]
        assert "system32" in line
    assert not [line for line in loaded if desk.folder.lower() in line.replace("\\\\", "\\") and ".dll" in line]


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
        note.send(0x0113, wparam)  # WM_TIMER of a timer that does not exist
        tray.send(0x0113, wparam)
    desk.wait_equal(lambda: [n.title for n in kardel.notes()], ["a"], what="the note to be there still")
    assert {section: desk.registry(section) for section in desk.sections()} == before
    assert kardel.exit() == 0
