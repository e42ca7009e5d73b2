"""lib create, put, get, rm, mv, name, preview, freeze and compact: what the module writes is judged by the reader that shares nothing
with it."""
import fcntl
import os
import resource
import subprocess
import unittest

from case import CANCELLED, CONFLICT, DAMAGED, DONE, NOT_FOUND, PROGRAM, REFUSED, SOME_FAILED, USAGE, Case
from librarywriter import CLOSING, HEADER, Library, packed, picture

READING = ("info", "ls", "check", "dump", "recover")
LIMIT = 1 << 20  # bytes that a file may have


def forbid_large_files():
    resource.setrlimit(resource.RLIMIT_FSIZE, (LIMIT, LIMIT))


def foreign_library(read_only=0):
    library = Library(names={"us": "Shelf"}, read_only=read_only)
    library.item(1, "a", (library.data(1, b"first"), 0, 5))
    library.item(2, "Wood/b", (library.data(2, packed(b"second" * 99)), 2, 6 * 99))
    library.item(3, "nothing")
    return library


class ChangeCase(Case):
    def start(self, *words, **options):
        verb, behind, *rest = words
        profile = [] if behind in READING else ["--profile", self.profile]
        return subprocess.Popen([PROGRAM, verb, *profile, behind, *rest], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, cwd=options.pop("cwd", self.top), **options)

    def lib(self, code, verb, *words, sentence=None, **options):
        return self.expect(code, ["lib", *verb.split(), *words], sentence, **options)

    def made(self, name="a.libvx", **sources):
        self.lib(DONE, "create", name)
        for path, content in sources.items():
            self.lib(DONE, "put", name, path, self.write("source", content))
        return self.path(name)

    def items(self, name="a.libvx"):
        return {item["path"]: item for item in self.lib(DONE, "ls", name, "--json").entries()}

    def data(self, path, name="a.libvx"):
        self.lib(DONE, "get", name, path, "got")
        content = self.read("got")
        os.remove(self.path("got"))
        return content

    def read(self, name):
        with open(self.path(name), "rb") as stream:
            return stream.read()

    def whole(self, name="a.libvx"):
        findings = self.lib(DONE, "check", name, "--json").entries()
        self.assertEqual([finding for finding in findings if finding["severity"] == "damage"], [])
        return findings


