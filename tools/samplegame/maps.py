# SPDX-License-Identifier: MIT
"""The maps of the sample game."""
import math

# Texture axes by the normal's major axis: U, V.
AXES = {0: ("0 1 0", "0 0 -1"), 1: ("1 0 0", "0 0 -1"), 2: ("1 0 0", "0 -1 0")}


def num(value):
    text = f"{value:.4f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


# Textures that show a whole thing lie on a face once; with their size in texels.
FITTED = {"base/door": 128, "base/button": 64, "base/crate": 128, "base/glass": 128,
          "base/light": 128, "+0lamp": 64}
SCALES = {"sky/dusk": 5, "earth/grass": 1.5, "earth/rock": 2}


def axis(text, texture, extent):
    """A texture axis and its scale; extent is what the solid covers along it."""
    size = FITTED.get(texture)
    if not size:
        return f"[ {text} 0 ]", num(SCALES.get(texture, 1))
    scale = (extent[1] - extent[0]) / size
    return f"[ {text} {num(-extent[0] / scale)} ]", num(scale)


def face(points, texture, corners):
    """Three points, clockwise seen from outside; all corners of the solid."""
    p0, p1, p2 = points
    a = [p0[i] - p1[i] for i in range(3)]
    b = [p2[i] - p1[i] for i in range(3)]
    n = (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])
    major = max(range(3), key=lambda i: (abs(n[i]), i))
    where = " ".join("( " + " ".join(num(c) for c in p) + " )" for p in points)
    parts = []
    for text in AXES[major]:
        along = [sum(a * b for a, b in zip(map(int, text.split()), c)) for c in corners]
        parts.append(axis(text, texture, (min(along), max(along))))
    (u, width), (v, height) = parts
    return f"{where} {texture} {u} {v} 0 {width} {height}"


def solid(vertices, faces, textures):
    """A convex solid from vertex loops that run counter-clockwise seen from outside."""
    lines = ["{"]
    for loop, texture in zip(faces, textures):
        a, b, c = (vertices[i] for i in loop[:3])
        lines.append(face((b, a, c), texture, vertices))
    lines.append("}")
    return "\n".join(lines)


def box(mins, maxs, texture="base/wall", top=None, bottom=None):
    (x0, y0, z0), (x1, y1, z1) = mins, maxs
    v = [(x0, y0, z0), (x1, y0, z0), (x1, y1, z0), (x0, y1, z0),
         (x0, y0, z1), (x1, y0, z1), (x1, y1, z1), (x0, y1, z1)]
    faces = [(4, 5, 6), (0, 3, 2), (0, 1, 5), (2, 3, 7), (1, 2, 6), (3, 0, 4)]
    sides = [top or texture, bottom or texture] + [texture] * 4
    return solid(v, faces, sides)


def column(x, y, z0, z1, radius, sides, texture):
    ring = [(x + radius * math.cos(2 * math.pi * i / sides),
             y + radius * math.sin(2 * math.pi * i / sides)) for i in range(sides)]
    v = [(px, py, z0) for px, py in ring] + [(px, py, z1) for px, py in ring]
    faces = [(sides, sides + 1, sides + 2), (2, 1, 0)]
    for i in range(sides):
        j = (i + 1) % sides
        faces.append((i, j, sides + j))
    return solid(v, faces, [texture] * len(faces))


def wedge(mins, maxs, texture):
    """A ramp that rises towards greater x."""
    (x0, y0, z0), (x1, y1, z1) = mins, maxs
    v = [(x0, y0, z0), (x1, y0, z0), (x1, y1, z0), (x0, y1, z0), (x1, y0, z1), (x1, y1, z1)]
    faces = [(0, 3, 2), (1, 2, 5), (0, 4, 5), (0, 1, 4), (3, 5, 2)]
    return solid(v, faces, [texture] * 5)


def entity(classname, brushes=(), **keys):
    lines = ["{", f'"classname" "{classname}"']
    lines += [f'"{k.rstrip("_")}" "{v}"' for k, v in keys.items()]
    lines += list(brushes)
    lines.append("}")
    return "\n".join(lines)


