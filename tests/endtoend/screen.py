"""A screen of its own for a test, the program on it, and what is seen there: everything from outside the process."""
import collections
import contextlib
import mmap
import os
import re
import shutil
import struct
import subprocess
import tempfile
import time

PROGRAM = os.environ.get("VX3_STUDIO", "vx3-studio")
DROP_TARGET = os.environ.get("VX3_DROP_TARGET", "droptarget")
SECONDS = 60  # nothing takes longer unless it hangs
SIZE = (1280, 900)
BASE = 0xFFFFFF  # the ground of lists in light colours
GAP = 6  # pixels between two signs or words of a row
LEFT, RIGHT, BACK, FORWARD = 1, 3, 8, 9


def wait_for(what, condition):
    """Waits until the condition gives something true, and gives it back."""
    end = time.monotonic() + SECONDS
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError("in vain: " + what)
        time.sleep(0.02)


Run = collections.namedtuple("Run", "value start length")
Window = collections.namedtuple("Window", "number title box isMenu")
Box = collections.namedtuple("Box", "x y width height")


class Picture:
    """What the screen showed at one moment."""

    def __init__(self, content):
        header = struct.unpack(">25I", content[:100])
        self.width, self.height, self.line = header[4], header[5], header[12]
        self.start = header[0] + 12 * header[19]
        self.content = content

    def at(self, x, y):
        return struct.unpack_from("<I", self.content, self.start + y * self.line + 4 * x)[0] & 0xFFFFFF

    def part(self, box):
        rows = (self.start + y * self.line + 4 * box.x for y in range(box.y, box.y + box.height))
        return b"".join(self.content[row:row + 4 * box.width] for row in rows)

    def save(self, file):
        with open(file, "wb") as stream:
            stream.write(b"P6 %d %d 255\n" % (self.width, self.height))
            for pixel in struct.iter_unpack("<I", self.part(Box(0, 0, self.width, self.height))):
                stream.write(bytes((pixel[0] >> 16 & 255, pixel[0] >> 8 & 255, pixel[0] & 255)))


