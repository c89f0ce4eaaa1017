"""The installer and the portable zips: packed from the two built programs, installed, upgraded and removed."""

import os
import shutil
import subprocess
import zipfile

import pytest
from kardel_desk import Desk
from kardel_desk.paths import BUILD, ROOT, program
from kardel_desk.wine import runs_both

UNINSTALL_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Kardel"
RUN_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Run"
NOTE = {"Titolo": "Shopping", "Nota": "milk", "x": 3000, "y": 1500}
EPOCH = {"SOURCE_DATE_EPOCH": "1700000000"}


def pack(folder, *words, **env):
    subprocess.run([ROOT / "packaging" / "pack.sh", program("win64"), program("win32"), folder, *words], check=True,
                   env={**os.environ, **EPOCH, **env}, stdout=subprocess.DEVNULL)
    return folder


@pytest.fixture(scope="module")
def session(arch):
    """A desk that runs the installer, which is a 32-bit program, as every Windows does."""
    desk = Desk(arch, both=arch == "win64" and runs_both())
    yield desk
    desk.close()


@pytest.fixture(scope="module")
def stub(arch):
    """Where the 64-bit Wine runs only 64-bit programs, the same script makes a 64-bit installer."""
    return ["-XTarget amd64-unicode"] if arch == "win64" and not runs_both() else []


@pytest.fixture(scope="module")
def packages(arch, stub):
    """The release files."""
    folder = BUILD / "packages-under-test" / arch
    yield pack(folder, *stub)
    shutil.rmtree(folder)


