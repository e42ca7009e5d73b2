#!/usr/bin/env python3
"""Draws the icons of the content browser: run it in this folder and every SVG is made anew.

    python3 drawicons.py

One hand draws them all. Light falls from the upper left. The large icons are laid out on a grid of
8 units, which is one pixel at 16 pixels: an edge that stands on the grid stays sharp in the smallest size.
Only plain shapes and gradients are used, because two different renderers must agree on the result.
"""

import math
import pathlib
import re

# Each colour is a ramp: lit side, body, outline.
PALETTE = {
    "paper":  ("#ffffff", "#e4eaf0", "#526375"),
    "steel":  ("#d3dce5", "#93a3b3", "#526375"),
    "slate":  ("#5f7184", "#42515f", "#36434f"),
    "amber":  ("#ffd97a", "#f2ae35", "#9a6410"),
    "blue":   ("#7cc0f7", "#2f83d6", "#1c5591"),
    "green":  ("#8fd46b", "#3c9a3f", "#226327"),
    "red":    ("#ff8a7a", "#dc3a35", "#8f1c1f"),
    "violet": ("#d0aef8", "#8447cf", "#54278f"),
}

OUTLINE = 6
RADIUS = 8


# ---- paint and shapes

def light(colour):
    return PALETTE[colour][0]


def body(colour):
    return PALETTE[colour][1]


def dark(colour):
    return PALETTE[colour][2]


def lit(colour):
    """The body of a thing, brighter towards the light."""
    return f"url(#{colour})"


def deep(colour):
    """For emblems: darker than a body, so that they stand out from paper and from folders alike."""
    return f"url(#{colour}-deep)"


def ball(colour):
    """The body of a round thing, with the light on its upper left."""
    return f"url(#{colour}-ball)"


def path(d, fill="none", stroke=None, width=OUTLINE):
    pen = f' stroke="{stroke}" stroke-width="{width:g}" stroke-linecap="round" stroke-linejoin="round"' if stroke else ""
    return f'<path d="{d}" fill="{fill}"{pen}/>'


def rect(x, y, w, h, fill, r=0):
    corner = f' rx="{r:g}"' if r else ""
    return f'<rect x="{x:g}" y="{y:g}" width="{w:g}" height="{h:g}"{corner} fill="{fill}"/>'


def circle(x, y, r, fill):
    return f'<circle cx="{x:g}" cy="{y:g}" r="{r:g}" fill="{fill}"/>'


def ring(x, y, r, colour, width=OUTLINE, fill="none"):
    return f'<circle cx="{x:g}" cy="{y:g}" r="{r:g}" fill="{fill}" stroke="{colour}" stroke-width="{width:g}"/>'


def box(x, y, w, h, fill, edge, r=RADIUS):
    """A rounded box. The bounds are those of the outline's outer edge, so that they can stand on the grid."""
    half = OUTLINE / 2
    return (f'<rect x="{x + half:g}" y="{y + half:g}" width="{w - OUTLINE:g}" height="{h - OUTLINE:g}" rx="{r:g}" '
            f'fill="{fill}" stroke="{edge}" stroke-width="{OUTLINE}"/>')


def gleam(x, y, w):
    """The light caught by an upper edge."""
    return f'<rect x="{x:g}" y="{y:g}" width="{w:g}" height="3" rx="1.5" fill="{light("paper")}" fill-opacity="0.55"/>'


def at(x, y, *drawing, scale=1):
    size = f" scale({scale:g})" if scale != 1 else ""
    return f'<g transform="translate({x:g} {y:g}){size}">' + "".join(drawing) + "</g>"


def turned(angle, *drawing):
    return f'<g transform="rotate({angle:g})">' + "".join(drawing) + "</g>"


# ---- the shared bodies

def fold():
    return path("M77 3V27a8 8 0 0 0 8 8H109Z", light("steel"), dark("paper"))


def sheet(*emblem):
    """Every file: a sheet with a folded corner, its emblem in the lower half."""
    return (path("M27 3H77L109 35V117a8 8 0 0 1 -8 8H27a8 8 0 0 1 -8 -8V11a8 8 0 0 1 8 -8Z", lit("paper"), dark("paper"))
            + fold() + at(64, 80, *emblem))


FOLDER_BACK = "M3 109V19a8 8 0 0 1 8 -8H41a8 8 0 0 1 6 3L55 27H117a8 8 0 0 1 8 8V109a8 8 0 0 1 -8 8H11a8 8 0 0 1 -8 -8Z"


def folder(*emblem):
    """Every closed folder: the emblem lies in the middle of the front."""
    return (path(FOLDER_BACK, body("amber"), dark("amber"))
            + path("M11 35H117a8 8 0 0 1 8 8V109a8 8 0 0 1 -8 8H11a8 8 0 0 1 -8 -8V43a8 8 0 0 1 8 -8Z", lit("amber"), dark("amber"))
            + gleam(11, 39, 106) + at(64, 77, *emblem))


