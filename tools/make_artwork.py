#!/usr/bin/env python3
"""Draws the program's icons: writes src/gui/artwork/icons/*.svg and artwork.qrc.

Every picture is a few flat shapes in mid tones that stand out on light and on dark grounds. Tool buttons are drawn
on a grid of 24; edges lie on multiples of 1.5 where that is possible, so that they are sharp at 16, 24, 32 and 48.
"""

import math
import os
import sys

INK = "#5b7391"
PAPER = "#edf2f7"
BLUE = "#2f86d6"
GREEN = "#2c9a5b"
RED = "#d6453f"
AMBER = "#e29a26"
SAND = "#f0c268"
BROWN = "#a97a22"
GREY = "#8996a5"
WHITE = "#ffffff"


# -- shapes ----------------------------------------------------------------------------------------------------------


def number(value):
    return f"{value:.2f}".rstrip("0").rstrip(".")


def fill(path, colour):
    return f'<path fill="{colour}" d="{path}"/>'


def line(path, colour=INK, width=1.5, inside="none"):
    return (f'<path fill="{inside}" stroke="{colour}" stroke-width="{number(width)}" stroke-linecap="round" '
            f'stroke-linejoin="round" d="{path}"/>')


def circle(x, y, radius, colour="none", stroke=None, width=1.5):
    outline = f' stroke="{stroke}" stroke-width="{number(width)}"' if stroke else ""
    return f'<circle cx="{number(x)}" cy="{number(y)}" r="{number(radius)}" fill="{colour}"{outline}/>'


def box(x, y, width, height, colour, radius=0.0, stroke=None):
    outline = f' stroke="{stroke}" stroke-width="1.5"' if stroke else ""
    corner = f' rx="{number(radius)}"' if radius else ""
    return (f'<rect x="{number(x)}" y="{number(y)}" width="{number(width)}" height="{number(height)}"{corner} '
            f'fill="{colour}"{outline}/>')


def moved(shapes, x, y, scale=1.0):
    grown = f" scale({number(scale)})" if scale != 1.0 else ""
    return f'<g transform="translate({number(x)} {number(y)}){grown}">{shapes}</g>'


def ring_point(x, y, radius, degrees):
    """A point of a circle; 0 degrees is at the top, clockwise."""
    angle = math.radians(degrees - 90)
    return f"{number(x + radius * math.cos(angle))} {number(y + radius * math.sin(angle))}"


def sector(x, y, radius, start, extent):
    far = 1 if extent > 180 else 0
    return (f"M{number(x)} {number(y)}L{ring_point(x, y, radius, start)}A{number(radius)} {number(radius)} 0 {far} 1 "
            f"{ring_point(x, y, radius, start + extent)}z")


def wavy_edge(x, y, inner, outer, teeth):
    """The edge of a wax seal."""
    points = [ring_point(x, y, outer if i % 2 == 0 else inner, i * 180 / teeth) for i in range(2 * teeth)]
    return "M" + "L".join(points) + "z"


def cog(x, y, radius, colour, teeth=8):
    points = []
    for tooth in range(teeth):
        for offset, reach in ((-0.30, 1.0), (-0.16, 1.32), (0.16, 1.32), (0.30, 1.0)):
            points.append(ring_point(x, y, radius * reach, (tooth + offset) * 360 / teeth))
    hole = number(radius * 0.45)
    ring = f"M{number(x)} {number(y - radius * 0.45)}a{hole} {hole} 0 1 0 .01 0z"
    return f'<path fill="{colour}" fill-rule="evenodd" d="M{"L".join(points)}z{ring}"/>'


# -- things ----------------------------------------------------------------------------------------------------------

PAGE = line("M4.5 2.25h10.5l4.5 4.5v15H4.5z", INK, 1.5, PAPER) + line("M14.25 2.25v5.25h5.25")
FOLDER = line("M2.25 5.25h7.5l2.25 2.25h9.75v12H2.25z", BROWN, 1.5, SAND)
STORE = (line("M3.75 5.25v12.75c0 1.5 3.7 3 8.25 3s8.25-1.5 8.25-3V5.25", INK, 1.5, PAPER)
         + line("M3.75 11.5c0 1.5 3.7 3 8.25 3s8.25-1.5 8.25-3")
         + '<ellipse cx="12" cy="5.5" rx="8.25" ry="3" fill="' + BLUE + '" stroke="' + INK + '" stroke-width="1.5"/>')
