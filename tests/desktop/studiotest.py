"""The program VX3 Studio: pictures, scripts, what it says of a wrong command line."""
import os
import shutil
import struct
import subprocess
import tempfile
import unittest

STUDIO = os.environ["VX3_STUDIO"]
CONSOLE = os.environ["VX3_PROGRAM"]
SECONDS = 100

SCRIPT = """\
folder models textures
file a.txt b.tif c.jpg d.png
open .
settle
dump list
click 10122 30 30
click 10122 100 30 ctrl
dump list
drag 10122 700 300 to 10122 5 5
dump list
answer 0
rclick 10122 30 30
dump menu
dclick 10122 30 30
settle
dump state
dump history
key backspace
settle
set 10127 60
settle
dump gadgets
dump focus
"""


def size_of(picture):
    with open(picture, "rb") as file:
        head = file.read(24)
    assert head[:8] == b"\x89PNG\r\n\x1a\n"
    return struct.unpack(">II", head[16:24])


class StudioTest(unittest.TestCase):
    def setUp(self):
        self.base = tempfile.mkdtemp(prefix="vx3test")
        self.addCleanup(shutil.rmtree, self.base)
        self.top = os.path.join(self.base, "top")
        os.makedirs(os.path.join(self.top, "models"))
        with open(os.path.join(os.fsencode(self.top), b"odd \x80.png"), "wb") as file:
            file.write(b"content")

    def path(self, name):
        return os.path.join(self.base, name)

    def call(self, program, *words, **changes):
        environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "XDG_RUNTIME_DIR": self.base, **changes}
        environment = {name: value for name, value in environment.items() if value is not None}
        return subprocess.run([program, *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=environment, cwd=self.top, timeout=SECONDS)

    def expect(self, code, *words, says=None, **changes):
        result = self.call(STUDIO, "--profile", self.path("profile"), *words, **changes)
        said = result.stderr.decode("utf-8", "surrogateescape")
        self.assertEqual(result.returncode, code, "%s: %s" % (words, said))
        if says:
            self.assertIn(says, said)
        return result

    def test_pictures_have_the_size_in_dots(self):
        for scale, size in (("1", (640, 400)), ("1.5", (960, 600)), ("2", (1280, 800))):
            picture = self.path("shot%s.png" % scale)
            self.expect(0, "--shot", picture, "--size", "640x400", "--scale", scale, self.top)
            self.assertEqual(size_of(picture), size)

    def test_pictures_show_what_is_there_in_the_colours_and_the_language_that_are_wanted(self):
        pictures = set()
        rows = (["."], ["models"], [".", "--dark"], [".", "--lang", "de"])
        for number, words in enumerate(rows):
            picture = self.path("shot%d.png" % number)
            look = [] if "--dark" in words else ["--light"]
            self.expect(0, "--shot", picture, "--size", "640x400", *words, *look)
            with open(picture, "rb") as file:
                pictures.add(file.read())
        self.assertEqual(len(pictures), len(rows))

    def test_a_script_prints_the_same_as_without_a_screen(self):
        script = self.path("a.script")
        with open(script, "w") as file:
            file.write(SCRIPT)
        seen = self.call(STUDIO, "--script", script)
        unseen = self.call(CONSOLE, "script", script)
        self.assertEqual(seen.returncode, 0, seen.stderr)
        self.assertEqual(seen.stdout.decode(), unseen.stdout.decode())
        self.assertIn(b"longest event", seen.stderr)

    def test_a_script_that_goes_wrong_says_where(self):
        script = self.path("wrong.script")
        with open(script, "w") as file:
            file.write("open\nsettle\nclick 4711 1 1\n")
        result = self.call(STUDIO, "--script", script)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"line 3", result.stderr)

    def test_a_wrong_command_line_is_told_from_a_missing_file(self):
        rows = [
            (2, ["--nonsense"], "vx3-studio --help tells more"),
            (2, ["--scale", "9"], "--scale"),
            (3, ["--shot", self.path("a.png"), "not/there"], "is not there"),
            (3, ["--shot", self.path("a.png"), "file:///not/there"], "is not there"),
            (3, ["--script", "not.there"], "cannot be read"),
            (3, ["--shot", self.path("a.png"), "--module", "not.there"], "was not found"),
            (4, ["--shot", self.path("a.png"), "--module", os.path.join(os.fsencode(self.top), b"odd \x80.png")], "cannot be used"),
            (1, ["--shot", self.path("no/folder/a.png"), "."], "could not be written"),
        ]
        for code, words, says in rows:
            with self.subTest(words=words):
                self.expect(code, *words, says=says)

    def test_without_a_screen_it_says_so(self):
        self.expect(3, says="there is no screen", QT_QPA_PLATFORM=None, DISPLAY=None, WAYLAND_DISPLAY=None)

    def test_help_and_version_need_no_screen(self):
        for option, said in (("--help", b"--shot FILE"), ("--version", b"vx3-studio ")):
            result = self.expect(0, option, QT_QPA_PLATFORM=None, DISPLAY=None)
            self.assertIn(said, result.stdout)


if __name__ == "__main__":
    unittest.main()