def folderopen():
    return (path("M3 109V19a8 8 0 0 1 8 -8H41a8 8 0 0 1 6 3L55 27H101a8 8 0 0 1 8 8V109Z", body("amber"), dark("amber"))
            + path("M19 109V35H93V109Z", lit("paper"), dark("paper"))
            + path("M28 59H118a7 7 0 0 1 7 9L114 112a7 7 0 0 1 -7 5H10a7 7 0 0 1 -7 -9L21 64a7 7 0 0 1 7 -5Z", lit("amber"), dark("amber"))
            + gleam(28, 63, 90))


def padlock(w, h):
    """A padlock in a box of this size: the whole of one icon, and the badge of everything that is locked."""
    middle, thick, shoulder = w / 2, w * 0.24, h * 0.45
    bow, hole = w * 0.42 - thick / 2, h * 0.68
    arch = f"M{middle - bow:g} {shoulder + 8:g}V{thick / 2 + bow:g}a{bow:g} {bow:g} 0 0 1 {2 * bow:g} 0V{shoulder + 8:g}"
    return (path(arch, "none", dark("steel"), thick) + path(arch, "none", light("steel"), thick - 2 * OUTLINE)
            + box(0, shoulder, w, h - shoulder, lit("steel"), dark("steel")) + gleam(10, shoulder + 7, w - 20)
            + circle(middle, hole, w * 0.11, dark("steel"))
            + path(f"M{middle:g} {hole:g}v{h * 0.14:g}", "none", dark("steel"), w * 0.1))


def corner(w, h, sign):
    """A sign in the lower right corner tells the state of a thing; an emblem tells its kind."""
    return at(128 - w, 128 - h, sign)


def lockbadge():
    return corner(64, 80, padlock(64, 80))


def drivefront(y, h):
    return (box(0, y, 128, h, lit("steel"), dark("steel")) + gleam(10, y + 7, 108)
            + rect(16, y + h / 2 - 4, 48, 8, dark("steel"), 4) + rect(96, y + h / 2 - 8, 16, 16, body("green"), 4))


def drive():
    return path("M27 27H101a6 6 0 0 1 5 3L124 64H4L22 30a6 6 0 0 1 5 -3Z", light("steel"), dark("steel")) + drivefront(56, 48)


# ---- emblems: drawn about the origin, 64 units wide, without an outline of their own

def lines():
    return "".join(rect(-32, y, w, 8, body("steel"), 2) for y, w in ((-48, 32), (-32, 64), (-16, 64), (0, 64), (16, 40)))


def sphere():
    return circle(0, 0, 33, ball("violet"))


def book():
    cover = path("M-24 -34H26a6 6 0 0 1 6 6V26H-24Z", lit("green"))
    spine = path("M-26 -34H-24V26a5 5 0 0 0 -4 8a6 6 0 0 1 -4 -6V-28a6 6 0 0 1 6 -6Z", dark("green"))
    return rect(-30, 20, 60, 14, light("steel"), 4) + cover + spine + path("M8 -34H24V-4L16 -11L8 -4Z", light("paper"))


def magnifier():
    return (path("M12 12L28 28", "none", dark("slate"), 14)
            + ring(-6, -6, 22, dark("slate"), 9, light("paper")) + path("M-18 -6a12 12 0 0 1 12 -12", "none", body("blue"), 6))


HEART = "M0 30C-20 16 -33 4 -33 -11C-33 -22 -25 -29 -16 -29C-9 -29 -3 -25 0 -18C3 -25 9 -29 16 -29C25 -29 33 -22 33 -11C33 4 20 16 0 30Z"


def heart():
    return path(HEART, deep("red"))


def globe():
    return (circle(0, 0, 33, ball("blue"))
            + path("M-29 0H29M0 -29C-20 -17 -20 17 0 29C20 17 20 -17 0 -29", "none", light("paper"), 5))


def person():
    return (circle(0, -17, 16, deep("blue"))
            + path("M-32 32V26C-32 10 -19 3 0 3C19 3 32 10 32 26V32Z", deep("blue")))


def cube():
    return (path("M0 -34L31 -18L0 -2L-31 -18Z", light("blue")) + path("M-31 -18L0 -2V34L-31 18Z", body("blue"))
            + path("M31 -18L0 -2V34L31 18Z", dark("blue")))


def picture():
    return (rect(-36, -28, 72, 60, lit("blue"), 4) + circle(16, -10, 9, light("amber"))
            + path("M-36 28V16L-14 -10L8 14L18 4L36 22V28a4 4 0 0 1 -4 4H-32a4 4 0 0 1 -4 -4Z", lit("green")))


