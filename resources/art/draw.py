#!/usr/bin/env python3
"""Draws Kardel's icon, cursors and installer picture, and synthesises its alarm sound.

    draw.py          writes Kardel.ico, cursor101.cur .. cursor104.cur and alarm.wav into the folder above, and
                     welcome.bmp into packaging
    draw.py --check  compares what it would write with the files there; exits with 1 when one differs

Only the standard library is used, and nothing depends on the clock, on fonts or on random numbers, so every run
gives the same pictures and the same sound. Coordinates are pixels, x to the right, y down; pixel (0, 0) covers the
square from 0 to 1. Colours are (red, green, blue) from 0 to 255, opacities go from 0 to 1.
"""
import io
import math
import struct
import sys
import wave
import zlib
from pathlib import Path

OUTPUT = Path(__file__).resolve().parent.parent

BLACK = (0, 0, 0)
WHITE = (255, 255, 255)

PAPER = (255, 255, 128)     # the colour of a new note
STRIP = (244, 226, 84)      # the title strip
STRIP_EDGE = (206, 184, 48)  # the line below the title strip
OUTLINE = (112, 96, 16)     # keeps the note apart from a white task bar
TEXT = (150, 134, 52)       # the written lines
CURL_DARK = (190, 168, 44)  # underside of the lifted corner, at the bend
CURL_LIGHT = (255, 250, 196)  # .. where it catches the light
CURL_TIP = (232, 214, 92)   # .. at its tip


# ---------------------------------------------------------------- pictures


class Picture:
    """A square picture of straight-alpha pixels, kept as fractions until it is stored."""

    def __init__(self, size):
        self.size = size
        self.pixels = [(0.0, 0.0, 0.0, 0.0)] * (size * size)

    def blend(self, x, y, colour, opacity):
        """Lays a colour over one pixel."""
        if opacity <= 0:
            return
        at = y * self.size + x
        red, green, blue, below = self.pixels[at]
        result = opacity + below * (1 - opacity)
        keep = below * (1 - opacity) / result
        put = opacity / result
        self.pixels[at] = (red * keep + colour[0] * put, green * keep + colour[1] * put,
                           blue * keep + colour[2] * put, result)

    def fill(self, shape, colour, opacity=1.0, inside=None):
        """Fills a shape with a colour, or with colour(x, y); inside is a second shape that clips the first."""
        for y in range(self.size):
            for x in range(self.size):
                part = coverage(shape, x, y)
                if part > 0 and inside is not None:
                    part *= coverage(inside, x, y)
                if part > 0:
                    ink = colour(x + 0.5, y + 0.5) if callable(colour) else colour
                    self.blend(x, y, ink, part * opacity)

    def shade(self, shape, reach, opacity, inside=None):
        """Lays a soft black shadow of a shape: full strength `reach` inside its edge, gone `reach` outside."""
        for y in range(self.size):
            for x in range(self.size):
                depth = min(1.0, max(0.0, 0.5 - shape(x + 0.5, y + 0.5) / (2 * reach)))
                part = round(depth * depth * (3 - 2 * depth) * 24) / 24  # steps too fine to see, but they pack well
                if part > 0 and inside is not None:
                    part *= coverage(inside, x, y)
                self.blend(x, y, BLACK, part * opacity)

    def rows(self):
        """The rows from top to bottom, each a list of (red, green, blue, alpha) bytes; unseen pixels are zero."""
        stored = []
        for pixel in self.pixels:
            alpha = int(pixel[3] * 255 + 0.5)
            stored.append((*(min(255, int(part + 0.5)) for part in pixel[:3]), alpha) if alpha else (0, 0, 0, 0))
        return [stored[start:start + self.size] for start in range(0, len(stored), self.size)]


# A shape is a function of a point that answers its distance from the shape's edge, negative inside.


def coverage(shape, x, y, steps=8):
    """The part of a pixel that lies inside a shape: 0 to 1. Only pixels near the edge are looked at closely."""
    distance = shape(x + 0.5, y + 0.5)
    if distance >= 0.75:
        return 0.0
    if distance <= -0.75:
        return 1.0
    hits = sum(shape(x + (column + 0.5) / steps, y + (row + 0.5) / steps) < 1e-9  # a point on the edge is inside
               for row in range(steps) for column in range(steps))
    return hits / (steps * steps)


