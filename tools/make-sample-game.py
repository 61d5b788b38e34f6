#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes maps, palette, textures, sprites and models of the sample game in game/. Run by hand after a
change; plain Python is all it needs."""
import os
import sys

from samplegame import maps, models, paint, textures

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "game")


def main():
    files = {"palette.pal": paint.palette(), **textures.files(), **models.files(), **maps.files()}
    for name, content in files.items():
        path = os.path.join(ROOT, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as out:
            out.write(content)


if __name__ == "__main__":
    sys.exit(main())