class Items(ChangeCase):
    def test_what_was_put_is_got_again(self):
        contents = {"empty": b"", "small": b"x", "zeros": bytes(1 << 20), "words": b"a chair and " * 9999, "random": os.urandom(300000),
                    "edge": os.urandom(65536)}
        for name, content in contents.items():
            self.write("in/" + name, content)
        made = self.lib(DONE, "create", "a.libvx", "--name", "Shelf", "--json").entries()[0]
        self.assertEqual((made["url"], made["name"]), ("preset://a.libvx", "Shelf"))
        self.assertEqual(self.whole(), [])
        pairs = [word for name in contents for word in ("Wood/" + name, "in/" + name)]
        stored = self.lib(DONE, "put", "a.libvx", *pairs, "--json").entries()
        self.assertEqual([(item["path"], item["size"], item["packed"]) for item in stored],
                         [("Wood/" + name, len(content), name in ("zeros", "words")) for name, content in contents.items()])
        self.assertEqual(self.whole(), [])
        for name, content in contents.items():
            self.assertEqual(self.data("WOOD/" + name), content)
        self.assertEqual({path: item["size"] for path, item in self.items().items()},
                         {"Wood/" + name: len(content) for name, content in contents.items()})
        self.assertLess(os.path.getsize(self.path("a.libvx")), 400000)

    def test_what_is_put_again_is_replaced(self):
        self.made(oak=b"old" * 500, elm=b"elm")
        before = self.items()
        again = self.lib(DONE, "put", "a.libvx", "OAK", self.write("new", b"new"), "--json").entries()[0]
        self.assertEqual((again["path"], again["id"], again["replaced"]), ("oak", before["oak"]["id"], True))
        self.assertEqual((self.data("oak"), self.data("elm")), (b"new", b"elm"))
        self.assertEqual(list(self.items()), list(before))
        self.whole()

    def test_an_item_has_the_type_of_its_source(self):
        self.made(plain=b"words")
        self.lib(DONE, "put", "a.libvx", "picture", self.write("picture", picture()))
        types = {path: item["type"] for path, item in self.items().items()}
        names = {plugin["plugin"]: plugin["name"] for plugin in self.expect(DONE, ["plugins", "--json"]).entries()}
        self.assertEqual((names[types["picture"]], types["plain"]), ("Images", 0))
        self.lib(DONE, "put", "a.libvx", "picture", self.write("source", b"words"))
        self.assertEqual(self.items()["picture"]["type"], types["picture"], "a type that is not known changes none")

    def test_a_folder_goes_in_whole(self):
        names = ["one", "deep/er/two", "\u00e4 b", "deep/" + "long" * 60]
        for name in names:
            self.write("in/" + name, name.encode())
        os.symlink("../in", self.path("in", "loop"))
        self.made()
        self.lib(DONE, "put", "a.libvx", "/", "in")
        self.assertEqual(set(self.items()), set(names))
        self.lib(DONE, "put", "a.libvx", "below/", "in/deep")
        self.assertEqual(self.data("below/er/two"), b"deep/er/two")
        self.whole()
        self.write(b"in/odd \xff".decode("utf-8", "surrogateescape"))
        self.lib(SOME_FAILED, "put", "a.libvx", "x", "in", sentence="no UTF-8")
        self.assertEqual(len(self.items()), len(names) * 2 + 2)

    def test_rm_mv_name_and_compact(self):
        self.made(oak=os.urandom(100000), elm=b"elm", ash=b"ash")
        self.lib(DONE, "mv", "a.libvx", "elm", "Wood/Elm")
        self.lib(DONE, "mv", "a.libvx", "wood/elm", "WOOD/elm")
        self.lib(CONFLICT, "mv", "a.libvx", "ash", "Wood/ELM", sentence="'Wood/ELM' exists already")
        self.lib(NOT_FOUND, "mv", "a.libvx", "elm", "x", sentence="'elm' not found in 'a.libvx'")
        for words, name in (([], "Shelf"), (["--lang", "de"], "Regal \u00fc")):
            self.assertNotEqual(self.lib(DONE, "name", "a.libvx", *words).out, name + "\n")
            self.lib(DONE, "name", "a.libvx", name, *words)
            self.assertEqual(self.lib(DONE, "name", "a.libvx", *words).out, name + "\n")
        self.assertEqual(self.lib(DONE, "info", "a.libvx", "--json").entries()[0]["names"], {"us": "Shelf", "de": "Regal \u00fc"})
        self.lib(SOME_FAILED, "rm", "a.libvx", "oak", "gone", sentence="'gone' not found")
        self.assertEqual(list(self.items()), ["ash", "WOOD/elm"])
        self.whole()
        before = self.read("a.libvx")
        self.assertGreater(len(before), 100000)
        told = self.lib(DONE, "compact", "a.libvx", "--json", sentence="had %d bytes" % len(before)).entries()[0]
        self.assertEqual((told["before"], told["after"]), (len(before), os.path.getsize(self.path("a.libvx"))))
        self.assertLess(told["after"], 2000)
        self.assertEqual(self.read("a.libvx.bak"), before)
        self.assertEqual((self.whole(), self.data("wood/elm"), self.data("ash")), ([], b"elm", b"ash"))
        self.assertEqual(self.lib(DONE, "name", "a.libvx", "--lang", "de").out, "Regal \u00fc\n")

    def test_get_never_replaces(self):
        self.made(oak=b"oak")
        self.write("there", b"mine")
        self.folder("out")
        self.lib(CONFLICT, "get", "a.libvx", "oak", "there", sentence="'there' exists already")
        self.assertEqual(self.read("there"), b"mine")
        self.lib(DONE, "get", "a.libvx", "oak", "out")
        self.assertEqual(self.read("out/oak"), b"oak")
        self.lib(CONFLICT, "get", "a.libvx", "oak", "out", sentence="'out/oak' exists already")
        self.lib(NOT_FOUND, "get", "a.libvx", "elm", "x", sentence="'elm' not found in 'a.libvx'")
        self.lib(NOT_FOUND, "get", "a.libvx", "oak", "no/such", sentence="'no/such': not found")
        self.write("a.libvx", foreign_library().closed())
        self.lib(NOT_FOUND, "get", "a.libvx", "nothing", "x", sentence="has no data")
        self.write("large.libvx", b"")
        os.remove(self.path("large.libvx"))
        self.lib(DONE, "create", "large.libvx")
        self.lib(DONE, "put", "large.libvx", "zeros", self.write("zeros", bytes(2 * LIMIT)))
        self.lib(REFUSED, "get", "large.libvx", "zeros", "x", sentence="cannot be written", preexec_fn=forbid_large_files)
        self.assertEqual(sorted(os.listdir(self.top)), ["a.libvx", "large.libvx", "out", "source", "there", "zeros"])

    def test_paths_of_items(self):
        self.made()
        source = self.write("source", b"content")
        good = {"/x/": "x", "a b/\u00e4\u4e2d\U0001f600": "a b/\u00e4\u4e2d\U0001f600", "...": "...", "preset://A.libvx/url": "url", "back\\slash": "back\\slash",
                "y" * 3000: "y" * 3000, "-": "-"}
        for path, stored in good.items():
            with self.subTest(path=path[:40]):
                self.lib(DONE, "put", "a.libvx", "--", path, source)
                self.assertIn(stored, self.items())
                self.assertEqual(self.data(path), b"content")
        self.whole()
        before = self.snapshot()
        for path in ("", "/", ".", "..", "a/../b", "./a", "a//b", "a\nb", "\x7f", "preset://a.libvx/"):
            for words in (["put", "a.libvx", "--", path, source], ["get", "a.libvx", path, "got"], ["rm", "a.libvx", path], ["mv", "a.libvx", "x", path],
                          ["mv", "a.libvx", path, "z"]):
                with self.subTest(words=words):
                    self.lib(REFUSED, *words, sentence="cannot be the path of an item")
        self.lib(REFUSED, "put", "a.libvx", b"\xff", source, sentence="no UTF-8")
        self.assertEqual(self.snapshot(), before)

    def test_previews(self):
        self.made(oak=b"oak")
        tiff = self.write("a.tif", picture())
        self.expect(DONE, ["icons", "--sheet", "sheet.png"])
        self.assertEqual([each["number"] for each in self.lib(DONE, "preview put", "a.libvx", "oak", tiff, "sheet.png", "--json").entries()], [1, 2])
        self.lib(DONE, "preview put", "a.libvx", "oak", "9", tiff, "--grade", "4")
        self.lib(DONE, "preview put", "a.libvx", "oak", tiff)
        previews = {each["number"]: each for each in self.lib(DONE, "preview ls", "a.libvx", "oak", "--json").entries()}
        self.assertEqual([(number, each["grade"]) for number, each in previews.items()], [(1, 1), (2, 1), (9, 4), (10, 1)])
        self.assertEqual((previews[1]["width"], previews[1]["height"]), (2, 1))
        self.assertEqual(self.items()["oak"]["previews"], 4)
        self.lib(DONE, "preview get", "a.libvx", "OAK", "9", "got.tif")
        self.assertEqual(self.read("got.tif"), picture())
        self.lib(DONE, "preview get", "a.libvx", "oak", "2", "got")
        self.assertIn(self.read("got")[:2], (b"II", b"MM", b"\xff\xd8"), "pictures of other formats are stored as one of these")
        os.remove(self.path("got"))
        self.assertEqual(self.data("oak"), b"oak")
        self.whole()
        before = self.snapshot()
        for code, words, sentence in ((CONFLICT, ["get", "a.libvx", "oak", "1", "got.tif"], "exists already"),
                                      (NOT_FOUND, ["get", "a.libvx", "oak", "3", "x"], "not found"), (NOT_FOUND, ["ls", "a.libvx", "elm"], "not found"),
                                      (USAGE, ["get", "a.libvx", "oak", "one", "x"], "no number"), (NOT_FOUND, ["put", "a.libvx", "elm", tiff], "not found"),
                                      (REFUSED, ["put", "a.libvx", "oak", "a.libvx"], "is no picture"), (NOT_FOUND, ["put", "a.libvx", "oak", "1", "none"], "not found"),
                                      (USAGE, ["put", "a.libvx", "oak"], "the form is"), (USAGE, [], "needs one of put|get|ls")):
            with self.subTest(words=words):
                self.lib(code, "preview", *words, sentence=sentence)
        self.assertEqual(self.snapshot(), before)

    def test_payloads_beside_the_file_stay_there(self):
        self.folder("data a.libvx")
        self.made(oak=b"oak" * 999)
        self.lib(DONE, "preview put", "a.libvx", "oak", self.write("a.tif", picture()))
        self.assertEqual(sorted(os.listdir(self.path("data a.libvx"))), ["1_1.jpg", "1_data"])
        self.assertEqual(self.data("oak"), b"oak" * 999)
        self.lib(DONE, "rm", "a.libvx", "oak")
        self.assertEqual(os.listdir(self.path("data a.libvx")), [])

    def test_an_interrupt_keeps_what_was_stored(self):
        for number in range(300):
            self.write("in/%03d" % number, os.urandom(100000))
        self.made()
        process = self.start("lib", "put", "a.libvx", "/", "in")
        is_interrupted = self.interrupt_when(process, lambda: os.path.getsize(self.path("a.libvx")) > 1000000)
        result = self.finish(process)
        self.assertTrue(is_interrupted, "the program was too fast to interrupt it")
        self.assertEqual(result.code, CANCELLED, result.err)
        self.whole()
        stored = self.items()
        self.assertIn("cancelled; %d items are stored" % len(stored), result.err)
        self.assertEqual(self.data("000"), self.read("in/000"))
        self.assertTrue(0 < len(stored) < 300)