def film():
    holes = "".join(rect(x, y, 8, 8, light("paper"), 1) for x in (-32, 24) for y in (-24, -8, 8, 24))
    return rect(-36, -32, 72, 68, lit("slate"), 4) + holes + path("M-10 -16V20L18 2Z", light("paper"))


def note():
    colour = deep("amber")
    return (path("M-16 24V-24L32 -32V14H24V-16L-8 -10V24Z", colour) + circle(-20, 22, 12, colour) + circle(20, 14, 12, colour))


def swatches():
    return "".join(rect(x, y, 28, 28, lit("violet"), 4) for x in (-32, 4) for y in (-32, 4))


def brackets():
    return path("M-16 -20L-34 0L-16 20M16 -20L34 0L16 20M7 -28L-7 28", "none", body("slate"), 9)


def flask():
    glass = "M-9 -32V-8L-30 26a6 6 0 0 0 5 8H25a6 6 0 0 0 5 -8L9 -8V-32"
    return (path(glass, light("paper")) + path("M-18 8H18L28 26a5 5 0 0 1 -4 7H-24a5 5 0 0 1 -4 -7Z", lit("red"))
            + path(glass + "M-16 -32H16", "none", dark("paper")))


def windows():
    return (rect(-32, -32, 64, 12, dark("blue"), 2) + rect(-32, -16, 24, 48, body("blue"), 2)
            + rect(0, -16, 32, 20, light("blue"), 2) + rect(0, 8, 32, 24, light("blue"), 2))


# ---- icons that stand alone

def computer():
    return (path("M51 91H77L83 117H45Z", body("steel"), dark("steel")) + box(24, 112, 80, 16, lit("steel"), dark("steel"), 4)
            + box(0, 0, 128, 96, lit("steel"), dark("steel")) + rect(16, 16, 96, 64, lit("blue"), 3)
            + f'<path d="M16 19a3 3 0 0 1 3 -3H74L42 80H19a3 3 0 0 1 -3 -3Z" fill="{light("paper")}" fill-opacity="0.2"/>')


def desktop():
    tiles = "".join(rect(x, y, 16, 16, light("paper"), 3) for x, y in ((16, 24), (16, 48), (40, 24)))
    return (box(0, 8, 128, 112, lit("green"), dark("steel"))
            + path("M6 84C40 44 84 52 122 76V96H6Z", body("green")) + tiles
            + path("M6 88H122V109a5 5 0 0 1 -5 5H11a5 5 0 0 1 -5 -5Z", body("slate"))
            + rect(16, 96, 24, 8, light("amber"), 2) + rect(96, 96, 16, 8, light("steel"), 2))


def discdrive():
    """The whole disc with its hole stays in sight: half of it would look like a padlock."""
    shine = "M0 0L-42 -20A47 47 0 0 1 -20 -42ZM0 0L42 20A47 47 0 0 1 20 42Z"
    disc = (ring(0, 0, 51, dark("steel"), OUTLINE, lit("paper"))
            + path(shine, light("violet")) + turned(38, path(shine, light("blue")))
            + ring(0, 0, 15, dark("steel"), OUTLINE, light("steel")) + circle(0, 0, 5, dark("steel")))
    return at(64, 54, disc) + drivefront(84, 44)


def preset():
    ground = path("M14 80H114V102a12 12 0 0 1 -12 12H26a12 12 0 0 1 -12 -12Z", light("steel"))
    return box(8, 8, 112, 112, lit("paper"), dark("paper"), 12) + ground + circle(64, 64, 40, ball("violet"))


def favorites():
    return at(64, 66, path(HEART, lit("red"), dark("red"), OUTLINE / 1.8), scale=1.8)


def cross(reach, width):
    return path(f"M{-reach} {-reach}L{reach} {reach}M{reach} {-reach}L{-reach} {reach}", "none", light("paper"), width)


def wrong():
    """A faded sheet, torn in two, and the sign for 'it is not there'."""
    upper = "M19 60V11a8 8 0 0 1 8 -8H77L109 35V46"
    lower = "M109 70V117a8 8 0 0 1 -8 8H27a8 8 0 0 1 -8 -8V84"
    return (path(upper + "L79 58L49 42Z", lit("steel")) + path(lower + "L49 66L79 82Z", lit("steel"))
            + path(upper, "none", dark("steel")) + path(lower, "none", dark("steel"))
            + fold() + corner(37, 37, ring(0, 0, 34, dark("red"), OUTLINE, lit("red")) + cross(13, 11)))


