"""The two stores behind one interface, for scenarios that must come out the same in both."""

FLAGS = ("closed", "iconized", "topmost", "mute")
NUMBERS = ("x", "y", "width", "height", "backcolor", "alarmweekday", "alarmrepeatnumber")
TEXTS = ("Titolo", "Nota", "alarmdate", "alarmtime", "alarmrepeatevery", "interval", "alarmday", "alarmdaymonth")
DAYS = ("Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun")
KINDS = ("registry", "files")


def in_registry(desk, number: int) -> dict:
    """Note `number` of the registry with its numbers and flags converted; what is missing is empty, 0 or false."""
    values = dict(desk.stored_note(number))
    values["weekdays"] = [values.pop("w." + day, "False") == "True" for day in DAYS]
    for key in TEXTS:
        values.setdefault(key, "")
    for key in NUMBERS:
        values[key] = int(values.get(key) or 0)
    for key in FLAGS:
        values[key] = values.get(key) == "True"
    return values


class Store:
    """One of the stores of a desk: "registry" or "files"."""

    def __init__(self, desk, kind: str):
        self.desk, self.kind = desk, kind

    def seed(self, notes: list[dict], **settings) -> None:
        """Stores notes and chooses this store."""
        if self.kind == "registry":
            self.desk.seed_registry(settings, notes)
        else:
            self.desk.seed_registry({"UseRegistry": False, **settings})
            self.desk.seed_files(notes)

    def notes(self) -> list[dict]:
        """Every note that counts, in the order of the numbers."""
        if self.kind == "files":
            files = self.desk.read_files()
            return files.notes[:files.count]
        count = int((self.desk.registry("setting") or {}).get("count", "0"))
        return [in_registry(self.desk, number) for number in range(1, count + 1)]

    def each(self, key: str) -> list:
        """One field of every note."""
        return [note[key] for note in self.notes()]

    def places(self) -> list[tuple[int, int]]:
        """x and y of every note, in twips."""
        return [(note["x"], note["y"]) for note in self.notes()]

    def raw(self):
        """Everything that is stored of the notes, for comparing two moments."""
        if self.kind == "files":
            files = self.desk.read_files()
            return files.hdr, files.dat, files.memo
        return {section: self.desk.registry(section) for section in self.desk.sections()}