@pytest.fixture
def setup(desk, packages):
    """Runs the installer, by default silently; what it installed is removed after the test."""
    desk.path("C:\\setup").mkdir(exist_ok=True)
    shutil.copy(next(packages.glob("*-setup.exe")), desk.path("C:\\setup\\setup.exe"))

    def run(*words, asking=False):
        process = desk.wine.start("C:\\setup\\setup.exe", *(words or ([] if asking else ["/S"])),
                                  stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if not asking:
            assert process.wait(60) == 0
        return process

    yield run
    desk.end_programs()
    desk.probe.ask("regdeltree", UNINSTALL_KEY)
    for folder in installed_folders(desk):
        shutil.rmtree(folder)


def installed_folders(desk):
    return list(desk.wine.path("C:\\users").glob("*/AppData/Local/Programs/Kardel"))


def installed(desk):
    """The folder that the installer chooses, as Windows names it, and as a path of this system."""
    location = desk.probe.ask("regvalues", UNINSTALL_KEY)["InstallLocation"]
    assert location.endswith("\\AppData\\Local\\Programs\\Kardel")
    return location, desk.path(location)


def uninstall(desk, folder, *words):
    process = desk.wine.start(folder + "\\Uninstall.exe", *words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    if words:
        assert process.wait(60) == 0


def test_the_program_that_fits_is_installed_for_the_user_and_starts(desk, setup):
    setup()
    folder, path = installed(desk)
    assert (path / "Kardel.exe").read_bytes() == program(desk.arch).read_bytes()
    assert not desk.probe.ask("processes", "Kardel.exe"), "a silent first installation starts nothing"
    desk.seed_files([NOTE], folder=folder)
    kardel = desk.run(folder=folder)
    assert kardel.note("Shopping").body == "milk"
    assert desk.run_value == folder + "\\Kardel.exe"
    shown = desk.probe.ask("regvalues", UNINSTALL_KEY)
    assert shown["DisplayName"] == "Kardel" and shown["DisplayVersion"] and shown["Publisher"]
    assert kardel.exit() == 0


def test_an_upgrade_ends_the_running_copy_keeps_its_open_edit_and_starts_it_again(desk, setup):
    setup()
    folder, path = installed(desk)
    desk.seed_files([NOTE], folder=folder)
    kardel = desk.run(folder=folder)
    kardel.note("Shopping").edit()
    desk.type(" and bread")
    desk.wait(lambda: kardel.note("Shopping").part("txtNota").text == "milk and bread")
    (path / "LICENSE.txt").write_text("of an older release")
    setup()
    assert kardel.wait_ended() == 0
    assert "MIT" in (path / "LICENSE.txt").read_text()
    desk.wait(lambda: desk.probe.ask("processes", "Kardel.exe"), 10, "the new copy")
    assert desk.read_files(folder).notes[0]["Nota"] == "milk and bread"


def through_the_pages(desk, process, *answers):
    """Goes through the pages: welcome, folder, any questions, and the last page with its box ticked."""
    for button in ("&Next >", "&Install", *answers, "&Finish"):
        window(desk, "Kardel Setup", button).press()
    assert process.wait(60) == 0


def test_an_upgrade_through_the_pages_leaves_one_copy_running_and_says_nothing(desk, setup):
    setup()
    folder, path = installed(desk)
    desk.seed_files([NOTE], folder=folder)
    kardel = desk.run(folder=folder)
    kardel.note("Shopping").edit()
    desk.type(" and bread")
    desk.wait(lambda: kardel.note("Shopping").part("txtNota").text == "milk and bread")
    process = setup(asking=True)
    for button in ("&Next >", "&Install"):
        window(desk, "Kardel Setup", button).press()
    assert kardel.wait_ended() == 0
    finish = window(desk, "Kardel Setup", "&Finish")
    assert not desk.probe.ask("processes", "Kardel.exe"), "the last page starts it"
    finish.press()
    assert process.wait(60) == 0
    desk.wait(lambda: desk.probe.ask("processes", "Kardel.exe") and [n.body for n in kardel.notes()], 20, "the new copy")
    desk.wait(lambda: kardel.tray.window(), 20, "the new copy to be ready")
    assert desk.stays(lambda: not kardel.dialogs() and len(desk.probe.ask("processes", "Kardel.exe")) == 1, 1.5,
                      "one copy and no box") is None
    assert [note.body for note in kardel.notes()] == ["milk and bread"]


def test_the_last_page_does_not_start_a_second_copy(desk, setup):
    desk.seed_files([NOTE])
    kardel = desk.run()
    through_the_pages(desk, setup(asking=True), "&No")
    assert desk.stays(lambda: not kardel.dialogs() and len(desk.probe.ask("processes", "Kardel.exe")) == 1, 1.5,
                      "one copy and no box") is None
    assert kardel.alive and not list(installed(desk)[1].glob("MEMO"))


def older_release(desk, notes, redirected=False, folder="C:\\Program Files\\Kardel"):
    """Notes as a program without a manifest left them below a protected folder."""
    store = folder
    if redirected:
        (local,) = desk.wine.path("C:\\users").glob("*/AppData/Local")
        store = f"C:\\users\\{local.parts[-3]}\\AppData\\Local\\VirtualStore" + folder[2:]
    desk.path(store).mkdir(parents=True, exist_ok=True)
    desk.seed_files(notes, folder=store)
    return desk.path(store)


@pytest.fixture
def nothing_older(desk):
    yield
    shutil.rmtree(desk.path("C:\\Program Files\\Kardel"), ignore_errors=True)
    for folder in desk.wine.path("C:\\users").glob("*/AppData/Local/VirtualStore"):
        shutil.rmtree(folder)


@pytest.mark.parametrize("where", ["the usual folder", "log-on", "redirected", "redirected from log-on"])
def test_notes_of_an_older_release_are_taken_along(desk, setup, nothing_older, where):
    folder = "C:\\Program Files\\Kardel" if "log-on" not in where else "C:\\desk\\An older one"
    path = older_release(desk, [NOTE, {"Titolo": "second"}], "redirected" in where, folder)
    if "log-on" in where:
        desk.probe.ask("regtexts", RUN_KEY, "Kardel", folder + "\\Kardel.exe")
    if where == "redirected":
        older_release(desk, [{"Titolo": "older than what was redirected"}])
    before = desk.read_files(folder) if "redirected" not in where else None
    setup()
    here, _ = installed(desk)
    assert [note["Titolo"] for note in desk.read_files(here).notes] == ["Shopping", "second"]
    assert desk.read_files(here).notes[0]["Nota"] == "milk" and desk.read_files(here).count == 2
    assert sorted(file.name for file in path.iterdir()) == ["KARDEL.DAT", "KARDEL.HDR", "MEMO"], "they stay there, too"
    assert before is None or desk.read_files(folder) == before


@pytest.mark.parametrize("answer", ["&Yes", "&No"])
def test_notes_of_an_older_release_are_offered(desk, setup, nothing_older, answer):
    older_release(desk, [NOTE])
    through_the_pages(desk, setup(asking=True), answer)
    folder, path = installed(desk)
    desk.wait(lambda: desk.probe.ask("windows", "fpost"), 20, "the program to be started by the last page")
    titles = [window["text"] for window in desk.probe.ask("windows", "fpost")]
    assert ("Shopping" in titles) == (answer == "&Yes")


def test_notes_that_are_here_and_notes_in_the_registry_are_left_alone(desk, setup, nothing_older):
    older_release(desk, [NOTE])
    desk.seed_registry({}, [{"Titolo": "in the registry"}])
    setup()
    folder, path = installed(desk)
    assert not (path / "KARDEL.DAT").exists()
    desk.set_registry("setting", {"UseRegistry": False})
    desk.seed_files([{"Titolo": "here"}], folder=folder)
    setup()
    assert [note["Titolo"] for note in desk.read_files(folder).notes] == ["here"]


def test_a_copy_from_another_folder_goes_on_running(desk, setup):
    desk.seed_files([NOTE])
    kardel = desk.run()
    setup()
    assert kardel.alive and kardel.note("Shopping").visible


def test_leaving_silently_removes_the_program_and_the_log_on_entry_and_keeps_the_notes(desk, setup):
    setup()
    folder, path = installed(desk)
    desk.seed_files([NOTE], folder=folder)
    kardel = desk.run(folder=folder)
    uninstall(desk, folder, "/S")
    assert kardel.wait_ended() == 0
    desk.wait(lambda: not (path / "Uninstall.exe").exists(), 20, "the uninstaller to finish")
    desk.wait(lambda: desk.probe.ask("regvalues", UNINSTALL_KEY) is None, 10,
              "the entry of the installed programs to go")
    assert desk.run_value is None
    assert sorted(file.name for file in path.iterdir()) == ["KARDEL.DAT", "KARDEL.HDR", "MEMO"]
    assert desk.read_files(folder).notes[0]["Nota"] == "milk"


def test_the_log_on_entry_of_another_copy_stays(desk, setup):
    setup()
    folder, path = installed(desk)
    desk.seed_files([NOTE])
    desk.run()
    uninstall(desk, folder, "/S")
    desk.wait(lambda: not path.exists(), 20, "the folder to go")
    assert desk.run_value == desk.folder + "\\Kardel.exe"


@pytest.mark.parametrize("answer", ["Yes", "No"])
def test_leaving_asks_before_it_touches_notes(desk, setup, answer):
    setup()
    folder, path = installed(desk)
    desk.seed_files([NOTE], folder=folder)
    (path / "KARDEL.TMP").write_bytes(b"left by a crash")
    (path / "MEMO.tmp").write_bytes(b"left by a crash")
    desk.set_registry("setting", {"UseRegistry": "False"})
    uninstall(desk, folder)
    window(desk, "Kardel Uninstall", "&Uninstall").press()
    question = window(desk, "Kardel Uninstall", "&" + answer)
    assert desk.path(folder).joinpath("MEMO").exists()
    question.press()
    if answer == "Yes":
        desk.wait(lambda: desk.registry("setting") is None, 10, "the settings to go")
        desk.wait(lambda: not (path / "MEMO").exists(), 10, "the notes to go")
    window(desk, "Kardel Uninstall", "&Close").press()
    desk.wait(lambda: not desk.probe.ask("processes", "Un_A.exe"), 10, "the uninstaller to end")
    assert path.exists() == (answer == "No")
    if answer == "No":
        assert desk.read_files(folder).notes[0]["Nota"] == "milk" and desk.registry("setting")


class window:
    """A button of the installer's windows, once it is there to be pressed."""

    def __init__(self, desk, title, button):
        self.desk = desk
        self.hwnd = desk.wait(lambda: self._find(title, button), 20, f"{button} of {title}")

    def _find(self, title, button):
        for found in self.desk.probe.ask("windows"):
            if found["visible"] and found["text"].strip().startswith(title):
                for part in self.desk.probe.ask("children", found["hwnd"]):
                    if part["text"] == button and part["visible"] and part["enabled"]:
                        return part["hwnd"]
        return None

    def press(self):
        self.desk.probe.ask("post", self.hwnd, 0x00F5, 0, 0)  # BM_CLICK


@pytest.fixture(scope="module")
def certificate(tmp_path_factory):
    """A certificate made for the test, with its key and its fingerprint."""
    folder = tmp_path_factory.mktemp("certificate")
    key, known, both = folder / "key.pem", folder / "known.pem", folder / "both.p12"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", key, "-out", known, "-days",
                    "2", "-subj", "/CN=Kardel test", "-addext", "extendedKeyUsage=codeSigning"], check=True,
                   stderr=subprocess.DEVNULL)
    subprocess.run(["openssl", "pkcs12", "-export", "-inkey", key, "-in", known, "-out", both, "-passout", "pass:secret"],
                   check=True)
    return both, known