def box(left, top, right, bottom, radius=0.0):
    """A rectangle with rounded corners."""
    middle_x, middle_y = (left + right) / 2, (top + bottom) / 2
    half_x, half_y = (right - left) / 2 - radius, (bottom - top) / 2 - radius

    def distance(x, y):
        dx, dy = abs(x - middle_x) - half_x, abs(y - middle_y) - half_y
        return math.hypot(max(dx, 0.0), max(dy, 0.0)) + min(max(dx, dy), 0.0) - radius
    return distance


def stroke(x0, y0, x1, y1, radius):
    """A straight line with round ends."""
    dx, dy = x1 - x0, y1 - y0
    square = dx * dx + dy * dy

    def distance(x, y):
        along = min(1.0, max(0.0, ((x - x0) * dx + (y - y0) * dy) / square))
        return math.hypot(x - x0 - dx * along, y - y0 - dy * along) - radius
    return distance


def polygon(points):
    """A closed polygon."""
    edges = []
    for (x0, y0), (x1, y1) in zip(points, points[1:] + points[:1]):
        if (x0, y0) != (x1, y1):
            edges.append((x0, y0, x1 - x0, y1 - y0, (x1 - x0) ** 2 + (y1 - y0) ** 2))

    def distance(x, y):
        nearest = math.inf
        inside = False
        for x0, y0, dx, dy, square in edges:
            px, py = x - x0, y - y0
            along = min(1.0, max(0.0, (px * dx + py * dy) / square))
            nearest = min(nearest, (px - dx * along) ** 2 + (py - dy * along) ** 2)
            if (py < 0) != (py - dy < 0) and px < dx * py / dy:
                inside = not inside
        return -math.sqrt(nearest) if inside else math.sqrt(nearest)
    return distance


def union(*shapes):
    """Everything that lies in one of the shapes."""
    return lambda x, y: min(shape(x, y) for shape in shapes)


def moved(shape, dx, dy):
    """A shape shifted by (dx, dy)."""
    return lambda x, y: shape(x - dx, y - dy)


def grown(shape, by):
    """A shape made wider by a distance on every side; a negative one makes it narrower."""
    return lambda x, y: shape(x, y) - by


def curve(start, control, end, steps=12):
    """The points of a quadratic curve, without its end."""
    points = []
    for step in range(steps):
        t = step / steps
        points.append(tuple((1 - t) ** 2 * a + 2 * t * (1 - t) * b + t * t * c
                            for a, b, c in zip(start, control, end)))
    return points


def mix(first, second, share):
    """The colour between two colours; share 0 is the first."""
    return tuple(a + (b - a) * share for a, b in zip(first, second))


# ---------------------------------------------------------------- program icon

# Every edge lies on whole pixels, so that nothing blurs. sheet: left, top, right, bottom; line: outline width;
# strip: bottom of the title strip; edge: the line below it; text: (top, right) of each written line; thick: their
# height; indent: their left; curl: size of the lifted corner.
ICONS = {
    16: dict(sheet=(1, 1, 15, 15), line=1, strip=4, edge=1, text=((6, 13), (8, 13), (10, 8)), thick=1, indent=3,
             curl=5),
    20: dict(sheet=(1, 1, 19, 18), line=1, strip=5, edge=1, text=((7, 17), (10, 17), (13, 10)), thick=1, indent=3,
             curl=6),
    24: dict(sheet=(2, 1, 22, 21), line=1, strip=6, edge=1, text=((9, 20), (12, 20), (15, 13)), thick=1, indent=4,
             curl=7),
    32: dict(sheet=(2, 2, 30, 29), line=1, strip=8, edge=1, text=((12, 27), (16, 27), (20, 18)), thick=2, indent=5,
             curl=10),
    40: dict(sheet=(3, 2, 37, 36), line=1, strip=10, edge=1, text=((15, 33), (20, 33), (25, 22)), thick=2, indent=7,
             curl=13),
    48: dict(sheet=(4, 3, 44, 43), line=1, strip=12, edge=1, text=((18, 39), (24, 39), (30, 26)), thick=3, indent=9,
             curl=15),
    64: dict(sheet=(5, 4, 59, 57), line=1, strip=16, edge=1, text=((24, 52), (32, 52), (40, 34)), thick=3, indent=12,
             curl=20),
    256: dict(sheet=(20, 16, 236, 230), line=4, strip=62, edge=4, text=((94, 208), (126, 208), (158, 136)), thick=12,
              indent=48, curl=84),
}
SMALLEST_BENT = 32  # below this size a bent corner would be a smudge: there it is a plain fold


