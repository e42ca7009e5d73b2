"""mkdir, rename, move, copy, delete: the right code, a clear sentence, and nothing lost or half written."""
import os
import pty
import resource
import select
import signal
import time
import unittest

from case import CANCELLED, CONFLICT, DONE, NOT_FOUND, PROGRAM, REFUSED, SECONDS, SOME_FAILED, USAGE, Case

SMALL_LIMIT = 1 << 20  # bytes that a file may have


def forbid_large_files():
    resource.setrlimit(resource.RLIMIT_FSIZE, (SMALL_LIMIT, SMALL_LIMIT))


class Changing(Case):
    def shelf(self):
        """A folder with a file and a folder inside, and a second folder beside it."""
        self.write("shelf/note.txt", b"note")
        self.write("shelf/inner/.hidden", b"deep")
        self.folder("other")

    def expect_unchanged(self, code, words, sentence, **options):
        before = self.snapshot()
        self.expect(code, words, sentence, **options)
        self.assertEqual(self.snapshot(), before)

    def test_mkdir(self):
        self.expect(DONE, ["mkdir", "a", "a/b", "file://localhost" + self.path("a b#?%:x"), b"\xff\\"])
        self.assertTrue(os.path.isdir(self.path("a", "b")) and os.path.isdir(self.path("a b#?%:x")))
        self.assertTrue(os.path.isdir(os.path.join(os.fsencode(self.top), b"\xff\\")))
        self.write("file")
        cases = [(CONFLICT, "a", "exists already"), (CONFLICT, "file", "exists already"), (CONFLICT, "a/..", "exists already"),
                 (CONFLICT, "/", "exists already"), (NOT_FOUND, "no/such", "not found"), (REFUSED, "file/x", "is not a folder"),
                 (NOT_FOUND, "odd:/x", "not found"), (REFUSED, "preset:/x", "0x80000010"), (REFUSED, "x" * 256, "0x80000010")]
        for code, place, sentence in cases:
            with self.subTest(place=place):
                self.expect_unchanged(code, ["mkdir", place], sentence)

    def test_rename(self):
        self.shelf()
        self.expect(DONE, ["rename", "shelf", "renamed"])
        self.expect(DONE, ["rename", "renamed/note.txt", "a b#?%:\\"])
        with open(self.path("renamed", "a b#?%:\\"), "rb") as stream:
            self.assertEqual(stream.read(), b"note")
        self.write("taken.txt", b"taken")
        self.write(".hidden", b"secret")
        cases = [(CONFLICT, "taken.txt", "other", "exists already"), (CONFLICT, "other", "taken.txt", "exists already"),
                 (CONFLICT, "taken.txt", ".hidden", "exists already"), (NOT_FOUND, "none", "x", "not found"),
                 (NOT_FOUND, "TAKEN.TXT", "x", "not found"), (REFUSED, "preset:/", "x", "0x80000001"), (REFUSED, "/", "x", "0x80000001")]
        cases += [(REFUSED, "taken.txt", name, "cannot be a name (0x80000001)") for name in ("../up", "a/b", "", ".", "..", "x" * 256)]
        for code, place, name, sentence in cases:
            with self.subTest(place=place, name=name):
                self.expect_unchanged(code, ["rename", place, name], sentence)

    def test_copy_keeps_every_byte_and_hidden_files(self):
        self.shelf()
        os.symlink("note.txt", self.path("shelf", "link"))
        with open(self.path("shelf", "sparse"), "wb") as stream:
            stream.truncate(50 << 20)
            stream.seek(30 << 20)
            stream.write(b"island")
        self.expect(DONE, ["copy", "shelf", "other"])
        self.expect(DONE, ["copy", "shelf/note.txt", "other/renamed.txt"])
        seen = self.snapshot()
        prefix = os.fsencode(self.path("shelf")) + b"/"
        for file, what in seen.items():
            if file.startswith(prefix):
                copied = os.path.join(os.fsencode(self.path("other", "shelf")), file[len(prefix):])
                self.assertEqual(seen[copied], what, file)
        self.assertEqual(seen[os.fsencode(self.path("other", "renamed.txt"))], ("file", b"note"))
        self.assertLess(os.stat(self.path("other", "shelf", "sparse")).st_blocks * 512, 10 << 20)

    def test_move(self):
        self.shelf()
        self.write("loose.txt", b"loose")
        self.expect(DONE, ["move", "shelf", "loose.txt", "other"])
        self.assertEqual(sorted(os.listdir(self.top)), ["other"])
        self.assertEqual(sorted(os.listdir(self.path("other", "shelf"))), ["inner", "note.txt"])
        self.assertTrue(os.path.exists(self.path("other", "shelf", "inner", ".hidden")))

    def test_transfers_that_must_not_happen(self):
        self.shelf()
        self.write("note.txt", b"another note")
        self.write("other/.secret/x")
        for verb, code in (("copy", "0x80000004"), ("move", "0x80000")):
            cases = [(CONFLICT, ["note.txt", "shelf"], "exists already"), (CONFLICT, ["other", "note.txt"], "is not a folder"),
                     (NOT_FOUND, ["none", "shelf"], "not found"), (NOT_FOUND, ["note.txt", "no/such/folder"], "not found"),
                     (REFUSED, ["shelf", "shelf/inner"], "the target lies inside of it"), (REFUSED, ["note.txt", "preset:/"], code),
                     (NOT_FOUND, ["odd:/x", "shelf"], "not found"), (NOT_FOUND, ["other/.secret/x", "shelf"], "hidden folder .secret")]
            for expected, words, sentence in cases:
                with self.subTest(verb=verb, words=words):
                    self.expect_unchanged(expected, [verb, *words], sentence)
        self.expect_unchanged(CONFLICT, ["copy", "note.txt", "shelf/inner/.hidden"], "exists already")
        self.expect_unchanged(NOT_FOUND, ["move", "note.txt", "newname"], "not found")

    def test_some_items_fail_and_the_others_are_done(self):
        self.shelf()
        self.write("note.txt", b"another")
        self.write("free.txt", b"free")
        self.expect(SOME_FAILED, ["copy", "note.txt", "free.txt", "shelf"], "exists already")
        self.assertEqual(self.snapshot()[os.fsencode(self.path("shelf", "free.txt"))], ("file", b"free"))
        self.assertEqual(self.snapshot()[os.fsencode(self.path("shelf", "note.txt"))], ("file", b"note"))

    def test_permissions_are_kept_to(self):
        user = self.as_ordinary_user()
        self.shelf()
        for folder, _, files in os.walk(self.top):
            for name in files + ["."]:
                os.chown(os.path.join(folder, name), user.get("user", -1), user.get("group", -1))
        os.chmod(self.path("other"), 0o500)
        for words in (["mkdir", "other/x"], ["copy", "shelf", "other"], ["move", "shelf", "other"]):
            with self.subTest(words=words):
                self.expect_unchanged(REFUSED, words, "read-only", **user)
        os.chmod(self.path("shelf"), 0o500)
        for words in (["rename", "shelf/note.txt", "x"], ["move", "shelf/note.txt", "."], ["delete", "shelf/note.txt"], ["mkdir", "shelf/x"]):
            for option in ("--dry-run", "--yes" if words[0] == "delete" else "--"):
                with self.subTest(words=words, option=option):
                    self.expect_unchanged(REFUSED, [words[0], option, *words[1:]], "the folder around it is read-only", **user)
        os.chmod(self.path("shelf"), 0o700)
        os.chmod(self.path("shelf", "note.txt"), 0)
        self.expect_unchanged(REFUSED, ["copy", "shelf", "copied"], "nothing was left behind", **user)

    def test_a_full_disk_in_the_middle_of_a_copy(self):
        self.write("shelf/a.txt", b"small")
        self.write("shelf/large", b"x" * (3 * SMALL_LIMIT))
        self.folder("other")
        for words in (["copy", "shelf/large", "other"], ["copy", "shelf", "other"]):
            self.expect_unchanged(REFUSED, words, "nothing was left behind (0x80000004)", preexec_fn=forbid_large_files)

    def test_a_cancelled_copy_leaves_nothing(self):
        self.folder("other")
        for number in range(600):
            self.write("shelf/%d/note" % number)
        before = self.snapshot()
        process = self.start("copy", "shelf", "other")
        self.assertTrue(self.interrupt_when(process, lambda: os.listdir(self.path("other"))), "the copy was too fast to cancel it")
        result = self.finish(process)
        self.assertEqual(result.code, CANCELLED, result.err)
        self.assertIn("cancelled; nothing was left behind (0xc0000000)", result.err.lower())
        self.assertEqual(self.snapshot(), before)

    def test_a_cancelled_copy_of_one_file_leaves_nothing(self):
        self.folder("other")
        self.write("large", os.urandom(1 << 20) * 200)
        process = self.start("copy", "large", "other")
        isInterrupted = self.interrupt_when(process, lambda: os.listdir(self.path("other")))
        code = self.finish(process).code
        if code == DONE and os.listdir(self.path("other")) == ["large"]:
            self.skipTest("this disk copies faster than it can be cancelled")
        self.assertTrue(isInterrupted)
        self.assertEqual(code, CANCELLED)
        self.assertEqual(os.listdir(self.path("other")), [])

    def test_delete(self):
        self.shelf()
        self.write("keep/kept.txt", b"kept")
        os.symlink("../keep", self.path("shelf", "link"))
        self.expect_unchanged(USAGE, ["delete", "shelf"], "--yes")
        self.expect(DONE, ["delete", "--yes", "shelf", "other"])
        self.assertEqual(os.listdir(self.top), ["keep"])
        self.assertEqual(os.listdir(self.path("keep")), ["kept.txt"])
        os.symlink("keep", self.path("link"))
        self.expect(DONE, ["delete", "--yes", "link"])
        self.write(".hidden")
        cases = [(REFUSED, "/", "it is a volume (0x80000008)"), (REFUSED, "preset:/", "0x80000008"), (NOT_FOUND, "none", "not found"),
                 (NOT_FOUND, "KEEP", "not found"), (NOT_FOUND, "odd:/x", "not found"), (NOT_FOUND, ".hidden", "is hidden")]
        for code, place, sentence in cases:
            with self.subTest(place=place):
                self.expect_unchanged(code, ["delete", "--yes", place], sentence)

    def test_dry_runs_count_and_change_nothing(self):
        self.write("shelf/a", b"x" * 100)
        self.write("shelf/in/b", b"x" * 20)
        self.folder("other")
        before = self.snapshot()
        for words in (["copy", "shelf", "other"], ["move", "shelf", "other"], ["delete", "shelf"]):
            out = self.expect(DONE, [words[0], "--dry-run", *words[1:]]).out
            self.assertEqual(out, "would %s 'shelf': 4 elements, 120 bytes\n" % words[0])
        self.expect(DONE, ["mkdir", "--dry-run", "new"])
        self.expect(DONE, ["rename", "--dry-run", "shelf", "new"])
        self.expect(REFUSED, ["delete", "--dry-run", "/"], "0x80000008")
        self.expect(CONFLICT, ["rename", "--dry-run", "shelf", "other"], "exists already")
        self.expect(REFUSED, ["rename", "--dry-run", "shelf", "../up"], "cannot be a name")
        self.assertEqual(self.snapshot(), before)

    def test_the_trash(self):
        self.write("shelf/note.txt", b"note")
        home = self.folder("home")
        self.expect(DONE, ["delete", "--yes", "--trash", "shelf"], env={**os.environ, "HOME": home, "XDG_DATA_HOME": home + "/data"})
        self.assertFalse(os.path.exists(self.path("shelf")))
        found = [file for file, what in self.snapshot().items() if what == ("file", b"note")]
        self.assertEqual(len(found), 1, "what is deleted into the trash can be had back")


