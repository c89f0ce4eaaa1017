"""A start: settings and their defaults, the store that is used, the number of notes, what is written back."""

import pytest

TRUE, FALSE = "True", "False"


def test_first_start_makes_one_empty_note_in_local_files(desk):
    kardel = desk.run()
    note = kardel.note()
    assert note.visible
    assert note.rect.width >= 75 and note.rect.height >= 47
    assert note.colour == (255, 255, 128)
    files = desk.read_files()
    assert len(files.records) == 1 and len(files.bodies) == 1
    record = files.records[0]
    # Exactly a fresh record: blank texts, the light yellow, no size yet, the body in record 1.
    assert record[:25] == b" " * 25 and record[57:185] == b" " * 128
    assert files.notes[0]["backcolor"] == 8454143 and files.notes[0]["memo"] == 1
    assert files.notes[0]["width"] == 0 and files.notes[0]["height"] == 0
    assert (files.count, files.flag, files.version) == (1, 0, 1.28)
    assert files.memo == b" " * 1024


def test_first_start_writes_every_default_back(desk):
    desk.run()
    assert desk.registry("setting") == {
        "AlignAll": FALSE, "EasyAlign": FALSE, "RestoreWhenPlay": FALSE, "DontDeleteWhenPlay": FALSE,
        "UseRegistry": FALSE, "defaultwidth": "2910", "defaultheight": "1890"}
    assert desk.run_value == desk.folder + "\\Kardel.exe"


def test_log_on_entry_follows_the_copy_that_ran_last(desk):
    desk.run().exit()
    other = desk.program_folder("desk\\moved here")
    desk.run(folder=other).exit()
    assert desk.run_value == other + "\\Kardel.exe"


@pytest.mark.parametrize("text", ["Yes", "SI", "vero", "1", "sì", "ON", "-1"])
def test_words_that_choose_the_registry(desk, text):
    desk.seed_registry({"UseRegistry": text, "count": "1"}, [{"Titolo": "from the registry"}])
    kardel = desk.start().wait_ready(notes=1)
    assert kardel.note().title == "from the registry"
    assert desk.read_files().hdr is None and desk.read_files().dat is None
    assert desk.registry("setting")["UseRegistry"] == text


@pytest.mark.parametrize("text", ["No", "falso", "0", "abc", ""])
def test_words_that_choose_local_files(desk, text):
    desk.seed_registry({"UseRegistry": text, "count": None})
    desk.seed_files([{"Titolo": "from the files"}])
    kardel = desk.start().wait_ready(notes=1)
    assert kardel.note().title == "from the files"


@pytest.mark.parametrize("count, notes", [("0", 1), ("", 1), ("-3", 1), ("abc", 1), ("3", 3), ("75", 50),
                                          ("99999999999", 50)])
def test_number_of_registry_notes(desk, count, notes):
    desk.seed_registry({"UseRegistry": True, "count": count})
    assert len(desk.start().wait_ready(notes=notes).notes()) == notes


@pytest.mark.parametrize("stored, written, pixels", [("0", "2910", 194), ("4500", "4500", 300), ("", "2910", 194)])
def test_default_width(desk, stored, written, pixels):
    desk.seed_registry({"UseRegistry": True, "count": "1", "defaultwidth": stored}, [{"Titolo": "no size"}])
    kardel = desk.start().wait_ready(notes=1)
    assert desk.registry("setting")["defaultwidth"] == written
    assert kardel.note().rect.width == pixels


@pytest.mark.parametrize("key, stored", [("defaultwidth", "5"), ("defaultwidth", "-100"), ("defaultheight", "5"),
                                         ("defaultheight", "999999")])
def test_nonsense_default_sizes_stay_stored_but_never_make_a_lost_note(desk, key, stored):
    desk.seed_registry({"UseRegistry": True, "count": "1", key: stored}, [{"Titolo": "n"}])
    kardel = desk.start().wait_ready(notes=1)
    rect = kardel.note().rect
    assert 75 <= rect.width <= 1280 and 47 <= rect.height <= 1024
    assert desk.registry("setting")[key] == stored


