#!/usr/bin/env python3
"""Two databases side by side, and a real mouse whose button stays down as long as a finger's does, on everything in a
pane that can be clicked, while the other pane is the active one. What both panes then show is read from the screen."""
import os
import subprocess
import sys

import desktop

programs, samples = sys.argv[1:3]
EDITOR = os.path.join(programs, "qir-editor")
COMPANION = os.path.join(programs, "qirdb")
MAIN = "^QIR Database Editor$"
YELLOW = b"\xff\xff\x00"
WHITE = b"\xff\xff\xff"
RED = b"\xff\x00\x00"
HOLDS = (80, 115, 150)  # milliseconds


def differing_row(table):
    """The record in which a table of one database differs from that of the other, so that its red cell tells which
    table is compared."""
    return (table - 1) % 5 + 1


def make_pair(folder, tables, records):
    """Two databases of so many tables with a long and a text field, the same but for one number in each table."""
    folder = os.path.join(folder, f"pair{tables}")
    os.mkdir(folder)
    paths = []
    for name, added in (("LEFT.DDB", 0), ("RIGHT.DDB", 1)):
        path = os.path.join(folder, name)
        subprocess.run([COMPANION, "create", path], check=True)
        for table in range(1, tables + 1):
            lines = ["Number[long],Text[text]"]
            for r in range(1, records + 1):
                number = 1000 * table + r + (500 * added if r == differing_row(table) else 0)
                lines.append(f"{number},record {r} of {table}")
            subprocess.run([COMPANION, "import", path, f"T{table:02}", "-"], input="\n".join(lines) + "\n", text=True,
                           check=True)
        paths.append(path)
    return paths


