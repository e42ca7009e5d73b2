"""Runs the small host on folders of known files."""
import os
import struct
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["VX3_MINIMAL_HOST"]
MODULE = os.environ["VX3_BROWSER_MODULE"]
SECONDS = 30
NOT_LISTED, USAGE, NO_MODULE = 1, 2, 3
NOON = 1706961600  # 2024-02-03 12:00:00 UTC
DAY = "2024-02-03 12:00:00"


def run(*words):
    clean = {key: value for key, value in os.environ.items() if key != "LC_ALL"}
    done = subprocess.run([PROGRAM, *words], capture_output=True, timeout=SECONDS, env={**clean, "TZ": "UTC0"}, check=False)
    return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8", "replace")


class MinimalHost(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vx3test")
        self.addCleanup(folder.cleanup)
        self.top = folder.name

    def write(self, name, size, mode=0o644):
        path = os.path.join(os.fsencode(self.top), os.fsencode(name))
        with open(path, "wb") as file:
            file.write(b"x" * size)
        os.chmod(path, mode)
        os.utime(path, (NOON, NOON))

    def folder(self, name):
        path = os.path.join(self.top, name)
        os.mkdir(path)
        os.utime(path, (NOON, NOON))

    def lines(self, *parts):
        code, out, err = run(MODULE, os.path.join(self.top, *parts))
        self.assertEqual(code, 0, err)
        return out.splitlines()

    def names(self):
        return [line[len("-- 000000000000 ") + len(DAY) + 1:] for line in self.lines()]

    def test_a_line_tells_kind_size_date_and_name(self):
        self.write("plan.txt", 12345)
        self.write("kept.txt", 0, mode=0o444)
        self.folder("parts")
        self.assertEqual(self.lines(), [f"d-            0 {DAY} parts", f"-r            0 {DAY} kept.txt", f"--        12345 {DAY} plan.txt"])

    def test_names_stand_in_the_order_that_people_expect(self):
        ordered = ["A10.txt", "a2.txt", "b.txt", "Über.txt", "überall.txt", "Ωmega", "ωmegb", "я1", "Я2"]
        for name in reversed(ordered):
            self.write(name, 1)
        self.assertEqual(self.names(), ordered)

    def test_any_name_of_the_disk_is_listed(self):
        self.write(b"bad\xff.txt", 1)
        self.write("back\\slash", 1)
        self.write("blank name", 1)
        self.write("\U0001f600", 1)
        self.assertEqual(sorted(self.names()), ["back\ufffdslash", "bad\ufffd.txt", "blank name", "\U0001f600"])

    def test_links_that_lead_back_or_nowhere_are_files(self):
        os.symlink("..", os.path.join(self.top, "ring"))
        os.symlink("nothing", os.path.join(self.top, "broken"))
        self.folder("there")
        os.symlink("there", os.path.join(self.top, "link"))
        kinds = {line.split()[-1]: line[0] for line in self.lines()}
        self.assertEqual(kinds, {"ring": "-", "broken": "-", "there": "d", "link": "d"})

    def test_a_folder_below_and_an_empty_one(self):
        self.folder("outer")
        self.folder("outer/inner")
        self.assertEqual(self.lines("outer"), [f"d-            0 {DAY} inner"])
        self.assertEqual(self.lines("outer", "inner"), [])

    def test_what_cannot_be_done_is_told(self):
        self.write("file", 1)
        gone = os.path.join(self.top, "gone")
        file = os.path.join(self.top, "file")
        rows = [
            ([MODULE, gone], NOT_LISTED, f"minimalhost: there is no folder {gone}"),
            ([MODULE, file], NOT_LISTED, f"minimalhost: {os.path.realpath(file)} is not a folder"),
            ([gone, self.top], NO_MODULE, f"minimalhost: there is no module {gone}"),
            ([file, self.top], NO_MODULE, "minimalhost: this is no module: "),
            ([MODULE], USAGE, "usage: minimalhost MODULE FOLDER"),
        ]
        for words, code, message in rows:
            with self.subTest(words):
                result = run(*words)
                self.assertEqual((result[0], result[1]), (code, ""))
                self.assertIn(message, result[2])


def needed_libraries(path):
    """The names of DT_NEEDED in a 64-bit little-endian ELF file."""
    with open(path, "rb") as file:
        image = file.read()
    assert image[:6] == b"\x7fELF\x02\x01"
    table, = struct.unpack_from("<Q", image, 40)
    entry_size, count = struct.unpack_from("<HH", image, 58)
    sections = [struct.unpack_from("<IIQQQQIIQQ", image, table + i * entry_size) for i in range(count)]
    dynamic_type, needed = 6, 1
    for _, kind, _, _, offset, size, link, *_ in sections:
        if kind == dynamic_type:
            text = sections[link][4]
            entries = struct.iter_unpack("<qQ", image[offset:offset + size])
            return [image[text + value:image.index(b"\0", text + value)].decode() for tag, value in entries if tag == needed]
    return []


class Links(unittest.TestCase):
    def test_the_system_alone(self):
        allowed = {"libc.so.6", "libdl.so.2", "libpthread.so.0"}
        sanitizers = ("libasan", "libubsan", "libtsan")
        libraries = {name for name in needed_libraries(PROGRAM) if not name.startswith(sanitizers)}
        self.assertIn("libc.so.6", libraries)
        if not any(name.startswith(sanitizers) for name in needed_libraries(PROGRAM)):
            self.assertLessEqual(libraries, allowed)


if __name__ == "__main__":
    unittest.main()
