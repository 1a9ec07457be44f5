#!/usr/bin/env python3
"""Draws the pictures that the example scenes read, into Examples/Images.

    Tools/MakeExampleImages.py [FOLDER]

Needs nothing beyond Python itself. The pictures are the same on every run.
"""

import functools
import math
import os
import struct
import sys
import zlib


# --- Files

def png_chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def paeth(left, above, corner):
    guess = left + above - corner
    distances = (abs(guess - left), abs(guess - above), abs(guess - corner))
    return (left, above, corner)[distances.index(min(distances))]


def filtered(row, above, step):
    """The row with its best filter in front: the one whose bytes, as signed numbers, are smallest together."""
    left = bytes(step) + row[:-step]
    corner = bytes(step) + above[:-step]
    kinds = [
        row,
        bytes((v - a) & 255 for v, a in zip(row, left)),
        bytes((v - a) & 255 for v, a in zip(row, above)),
        bytes((v - (a + b) // 2) & 255 for v, a, b in zip(row, left, above)),
        bytes((v - paeth(a, b, c)) & 255 for v, a, b, c in zip(row, left, above, corner)),
    ]
    costs = [sum(min(v, 256 - v) for v in kind) for kind in kinds]
    best = costs.index(min(costs))
    return bytes([best]) + kinds[best]


def write_png(path, width, height, channels, pixel):
    """pixel(x, y) gives `channels` numbers from 0 to 1."""
    packed = bytearray()
    above = bytes(width * channels)
    for y in range(height):
        row = bytes(round(255 * min(max(v, 0.0), 1.0)) for x in range(width) for v in pixel(x, y))
        packed += filtered(row, above, channels)
        above = row
    header = struct.pack(">IIBBBBB", width, height, 8, {3: 2, 4: 6}[channels], 0, 0, 0)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + png_chunk(b"IHDR", header) +
                   png_chunk(b"IDAT", zlib.compress(bytes(packed), 9)) + png_chunk(b"IEND", b""))


# --- Numbers

def mix(a, b, t):
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def smooth(low, high, value):
    t = min(max((value - low) / (high - low), 0.0), 1.0)
    return t * t * (3 - 2 * t)


def scattered(x, y, seed):
    """A number from 0 to 1 that looks random, fixed for whole x and y."""
    n = (x * 374761393 + y * 668265263 + seed * 2147483647) & 0xFFFFFFFF
    n = ((n ^ (n >> 13)) * 1274126177) & 0xFFFFFFFF
    return ((n ^ (n >> 16)) & 0xFFFF) / 65535.0


def value_noise(x, y, seed):
    column, row = math.floor(x), math.floor(y)
    u, v = x - column, y - row
    u, v = u * u * (3 - 2 * u), v * v * (3 - 2 * v)
    top = scattered(column, row, seed) * (1 - u) + scattered(column + 1, row, seed) * u
    bottom = scattered(column, row + 1, seed) * (1 - u) + scattered(column + 1, row + 1, seed) * u
    return top * (1 - v) + bottom * v


def cloudy(x, y, seed, octaves):
    """Noise summed over octaves, from 0 to 1."""
    total, weight, sum_of_weights = 0.0, 0.5, 0.0
    for octave in range(octaves):
        total += weight * value_noise(x, y, seed + octave)
        sum_of_weights += weight
        x, y, weight = 2.03 * x + 17.1, 2.03 * y + 5.3, weight / 2
    return total / sum_of_weights


# --- The landscape: hills at sunset over a lake, 320 x 180

SUN = (206.0, 74.0)
SHORE = 128.0


def sky(x, y):
    height = min(y / 118.0, 1.0)
    colour = mix((0.10, 0.19, 0.42), (0.44, 0.47, 0.62), smooth(0.0, 0.55, height))
    colour = mix(colour, (0.98, 0.68, 0.42), smooth(0.40, 0.95, height))
    distance = math.hypot(x - SUN[0], (y - SUN[1]) * 1.1)
    colour = mix(colour, (1.0, 0.86, 0.58), 0.85 * math.exp(-distance / 34.0))
    clouds = cloudy(x / 62.0, y / 15.0, 11, 5)
    cover = smooth(0.50, 0.74, clouds) * smooth(112.0, 60.0, y)
    lit = math.exp(-distance / 80.0)
    colour = mix(colour, mix((0.52, 0.46, 0.56), (1.0, 0.82, 0.66), lit), 0.8 * cover)
    disc = smooth(12.5, 10.5, math.hypot(x - SUN[0], y - SUN[1]))
    return mix(colour, (1.0, 0.98, 0.90), disc)


# Each ridge, far to near: height of its base, its swing, width of its swells, how much haze lies over it, its colour.
RIDGES = (
    (96.0, 34.0, 74.0, 0.60, (0.30, 0.32, 0.46), 31),
    (109.0, 30.0, 52.0, 0.30, (0.19, 0.25, 0.33), 47),
    (122.0, 24.0, 40.0, 0.06, (0.09, 0.15, 0.14), 63),
)


@functools.lru_cache(maxsize=None)
def ridge_top(ridge, x):
    base, swing, width, _, _, seed = ridge
    return base - swing * (cloudy(x / width, 0.5, seed, 5) - 0.35)


def hill(ridge, x, y):
    """A ridge's colour: its folds are lit where they lean towards the sun, in shadow elsewhere, behind its haze."""
    _, _, width, haze, colour, seed = ridge
    depth = y - ridge_top(ridge, x)
    across, down = x / (0.36 * width) + 0.04 * depth, y / (0.26 * width)
    lean = cloudy(across + 0.07, down - 0.05, seed + 9, 4) - cloudy(across - 0.07, down + 0.05, seed + 9, 4)
    light = 0.95 + 3.4 * lean * (2 * smooth(SUN[0] - 60.0, SUN[0] + 60.0, x) - 1.0)
    warm = math.exp(-abs(x - SUN[0]) / 90.0)
    lit = mix(tuple(c * light for c in colour), (0.85, 0.52, 0.30), 0.16 * warm * light)
    mist = haze + (1 - haze) * 0.28 * smooth(4.0, 40.0, depth)
    return mix(lit, mix((0.66, 0.55, 0.60), (1.0, 0.72, 0.48), warm), mist)


def land(x, y):
    colour = sky(x, y)
    for ridge in RIDGES:
        top = ridge_top(ridge, x)
        colour = mix(colour, hill(ridge, x, y), smooth(-0.6, 0.6, y - top))
    return colour


def lake(x, y):
    """The land upside down, shaken by waves that grow towards the viewer, and a track of glints below the sun."""
    near = (y - SHORE) / 52.0
    wave = cloudy(x / (9.0 + 26.0 * near), y / (0.9 + 1.8 * near), 83, 3) - 0.5
    mirrored = land(x + 14.0 * wave * near, 2 * SHORE - y - 2.0 + (6.0 + 20.0 * near) * wave)
    colour = mix(mirrored, (0.10, 0.16, 0.26), 0.22 + 0.30 * near)
    track = math.exp(-abs(x - SUN[0]) / (7.0 + 20.0 * near))
    colour = mix(colour, (1.0, 0.86, 0.60), 0.75 * track * smooth(0.02, 0.22, wave))
    return mix(colour, (0.05, 0.07, 0.08), 0.6 * smooth(2.5, 0.0, y - SHORE))


def pine(x, y, foot, tall, seed):
    """How much of a pine covers the point: a trunk under branches that spread in steps."""
    across, up = x - foot[0], foot[1] - y
    if up < 0 or up > tall:
        return 0.0
    trunk = smooth(1.3, 0.5, abs(across)) if up < 0.3 * tall else 0.0
    step = (up / tall * 7.0) % 1.0
    reach = 0.24 * tall * (1.0 - up / tall) * (1.15 - 0.55 * step)
    reach *= 0.75 + 0.5 * value_noise(up / 1.6, 3.0 * (across > 0), seed)
    return max(trunk, smooth(0.7, -0.7, abs(across) - reach) if up > 0.10 * tall else 0.0)


PINES = (((26, 181), 104, 5), ((52, 184), 78, 6), ((8, 182), 70, 7), ((76, 186), 50, 8), ((300, 184), 62, 9),
         ((318, 184), 84, 10))


def bank(x):
    return 168.0 + 9.0 * math.cos(x / 51.0) * smooth(260.0, 120.0, abs(x - 160.0) + 90.0) - \
        13.0 * smooth(100.0, 0.0, x) - 9.0 * smooth(256.0, 320.0, x) + 3.0 * cloudy(x / 5.0, 1.0, 91, 3)


def landscape_point(x, y):
    colour = land(x, y) if y < SHORE else lake(x, y)
    dark = smooth(-0.8, 0.8, y - bank(x))
    grass = cloudy(x / 2.2, y / 5.0, 97, 3)
    colour = mix(colour, mix((0.03, 0.05, 0.04), (0.16, 0.17, 0.08), grass * smooth(150.0, 182.0, y)), dark)
    for foot, tall, seed in PINES:
        cover = pine(x, y, foot, tall, seed)
        if cover > 0:
            needles = 0.03 + 0.05 * value_noise(x / 1.3, y / 1.1, seed + 40)
            colour = mix(colour, (needles * 0.8, needles * 1.2, needles), cover)
    edge = 1.0 - 0.22 * smooth(0.55, 1.15, math.hypot((x - 160) / 160.0, (y - 90) / 90.0))
    return tuple(c * edge for c in colour)


def landscape(x, y):
    """Four points a pixel, and the grain of a film."""
    points = [landscape_point(x + dx, y + dy) for dx in (0.25, 0.75) for dy in (0.25, 0.75)]
    grain = 0.012 * (scattered(x, y, 5) + scattered(x, y, 6) - 1.0)
    return tuple(sum(channel) / 4 + grain for channel in zip(*points))


# --- The sprites: eight frames of a turning gem, 4 x 2 of 64 x 64 pixels

SIDES = 8
GIRDLE, TABLE = 0.86, 0.50  # radii
TOP, CROWN, BOTTOM = 0.50, 0.14, -0.88  # heights


def ring(radius, height, turn):
    angles = [turn + 2 * math.pi * i / SIDES for i in range(SIDES)]
    return [(radius * math.cos(angle), height, radius * math.sin(angle)) for angle in angles]


def gem_facets(turn):
    """Polygons of a cut stone: table, two rows of crown facets, pavilion. The camera looks slightly down."""
    half = math.pi / SIDES
    table, girdle = ring(TABLE, TOP, turn + half), ring(GIRDLE, CROWN, turn)
    low = (0.0, BOTTOM, 0.0)
    facets = [table]
    for i in range(SIDES):
        j = (i + 1) % SIDES
        facets.append([girdle[i], table[i], table[i - 1]])
        facets.append([girdle[i], girdle[j], table[i]])
        facets.append([girdle[i], girdle[j], low])
    return facets


def subtract(a, b):
    return tuple(x - y for x, y in zip(a, b))


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def unit(a):
    length = math.sqrt(dot(a, a))
    return tuple(x / length for x in a)


TILT = math.radians(24)
# Direction, strength, and how sharp the glint is.
LIGHTS = ((unit((-0.5, 0.75, 0.55)), 0.75, 4.5), (unit((0.75, 0.35, 0.6)), 0.35, 7.5),
          (unit((0.35, -0.75, 0.5)), 0.60, 2.5))


def tilted(point):
    x, y, z = point
    return (x, y * math.cos(TILT) - z * math.sin(TILT), y * math.sin(TILT) + z * math.cos(TILT))


def facet_colour(normal):
    """Glassy: a deep body colour, brightened by what each light mirrors towards the viewer."""
    colour = mix((0.02, 0.24, 0.52), (0.14, 0.70, 0.90), 0.5 + 0.5 * dot(normal, unit((-0.3, 0.8, 0.4))))
    for direction, strength, sharpness in LIGHTS:
        mirrored = 2 * normal[2] * dot(normal, direction) - direction[2]
        if mirrored > 0:
            colour = mix(colour, (0.93, 1.0, 1.0), min(strength * mirrored ** sharpness, 1.0))
    return colour


def seen_facets(turn):
    """The facets that face the viewer: outline in the picture's plane, y up, and colour."""
    seen = []
    for facet in gem_facets(turn):
        points = [tilted(point) for point in facet]
        normal = unit(cross(subtract(points[1], points[0]), subtract(points[2], points[0])))
        middle = tuple(sum(axis) / len(points) for axis in zip(*points))
        if dot(normal, middle) < 0:
            normal = tuple(-n for n in normal)
        if normal[2] > 0:
            seen.append(([(p[0], p[1]) for p in points], facet_colour(normal)))
    return seen


def edge_distance(outline, x, y):
    """How far inside a convex outline, counter-clockwise, a point lies; negative outside."""
    return min(((bx - ax) * (y - ay) - (by - ay) * (x - ax)) / math.hypot(bx - ax, by - ay)
               for (ax, ay), (bx, by) in zip(outline, outline[1:] + outline[:1]))


def counter_clockwise(outline):
    area = sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(outline, outline[1:] + outline[:1]))
    return outline if area > 0 else outline[::-1]