def rule(picture, form):
    """The title strip and the written lines."""
    left, _, right, _ = form['sheet']
    inner_left, inner_right = left + form['line'], right - form['line']
    picture.fill(box(inner_left, form['sheet'][1] + form['line'], inner_right, form['strip']), STRIP)
    picture.fill(box(inner_left, form['strip'], inner_right, form['strip'] + form['edge']), STRIP_EDGE)
    for top, text_right in form['text']:
        round_end = form['thick'] / 2 if form['thick'] > 3 else 0
        picture.fill(box(form['indent'], top, text_right, top + form['thick'], round_end), TEXT)


def small_icon(size):
    """The icon of the task bar's sizes, set pixel by pixel."""
    form = ICONS[size]
    left, top, right, bottom = form['sheet']
    corner_x, corner_y = right - form['curl'], bottom - form['curl']
    bend = form['curl'] - 1  # the bend is the diagonal on which both distances from the inner corner add up to this

    picture = Picture(size)
    picture.fill(box(left, top, right, bottom), OUTLINE)
    picture.fill(box(left + 1, top + 1, right - 1, bottom - 1), PAPER)
    for step in range(bend):  # the shadow that the lifted corner throws on the sheet
        picture.blend(corner_x - 1, corner_y + step, STRIP_EDGE, 0.45)
        picture.blend(corner_x + step, corner_y - 1, STRIP_EDGE, 0.45)
    rule(picture, form)
    for y in range(corner_y, bottom):
        for x in range(corner_x, right):
            away = (x - corner_x) + (y - corner_y)
            at = y * size + x
            if away > bend:
                picture.pixels[at] = (0.0, 0.0, 0.0, 0.0)
                picture.blend(x, y, BLACK, {1: 0.32, 2: 0.12}.get(away - bend, 0.0))
            elif away == bend or x == corner_x or y == corner_y:
                picture.blend(x, y, OUTLINE, 1.0)
            else:
                picture.blend(x, y, mix(CURL_TIP, CURL_LIGHT, (away - 2) / (bend - 3)), 1.0)
    for x in range(left + 1, corner_x + 1):
        picture.blend(x, bottom, BLACK, 0.32)
        if bottom + 1 < size:
            picture.blend(x, bottom + 1, BLACK, 0.12)
    return picture


def icon(size):
    """The program icon: a note with a title strip, three written lines and its lower right corner lifted."""
    if size < SMALLEST_BENT:
        return small_icon(size)
    form = ICONS[size]
    left, top, right, bottom = form['sheet']
    line, curl = form['line'], form['curl']

    # The bend runs from the right edge to the bottom edge and bulges a little outwards, as bent paper does.
    bend_right, bend_bottom = (right, bottom - curl), (right - curl, bottom)
    bulge = (right - curl * 0.36, bottom - curl * 0.36)
    tip = (right - curl * 0.86, bottom - curl * 0.86)
    bend = curve(bend_right, bulge, bend_bottom)
    sheet = polygon([(left, top), (right, top)] + bend + [bend_bottom, (left, bottom)])
    flap = polygon(curve(bend_right, (right - curl * 0.30, bottom - curl * 0.84), tip)
                   + curve(tip, (right - curl * 0.84, bottom - curl * 0.30), bend_bottom)
                   + list(reversed(bend)))

    def underside(x, y):
        """Paper bent round a roll: dark at the bend, bright on its crown, calm towards the tip."""
        away = ((right + bottom - curl * 0.72) - x - y) / curl
        away = min(1.0, max(0.0, away))
        if away < 0.38:
            return mix(CURL_DARK, CURL_LIGHT, away / 0.38)
        return mix(CURL_LIGHT, CURL_TIP, (away - 0.38) / 0.62)

    picture = Picture(size)
    soft = max(1.0, size / 30)
    picture.shade(moved(grown(sheet, -soft * 0.5), 0, soft), soft * 1.5, 0.42)
    picture.fill(sheet, OUTLINE)
    face = grown(sheet, -line)
    picture.fill(face, PAPER)
    rule(picture, form)
    picture.shade(moved(flap, -curl * 0.05, -curl * 0.05), curl * 0.22, 0.30, inside=face)
    picture.fill(flap, OUTLINE)
    picture.fill(grown(flap, -line * 0.8), underside)
    return picture