def test_left_over_files_answer_no_goes_back_to_local_files(desk):
    desk.seed_registry({"UseRegistry": True, "count": None})
    desk.seed_files([{"Titolo": "kept"}, {"Titolo": "kept too"}])
    before = desk.read_files()
    kardel = desk.start()
    box = kardel.dialog()
    assert any("''local files mode''  to  ''use registry mode''." in text for text in box.texts())
    box.press("No")
    kardel.wait_ready(notes=2)
    assert [note.title for note in kardel.notes()] == ["kept", "kept too"]
    assert desk.registry("setting")["UseRegistry"] == FALSE
    assert desk.read_files().dat == before.dat and desk.read_files().memo == before.memo


def test_left_over_files_default_answer_is_no(desk):
    desk.seed_registry({"UseRegistry": True, "count": None})
    desk.seed_files([{"Titolo": "kept"}])
    kardel = desk.start()
    box = kardel.dialog()
    desk.wait(lambda: box.button("No").has_focus, what="No to have the focus")
    desk.key("Return")
    kardel.wait_ready(notes=1)
    assert desk.read_files().dat is not None


def test_left_over_files_answer_yes_deletes_all_three(desk):
    desk.seed_registry({"UseRegistry": True}, [{"Titolo": "in the registry"}])
    desk.seed_files([{"Titolo": "in the files"}])
    kardel = desk.start()
    kardel.dialog().press("Yes")
    kardel.wait_ready(notes=1)
    assert kardel.note().title == "in the registry"
    files = desk.read_files()
    assert files.hdr is None and files.dat is None and files.memo is None
    kardel.exit()
    desk.start().wait_ready(notes=1)  # and the question does not come back


def test_a_left_over_file_that_cannot_be_deleted_is_left_without_a_word(desk):
    desk.seed_registry({"UseRegistry": True}, [{"Titolo": "in the registry"}])
    desk.seed_files([{"Titolo": "in the files"}])
    with desk.held("MEMO"):
        kardel = desk.start()
        kardel.dialog().press("Yes")
        kardel.wait_ready(notes=1)
        assert kardel.note().title == "in the registry"
    files = desk.read_files()
    assert files.hdr is None and files.dat is None and files.memo is not None


def test_registry_mode_creates_no_data_file(desk):
    desk.seed_registry({}, [{"Titolo": "a"}])
    desk.run().exit()
    files = desk.read_files()
    assert files.hdr is None and files.dat is None and files.memo is None


def test_registry_notes_move_into_new_local_files_once(desk):
    notes = [{"Titolo": f"note {n}", "Nota": f"body of {n}\r\nsecond line", "x": 300 * n, "y": 150 * n, "width": 3000,
              "height": 2000, "backcolor": 8454016 + n, "topmost": n == 2, "iconized": n == 3, "closed": n == 4}
             for n in range(1, 6)]
    desk.seed_registry({"UseRegistry": False, "count": "5"}, notes)
    kardel = desk.start().wait_ready(notes=5)
    assert [note.title for note in kardel.notes()] == [note["Titolo"] for note in notes]
    setting = desk.registry("setting")
    assert setting["ImportDAT"] == "1" and "count" not in setting
    files = desk.read_files()
    assert files.count == 5 and len(files.records) == 5 and len(files.bodies) == 5
    for stored, note in zip(files.notes, notes):
        assert {key: stored[key] for key in note} == note
    kardel.exit()
    kardel = desk.start().wait_ready(notes=5)
    assert len(desk.read_files().records) == 5


def test_imported_notes_follow_a_note_that_is_there(desk):
    desk.seed_registry({"UseRegistry": False, "count": "2"}, [{"Titolo": "r1", "Nota": "b1"}, {"Titolo": "r2"}])
    desk.seed_files([{"Titolo": "mine", "Nota": "my body"}])
    kardel = desk.start().wait_ready(notes=3)
    assert [n["Titolo"] for n in desk.read_files().notes] == ["mine", "r1", "r2"]
    assert [n["Nota"] for n in desk.read_files().notes] == ["my body", "b1", ""]


def test_missing_note_file_means_one_note_whatever_the_header_says(desk):
    desk.seed_files([{"Titolo": "x"}], count=12)
    (desk.path() / "KARDEL.DAT").unlink()
    kardel = desk.start().wait_ready(notes=1)
    assert kardel.note().rect.width > 75