def progressor(frame):
    """A comet of eight dots; its head moves on by one dot with each frame."""
    return "".join(
        f'<circle cx="{8 + 5.8 * math.sin(a):.3f}" cy="{8 - 5.8 * math.cos(a):.3f}" r="{2.1 - 0.1 * age:.2f}" '
        f'fill="{body("blue")}" fill-opacity="{1 - 0.11 * age:.2f}"/>'
        for age in range(8) for a in [math.radians(45 * (frame - age))])


def stopsmall():
    return (path("M5 1.5H11L14.5 5V11L11 14.5H5L1.5 11V5Z", lit("red"), dark("red"), 1)
            + at(8, 8, cross(2.5, 2)))


def clock(frame):
    """The hand draws a slice behind it, so that a single frame already tells the way it turns."""
    marks = "".join(turned(angle, path("M0 -10.5V-9", "none", body("steel"), 1.6)) for angle in range(0, 360, 90))
    hand = path("M0 0L-8.5 -8.5A12 12 0 0 1 0 -12Z", light("blue")) + path("M0 3V-9.5", "none", body("red"), 2.4)
    face = ring(0, 0, 14, dark("paper"), 2.5, lit("paper"))
    return at(16, 16, face, marks, turned(45 * frame, hand), circle(0, 0, 2, dark("slate")))


# ---- the table: a row stands where the icon's number says

ICONS = [
    ("computer", 128, computer),
    ("drives", 128, drive),
    ("drive_cd", 128, discdrive),
    ("folder", 128, folder),
    ("folder_open", 128, folderopen),
    ("folder_presets", 128, lambda: folder(sphere())),
    ("folder_catalogs", 128, lambda: folder(book())),
    ("folder_search", 128, lambda: folder(magnifier())),
    ("file_document", 128, lambda: sheet(lines())),
    ("file_3d", 128, lambda: sheet(cube())),
    ("file_image", 128, lambda: sheet(picture())),
    ("file_movie", 128, lambda: sheet(film())),
    ("preset", 128, preset),
    ("favorites", 128, favorites),
    ("folder_favorites", 128, lambda: folder(heart())),
    ("folder_network", 128, lambda: folder(globe())),
    ("file_library", 128, lambda: sheet(swatches())),
    ("file_catalog", 128, lambda: sheet(book())),
    ("file_scripts", 128, lambda: sheet(brackets())),
    ("desktop", 128, desktop),
    ("wrong", 128, wrong),
    ("folder_locked", 128, lambda: folder() + lockbadge()),
    ("folder_open_locked", 128, lambda: folderopen() + lockbadge()),
    ("folder_user", 128, lambda: folder(person())),
    ("file_audio", 128, lambda: sheet(note())),
    ("file_tonic", 128, lambda: sheet(flask())),
    ("file_layout", 128, lambda: sheet(windows())),
    ("locked", 128, lambda: at(16, 0, padlock(96, 128))),
    *((f"progressor{frame}", 16, lambda frame=frame: progressor(frame)) for frame in range(8)),
    ("stop_small", 16, stopsmall),
    *((f"clock{frame}", 32, lambda frame=frame: clock(frame)) for frame in range(8)),
]


# ---- writing

def gradient(name):
    colour, _, kind = name.partition("-")
    near, far, edge = PALETTE[colour]
    if kind == "deep":
        return (f'<linearGradient id="{name}" x1="0" y1="0" x2="0.4" y2="1.4"><stop offset="0" stop-color="{far}"/>'
                f'<stop offset="1" stop-color="{edge}"/></linearGradient>')
    if kind == "ball":
        return (f'<radialGradient id="{name}" cx="0.35" cy="0.3" r="0.75"><stop offset="0" stop-color="{near}"/>'
                f'<stop offset="0.55" stop-color="{far}"/><stop offset="1" stop-color="{edge}"/></radialGradient>')
    return (f'<linearGradient id="{name}" x1="0" y1="0" x2="0.4" y2="1"><stop offset="0" stop-color="{near}"/>'
            f'<stop offset="1" stop-color="{far}"/></linearGradient>')


def document(size, drawing):
    used = sorted(set(re.findall(r"url\(#([\w-]+)\)", drawing)))
    defs = "<defs>" + "".join(map(gradient, used)) + "</defs>" if used else ""
    text = (f'<svg xmlns="http://www.w3.org/2000/svg" version="1.1" width="{size}" height="{size}" viewBox="0 0 {size} {size}">'
            f"<!-- made by drawicons.py: change it there -->{defs}{drawing}</svg>")
    return text.replace("><", ">\n<") + "\n"


def main():
    here = pathlib.Path(__file__).resolve().parent
    for name, size, draw in ICONS:
        (here / f"{name}.svg").write_text(document(size, draw()), encoding="utf-8")


if __name__ == "__main__":
    main()