CLOCK = circle(12, 12, 9.25, PAPER, INK) + line("M12 6.5v5.5l3.5 2.5", BLUE, 2)
BOOK = line("M4.5 3h15v18h-15z", INK, 1.5, PAPER) + box(3.75, 2.25, 4.5, 19.5, BLUE, 1)
CALENDAR = (line("M3 4.5h18v16.5H3z", INK, 1.5, PAPER) + box(2.25, 3.75, 19.5, 5.25, BLUE, 1)
            + line("M7.5 2v3.5M16.5 2v3.5", INK, 2))
REPORT = PAGE + fill("M7.5 18v-4.5h2.25v4.5zM10.9 18v-8h2.25v8zM14.25 18v-6h2.25v6z", BLUE)
LOCK = line("M8.25 10.5V7.5a3.75 3.75 0 0 1 7.5 0v3", INK, 2) + box(5.25, 10.5, 13.5, 10.5, AMBER, 1.5, BROWN)
KEY = (circle(7.5, 12, 4.5, "none", AMBER, 3) + line("M12.75 12h9M18 12v4.5M21.5 12v3", AMBER, 3))
MAGNIFIER = circle(10.5, 10.5, 6.75, PAPER, INK, 2) + line("M15.75 15.75l5.25 5.25", INK, 3)
SCREEN = box(2.25, 3.75, 19.5, 12.75, PAPER, 1, INK) + line("M12 16.5v3M7.5 20.25h9", INK, 2)
WARNING = (line("M12 3L22 20.5H2z", AMBER, 2, AMBER) + line("M12 9v5.25", WHITE, 2.25) + circle(12, 17.4, 1.35, WHITE))

SUBJECTS = {
    "size": box(1.5, 7.5, 21, 9, SAND, 0.75, BROWN)
    + line("M5.25 8.25v3M9 8.25v4.5M12.75 8.25v3M16.5 8.25v4.5M20.25 8.25v3", BROWN),
    "location": line("M12 21.75C7.5 16 4.5 12.75 4.5 9.25a7.5 7 0 0 1 15 0c0 3.5-3 6.75-7.5 12.5z", INK, 1.5, BLUE)
    + circle(12, 9.25, 2.9, WHITE),
    "time": CLOCK,
    "type": line("M2.25 3.75h9.75l9.75 9.75-8.25 8.25-11.25-11.25z", INK, 1.5, PAPER) + circle(7, 8, 1.9, BLUE),
    "attributes": box(3, 2.25, 7.5, 7.5, PAPER, 0.75, INK) + box(3, 13.5, 7.5, 7.5, PAPER, 0.75, INK)
    + line("M5 5.75l1.5 1.5 2.75-3.5", BLUE, 2) + line("M14 6h7.5M14 17.25h7.5", INK, 2),
    "contents": PAGE + line("M7.5 10.5h9M7.5 13.5h9M7.5 16.5h6", BLUE, 1.5),
    "abilities": circle(12, 12, 9.25, PAPER, INK)
    + line("M12 3c-5.5 5-5.5 13 0 18c5.5-5 5.5-13 0-18zM3.5 9h17M3.5 15h17", BLUE),
    "combination": line("M3 3.75h18l-6.75 8.25v6.75l-4.5 2.5V12z", INK, 1.5, BLUE),
}
ALL = (line("M8.25 2.25h7.5l3.75 3.75v10.5H8.25z", INK, 1.5, PAPER)
       + line("M4.5 6h7.5l3.75 3.75v12H4.5z", INK, 1.5, PAPER) + line("M11.5 6v4.25h4.25"))
SELECTED = (box(2.25, 3, 19.5, 4.5, PAPER, 0.75, INK) + box(2.25, 9.75, 19.5, 4.5, BLUE, 0.75, INK)
            + box(2.25, 16.5, 19.5, 4.5, PAPER, 0.75, INK))