# ---------------------------------------------------------------- cursors

# For each cursor size, in pixels. centre: the middle pixel, which is the hotspot of the arrows; shaft: half the width
# of the shaft; pair and cross: (start, half width) of the arrow heads of the double and of the four-way arrow, seen
# from the centre; halo: the white outline.
CURSORS = {
    32: dict(centre=15, shaft=1.5, pair=(5.5, 5.5), cross=(7.5, 4.5), halo=1.25),
    48: dict(centre=23, shaft=2.5, pair=(8.5, 8.5), cross=(11.5, 6.5), halo=1.75),
}


def arrow_points(form, head, dx, dy):
    """Half an arrow from the centre towards (dx, dy): shaft and head, the points in turn."""
    middle = form['centre'] + 0.5
    shaft, (neck, wide) = form['shaft'], form[head]
    outline = [(-shaft, shaft), (neck, shaft), (neck, wide), (neck + wide, 0), (neck, -wide), (neck, -shaft),
               (-shaft, -shaft)]
    return [(middle + along * dx - across * dy, middle + along * dy + across * dx) for along, across in outline]


def cursor(shape, size, details=None):
    """A black shape with a white outline; details are drawn in white on it."""
    picture = Picture(size)
    picture.fill(grown(shape, CURSORS[size]['halo']), WHITE)
    picture.fill(shape, BLACK)
    if details is not None:
        picture.fill(details, WHITE, inside=shape)
    return picture


def arrows(size, head, *directions):
    """Arrows from the centre in some directions; the hotspot is the centre."""
    form = CURSORS[size]
    shape = union(*(polygon(arrow_points(form, head, dx, dy)) for dx, dy in directions))
    return cursor(shape, size), (form['centre'], form['centre'])


def resize_width(size):
    return arrows(size, 'pair', (-1, 0), (1, 0))


def resize_height(size):
    return arrows(size, 'pair', (0, -1), (0, 1))


def moving(size):
    return arrows(size, 'cross', (-1, 0), (1, 0), (0, -1), (0, 1))


def pointing_hand(size):
    """A hand with its index finger up; the hotspot is the finger tip. The numbers are for 32 pixels."""
    unit = size / 32

    def at(*numbers):
        return [number * unit for number in numbers]
    shape = union(
        stroke(*at(12.5, 5.5, 12.5, 20, 2.0)),    # index finger
        stroke(*at(16.5, 13.5, 16.5, 20, 2.0)),   # the three bent fingers
        stroke(*at(20.5, 14.3, 20.5, 20, 2.0)),
        stroke(*at(24.0, 15.6, 24.0, 20, 1.7)),
        stroke(*at(7.6, 17.2, 12.5, 23.0, 1.9)),  # thumb
        polygon([tuple(at(*point)) for point in
                 ((10.5, 17), (25.7, 17), (25.7, 21.5), (23.6, 25.5), (23.6, 28), (13.2, 28), (13.2, 26), (10.5, 22))]))
    gaps = union(*(stroke(*at(x, top, x, 19.5, 0.5)) for x, top in ((14.5, 13), (18.5, 13), (22.4, 14))))
    return cursor(shape, size, gaps), (int(12.5 * unit), int(3.5 * unit))


# ---------------------------------------------------------------- picture files