def room(mins, maxs, openings=(), thickness=16):
    """Walls about a space; openings are (side, from, to, height) along the wall, from the floor."""
    (x0, y0, z0), (x1, y1, z1) = mins, maxs
    t = thickness
    parts = [box((x0 - t, y0 - t, z0 - t), (x1 + t, y1 + t, z0), "base/trim", top="base/floor"),
             box((x0 - t, y0 - t, z1), (x1 + t, y1 + t, z1 + t), "base/trim", bottom="base/ceiling")]
    for side, (axis, low, high, start, end) in {
            "w": (0, x0 - t, x0, y0, y1), "e": (0, x1, x1 + t, y0, y1),
            "s": (1, y0 - t, y0, x0 - t, x1 + t), "n": (1, y1, y1 + t, x0 - t, x1 + t)}.items():
        def wall(a, b, c, d):
            if axis == 0:
                return box((low, a, c), (high, b, d))
            return box((a, low, c), (b, high, d))
        cuts = sorted((o for o in openings if o[0] == side), key=lambda o: o[1])
        at = start
        for _, first, last, height in cuts:
            if first > at:
                parts.append(wall(at, first, z0, z1))
            if z0 + height < z1:
                parts.append(wall(first, last, z0 + height, z1))
            at = last
        if at < end:
            parts.append(wall(at, end, z0, z1))
    return parts


def furniture():
    made = [box((192, -120, 0), (256, -56, 64), "base/crate"),
            box((200, -48, 0), (232, -16, 32), "base/crate"),
            box((208, -104, 64), (240, -72, 96), "base/crate"),
            box((-944, -64, 0), (-936, 64, 96), "wood1"),
            box((560, 96, 0), (624, 192, 64), "plate1", top="tread1"),
            box((624, 128, 0), (672, 192, 32), "plate1", top="tread1"),
            box((96, 560, 0), (176, 640, 24), "brick1", top="tiles1")]
    for x in (-256, 0, 256):
        made.append(box((x - 48, -48, 312), (x + 48, 48, 320), "base/trim", bottom="base/light"))
    for y in (-96, 96):
        made.append(box((936, y - 24, 72), (944, y + 24, 120), "+0lamp"))
    # A basin in the eastern hall.
    for mins, maxs in (((752, -64, 0), (880, -48, 32)), ((752, 48, 0), (880, 64, 32)),
                       ((752, -48, 0), (768, 48, 32)), ((864, -48, 0), (880, 48, 32))):
        made.append(box(mins, maxs, "tiles1"))
    return made


def hall():
    world = room((-512, -256, 0), (512, 256, 320),
                 [("e", -48, 48, 128), ("w", -48, 48, 128), ("n", 176, 272, 128)])
    world += room((560, -192, 0), (944, 192, 192), [("w", -48, 48, 128)])
    world += room((-944, -192, 0), (-560, 192, 192), [("e", -48, 48, 128)])
    world += room((96, 304, 0), (352, 640, 224), [("s", 176, 272, 128)])
    # Short passages between the halls.
    for x0, x1 in ((528, 544), (-544, -528)):
        world.append(box((x0, -64, -16), (x1, 64, 0), "base/floor"))
        world.append(box((x0, -64, 128), (x1, 64, 144), "base/trim"))
        world.append(box((x0, -64, 0), (x1, -48, 128), "base/trim"))
        world.append(box((x0, 48, 0), (x1, 64, 128), "base/trim"))
    world.append(box((160, 272, -16), (288, 288, 0), "base/floor"))
    world.append(box((160, 272, 128), (288, 288, 144), "base/trim"))
    world.append(box((160, 272, 0), (176, 288, 128), "base/trim"))
    world.append(box((272, 272, 0), (288, 288, 128), "base/trim"))
    for x in (-320, -160, 0, 160, 320):
        for y in (-160, 160):
            world.append(column(x, y, 0, 320, 24, 12, "base/column"))
    # Stairs up to a gallery on the west side.
    for step in range(12):
        world.append(box((-496 + step * 16, -240, 0), (-480 + step * 16, -176, 192 - step * 16),
                         "base/step"))
    world.append(box((-512, -176, 176), (-384, 256, 192), "base/step"))
    world.append(wedge((352, 128, 0), (480, 224, 64), "base/step"))
    world.append(box((480, 128, 0), (512, 224, 64), "base/step"))
    world += furniture()
    parts = [entity("worldspawn", world, message="The long hall", light="8")]
    for name, x in (("east_door", 536), ("west_door", -536)):
        parts.append(entity("func_door", [box((x - 4, -48, 0), (x + 4, 48, 128), "base/door")],
                            targetname=name, angle="-1", speed="120", lip="8"))
    parts.append(entity("func_button", [box((-104, -256, 40), (-88, -248, 56), "base/button")],
                        target="east_door", angle="90"))
    parts.append(entity("trigger_once", [box((-64, -64, 0), (64, 64, 96), "base/trigger")],
                        target="west_door"))
    parts.append(entity("func_detail_fence", [box((-384, -176, 192), (-380, 256, 224),
                                                  "{grate")]))
    parts.append(entity("func_water", [box((768, -48, 4), (864, 48, 24), "*water1")],
                        rendermode="2", renderamt="150"))
    parts.append(entity("func_wall", [box((352, -8, 0), (358, 88, 96), "base/glass")]))
    parts.append(entity("func_illusion", [box((-520, 64, 96), (-510, 192, 320), "{vines")]))
    parts.append(entity("info_decal", origin="-256 -255 96", texture="decals/scorch"))
    parts.append(entity("info_player_start", origin="0 -200 24", angle="90"))
    for i, x in enumerate((-384, -128, 128, 384)):
        parts.append(entity("light", origin=f"{x} 0 280", light="300", _color="1 0.95 0.8"))
    for x in (-752, 752):
        parts.append(entity("light_torch", origin=f"{x} 0 150", light="220"))
    parts.append(entity("light_spot", origin="224 470 200", angles="-90 0 0", target="spot_aim"))
    parts.append(entity("info_target", origin="224 560 0", targetname="spot_aim"))
    parts.append(entity("item_health", origin="752 0 16", spawnflags="1"))
    parts.append(entity("item_armor", origin="-752 64 16"))
    parts.append(entity("item_key", origin="224 600 16", target="east_door"))
    for i, (x, y) in enumerate(((-400, -100), (0, 100), (400, -100))):
        parts.append(entity("path_corner", origin=f"{x} {y} 16", targetname=f"round_{i}",
                            target=f"round_{(i + 1) % 3}", wait="2"))
    parts.append(entity("monster_guard", origin="-400 -100 24", target="round_0", angle="0"))
    parts.append(entity("ambient_wind", origin="752 150 100", volume="0.4"))
    return parts