# -- small signs at the lower right corner ---------------------------------------------------------------------------


def badge(sign, colour):
    return circle(17.25, 17.25, 6.75, WHITE) + circle(17.25, 17.25, 6, colour) + line(sign, WHITE, 2.25)


PLUS = badge("M17.25 13.75v7M13.75 17.25h7", GREEN)
MINUS = badge("M13.75 17.25h7", RED)
CROSS = badge("M14.9 14.9l4.7 4.7M19.6 14.9l-4.7 4.7", RED)
TICK = badge("M14.2 17.4l2.2 2.2 3.9-4.4", GREEN)
RIGHT = badge("M13.9 17.25h6.4M17.6 14.4l2.8 2.85-2.8 2.85", BLUE)
LEFT = badge("M20.6 17.25h-6.4M16.9 14.4l-2.8 2.85 2.8 2.85", BLUE)
DOWN = badge("M17.25 13.9v6.4M14.4 17.6l2.85 2.8 2.85-2.8", BLUE)
UP = badge("M17.25 20.6v-6.4M14.4 16.9l2.85-2.8 2.85 2.8", BLUE)
HANDS = badge("M17.25 13.75v3.5l2.5 1.75", BLUE)
WATCH = circle(17.25, 17.25, 6.75, WHITE) + moved(circle(9, 9, 5.6, PAPER, BLUE, 2.5) + line("M13.5 13.5l4 4", BLUE, 3),
                                                   8.5, 8.5, 0.85)
SHUT = circle(17.25, 17.25, 6.75, WHITE) + moved(LOCK, 11.25, 11, 0.5)


# -- the mark: a seal over a document grid ---------------------------------------------------------------------------


def grid_page():
    def row(y):
        return "".join(f"M{x} {y}h9v6h-9z" for x in (14, 26, 38))

    return (line("M9 4.5h29l13 13v42H9z", INK, 3, PAPER) + line("M37 4.5v14h14", INK, 3) + fill(row(20), BLUE)
            + fill(row(31) + row(42), GREY))


def wax(colour):
    return fill(wavy_edge(43, 43, 18.5, 20.5, 12), WHITE) + fill(wavy_edge(43, 43, 16, 18.5, 12), colour)


def mark():
    return grid_page() + wax(RED) + line("M34.5 42.5l6.5 6.5 10.5-12", WHITE, 4.5)


def window_frame(step):
    return grid_page() + wax(BLUE) + circle(43, 43, 13, PAPER) + fill(
        sector(43, 43, 13, step * 360 / 11, 100), RED) + circle(43, 43, 3.5, INK)


def tray_wax(colour):
    return fill(wavy_edge(12, 12, 10, 11.75, 12), colour)


def tray_frame(step):
    """A dial in the seal; its hand turns once in eleven steps."""
    hand = fill(sector(12, 12, 7.5, step * 360 / 11, 100), RED)
    return tray_wax(BLUE) + circle(12, 12, 7.5, PAPER) + hand + circle(12, 12, 2, INK)


def slot(step):
    filled = box(1.5, 6, 21 * step / 16, 12, GREEN) if step else ""
    return box(0.75, 5.25, 22.5, 13.5, PAPER) + filled + box(0.75, 5.25, 22.5, 13.5, "none", 0, INK)


# -- the sets --------------------------------------------------------------------------------------------------------


def animations():
    for step in range(11):
        yield f"window-{step}", window_frame(step)
        yield f"tray-{step}", tray_frame(step)
    for step in range(17):
        yield f"progress-{step}", slot(step)
    yield "tray-warning", tray_wax(RED) + line("M12 5.5v7.5", WHITE, 3) + circle(
        12, 17.5, 1.8, WHITE)
    yield "tray-paused", tray_wax(GREY) + line("M9 8v8M15 8v8", WHITE, 3.25)