class Refusals(ChangeCase):
    """Each verb that writes, on files that may not be written: a sentence, a code, and every byte as it was."""

    def verbs(self):
        source = self.write("source.tif", picture())
        return [["put", "{}", "x", source], ["put", "{}", "a", source], ["rm", "{}", "a"], ["mv", "{}", "a", "x"], ["name", "{}", "x"],
                ["preview", "put", "{}", "a", source], ["freeze", "{}"], ["compact", "{}"]]

    def refused(self, code, file, sentence, leave_out=(), **options):
        verbs = [words for words in self.verbs() if words[0] not in leave_out]
        before = self.snapshot()
        for words in verbs:
            with self.subTest(words=words, file=file):
                self.lib(code, *[file if word == "{}" else word for word in words], sentence=sentence, **options)
                self.assertEqual(self.snapshot(), before)

    def test_what_is_no_library(self):
        for name, content in {"empty": b"", "three": b"abc", "text": b"words and words\n" * 9, "zeros": bytes(64)}.items():
            self.write(name, content)
            self.refused(DAMAGED, name, "'%s' is no library file" % name)
            self.lib(CONFLICT, "create", name, sentence="exists already")
        self.refused(REFUSED, self.folder("folder"), "is a folder")
        os.mkfifo(self.path("pipe"))
        self.refused(REFUSED, "pipe", "cannot be read")
        os.remove(self.path("pipe"))
        self.refused(NOT_FOUND, "none.libvx", "'none.libvx': not found")
        for name, code, sentence in (("folder", REFUSED, "is a folder"), ("no/such.libvx", NOT_FOUND, "not found"), ("", USAGE, "must not be empty")):
            self.lib(code, "create", name, sentence=sentence)
        self.assertNotIn(os.fsencode(self.path("none.libvx")), self.snapshot())

    def test_a_frozen_library(self):
        self.write("a.libvx", foreign_library().closed())
        told = self.lib(DONE, "freeze", "a.libvx", "--json", sentence="is frozen with 3 items").entries()[0]
        self.assertFalse(told["wasFrozen"])
        self.write("b.libvx", foreign_library(read_only=1).closed())
        for name in ("a.libvx", "b.libvx"):
            self.refused(REFUSED, name, "is read-only", leave_out=["freeze"])
            before = self.snapshot()
            self.lib(DONE, "freeze", name, sentence="was frozen before")
            self.assertEqual(self.snapshot(), before)
            self.assertEqual(self.data("wood/b", name), b"second" * 99)
            self.assertTrue(self.lib(DONE, "info", name, "--json").entries()[0]["readOnly"])
        self.whole()

    def test_rights(self):
        options = self.as_ordinary_user()
        file = self.write("a.libvx", foreign_library().closed())
        os.chmod(file, 0o444)
        self.refused(REFUSED, "a.libvx", "cannot be opened for writing", **options)
        os.chmod(file, 0)
        self.refused(REFUSED, "a.libvx", "cannot be read", **options)
        os.chmod(file, 0o666)
        os.chmod(self.top, 0o555)
        self.lib(REFUSED, "create", "b.libvx", sentence="cannot be opened for writing", **options)
        os.chmod(self.top, 0o700)

    def test_a_file_that_another_program_has_open(self):
        self.write("a.libvx", foreign_library().closed())
        with open(self.path("a.libvx"), "r+b") as stream:
            fcntl.flock(stream, fcntl.LOCK_EX)
            self.refused(REFUSED, "a.libvx", "is open in another program")
            self.assertEqual(self.data("a"), b"first")

    def test_libraries_of_the_browser_itself(self):
        self.expect(DONE, ["roots", "--profile", self.profile])
        own = os.path.join(self.profile, "library", "browser", "default.libvx")
        self.lib(REFUSED, "create", own, sentence="in the browser itself")
        self.write("other/x.libvx", Library("preset://defaultobject.libvx").closed())
        self.refused(REFUSED, "other/x.libvx", "the same URL as a library of the browser", leave_out=())

    def test_a_full_disk(self):
        large = foreign_library()
        large.data(9, os.urandom(LIMIT - 2000))
        self.write("a.libvx", large.closed())
        self.refused(REFUSED, "a.libvx", "no room on the disk", leave_out=["compact"], preexec_fn=forbid_large_files)
        self.write("full", bytes(LIMIT))
        self.write("b.libvx", foreign_library().closed())
        before = self.snapshot()
        self.lib(REFUSED, "put", "b.libvx", "x", "source.tif", "y", "full", sentence="no room on the disk", preexec_fn=forbid_large_files)
        self.assertEqual(self.snapshot(), before)

    def test_a_damaged_library_is_kept_aside(self):
        content = foreign_library().closed()
        damaged = content[:-HEADER] + b"nonsense that is no chunk at all" + CLOSING
        self.write("a.libvx", damaged)
        self.refused(DAMAGED, "a.libvx", "is damaged", leave_out=["put", "rm", "mv", "name", "preview"])
        self.lib(DONE, "put", "a.libvx", "x", self.write("source", b"new"))
        self.assertEqual(self.read("a.libvx.bak"), damaged)
        self.assertEqual((self.data("a"), self.data("x")), (b"first", b"new"))
        self.whole()
        self.write("a.libvx", damaged)
        self.refused(DAMAGED, "a.libvx", "vx3 lib recover looks at both", leave_out=["freeze", "compact"])
        os.remove(self.path("a.libvx.bak"))
        self.assertEqual(self.data("wood/b"), b"second" * 99)
        self.lib(NOT_FOUND, "rm", "a.libvx", "gone", sentence="not found")
        self.assertEqual(self.read("a.libvx"), damaged)
        self.assertFalse(os.path.exists(self.path("a.libvx.bak")))

    def test_data_that_cannot_be_read(self):
        library = Library()
        library.item(1, "a", (library.data(1, packed(b"x" * 999)[:-3]), 2, 999))
        library.item(2, "b", (library.data(7, b"of another item"), 0, 15))
        self.write("a.libvx", library.closed())
        for path in ("a", "b"):
            self.lib(DAMAGED, "get", "a.libvx", path, "got", sentence="'%s' is damaged" % path)
        self.assertEqual(os.listdir(self.top), ["a.libvx"])

    def test_an_old_library_is_not_written_by_reading(self):
        library = Library(version=2)
        library.item(1, "a", (library.data(0, b"first"), 0, 5))
        self.write("a.libvx", library.closed())
        before = self.snapshot()
        self.assertEqual(self.data("a"), b"first")
        self.lib(DONE, "preview ls", "a.libvx", "a")
        self.lib(DONE, "name", "a.libvx")
        self.assertEqual(self.snapshot(), before)

    def test_sources_and_words(self):
        self.write("a.libvx", foreign_library().closed())
        os.mkfifo(self.path("pipe"))
        before = self.snapshot()
        for code, words, sentence in ((NOT_FOUND, ["put", "a.libvx", "x", "none"], "'none': not found"), (REFUSED, ["put", "a.libvx", "x", "pipe"], "no ordinary file"),
                                      (NOT_FOUND, ["put", "a.libvx", "x", "a.libvx", "y", "none"], "'none': not found"),
                                      (USAGE, ["put", "a.libvx", "x", "a.libvx", "y"], "needs a SOURCE"), (USAGE, ["create", "b.libvx", "x"], "the form is"),
                                      (USAGE, ["name", "a.libvx", "x", "--raw"], "has no option"), (USAGE, ["freeze"], "the form is")):
            with self.subTest(words=words):
                self.lib(code, *words, sentence=sentence)
        self.assertEqual(self.snapshot(), before)
        environment = {**os.environ, "VX3_BROWSER_MODULE": self.path("no.so")}
        self.lib(DONE, "check", "a.libvx", env=environment)
        self.lib(NOT_FOUND, "rm", "a.libvx", "a", sentence="module was not found", env=environment)
        self.assertEqual(self.snapshot(), before)


if __name__ == "__main__":
    unittest.main()