def bitmap(picture):
    """The form that every version of Windows reads: 32-bit pixels from the bottom up, then a one-bit mask."""
    rows = picture.rows()
    pixels = b''.join(struct.pack('BBBB', blue, green, red, alpha)
                      for row in reversed(rows) for red, green, blue, alpha in row)
    mask = b''
    for row in reversed(rows):
        bits = ''.join('1' if pixel[3] < 128 else '0' for pixel in row)
        width = (len(bits) + 31) // 32 * 32
        mask += int(bits.ljust(width, '0'), 2).to_bytes(width // 8, 'big')
    header = struct.pack('<IiiHHIIiiII', 40, picture.size, picture.size * 2, 1, 32, 0, len(pixels) + len(mask),
                         0, 0, 0, 0)
    return header + pixels + mask


def plain_bitmap(picture):
    """The form for large cursors: 16 greys and a one-bit mask, a sixth of the size. Half-covered pixels count as seen,
    so the outline stays closed."""
    rows = picture.rows()
    pixels = mask = b''
    for row in reversed(rows):
        seen = [alpha >= 128 for *_, alpha in row]
        greys = [(red + 8) // 17 if shown else 0 for (red, *_), shown in zip(row, seen)]
        width = (len(row) + 7) // 8 * 8
        greys += [0] * (width - len(row))
        pixels += bytes(high << 4 | low for high, low in zip(greys[::2], greys[1::2]))
        bits = ''.join('0' if shown else '1' for shown in seen)
        width = (len(bits) + 31) // 32 * 32
        mask += int(bits.ljust(width, '0'), 2).to_bytes(width // 8, 'big')
    palette = b''.join(bytes((17 * grey, 17 * grey, 17 * grey, 0)) for grey in range(16))
    header = struct.pack('<IiiHHIIiiII', 40, picture.size, picture.size * 2, 1, 4, 0, len(pixels) + len(mask),
                         0, 0, 16, 0)
    return header + palette + pixels + mask


def foretell(line, above, at):
    """The byte at a place of a row, guessed from its left, upper and upper left neighbours (PNG's Paeth filter)."""
    left, corner = (line[at - 4], above[at - 4]) if at >= 4 else (0, 0)
    up = above[at]
    guess = left + up - corner
    return min((left, up, corner), key=lambda neighbour: abs(guess - neighbour))


def png(picture):
    """The compressed form, for the sizes that are large and that only newer versions of Windows ask for."""
    def chunk(kind, data):
        return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data))
    lines = []
    above = bytes(picture.size * 4)
    for row in picture.rows():
        line = bytes(part for pixel in row for part in pixel)
        # Each byte is stored as it is or as the difference from what its neighbours foretell, whichever is calmest.
        plain = bytes([0]) + line
        foretold = bytes([4]) + bytes((part - foretell(line, above, at)) & 255 for at, part in enumerate(line))
        lines.append(min(plain, foretold, key=lambda choice: sum(min(part, 256 - part) for part in choice[1:])))
        above = line
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', picture.size, picture.size, 8, 6, 0, 0, 0))
            + chunk(b'IDAT', zlib.compress(b''.join(lines), 9)) + chunk(b'IEND', b''))


def image_file(kind, entries):
    """An .ico (kind 1) or .cur (kind 2) file. An entry is (size, first word, second word, data): the words are
    planes and bits per pixel in an icon, the hotspot in a cursor."""
    directory = struct.pack('<HHH', 0, kind, len(entries))
    body = b''
    for size, first, second, data in entries:
        directory += struct.pack('<BBBBHHII', size & 255, size & 255, 0, 0, first, second, len(data),
                                 6 + 16 * len(entries) + len(body))
        body += data
    return directory + body


def icon_file():
    entries = []
    for size in (16, 20, 24, 32, 40, 48, 64, 256):
        picture = icon(size)
        entries.append((size, 1, 32, bitmap(picture) if size < 48 else png(picture)))
    return image_file(1, entries)


def cursor_file(draw):
    entries = []
    for size in CURSORS:
        picture, (x, y) = draw(size)
        # Windows reads compressed pictures in icons only.
        entries.append((size, x, y, bitmap(picture) if size < 48 else plain_bitmap(picture)))
    return image_file(2, entries)


# ---------------------------------------------------------------- alarm sound