class Area:
    """A rectangle of a picture; the right and the lower edge are outside."""

    def __init__(self, left, top, right, bottom):
        self.left, self.top, self.right, self.bottom = left, top, right, bottom

    def of(self, picture):
        return [row[3 * self.left:3 * self.right] for row in picture[self.top:self.bottom]]

    def find(self, picture, colour):
        """The least area in this one with all pixels of a colour, or None."""
        lefts, rights, ys = [], [], []
        for y, row in enumerate(self.of(picture), self.top):
            left = row.find(colour)
            while left % 3 and left >= 0:
                left = row.find(colour, left + 1)
            if left < 0:
                continue
            right = row.rfind(colour)
            while right % 3:
                right = row.rfind(colour, 0, right + 2)
            lefts.append(left // 3)
            rights.append(right // 3)
            ys.append(y)
        if not ys:
            return None
        return Area(self.left + min(lefts), ys[0], self.left + max(rights) + 1, ys[-1] + 1)

    def middle(self):
        return (self.left + self.right) // 2, (self.top + self.bottom) // 2


def pixel(picture, x, y):
    return picture[y][3 * x:3 * x + 3]


def is_blue(colour):
    """As a selected line is, with the focus, without it, and with the pointer over it."""
    red, _, blue = colour
    return blue - red > 40


class Pane:
    """Where things are in a pane, found out from pictures in which its frame is yellow."""

    def __init__(self, picture):
        self.frame = Area(0, 0, len(picture[0]) // 3, len(picture)).find(picture, YELLOW)
        self.probe = self.frame.right - 80  # right of all short texts, left of the scroll bars
        white = self.white_runs(picture)
        self.filled = len(white) == 2  # a list and a grid
        if not self.filled:
            return
        (list_middle, list_bottom), (_, grid_bottom) = white
        list_top = max(y for y in range(self.frame.top, list_middle) if pixel(picture, self.probe, y) == YELLOW) + 1
        across = [x for x in range(self.frame.left, self.frame.right) if pixel(picture, x, list_middle) != YELLOW]
        self.list = Area(across[0], list_top, across[-1] + 1, list_bottom)
        self.grid = Area(across[0], list_bottom + 1, across[-1] + 1, grid_bottom)  # and what is between
        self.first_line = self.line_height = None
        self.first_row = self.row_height = self.column = None

    def white_runs(self, picture):
        """Where the grounds of list and grid begin and end, down the pane."""
        runs = []
        top = None
        for y in range(self.frame.top, self.frame.bottom):
            white = pixel(picture, self.probe, y) == WHITE
            if white and top is None:
                top = y
            elif not white and top is not None:
                if y - top > 40:
                    runs.append((top, y))
                top = None
        return runs

    # The list

    def highlighted(self, picture):
        """The middle of the selected line, or None when it does not show."""
        blue = [y for y in range(self.list.top, self.list.bottom) if is_blue(pixel(picture, self.probe, y))]
        return (blue[0] + blue[-1]) / 2 if blue else None

    def selected_line(self, picture):
        """The selected line, counted from the first one that shows, or None when it does not show."""
        middle = self.highlighted(picture)
        return None if middle is None else round((middle - self.first_line) / self.line_height)

    def line_place(self, line):
        return self.probe, round(self.first_line + line * self.line_height)

    # The grid

    def red_row(self, picture):
        """The row of the red cell, counted from the first one that shows, or None when there is none."""
        red = self.grid.find(picture, RED)
        return None if red is None else round((red.middle()[1] - self.first_row) / self.row_height) + 1

    def cell_place(self, row, column):
        x = self.column.middle()[0] if column == 1 else self.column.right + 20
        return x, round(self.first_row + (row - 1) * self.row_height)

    def looks(self, picture):
        """What must be the same in both panes: the row headers, which mark the current row, and the cells of the text
        column, which show what is selected. Without the first row: the current cell's line is thicker in the grid
        that has the focus."""
        below = round(self.first_row + self.row_height / 2)
        rows = Area(self.grid.left + 2, self.header_middle(), self.column.left - 4, self.grid.bottom - 30)
        texts = Area(self.column.right + 4, below, self.probe, self.grid.bottom - 30)
        return rows.of(picture) + texts.of(picture)

    def header_middle(self):
        return round(self.first_row - self.row_height)


class Pair:
    """A running editor with two databases, whose tables lie in the same order in both lists."""

    def __init__(self, screen, left, right):
        self.screen = screen
        self.process = screen.start(EDITOR, left)
        self.window = screen.window(MAIN)
        screen.focus(self.window)
        screen.key("alt+m", "t")
        self.wait_for_frame(0)
        screen.key("F6")
        self.wait_for_frame(1)
        screen.choose_file("ctrl+o", right)
        screen.focus(self.window)
        self.gestures = 0
        self.panes = [None, None]
        for pane in (1, 0):
            self.learn_pane(pane)
            screen.key("F6")
        assert self.panes[0].frame.right <= self.panes[1].frame.left + 1
        self.learn_list()
        self.learn_grid()

    def picture(self):
        return self.screen.pixels(self.window)

    def framed(self, pane):
        """A picture in which this one of two panes has the frame of the active one, or None."""
        picture = self.picture()
        width = len(picture[0]) // 3
        frame = Area(0, 0, width, len(picture)).find(picture, YELLOW)
        own = frame and (frame.left > width // 3 if pane == 1 else frame.right < 2 * width // 3)
        return picture if own else None

    def wait_for_frame(self, pane):
        desktop.wait_until(lambda: self.framed(pane), f"two panes, and pane {pane} to be the active one")

    def learn_pane(self, pane):
        def own_frame():
            picture = self.framed(pane)
            found = Pane(picture) if picture else None
            return found if found and found.filled else None
        self.panes[pane] = desktop.wait_until(own_frame, f"pane {pane} to be the active one, with a table")

    def learn_list(self):
        """By the keys that select the second line and the first one again. F6 has left the right list with the focus."""
        for pane in self.panes:
            pane.first_line = desktop.wait_until(lambda: pane.highlighted(self.picture()), "a selected line")

        def moved_by(pane):
            line = pane.highlighted(self.picture())
            return None if line is None else abs(line - pane.first_line)
        for key, moved in (("Down", True), ("Up", False)):
            self.screen.key(key)
            for pane in self.panes:
                desktop.wait_until(lambda: (distance := moved_by(pane)) is not None and (distance > 8) == moved,
                                   f"both lists to follow {key}")
                if moved:
                    pane.line_height = pane.highlighted(self.picture()) - pane.first_line

    def learn_grid(self):
        """By the red cells of the first two tables, which stand in the first two records."""
        def red(pane):
            return pane.grid.find(self.picture(), RED)
        for pane in self.panes:
            first = desktop.wait_until(lambda: red(pane), "the first table's red cell")
            pane.first_row = first.middle()[1]
        self.screen.key("Down")
        for pane in self.panes:
            pane.column = desktop.wait_until(
                lambda: (lambda found: found if found and found.middle()[1] - pane.first_row > 8 else None)(red(pane)),
                "the second table's red cell")
            pane.row_height = pane.column.middle()[1] - pane.first_row

    def hold(self, place):
        self.screen.hold(self.window, *place, HOLDS[self.gestures % len(HOLDS)])
        self.gestures += 1

    def shown(self):
        """What a person sees: the active pane, the selected lines, the red rows, and whether the two grids look
        the same."""
        picture = self.picture()
        whole = Area(0, 0, len(picture[0]) // 3, len(picture))
        yellow = whole.find(picture, YELLOW)
        active = [p for p in (0, 1) if yellow and abs(yellow.left - self.panes[p].frame.left) < 5 and
                  abs(yellow.right - self.panes[p].frame.right) < 5]
        left, right = self.panes
        return {"active": active[0] if active else None,
                "lines": [pane.selected_line(picture) for pane in self.panes],
                "red rows": [pane.red_row(picture) for pane in self.panes],
                "same grids": left.looks(picture) == right.looks(picture)}

    def expect(self, what, **wanted):
        wanted = {key.replace("_", " "): value for key, value in wanted.items()}
        wanted = {"same grids": True, **wanted}
        try:
            desktop.wait_until(lambda: self.shown() == wanted, what, 10)
        except desktop.Failed:
            raise desktop.Failed(f"after {what} the window shows {self.shown()}, not {wanted}") from None

    def select(self, pane, line):
        self.hold(self.panes[pane].line_place(line))
        row = differing_row(line + 1)
        self.expect(f"a held click on line {line} of pane {pane}", active=pane, lines=[line, line], red_rows=[row, row])

    def start(self, pane):
        """The first table in both panes, shown anew, and this pane the active one."""
        self.select(pane, 1)
        self.select(pane, 0)

    def looks(self):
        picture = self.picture()
        return [pane.looks(picture) for pane in self.panes]

    def end(self):
        self.screen.key("ctrl+q")
        assert self.process.wait(60) == 0


def lines(pair, pane):
    for line in (1, 2, 0):
        pair.start(1 - pane)
        if line:
            pair.select(pane, line)
        else:
            pair.hold(pair.panes[pane].line_place(0))  # the line that is selected already
            pair.expect("a held click on the selected line", active=pane, lines=[0, 0], red_rows=[1, 1])


def places_that_move_nothing(pair, pane):
    here = pair.panes[pane]
    x = here.frame.middle()[0]
    places = {"below the lines": (here.probe, here.list.bottom - 8),
              "on the frame": (x, here.frame.top + 6),
              "on the frame's lower edge": (x, here.frame.bottom - 3),
              "on the file label": (x, here.list.top - 8)}
    for what, place in places.items():
        pair.start(1 - pane)
        before = pair.looks()
        pair.hold(place)
        pair.expect(f"a held click {what} of pane {pane}", active=pane, lines=[0, 0], red_rows=[1, 1])
        assert pair.looks() == before, f"a held click {what} of pane {pane} moved something in a grid"


def places_that_select(pair, pane):
    here = pair.panes[pane]
    row_header = (here.grid.left + here.column.left) // 2
    places = {"on a cell": here.cell_place(4, 1),
              "on a column's header": (here.cell_place(1, 2)[0], here.header_middle()),
              "on a row's header": (row_header, here.cell_place(3, 1)[1])}
    for what, place in places.items():
        pair.start(1 - pane)
        before = pair.looks()
        pair.hold(place)
        desktop.wait_until(lambda: all(a != b for a, b in zip(pair.looks(), before)),
                           f"both grids to go along with a held click {what} of pane {pane}", 10)
        pair.expect(f"a held click {what} of pane {pane}", active=pane, lines=[0, 0], red_rows=[1, 1])


def grid_scroll_bar(pair, pane):
    here = pair.panes[pane]
    pair.start(1 - pane)
    pair.hold((here.grid.right - 9, here.grid.bottom - 60))
    pair.expect(f"a held click on the grid's scroll bar of pane {pane}", active=pane, lines=[0, 0],
                red_rows=[None, None])


def list_scroll_bar(pair, pane):
    here = pair.panes[pane]
    pair.start(1 - pane)
    pair.hold((here.list.right - 9, here.list.bottom - 40))
    scrolled = [0, 0]
    scrolled[pane] = None  # the other list stays
    pair.expect(f"a held click on the list's scroll bar of pane {pane}", active=pane, lines=scrolled, red_rows=[1, 1])
    pair.hold(here.line_place(3))
    # Both lists show the same lines now, and both grids a table further down.
    desktop.wait_until(lambda: pair.shown()["lines"] == [3, 3], "the scrolled list's line in both lists", 10)
    rows = desktop.wait_until(lambda: [row for row in pair.shown()["red rows"] if row], "its table's red cells", 10)
    pair.expect(f"a held click on a line of the scrolled list of pane {pane}", active=pane, lines=[3, 3],
                red_rows=[rows[0], rows[0]])


def session(screen):
    pair = Pair(screen, *make_pair(screen.folder, tables=3, records=200))
    for pane in (1, 0):
        lines(pair, pane)
        places_that_move_nothing(pair, pane)
        places_that_select(pair, pane)
        grid_scroll_bar(pair, pane)
    pair.end()

    pair = Pair(screen, *make_pair(screen.folder, tables=40, records=8))
    for pane in (1, 0):
        # From the top: the lists stay scrolled as the last click has left them.
        screen.key("Home")
        pair.expect("Home in a list", active=1, lines=[0, 0], red_rows=[1, 1])
        list_scroll_bar(pair, pane)
    pair.end()


desktop.run(session)
