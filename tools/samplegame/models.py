# SPDX-License-Identifier: MIT
"""The models and sprites of the sample game. A model is made of solids of one material each; the
skin holds a cell of cells by cells texels for each material. x is forward, z up."""
import math
import struct

from .paint import Picture, clamp, clouds, indices, mix, noise, scaled, smooth

CELL, COLUMNS = 32, 4


class Mesh:
    def __init__(self):
        self.vertices, self.texels, self.triangles = [], [], []

    def face(self, corners, material):
        """A convex loop that runs counter-clockwise seen from outside, over a whole cell."""
        first = len(self.vertices)
        left, top = (material % COLUMNS) * CELL, (material // COLUMNS) * CELL
        span = CELL - 3
        places = {3: [(0, 1), (1, 1), (0.5, 0)], 4: [(0, 1), (1, 1), (1, 0), (0, 0)]}.get(
            len(corners)) or [(0.5 + 0.5 * math.cos(2 * math.pi * i / len(corners)),
                               0.5 + 0.5 * math.sin(2 * math.pi * i / len(corners)))
                              for i in range(len(corners))]
        for corner, (u, v) in zip(corners, places):
            self.vertices.append(corner)
            self.texels.append((int(left + 1 + u * span), int(top + 1 + v * span)))
        for i in range(2, len(corners)):  # the file keeps them clockwise
            self.triangles.append((first, first + i, first + i - 1))

    def box(self, mins, maxs, material, moved=lambda p: p):
        (x0, y0, z0), (x1, y1, z1) = mins, maxs
        v = [moved(p) for p in ((x0, y0, z0), (x1, y0, z0), (x1, y1, z0), (x0, y1, z0),
                                (x0, y0, z1), (x1, y0, z1), (x1, y1, z1), (x0, y1, z1))]
        for loop in ((4, 5, 6, 7), (3, 2, 1, 0), (0, 1, 5, 4), (2, 3, 7, 6), (1, 2, 6, 5),
                     (3, 0, 4, 7)):
            self.face([v[i] for i in loop], material)

    def turned(self, profile, sides, material, at=(0, 0)):
        """A solid of rings (radius, z) from the lowest to the highest."""
        rings = [[(at[0] + r * math.cos(2 * math.pi * i / sides),
                   at[1] + r * math.sin(2 * math.pi * i / sides), z) for i in range(sides)]
                 for r, z in profile]
        for low, high in zip(rings, rings[1:]):
            for i in range(sides):
                j = (i + 1) % sides
                if high[i] == high[j]:
                    self.face([low[i], low[j], high[i]], material)
                elif low[i] == low[j]:
                    self.face([low[i], high[j], high[i]], material)
                else:
                    self.face([low[i], low[j], high[j], high[i]], material)
        if profile[0][0] > 0:
            self.face(rings[0][::-1], material)
        if profile[-1][0] > 0:
            self.face(rings[-1], material)


def skin(materials):
    rows = (len(materials) + COLUMNS - 1) // COLUMNS

    def shader(x, y):
        column, row = int(x * COLUMNS), int(y * rows)
        place = row * COLUMNS + column
        if place >= len(materials):
            return (0, 0, 0)
        return materials[place](x * COLUMNS - column, y * rows - row)
    return Picture(COLUMNS * CELL, rows * CELL, shader)


def mdl(skins, frames):
    """skins: pictures of one size; frames: (name, mesh), which differ in their vertices alone."""
    mesh = frames[0][1]
    points = [p for _, m in frames for p in m.vertices]
    low = [min(p[k] for p in points) for k in range(3)]
    step = [max((max(p[k] for p in points) - low[k]) / 255, 1e-6) for k in range(3)]
    width, height = skins[0].width, skins[0].height
    radius = max(math.dist((0, 0, 0), p) for p in points)
    out = struct.pack("<4si10f8if", b"IDPO", 6, *step, *low, radius, 0, 0, 0, len(skins), width,
                      height, len(mesh.vertices), len(mesh.triangles), len(frames), 0, 0, 1.0)
    for picture in skins:
        out += struct.pack("<i", 0) + indices(picture)
    for s, t in mesh.texels:
        out += struct.pack("<3i", 0, s, t)
    for triangle in mesh.triangles:
        out += struct.pack("<4i", 1, *triangle)
    for name, frame in frames:
        packed = [bytes(round((p[k] - low[k]) / step[k]) for k in range(3)) + b"\0"
                  for p in frame.vertices]
        bounds = [bytes(f(v[k] for v in packed) for k in range(3)) + b"\0" for f in (min, max)]
        out += struct.pack("<i", 0) + b"".join(bounds) + struct.pack("<16s", name.encode())
        out += b"".join(packed)
    return out


# ---- Materials

def cloth(color, seed, amount=0.35):
    return lambda x, y: scaled(color, 1 - amount / 2 + amount * noise(x, y, 16, seed))


def steel(color, seed):
    return lambda x, y: scaled(color, 0.75 + 0.3 * noise(x, y * 0.2, 16, seed) + 0.25 * (1 - y))


def boards(color, seed):
    return lambda x, y: scaled(color, (0.5 if (x * 4) % 1 < 0.12 else 0.8 + 0.15 * int(x * 4) % 2) +
                               0.25 * noise(x, y * 0.3, 16, seed))


def leaves(dark, light, seed):
    return lambda x, y: mix(dark, light, clouds(x, y, 8, 3, seed))


def with_cross(base, color):
    def shader(x, y):
        u, v = abs(x - 0.5), abs(y - 0.5)
        inside = (u < 0.1 and v < 0.32) or (v < 0.1 and u < 0.32)
        return color if inside else base(x, y)
    return shader


def visor(x, y):
    slit = 0.35 < y < 0.6 and 0.12 < x < 0.88
    return (0.15, 0.75, 0.80) if slit else steel((0.34, 0.38, 0.30), 305)(x, y)


# ---- Models

def guard_pose(stride, breath):
    """Swinging about the hips by the stride, from -1 to 1."""
    mesh = Mesh()
    cloth_, boot, plate, skin_, helmet, face, belt, gun = range(8)

    def swing(pivot, angle):
        s, c = math.sin(angle), math.cos(angle)
        return lambda p: (p[0] * c - (p[2] - pivot) * s, p[1],
                          pivot + p[0] * s + (p[2] - pivot) * c)
    for side, sign in ((1, 1), (-1, -1)):
        leg, arm = swing(2, 0.5 * stride * sign), swing(18 + breath, -0.45 * stride * sign)
        y0, y1 = sorted((side * 1.5, side * 7))
        mesh.box((-4, y0, -20), (4, y1, 3), cloth_, leg)
        mesh.box((-5, y0 - 0.5, -24), (7, y1 + 0.5, -17), boot, leg)
        y0, y1 = sorted((side * 9, side * 13))
        mesh.box((-3, y0, 5 + breath), (3, y1, 20 + breath), cloth_, arm)
        mesh.box((-2.5, y0 + 0.5, 0 + breath), (3, y1 - 0.5, 5 + breath), skin_, arm)
        mesh.box((-5, y0 - 1, 16 + breath), (5, y1 + 0.5, 22 + breath), plate)
    mesh.box((-5, -8, 1), (5, 8, 5), belt)
    mesh.box((-5, -8.5, 5), (5.5, 8.5, 20 + breath), plate)
    mesh.box((-3, -3, 20 + breath), (3, 3, 23 + breath), skin_)
    mesh.box((-5, -5, 23 + breath), (5, 5, 30 + breath), helmet)
    mesh.box((5, -4, 23.5 + breath), (6.5, 4, 29 + breath), face)
    mesh.turned([(5.5, 29 + breath), (4.5, 31 + breath), (0, 32 + breath)], 8, helmet)
    mesh.box((2, -12.5, 3 + breath), (18, -10, 6 + breath), gun, swing(18 + breath, 0.45 * stride))
    return mesh


def guard():
    green, dark = (0.30, 0.36, 0.20), (0.16, 0.13, 0.10)
    look = skin([cloth(green, 301), cloth(dark, 302), steel((0.40, 0.45, 0.34), 303),
                 cloth((0.80, 0.60, 0.46), 304, 0.15), steel((0.34, 0.38, 0.30), 305), visor,
                 cloth((0.40, 0.26, 0.12), 306), steel((0.24, 0.24, 0.26), 307)])
    frames = [(f"stand{i + 1}", guard_pose(0, 0.4 * math.sin(2 * math.pi * i / 6)))
              for i in range(6)]
    frames += [(f"walk{i + 1}", guard_pose(math.sin(2 * math.pi * i / 8),
                                           0.5 * abs(math.cos(2 * math.pi * i / 8))))
               for i in range(8)]
    return mdl([look], frames)


def chest():
    mesh = Mesh()
    mesh.box((-12, -12, 0), (12, 12, 20), 0)
    for x in (-12.8, 10.8):
        for y in (-12.8, 10.8):
            mesh.box((x, y, 0), (x + 2, y + 2, 21), 1)
    for z in (0, 19):
        mesh.box((-12.6, -12.6, z), (12.6, 12.6, z + 2), 1)
    wood, white = boards((0.55, 0.38, 0.20), 311), cloth((0.86, 0.86, 0.82), 312, 0.15)
    metal_, gold = steel((0.42, 0.44, 0.48), 313), steel((0.80, 0.62, 0.20), 314)
    return mdl([skin([wood, metal_]), skin([cloth((0.30, 0.36, 0.20), 315), gold]),
                skin([with_cross(white, (0.80, 0.06, 0.05)), metal_])], [("idle1", mesh)])


def vest():
    mesh = Mesh()
    mesh.box((-4, -9, 4), (4.5, 9, 18), 0)
    mesh.box((-3.5, -7.5, 18), (4, -3, 23), 0)
    mesh.box((-3.5, 3, 18), (4, 7.5, 23), 0)
    mesh.box((4.5, -7, 11), (6, 7, 17), 1)
    mesh.box((4.5, -7, 5), (5.5, -1, 10), 1)
    mesh.box((4.5, 1, 5), (5.5, 7, 10), 1)
    mesh.turned([(10, 0), (10, 1.5), (3, 2.5), (3, 4)], 10, 2)
    return mdl([skin([cloth((0.20, 0.34, 0.52), 321), steel((0.55, 0.62, 0.70), 322),
                      steel((0.30, 0.30, 0.32), 323)])], [("idle1", mesh)])


def key():
    mesh = Mesh()
    mesh.box((-1, -1, 4), (1, 1, 18), 0)
    mesh.box((-0.8, 1, 5), (0.8, 5, 7), 0)
    mesh.box((-0.8, 1, 8.5), (0.8, 4, 10.5), 0)
    for i in range(10):  # the bow, a ring of blocks
        a, b = 2 * math.pi * i / 10, 2 * math.pi * (i + 1) / 10

        def at(p):
            angle = a + (b - a) * p[1]
            return (p[0], -p[2] * math.sin(angle), 23 - p[2] * math.cos(angle))
        mesh.box((-1.2, 0, 3), (1.2, 1, 5.5), 0, at)
    return mdl([skin([steel((0.92, 0.74, 0.22), 331)])], [("idle1", mesh)])


def tree():
    mesh = Mesh()
    mesh.turned([(7, 0), (4.5, 10), (4, 40), (2, 70)], 8, 0)
    for z, radius in ((26, 24), (48, 19), (68, 13)):
        mesh.turned([(0, z + 4), (radius, z), (radius * 0.45, z + 17), (0, z + 28)], 9, 1)
    bark = boards((0.36, 0.26, 0.16), 341)
    return mdl([skin([bark, leaves((0.06, 0.16, 0.04), (0.34, 0.54, 0.16), 342)]),
                skin([bark, leaves((0.40, 0.10, 0.02), (0.92, 0.60, 0.14), 342)])],
               [("idle1", mesh)])


# ---- Sprites

def sprite(frames, kind, own_palette=None, drawing=0):
    """frames: (width, height, indices). With a palette of its own the kind of drawing counts."""
    width, height = max(f[0] for f in frames), max(f[1] for f in frames)
    version = 2 if own_palette else 1
    out = struct.pack("<4s2i", b"IDSP", version, kind)
    out += struct.pack("<i", drawing) if own_palette else b""
    out += struct.pack("<f3ifi", math.hypot(width, height) / 2, width, height, len(frames), 0.0, 0)
    out += struct.pack("<H", 256) + own_palette if own_palette else b""
    for w, h, data in frames:
        out += struct.pack("<5i", 0, -w // 2, h // 2, w, h) + data
    return out


def lamp():
    def shader(x, y):
        x, y = (x - 0.5) * 2, (y - 0.44) * 2
        distance = math.hypot(x, y)
        if distance < 0.56:
            return mix((1.0, 1.0, 0.85), (1.0, 0.70, 0.15), distance / 0.56)
        if abs(x) < 0.24 and 0.5 < y < 0.96:
            return (0.62, 0.62, 0.66) if int(y * 14) % 2 else (0.30, 0.30, 0.34)
        ray = abs(math.sin(4 * math.atan2(y, x)))
        if distance < 0.92 and distance > 0.66 and ray > 0.94 and y < 0.5:
            return (1.0, 0.86, 0.30)
        return (0, 0, 0, 0)
    return sprite([(32, 32, indices(Picture(32, 32, shader)))], 2)


def flame():
    """Added to what is behind it: the darker, the more is seen through."""
    ramp = [mix((0, 0, 0), (1.0, 0.30, 0.02), clamp(i / 110)) for i in range(110)]
    ramp += [mix((1.0, 0.30, 0.02), (1.0, 0.96, 0.66), (i - 110) / 145) for i in range(110, 256)]
    palette = b"".join(bytes(int(c * 255) for c in color) for color in ramp)
    frames, count, width, height = [], 8, 32, 64
    for frame in range(count):
        def heat(x, y):
            rise = frame / count
            lick = 0.5 + 0.16 * (1 - y) * math.sin(2 * math.pi * (1.3 * y + rise))
            body = smooth(0.04 + 0.36 * y ** 0.7, 0.0, abs(x - lick)) * smooth(0.0, 0.35, y)
            wild = 0.55 + 0.7 * clouds(x, (y * 0.5 + rise) % 1, 4, 3, 351)
            return clamp(body * wild * smooth(1.0, 0.86, y) * smooth(0, 0.1, min(x, 1 - x)))
        frames.append((width, height, bytes(
            int(255 * heat((i + 0.5) / width, (j + 0.5) / height))
            for j in range(height) for i in range(width))))
    return sprite(frames, 0, palette, 1)


def files():
    return {"models/guard.mdl": guard(), "models/box.mdl": chest(), "models/vest.mdl": vest(),
            "models/key.mdl": key(), "models/tree.mdl": tree(), "sprites/lamp.spr": lamp(),
            "sprites/flame.spr": flame()}