RATE = 11025          # samples a second
LENGTH = 1.0          # seconds
ATTACK = 0.006        # seconds; a softer start than this sounds dull, a harder one clicks
FADE = 0.15           # seconds in which the end dies away completely
STROKES = ((0.00, 783.99), (0.20, 1046.50))             # when a bell is struck (seconds), and its pitch (Hz): G5, C6
PARTIALS = ((1.0, 1.0, 4.0), (2.0, 0.42, 6.5), (3.01, 0.16, 10.0), (4.17, 0.07, 16.0))  # of the pitch, loudness, decay
LOUDEST = 0.85        # of full scale


def alarm_file():
    """Two bell strokes, the second a fourth above the first: 16-bit mono."""
    count = int(RATE * LENGTH)
    samples = []
    for index in range(count):
        now = index / RATE
        value = 0.0
        for start, pitch in STROKES:
            since = now - start
            if since < 0:
                continue
            attack = 0.5 - 0.5 * math.cos(math.pi * min(1.0, since / ATTACK))
            for multiple, loudness, decay in PARTIALS:
                value += attack * loudness * math.exp(-decay * since) * math.sin(2 * math.pi * pitch * multiple * since)
        left = (count - 1 - index) / RATE
        samples.append(value * (0.5 - 0.5 * math.cos(math.pi * min(1.0, left / FADE))))
    scale = LOUDEST * 32767 / max(abs(sample) for sample in samples)
    file = io.BytesIO()
    with wave.open(file, 'wb') as sound:
        sound.setnchannels(1)
        sound.setsampwidth(2)
        sound.setframerate(RATE)
        sound.writeframes(b''.join(struct.pack('<h', round(sample * scale)) for sample in samples))
    return file.getvalue()


# ---------------------------------------------------------------- command

def welcome_file():
    """The picture beside the installer's first and last page, as an uncompressed Windows bitmap."""
    width, height = 164, 314
    size, left, top = 64, (width - 64) // 2, 56
    sheet = icon(size)
    rows = []
    for y in range(height):
        row = b''
        for x in range(width):
            red, green, blue = mix((226, 238, 246), (150, 186, 206), y / height)
            if left <= x < left + size and top <= y < top + size:
                *ink, opacity = sheet.pixels[(y - top) * size + x - left]
                red, green, blue = mix((red, green, blue), ink, opacity)
            row += bytes(round(value) for value in (blue, green, red))
        rows.append(row + bytes(-len(row) % 4))
    content = b''.join(reversed(rows))
    return (struct.pack('<2sIHHI', b'BM', 54 + len(content), 0, 0, 54)
            + struct.pack('<IiiHHIIiiII', 40, width, height, 1, 24, 0, len(content), 2835, 2835, 0, 0) + content)


FILES = {
    'Kardel.ico': icon_file,
    'cursor101.cur': lambda: cursor_file(resize_width),
    'cursor102.cur': lambda: cursor_file(resize_height),
    'cursor103.cur': lambda: cursor_file(moving),
    'cursor104.cur': lambda: cursor_file(pointing_hand),
    'alarm.wav': alarm_file,
    '../packaging/welcome.bmp': welcome_file,
}


def unpacked(data):
    """A file's content with its compressed pictures unpacked: two zlib versions may pack one picture differently."""
    if data[:4] != b'\0\0\1\0':
        return data
    content = []
    for index in range(struct.unpack_from('<H', data, 4)[0]):
        entry = struct.unpack_from('<BBBBHHII', data, 6 + 16 * index)
        picture = data[entry[7]:entry[7] + entry[6]]
        if picture[:4] == b'\x89PNG':
            length = struct.unpack_from('>I', picture, 33)[0]
            picture = picture[:33] + zlib.decompress(picture[41:41 + length])
        content.append((entry[:6], picture))
    return content


def main(arguments):
    if arguments not in ([], ['--check']):
        print(__doc__, file=sys.stderr)
        return 2
    different = 0
    for name, make in FILES.items():
        path, data = OUTPUT / name, make()
        if not arguments:
            path.write_bytes(data)
            print(f'{name}: {len(data)} bytes')
        elif not path.exists():
            print(f'{name} is missing', file=sys.stderr)
            different = 1
        elif unpacked(path.read_bytes()) != unpacked(data):
            print(f'{name} differs from what draw.py makes', file=sys.stderr)
            different = 1
    return different


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