def modes():
    yield "mode-file-contents", SUBJECTS["contents"]
    yield "mode-directory-structure", (line("M6 8.25v10.5h6M6 11.25h6", INK, 1.5) + moved(FOLDER, 1, 0, 0.42)
                                       + moved(FOLDER, 11, 6.2, 0.46) + moved(FOLDER, 11, 13.7, 0.46))
    yield "mode-permissions", LOCK + circle(12, 14.6, 1.7, BROWN) + line("M12 15v3", BROWN, 2)
    yield "mode-registry", (box(8.25, 2.25, 7.5, 7.5, BLUE, 0.75, INK) + box(2.25, 13.5, 7.5, 7.5, PAPER, 0.75, INK)
                            + box(14.25, 13.5, 7.5, 7.5, GREEN, 0.75, INK)
                            + line("M12 9.75v1.75M6 13.5v-1.9h12v1.9"))
    yield "mode-complete-system", SCREEN + line("M8 10l3 3 5.25-5.75", GREEN, 2.5)
    yield "mode-services", cog(9.5, 9.5, 5.6, BLUE) + cog(17.3, 17.3, 4.1, INK)


def commands():
    yield "create", STORE + PLUS
    yield "open", (line("M2.25 19.5V5.25h7.5l2.25 2.25h7.5v3", BROWN, 1.5, SAND)
                   + line("M2.25 19.5l3.75-9h16.5l-3.75 9z", BROWN, 1.5, "#f7d99a"))
    yield "close", FOLDER + CROSS
    yield "delete", (line("M5.25 6.75l1.5 15h10.5l1.5-15z", INK, 1.5, PAPER) + box(3, 4.5, 18, 2.5, RED, 0.75)
                     + line("M9 4V2.25h6V4", RED, 1.5) + line("M9.75 10.5v7.5M14.25 10.5v7.5", INK, 1.5))
    yield "recent", FOLDER + HANDS
    yield "check", PAGE + WATCH
    yield "details", STORE + badge("M17.25 16.75v3.5M17.25 13.9v.1", BLUE)
    yield "paste", (box(3.75, 3.75, 16.5, 18, SAND, 1, BROWN) + box(8.25, 2.25, 7.5, 4.5, GREY, 0.75, INK)
                    + box(6.75, 9, 10.5, 10.5, PAPER) + line("M9 12h6M9 15h6", BLUE))
    yield "schedule", CALENDAR + HANDS
    yield "schedule-list", (CALENDAR + line("M6.75 12.75h.1M6.75 17.25h.1", BLUE, 2.5)
                            + line("M10.5 12.75h7M10.5 17.25h7", INK, 1.75))
    yield "start", line("M6 3.75v16.5L20.25 12z", GREEN, 2, GREEN)
    yield "stop", box(4.5, 4.5, 15, 15, RED, 1.5)
    yield "background", (SCREEN + box(13.5, 11.25, 6, 3, BLUE, 0.5)
                         + line("M8.5 6.75v5.25M6 9.75l2.5 2.5 2.5-2.5", GREEN, 2))
    yield "log-view", BOOK + line("M11.25 7.5h5.25M11.25 11.25h5.25M11.25 15h5.25", INK, 1.5)
    yield "log-session", BOOK + HANDS
    yield "log-import", BOOK + DOWN
    yield "report-save", REPORT + DOWN
    yield "report-open", REPORT + UP
    yield "report-next", REPORT + RIGHT
    yield "report-previous", REPORT + LEFT
    yield "page-next", line("M8.25 4.5l7.5 7.5-7.5 7.5", BLUE, 3)
    yield "page-previous", line("M15.75 4.5L8.25 12l7.5 7.5", BLUE, 3)
    yield "configuration", cog(12, 12, 7.9, INK)
    yield "folder-permissions", FOLDER + SHUT
    yield "folder-permissions-check", FOLDER + TICK
    yield "password", KEY
    yield "print", (box(6.75, 2.25, 10.5, 7.5, PAPER, 0, INK) + box(2.25, 8.25, 19.5, 9, GREY, 1.5, INK)
                    + box(6.75, 13.5, 10.5, 8.25, PAPER, 0, INK) + line("M9 17.25h6", BLUE))
    yield "invert", circle(12, 12, 9.25, PAPER, INK) + fill("M12 3a9 9 0 0 1 0 18z", INK)
    yield "grid", box(2.25, 3.75, 19.5, 16.5, PAPER, 0, INK) + box(2.25, 3.75, 19.5, 4.5, BLUE, 0, INK) + line(
        "M2.25 14.25h19.5M8.75 8.25v12M15.25 8.25v12")
    yield "help", circle(12, 12, 9.75, BLUE) + line("M8.75 9.5a3.25 3.25 0 1 1 5 2.75c-1.2.8-1.75 1.25-1.75 2.5", WHITE,
                                                    2.25) + circle(12, 18, 1.4, WHITE)
    yield "about", circle(12, 12, 9.75, BLUE) + line("M12 11.25v6", WHITE, 2.75) + circle(12, 7, 1.6, WHITE)