class OnATerminal(Case):
    def talk(self, words, answer, meanwhile=None):
        """Runs the program on a terminal, answers its question, and gives its code and all it showed."""
        process, terminal = pty.fork()
        if process == 0:
            os.chdir(self.top)
            os.environ["TERM"] = "xterm"
            os.execv(PROGRAM, [PROGRAM, words[0], "--profile", self.profile, *words[1:]])
        if meanwhile:
            meanwhile(process)
        shown = b""
        end = time.monotonic() + SECONDS
        while time.monotonic() < end:
            if not select.select([terminal], [], [], 1)[0]:
                continue
            try:
                part = os.read(terminal, 4096)
            except OSError:
                break
            if not part:
                break
            shown += part
            if answer and b"[y/N]" in shown:
                os.write(terminal, answer)
                answer = None
        else:
            os.kill(process, signal.SIGKILL)
        os.close(terminal)
        return os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]), shown

    def test_delete_asks(self):
        self.write("shelf/note.txt", b"note")
        code, shown = self.talk(["delete", "shelf"], b"n\n")
        self.assertEqual(code, CANCELLED)
        self.assertIn(b"2 elements, 4 bytes", shown)
        self.assertTrue(os.path.exists(self.path("shelf", "note.txt")))
        self.assertEqual(self.talk(["delete", "shelf"], b"y\n")[0], DONE)
        self.assertFalse(os.path.exists(self.path("shelf")))

    def test_names_cannot_speak_to_the_terminal(self):
        self.write("evil\033[31m\nname")
        self.folder("blue")
        code, shown = self.talk(["ls"], None)
        self.assertEqual(code, DONE)
        self.assertIn(b"evil?[31m?name", shown)
        self.assertIn(b"\033[1;34mblue\033[0m", shown)

    def hold_when_begun(self, process):
        """Stops the program for a while as soon as its copy has begun."""
        end = time.monotonic() + SECONDS
        while not os.listdir(self.path("other")) and time.monotonic() < end:
            time.sleep(0.001)
        os.kill(process, signal.SIGSTOP)
        time.sleep(0.5)
        os.kill(process, signal.SIGCONT)

    def test_long_work_shows_how_far_it_is(self):
        for number in range(600):
            self.write("shelf/%d/note" % number)
        self.folder("other")
        code, shown = self.talk(["copy", "shelf", "other"], None, self.hold_when_begun)
        self.assertEqual(code, DONE)
        self.assertRegex(shown, rb"copy shelf \[#*\.*\] +\d+%")
        self.assertTrue(shown.endswith(b"\r\033[K"))


if __name__ == "__main__":
    unittest.main()