FRAMES = [[(counter_clockwise(outline), colour) for outline, colour in seen_facets(2 * math.pi / SIDES * frame / 8)]
          for frame in range(8)]


def gem_point(frame, x, y):
    """Colour and cover of a point, both axes from -1 to 1."""
    for outline, colour in FRAMES[frame]:
        inside = edge_distance(outline, x, y)
        if inside >= 0:
            seam = smooth(0.035, 0.0, inside)
            glint = 0.16 * (y - 0.2 * x) * smooth(-0.6, 0.6, y)
            return tuple(c + glint + 0.18 * seam for c in colour) + (1.0,)
    return (0.0, 0.0, 0.0, 0.0)


def sprite(x, y):
    """Sixteen points a pixel. Empty pixels have the stone's colour, which shows at the edges under smooth sampling."""
    frame = (y // 64) * 4 + x // 64
    total = [0.0] * 4
    for dx in range(4):
        for dy in range(4):
            point = gem_point(frame, ((x % 64) + (dx + 0.5) / 4 - 32) / 30.0, (30 - (y % 64) - (dy + 0.5) / 4) / 30.0)
            total = [a + min(max(b, 0.0), 1.0) for a, b in zip(total, point)]
    cover = total[3]
    if cover == 0:
        return (0.10, 0.48, 0.74, 0.0)
    return tuple(c / cover for c in total[:3]) + (cover / 16.0,)


# --- The poster: rings over stripes, and a word, 320 x 240

CREAM, INK, TEAL = (0.96, 0.91, 0.80), (0.10, 0.13, 0.22), (0.12, 0.51, 0.53)
RED, GOLD = (0.86, 0.24, 0.18), (0.97, 0.72, 0.22)
RINGS = ((76.0, INK), (70.0, RED), (57.0, CREAM), (50.0, TEAL), (37.0, CREAM), (31.0, GOLD), (17.0, INK), (9.0, CREAM))

# Strokes of letters in a box that is 1 wide and 1.3 high, y down.
LETTERS = {
    "T": ([(0, 0), (1, 0)], [(0.5, 0), (0.5, 1.3)]),
    "E": ([(1, 0), (0, 0), (0, 1.3), (1, 1.3)], [(0, 0.65), (0.8, 0.65)]),
    "S": ([(1, 0), (0, 0), (0, 0.65), (1, 0.65), (1, 1.3), (0, 1.3)],),
    "A": ([(0, 1.3), (0.5, 0), (1, 1.3)], [(0.2, 0.85), (0.8, 0.85)]),
    "V": ([(0, 0), (0.5, 1.3), (1, 0)],),
    "O": ([(0, 0), (1, 0), (1, 1.3), (0, 1.3), (0, 0)],),
    "Y": ([(0, 0), (0.5, 0.6), (1, 0)], [(0.5, 0.6), (0.5, 1.3)]),
}
WORD, LETTER_SIZE, LETTER_STEP, WORD_AT = "TESSAVOY", 21.0, 34.6, (28.5, 197.0)


def strokes_of_word():
    for place, letter in enumerate(WORD):
        for line in LETTERS[letter]:
            left, top = WORD_AT[0] + place * LETTER_STEP, WORD_AT[1]
            points = [(left + x * LETTER_SIZE, top + y * LETTER_SIZE) for x, y in line]
            yield from zip(points, points[1:])


STROKES = list(strokes_of_word())


def stroke_distance(x, y):
    nearest = 1e9
    for (ax, ay), (bx, by) in STROKES:
        dx, dy = bx - ax, by - ay
        t = min(max(((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy), 0.0), 1.0)
        nearest = min(nearest, math.hypot(x - ax - t * dx, y - ay - t * dy))
    return nearest


def stripes(x, y):
    """Bands that fan out from behind the rings."""
    angle = math.atan2(y - 96.0, x - 160.0) / math.pi * 16.0
    band = abs((angle + 0.5) % 2.0 - 1.0)
    width = math.hypot(x - 160.0, y - 96.0) * math.pi / 16.0
    return mix(GOLD, mix(RED, GOLD, 0.45), smooth(-0.7, 0.7, (band - 0.5) * width))


def poster(x, y):
    x, y = x + 0.5, y + 0.5
    colour = stripes(x, y)
    distance = math.hypot(x - 160.0, y - 96.0)
    for radius, ring_colour in RINGS:
        colour = mix(colour, ring_colour, smooth(0.7, -0.7, distance - radius))
    colour = mix(colour, TEAL, smooth(-0.7, 0.7, y - 178.0))
    colour = mix(colour, INK, smooth(-0.7, 0.7, y - 182.0))
    if y > 184:
        colour = mix(colour, CREAM, smooth(3.9, 2.5, stroke_distance(x, y)))
    border = min(x, y, 320 - x, 240 - y)
    return mix(CREAM, colour, smooth(8.3, 9.7, border))


# --- The command

PICTURES = (("Landscape.png", 320, 180, 3, landscape), ("Sprites.png", 256, 128, 4, sprite),
            ("Poster.png", 320, 240, 3, poster))


def main():
    beside = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "Examples", "Images")
    folder = sys.argv[1] if len(sys.argv) > 1 else beside
    os.makedirs(folder, exist_ok=True)
    for name, width, height, channels, pixel in PICTURES:
        path = os.path.join(folder, name)
        write_png(path, width, height, channels, pixel)
        print(f"{name}: {width} x {height}, {os.path.getsize(path)} bytes")


if __name__ == "__main__":
    main()
