"""The first walk of a user through the studio, on a screen of its own, by mouse and keyboard from outside the process."""
import os
import unittest

import case
import screen
from screen import BACK, BASE, FORWARD, RIGHT, wait_for

FILES = ["f%02d.txt" % number for number in range(24)]
NAMES = ["inner", *FILES]
INSIDE = ["one.mp4", "three.mp4", "two.mp4"]
SIZES = {name: number * 7 % 24 + 1 for number, name in enumerate(FILES)}


class WalkTest(case.Case):
    @classmethod
    def setUpClass(cls):
        cls.screen = screen.Screen()
        cls.addClassCleanup(cls.screen.close)
        cls.screen.start()

    def setUp(self):
        super().setUp()
        self.clicks = 0
        self.known = {}
        for name in INSIDE:
            self.write("inner/" + name)
        for name, size in SIZES.items():
            self.write(name, b"x" * size)

    # --- The program ---

    def start_studio(self, *words):
        self.studio = screen.Studio(self.screen, self.profile, *words)
        self.addCleanup(self.studio.kill, "%s.ppm" % self.id())
        self.studio.settle()

    def open_top(self):
        """The studio on the folder of the test, with what each name looks like."""
        self.start_studio(self.top)
        self.studio.measure()
        self.clear()
        self.learn(NAMES)

    def quit(self):
        """Nothing may be left to complain about."""
        self.assertTrue(self.studio.is_running())
        self.screen.key("Escape", "Escape", "ctrl+q")
        self.assertEqual(self.studio.end(), (0, ""))

    # --- What is seen ---

    def clear(self):
        """Selects nothing, and takes the pointer out of the way."""
        area = self.studio.area
        self.clicks = (self.clicks + 1) % 4  # never twice at one place, which were a double click
        self.screen.click((area.x + area.width - 5, area.y + area.height - 15 - 10 * self.clicks))
        self.screen.move((1, 1))
        self.expect_selected()

    def learn(self, names):
        looks = wait_for("%d entries" % len(names), lambda: self.looks_of(len(names)))
        self.assertEqual(len(set(looks)), len(names))
        for look, name in zip(looks, names):
            self.assertEqual(self.known.setdefault(look, name), name)

    def looks_of(self, count):
        looks = self.studio.looks()
        return looks if len(looks) == count else None

    def shown(self):
        return [self.known.get(look) for look in self.studio.looks()]

    def expect_shown(self, names):
        self.screen.move((1, 1))
        wait_for("%s, not %s" % (names, self.shown()), lambda: self.shown() == names)

    def expect_selected(self, *numbers):
        wait_for("selection %s, not %s" % (numbers, self.studio.selected()), lambda: self.studio.selected() == list(numbers))

    # --- What is done ---

    def click(self, index, button=screen.LEFT, times=1):
        self.screen.click(self.studio.point(index), button, times)

    def push(self, distance, number):
        """Clicks on a word or sign of a row above or below the list."""
        sign = self.studio.marks(distance)[number]
        self.screen.click((sign.x + sign.width // 2, sign.y))

    def open_menu(self, index):
        self.click(index, RIGHT)
        wait_for("a menu", self.studio.menus)

    # --- Tests ---

    def test_selecting(self):
        self.open_top()
        self.click(3)
        self.expect_selected(3)
        with self.screen.held("ctrl"):
            self.click(5)
            self.expect_selected(3, 5)
            self.click(3)
            self.expect_selected(5)
        self.click(8)
        with self.screen.held("shift"):
            self.click(5)
        self.expect_selected(5, 6, 7, 8)
        self.click(20)
        self.screen.key("Right", "shift+Right")
        self.expect_selected(21, 22)
        self.screen.key("Home")
        self.expect_selected(0)
        self.screen.key("Down", "shift+Right")
        self.expect_selected(self.studio.columns, self.studio.columns + 1)
        self.band(21, 19)
        self.expect_selected(19, 20, 21)
        self.screen.key("ctrl+i")
        self.expect_selected(*(number for number in range(25) if not 19 <= number <= 21))
        self.quit()

    def band(self, first, last, between=()):
        """A rubber band from the empty space below one entry to another one; steps in between are functions."""
        x, y = self.studio.point(first)
        below = y + 2 * self.studio.cell.height
        self.screen.do("mousemove", x, below, "mousedown", 1)
        self.screen.move((x - 5, below - 10), (x - 10, y + self.studio.cell.height))
        for step in between:
            step()
        self.screen.move(self.studio.point(last))
        self.screen.do("mouseup", 1)

    def test_going_there_and_back(self):
        self.open_top()
        self.click(0, times=2)
        self.screen.move((1, 1))
        self.learn(INSIDE)
        self.push(20, 0)
        self.expect_shown(NAMES)
        self.push(20, 1)
        self.expect_shown(INSIDE)
        self.screen.click(self.studio.point(2), BACK)
        self.expect_shown(NAMES)
        self.screen.click(self.studio.point(2), FORWARD)
        self.expect_shown(INSIDE)
        self.screen.key("BackSpace")
        self.expect_back_in_top()
        self.click(0)
        self.screen.key("Return")
        self.expect_shown(INSIDE)
        self.push(20, 2)
        self.expect_back_in_top()
        self.quit()

    def expect_back_in_top(self):
        """The way up leaves the folder selected from which one comes."""
        wait_for("all entries", lambda: len(self.studio.looks()) == len(NAMES))
        self.expect_selected(0)
        self.clear()
        self.expect_shown(NAMES)

    def test_sorting(self):
        self.open_top()
        self.sort_by("Down", "Down", "Down")
        self.expect_shown(["inner", *sorted(FILES, key=SIZES.get)])
        self.sort_by()
        self.expect_shown(NAMES)
        self.quit()

    def sort_by(self, *way):
        """The last row of the menu for views leads to the orders."""
        self.push(45, 2)
        wait_for("a menu", self.studio.menus)
        self.screen.key("Up", "Right")
        wait_for("the menu of orders", lambda: len(self.studio.menus()) == 2)
        self.screen.key(*way, "Return")
        wait_for("no menu", lambda: not self.studio.menus())

    def test_zooming(self):
        self.open_top()
        usual = self.studio.cell
        self.push(-20, -1)
        largest = self.zoomed(usual)
        self.assertGreater(min(largest.width - usual.width, largest.height - usual.height), 30)
        slider = self.studio.marks(-20)[-2]
        end = slider.x + slider.width - 6
        self.screen.do("mousemove", end, slider.y, "mousedown", 1)
        self.screen.move(*((end - step * slider.width // 8, slider.y) for step in range(1, 5)))
        self.screen.do("mouseup", 1)
        middle = self.zoomed(largest)
        self.assertTrue(usual.width < middle.width < largest.width)
        self.push(-20, -3)
        self.assertLess(self.zoomed(middle).height, usual.height)
        self.quit()

    def zoomed(self, before):
        def is_other():
            self.studio.measure()
            return self.studio.cell != before
        wait_for("cells of another size", is_other)
        return self.studio.cell

    def test_what_is_kept_from_run_to_run(self):
        self.open_top()
        before = self.studio.main()
        self.screen.do("windowsize", before.number, 900, 640, "windowmove", before.number, 70, 90)
        wait_for("the new size", lambda: self.studio.main().box[2:] == (900, 640))
        self.studio.settle()
        window, area = self.studio.main().box, self.studio.area
        self.quit()
        self.start_studio(self.top)
        wait_for("window %s as %s" % (self.studio.main().box, window), lambda: self.studio.main().box == window)
        wait_for("list %s as %s" % (self.studio.area, area), lambda: self.studio.find_area() == area)
        self.studio.measure()
        self.clear()
        self.expect_shown(NAMES)
        self.open_and_close_another_window()
        self.quit()

    def open_and_close_another_window(self):
        self.screen.key("ctrl+n")
        wait_for("a second window", lambda: len(self.screen.windows()) == 2)
        self.screen.key("alt+F4")
        wait_for("one window", lambda: len(self.screen.windows()) == 1)

    def test_files_are_dragged_to_another_program_and_past_it(self):
        self.open_top()
        main = self.studio.main()
        self.screen.do("windowsize", main.number, 900, 640, "windowmove", main.number, 300, 100)
        wait_for("the new size", lambda: self.studio.main().box[2:] == (900, 640))
        self.studio.measure()
        self.clear()
        other = screen.DropTarget(self.screen)
        self.addCleanup(other.process.kill)
        target = other.middle()
        self.click(3)
        with self.screen.held("ctrl"):
            self.click(5)
        self.drag(5, target)
        self.drag(5, target, self.studio.point(1))
        self.assertEqual(other.end(), [self.path(NAMES[3]), self.path(NAMES[5])])
        self.quit()

    def drag(self, index, *places):
        """Slowly enough for two programs to talk about it, and not where the click was, which were a double one."""
        x, y = self.studio.point(index)
        x, y = x + 9, y + 9
        self.screen.do("mousemove", x, y, "mousedown", 1)
        last = x, y
        for place in places:
            steps = [(last[0] + (place[0] - last[0]) * step // 20, last[1] + (place[1] - last[1]) * step // 20) for step in range(1, 21)]
            for step in steps:
                self.screen.do("mousemove", *step, "sleep", 0.02)
            last = place
        self.screen.do("sleep", 0.3, "mouseup", 1, "sleep", 0.3)

    # --- Files change from outside while the user is in the middle of something ---

    def disturb(self):
        """Removes, renames and makes files; it is seen at once, whatever the user does."""
        os.remove(self.path("f02.txt"))
        os.rename(self.path("f04.txt"), self.path("y.txt"))
        for name in ("w.txt", "x.txt", "z.txt"):
            self.write(name)
        last = self.studio.point(len(NAMES) + 1)
        wait_for("what others did", lambda: self.studio.is_running() and self.screen.look().at(*last) != BASE)

    def expect_disturbed(self, *gone):
        """All that is there now, under the new names, and what is there can be used."""
        self.clear()
        names = sorted(set(NAMES) - {"inner", "f02.txt", "f04.txt", *gone})
        self.learn(["inner", *names, "w.txt", "x.txt", "y.txt", "z.txt"])
        self.click(0, times=2)
        wait_for("the files inside", lambda: len(self.studio.looks()) == len(INSIDE))
        self.quit()

    def test_files_change_under_a_menu(self):
        self.open_top()
        self.open_menu(11)
        self.disturb()
        self.screen.key("Escape")
        wait_for("no menu", lambda: not self.studio.menus())
        self.expect_selected(9)
        self.open_menu(9)
        os.remove(self.path("f10.txt"))
        self.screen.key("Down", "Return")
        wait_for("no menu", lambda: not self.studio.menus())
        self.expect_selected()
        self.expect_disturbed("f10.txt")

    def test_files_change_during_a_drag(self):
        self.open_top()
        x, y = self.studio.point(11)
        self.screen.do("mousemove", x, y, "mousedown", 1)
        self.screen.move((x + 5, y + 5), (x + 20, y + 20), (x + 20, y + 3 * self.studio.cell.height))
        self.disturb()
        os.remove(self.path("f10.txt"))
        self.screen.move((x - 20, y + 3 * self.studio.cell.height + 10))
        self.screen.do("mouseup", 1)
        self.expect_selected()
        self.expect_disturbed("f10.txt")

    def test_files_change_during_a_rubber_band(self):
        self.open_top()
        self.band(21, 19, [self.disturb])
        self.expect_selected(19, 20, 21)
        self.expect_disturbed()


if __name__ == "__main__":
    unittest.main()