class Screen:
    """An X server that shows nothing to anybody, with a window manager."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="vx3screen")
        self.processes = []
        self.memory = None

    def start(self):
        ours, theirs = os.pipe()
        self.run("Xvfb", "-displayfd", str(theirs), "-screen", "0", "%dx%dx24" % SIZE, "-fbdir", self.folder, "-nolisten", "tcp",
                 "-noreset", pass_fds=[theirs])
        os.close(theirs)
        with open(ours, encoding="ascii") as number:
            display = number.readline().strip()
        self.environment = {key: value for key, value in os.environ.items() if not key.startswith(("QT_", "XDG_", "WAYLAND"))}
        self.environment.update(DISPLAY=":" + display, HOME=self.folder, XDG_RUNTIME_DIR=self.folder, LC_ALL="C.UTF-8")
        self.run("openbox", "--sm-disable", env=self.environment)
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        wait_for("a window manager", lambda: "window id" in self.ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
            process.wait(SECONDS)
        if self.memory:
            self.memory.close()
        shutil.rmtree(self.folder)

    def run(self, *command, **options):
        self.processes.append(subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                               stderr=subprocess.DEVNULL, **options))

    def ask(self, *command):
        done = subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=SECONDS, check=False)
        return done.stdout.decode("utf-8", "replace")

    def look(self):
        return Picture(self.memory[:])

    # --- Input ---

    def do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.environment, stdin=subprocess.DEVNULL, timeout=SECONDS, check=True)

    def move(self, *points):
        self.do(*(word for x, y in points for word in ("mousemove", x, y)))

    def click(self, point, button=LEFT, times=1):
        self.do("mousemove", *point, "click", "--repeat", times, "--delay", 20, button)

    def key(self, *names):
        self.do("key", "--delay", 5, *names)

    @contextlib.contextmanager
    def held(self, key):
        self.do("keydown", key)
        try:
            yield
        finally:
            self.do("keyup", key)

    # --- Windows ---

    def windows(self):
        """All windows of the program that can be seen."""
        found = self.ask("xdotool", "search", "--onlyvisible", "--class", "vx3-studio").split()
        return [window for window in map(self.window, found) if window]

    def window(self, number):
        text = self.ask("xwininfo", "-id", number)
        places = [re.search(form + r":\s+(-?\d+)", text)
                  for form in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
        if not all(places):
            return None  # closed meanwhile
        title = re.search(r'Window id: \S+ "(.*)"', text)
        isMenu = "Override Redirect State: yes" in text
        return Window(number, title.group(1) if title else "", Box(*(int(one.group(1)) for one in places)), isMenu)


class DropTarget:
    """Another program, which takes files."""

    def __init__(self, screen):
        self.screen = screen
        self.process = subprocess.Popen([DROP_TARGET], env=screen.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)

    def middle(self):
        numbers = wait_for("the drop target", lambda: self.screen.ask("xdotool", "search", "--onlyvisible", "--name", "^drop target$").split())
        box = wait_for("its place", lambda: self.screen.window(numbers[0])).box
        return box.x + box.width // 2, box.y + box.height // 2

    def end(self):
        """The files that were dropped."""
        self.process.terminate()
        return self.process.communicate(timeout=SECONDS)[0].decode().splitlines()


def runs(values):
    """The stretches of equal values."""
    found = []
    for index, value in enumerate(values):
        if found and found[-1].value == value:
            found[-1] = found[-1]._replace(length=found[-1].length + 1)
        else:
            found.append(Run(value, index, 1))
    return found


class Studio:
    """The running program, and the browser in its main window."""

    def __init__(self, screen, profile, *words):
        self.screen = screen
        self.errors = tempfile.TemporaryFile()
        command = [PROGRAM, "--profile", profile, "--light", "--lang", "us", *words]
        self.process = subprocess.Popen(command, env=screen.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=self.errors)
        self.area = self.cell = self.marked = None
        self.columns = self.clicks = 0

    def is_running(self):
        return self.process.poll() is None

    def end(self):
        """Waits for the end; gives the exit code and what was complained about."""
        code = self.process.wait(SECONDS)
        self.errors.seek(0)
        return code, self.errors.read().decode("utf-8", "replace")

    def kill(self, picture):
        """After a failure, which leaves a picture of what was seen last."""
        if self.is_running():
            self.screen.look().save(picture)
            self.process.kill()
        self.process.wait(SECONDS)
        self.errors.close()

    # --- Windows ---

    def main(self):
        """The main window, which comes first."""
        windows = wait_for("a window", lambda: [window for window in self.screen.windows() if not window.isMenu])
        return windows[0]

    def menus(self):
        return [window for window in self.screen.windows() if window.isMenu]

    # --- The list ---

    def find_area(self):
        """The list: the uppermost high field that is not in the colour of windows."""
        place = self.main().box
        picture = self.screen.look()
        x = place.x + place.width - 40
        ground = picture.at(x, place.y + 4)
        column = runs(picture.at(x, place.y + y) != ground for y in range(place.height))
        field = next((run for run in column if run.value and run.length > 60), None)
        return field and Box(place.x + 1, place.y + field.start + 1, place.width - 2, field.length - 2)

    def settle(self):
        """Waits until there is a list that stands still, and learns where it is."""
        def stands():
            before, self.area = self.area, self.find_area()
            return self.area and self.area == before
        self.area = None
        wait_for("a list that stands still", stands)

    def measure(self):
        """Selects everything and learns from it where the cells are."""
        self.settle()
        x, y = self.area.x + 1, self.area.y + 1
        self.clicks += 1
        self.screen.click((x + 15 + 15 * (self.clicks % 2), y + 30))  # never twice at one place, which were a double click
        wait_for("a selection", lambda: self.screen.look().at(x, y) != BASE)
        self.screen.key("ctrl+a")
        across, down = wait_for("everything selected", self.find_marked)
        width = across[1].start + across[1].length - across[0].length
        height = down[1].start + down[1].length - down[0].length if len(down) > 1 else down[0].length
        self.cell = Box(x + across[1].start - width, self.area.y, width, height)
        self.columns = len(across)

    def find_marked(self):
        """What is in the colour of the selection in the first row and the first column, as soon as it stands still."""
        picture = self.screen.look()
        x, y, width, height = self.area
        mark = picture.at(x + 1, y + 1)
        lines = ([picture.at(x + i, y + 1) for i in range(1, width)], [picture.at(x + 1, y + i) for i in range(1, height)])
        before, self.marked = self.marked, [[run for run in runs(line) if run.value == mark] for line in lines]
        return self.marked if self.marked == before and len(before[0]) > 1 else None

    def box(self, index):
        """Where an entry is drawn."""
        row, column = divmod(index, self.columns)
        x, y, width, height = self.cell
        return Box(x + column * width + 1, y + row * height + 1, width - 2, height - 2)

    def point(self, index):
        """A place on the picture of an entry."""
        box = self.box(index)
        return box.x + box.width // 2, box.y + box.height // 2

    def looks(self):
        """What each entry looks like, in their order."""
        picture = self.screen.look()
        cells = []
        while True:
            content = picture.part(self.box(len(cells)))
            if content == bytes(content[:4]) * (len(content) // 4):
                return cells
            cells.append(content)

    def selected(self):
        """The numbers of the entries that are drawn as selected."""
        picture = self.screen.look()
        corners = (picture.at(self.box(i).x, self.box(i).y) for i in range(len(self.looks())))
        return [i for i, corner in enumerate(corners) if corner != BASE]

    # --- Rows of menus and buttons ---

    def marks(self, distance):
        """What stands in a row this far above the list, or below it if negative: from left to right."""
        y = self.area.y - distance if distance > 0 else self.area.y + self.area.height - distance
        picture = self.screen.look()
        ground = picture.at(self.area.x + self.area.width // 2, y)
        filled = [i for i in range(self.area.width) if any(picture.at(self.area.x + i, y + d) != ground for d in range(-6, 7))]
        starts = [i for i, before in zip(filled, [-GAP, *filled]) if i - before >= GAP]
        ends = [i for i, after in zip(filled, [*filled[1:], self.area.width + GAP]) if after - i >= GAP]
        return [Box(self.area.x + start, y, end - start + 1, 1) for start, end in zip(starts, ends)]