def test_lost_header_beside_its_notes_counts_them(desk):
    desk.seed_files([{"Titolo": f"n{n}"} for n in range(1, 8)])
    (desk.path() / "KARDEL.HDR").unlink()
    kardel = desk.start().wait_ready(notes=7)
    assert desk.read_files().count == 7


def test_header_that_counts_more_notes_than_there_are(desk):
    desk.seed_files([{"Titolo": f"n{n}"} for n in range(1, 4)], count=40)
    kardel = desk.start().wait_ready(notes=3)
    assert [note.title for note in kardel.notes()] == ["n1", "n2", "n3"]


def test_both_alignments_stored_as_true_stay_both(desk):
    desk.seed_registry({"AlignAll": True, "EasyAlign": True, "UseRegistry": True, "count": "1"}, [{"Titolo": "a"}])
    kardel = desk.start().wait_ready(notes=1)
    menu = kardel.tray.menu()
    for entry in ("Automatic position", "Easy alignment"):
        assert menu.item(entry)["checked"] and not menu.item(entry)["enabled"]
    desk.key("Escape")
    kardel.tray.command("dyn(5)")
    kardel.tray.command("dyn(6)")
    kardel.tray.window().send(0)
    assert desk.registry("setting")["AlignAll"] == TRUE and desk.registry("setting")["EasyAlign"] == TRUE


def test_all_notes_closed_starts_with_show_all(desk):
    desk.seed_registry({}, [{"Titolo": "a", "closed": True}, {"Titolo": "b", "closed": True}])
    kardel = desk.run()
    assert kardel.visible_notes() == []
    menu = kardel.tray.menu()
    assert "Show All" in menu.captions and "Hide All" not in menu.captions
    desk.key("Escape")


def test_all_notes_iconized_starts_with_restore_all(desk):
    desk.seed_registry({}, [{"Titolo": "a", "iconized": True}, {"Titolo": "b", "iconized": True}])
    kardel = desk.run()
    assert [note.rect.height for note in kardel.notes()] == [20, 20]
    assert "Restore All" in kardel.tray.menu().captions
    desk.key("Escape")


def test_start_does_not_take_the_keyboard(desk):
    desk.seed_registry({}, [{"Titolo": f"n{n}", "x": 1500 * n, "y": 1500} for n in range(1, 5)])
    kardel = desk.run()
    assert not any(note.active for note in kardel.notes())


def test_exit_leaves_no_process_and_no_icon(desk):
    kardel = desk.run()
    assert kardel.tray.icons == 1
    assert kardel.exit() == 0
    desk.wait(lambda: kardel.tray.icons == 0, what="the icon to go")


def test_program_folder_with_blanks_and_letters_outside_the_code_page(desk):
    folder = desk.program_folder("desk\\Ma note \u03a9\u4e2d caf\u00e9")
    kardel = desk.start(folder=folder).wait_ready(notes=1)
    assert desk.run_value == folder + "\\Kardel.exe"
    kardel.exit()
    assert len(desk.read_files(folder).records) == 1


def test_a_start_from_inside_a_zip_explains_itself_and_writes_nothing(desk):
    users = desk.wine.path("C:\\users")
    temporary = next(iter([*users.glob("*/AppData/Local/Temp"), *users.glob("*/Temp")]))
    spelled = "C:\\users\\" + str(temporary.relative_to(users)).replace("/", "\\")
    folder = desk.program_folder(spelled[3:] + "\\Temp1_kardel.zip")
    kardel = desk.start(folder=folder)
    box = kardel.dialog()
    assert any("Extract the zip into a folder of your own first" in text for text in box.texts())
    assert desk.run_value is None and desk.registry("setting") is None and kardel.notes() == []
    assert [path.name for path in desk.path(folder).iterdir()] == ["Kardel.exe"]
    extracted = desk.start()  # as it said, while the explanation is still open
    desk.wait(lambda: extracted.alive and len(extracted.notes()) == 1, 20, "the extracted copy")
    box.press("OK")
    assert kardel.wait_ended() == 0
    assert [path.name for path in desk.path(folder).iterdir()] == ["Kardel.exe"]
    assert desk.run_value == desk.folder + "\\Kardel.exe"
