"""The pointers in the program's file: in a form that every Windows can read."""

import struct

from kardel_desk.paths import program

CURSOR = 1  # the kind of resource that holds one picture of one cursor


def resources(data, kind):
    """The contents of all resources of a kind."""
    pe = struct.unpack_from("<I", data, 60)[0]
    sections, optional = struct.unpack_from("<H", data, pe + 6)[0], struct.unpack_from("<H", data, pe + 20)[0]
    directories = pe + 24 + (112 if struct.unpack_from("<H", data, pe + 24)[0] == 0x20B else 96)
    root = struct.unpack_from("<I", data, directories + 2 * 8)[0]
    for at in range(pe + 24 + optional, pe + 24 + optional + 40 * sections, 40):
        size, address, _, raw = struct.unpack_from("<IIII", data, at + 8)
        if address <= root < address + size:
            base, shift = raw + root - address, raw - address

    def leaves(table):
        names, ids = struct.unpack_from("<HH", data, base + table + 12)
        for entry in range(base + table + 16, base + table + 16 + 8 * (names + ids), 8):
            name, target = struct.unpack_from("<II", data, entry)
            if table or name == kind:
                yield from leaves(target & 0x7FFFFFFF) if target >> 31 else [target]

    for leaf in leaves(0):
        address, size = struct.unpack_from("<II", data, base + leaf)
        yield data[address + shift:address + shift + size]


def test_cursors_are_bitmaps(arch):
    """Windows reads compressed pictures in icons, but not in cursors."""
    sizes = []
    for content in resources(program(arch).read_bytes(), CURSOR):
        header, width, height, planes, bits = struct.unpack_from("<IiiHH", content, 4)  # after the hotspot
        assert (header, height, planes) == (40, 2 * width, 1) and bits in (4, 32)
        sizes.append(width)
    assert sorted(sizes) == [32] * 4 + [48] * 4