def selections():
    yield "add-file", PAGE + PLUS
    yield "add-all", ALL + PLUS
    yield "remove-all", ALL + MINUS
    yield "remove-selected", SELECTED + MINUS
    for name, subject in SUBJECTS.items():
        yield f"add-{name}", subject + PLUS
        yield f"remove-{name}", subject + MINUS


def marks():
    text = "M3 6h18M3 12h18M3 18h12"
    yield "log-0", line(text, GREY, 2)
    yield "log-1", line("M9 6h12M9 12h12M9 18h8", INK, 2) + line("M3 7.5l3 4.5-3 4.5", BLUE, 2.5)
    yield "log-2", WARNING
    yield "log-3", line(text, "#33465c", 2)
    yield "log-4", line(text, "#c9d6e4", 2)
    yield "log-5", STORE
    yield "log-6", circle(12, 12, 9.75, GREEN) + line("M12 7v10M7 12h10", WHITE, 3)
    yield "log-7", circle(12, 12, 9.75, RED) + line("M7 12h10", WHITE, 3)
    yield "log-8", (line("M5.25 7.5l1.5 14.25h10.5l1.5-14.25z", INK, 1.5, PAPER) + line("M3.75 6.75h16.5", INK, 2)
                    + line("M9 14.5a3.2 3.2 0 0 1 5.5-2.2M15 14.5a3.2 3.2 0 0 1-5.5 2.2", GREEN, 1.75))
    yield "mark-equal", line("M4.5 8.25h15M4.5 15.75h15", GREEN, 3)
    yield "mark-differs", line("M4.5 8.25h15M4.5 15.75h15M16.5 3l-9 18", RED, 2.75)
    yield "mark-no-backup", (f'<g stroke-dasharray="2.5 2.6">{line("M4.5 2.25h10.5l4.5 4.5v15H4.5z", GREY, 1.75)}</g>'
                             + line("M8.5 9.5l7 7M15.5 9.5l-7 7", RED, 2.5))
    yield "yes", line("M4.5 12.75l5.25 5.25L19.5 6", GREEN, 3.5)
    yield "no", line("M6 6l12 12M18 6L6 18", RED, 3.5)
    yield "warning", WARNING
    yield "file", PAGE
    yield "folder", FOLDER


def document(name, shapes):
    size = 64 if name == "corvalence" or name.startswith("window-") else 24
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}" viewBox="0 0 {size} {size}">'
            f"{shapes}</svg>\n")


def main():
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src", "gui", "artwork")
    drawings = {"corvalence": mark()}
    for family in (animations(), modes(), commands(), selections(), marks()):
        drawings.update(family)
    os.makedirs(os.path.join(folder, "icons"), exist_ok=True)
    for name, shapes in drawings.items():
        text = document(name, shapes)
        if len(text) >= 1536:
            sys.exit(f"{name}: {len(text)} bytes are too many")
        with open(os.path.join(folder, "icons", name + ".svg"), "w", encoding="ascii", newline="\n") as file:
            file.write(text)
    entries = "".join(f"    <file>icons/{name}.svg</file>\n" for name in sorted(drawings))
    with open(os.path.join(folder, "artwork.qrc"), "w", encoding="ascii", newline="\n") as file:
        file.write(f'<RCC>\n  <qresource prefix="/">\n{entries}  </qresource>\n</RCC>\n')


if __name__ == "__main__":
    main()