def terrain():
    cells, size, base = 22, 96, -128

    def height(i, j):
        x, y = i / cells, j / cells
        return round(90 * math.sin(5 * x) * math.cos(4 * y) + 60 * math.sin(9 * x + 7 * y), 0)

    world = []
    for i in range(cells):
        for j in range(cells):
            x0, y0 = (i - cells / 2) * size, (j - cells / 2) * size
            x1, y1 = x0 + size, y0 + size
            h = [height(i, j), height(i + 1, j), height(i + 1, j + 1), height(i, j + 1)]
            texture = "earth/grass" if sum(h) / 4 > -20 else "earth/sand"
            for (ax, ay, ah), (bx, by, bh), (cx, cy, ch) in (
                    ((x0, y0, h[0]), (x1, y0, h[1]), (x1, y1, h[2])),
                    ((x0, y0, h[0]), (x1, y1, h[2]), (x0, y1, h[3]))):
                v = [(ax, ay, base - 64), (bx, by, base - 64), (cx, cy, base - 64),
                     (ax, ay, ah), (bx, by, bh), (cx, cy, ch)]
                world.append(solid(v, [(3, 4, 5), (2, 1, 0), (0, 1, 4), (1, 2, 5), (2, 0, 3)],
                                   [texture, "earth/rock", "earth/rock", "earth/rock",
                                    "earth/rock"]))
    half = cells / 2 * size
    for mins, maxs in (((-half - 32, -half - 32, -224), (half + 32, half + 32, -192)),
                       ((-half - 32, -half - 32, 512), (half + 32, half + 32, 544)),
                       ((-half - 32, -half, -192), (-half, half, 512)),
                       ((half, -half, -192), (half + 32, half, 512)),
                       ((-half - 32, -half - 32, -192), (half + 32, -half, 512)),
                       ((-half - 32, half, -192), (half + 32, half + 32, 512))):
        world.append(box(mins, maxs, "sky/dusk"))
    parts = [entity("worldspawn", world, message="Green hills", _sun_angle="40 -50")]
    parts.append(entity("func_water", [box((-half, -half, -192), (half, half, -90), "*water1")],
                        rendermode="2", renderamt="150"))
    parts.append(entity("info_player_start", origin="0 0 200", angle="45"))
    parts.append(entity("light_environment", origin="0 0 400", _light="255 240 210 180",
                        angles="-50 40 0"))
    for i in range(6):
        x, y = 300 * math.cos(i), 300 * math.sin(i)
        parts.append(entity("prop_tree", origin=f"{num(x)} {num(y)} 120", angle=str(i * 60)))
    return parts


def leak():
    walls = room((-128, -128, 0), (128, 128, 128), [("e", -16, 16, 32)])
    return [entity("worldspawn", walls, message="One hole in the wall"),
            entity("info_player_start", origin="0 0 24", angle="0"),
            entity("light", origin="0 0 96", light="200")]


def files():
    head = "// Sample map of the Karvex editor\n"
    return {f"maps/{name}.map": (head + "\n".join(make()) + "\n").encode()
            for name, make in (("hall", hall), ("hills", terrain), ("leak", leak))}