def test_what_is_signed_is_signed_whole(desk, stub, setup, certificate, tmp_path):
    both, known = certificate

    def is_signed(file):
        return subprocess.run(["osslsigncode", "verify", "-CAfile", known, "-in", file], check=False,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    folder = pack(tmp_path / "signed", *stub, KARDEL_SIGN_CERT=str(both), KARDEL_SIGN_PASSWORD="secret")
    (installer,) = folder.glob("*-setup.exe")
    assert is_signed(installer) and not is_signed(program("win64"))
    shutil.copy(installer, desk.path("C:\\setup\\setup.exe"))
    setup()
    _, path = installed(desk)
    assert is_signed(path / "Kardel.exe") and is_signed(path / "Uninstall.exe")
    for arch in ("win64", "win32"):
        (packed,) = folder.glob(f"*-{arch}.zip")
        with zipfile.ZipFile(packed) as file:
            assert is_signed(file.extract(f"{packed.stem}/Kardel.exe", tmp_path))
    subprocess.run(["sha256sum", "--quiet", "-c", "SHA256SUMS"], cwd=folder, check=True)


def test_the_kit_runs_the_tests_and_collects_one_report(desk, arch, tmp_path):
    tests = BUILD / arch / "tests" / "kardel_window_tests.exe"  # also stands for the tests of the rules
    subprocess.run([ROOT / "packaging" / "kit.sh", tests, tests, tmp_path], check=True, env={**os.environ, **EPOCH})
    (kit,) = tmp_path.glob("*-check.zip")
    place = desk.path("C:\\kit")
    with zipfile.ZipFile(kit) as file:
        file.extractall(place)
    names = ["ON-WINDOWS.md", "check.cmd", "kardel_rules_tests.exe", "kardel_window_tests.exe"]
    assert sorted(path.name for path in (place / kit.stem).iterdir()) == names

    # Wine's desktop process starts with the first program that needs it and keeps open what that program has open: the
    # report.
    desk.wait(lambda: desk.probe.ask("windows", "Shell_TrayWnd"), 60, "the shell")

    def check(*words):
        process = desk.wine.start("cmd", "/c", f"C:\\kit\\{kit.stem}\\check.cmd", *words, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        code = process.wait(120)
        return code, (place / kit.stem / "report.txt").read_text(errors="replace")

    code, report = check("--gtest_filter=LogLine*")
    assert code == 0 and report.count("[  PASSED  ]") == 2 and "[  PASSED  ] 0 tests" not in report
    assert "CurrentBuild" in report and "Rules ended with 0, windows with 0" in report
    (place / kit.stem / "kardel_rules_tests.exe").unlink()  # what cannot be run must not count as a success
    code, report = check("--gtest_filter=LogLine*")
    assert code == 1 and report.count("[  PASSED  ]") == 1 and "Rules ended with 0" not in report
    shutil.rmtree(place)


def test_the_portable_zips_hold_each_program_alone_with_its_licence(packages):
    for arch in ("win64", "win32"):
        (path,) = packages.glob(f"*-{arch}.zip")
        with zipfile.ZipFile(path) as file:
            names = ("Kardel.exe", "LICENSE.txt", "README.txt")
            assert sorted(file.namelist()) == [f"{path.stem}/{name}" for name in names]
            assert file.read(f"{path.stem}/Kardel.exe") == program(arch).read_bytes()


def test_the_sums_fit_and_packing_again_gives_the_same_bytes(packages, stub, tmp_path):
    subprocess.run(["sha256sum", "--quiet", "-c", "SHA256SUMS"], cwd=packages, check=True)
    again = pack(tmp_path / "again", *stub)
    assert (again / "SHA256SUMS").read_text() == (packages / "SHA256SUMS").read_text()
