"""lib info, ls, check, dump and recover: library files that this test writes itself."""
import fcntl
import os
import re
import struct
import subprocess
import unittest

from case import DAMAGED, DONE, NOT_FOUND, PROGRAM, REFUSED, USAGE, Case
from librarywriter import CLOSING, HEADER, Library, chunk, container, int32, int64, nested, packed, path_hash, picture, text, unsigned

DOCUMENT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "docs", "libraryformat.md")
READING = ("info", "ls", "check", "dump")
ITEM_DATA = b"a chair, and again a chair, and again a chair"


def full_library():
    """Three items in all forms, a dead chunk and a payload that nothing names."""
    library = Library(names={"us": "Shelf", "de": "Regal"}, category="Furniture")
    dead = library.item(1, "old")
    library.kill(dead)
    library.data(1, b"replaced")
    raw = library.data(1, ITEM_DATA)
    previews = {number: (2, 1, library.preview(1, picture())) for number in (1, 2)}
    library.item(1, "Chairs/Oak", (raw, 0, len(ITEM_DATA)), previews)
    stored = library.data(2, packed(ITEM_DATA))
    library.item(2, "chairs/pine", (stored, 2, len(ITEM_DATA)))
    library.item(3, "Tables")
    return library


def small_library(items=2):
    library = Library()
    for own in range(1, items + 1):
        library.item(own, "item %d" % own, (library.data(own, b"data%d" % own), 0, 5))
    return library


class LibraryCase(Case):
    def start(self, *words, **options):
        return subprocess.Popen([PROGRAM, *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                cwd=options.pop("cwd", self.top), **options)

    def lib(self, code, verb, *words, sentence=None, **options):
        return self.expect(code, ["lib", verb, *words], sentence, **options)

    def findings(self, content, code=DAMAGED):
        self.write("checked.libvx", content)
        return self.lib(code, "check", "checked.libvx", "--json", sentence="is damaged" if code else None).entries()

    def codes(self, content, code=DAMAGED):
        return [(finding["severity"], finding["code"]) for finding in self.findings(content, code)]

    def info(self, content, code=DONE):
        self.write("told.libvx", content)
        return self.lib(code, "info", "told.libvx", "--json", sentence="is damaged" if code else None).entries()[0]


class Reading(LibraryCase):
    def test_info_tells_what_the_file_is(self):
        library = full_library()
        told = self.info(library.closed())
        self.assertEqual((told["url"], told["names"], told["category"]), ("preset://shelf.libvx", {"us": "Shelf", "de": "Regal"}, "Furniture"))
        self.assertEqual((told["items"], told["fileVersion"], told["readOnly"]), (3, 7, False))
        self.assertEqual(told["chunks"], {"dbfh": 1, "difm": 1, "cati": 1, "ivld": 1, "bina": 3, "imag": 2, "ditm": 3, "dbfe": 1})
        self.assertEqual((told["unusedPayloads"], told["unusedBytes"]), (1, HEADER + len(b"replaced")))
        self.assertEqual(told["liveBytes"] + told["deadBytes"], told["size"])
        self.assertEqual((told["rewriteDue"], told["closed"], told["damaged"]), (False, True, False))
        self.assertIn("Furniture", self.lib(DONE, "info", "told.libvx").out)

    def test_a_rewrite_is_due_when_more_is_dead_than_alive(self):
        library = small_library(1)
        live = len(library.closed())
        for extra, due in ((0, False), (1, True)):
            dead = chunk(b"ivld", 9, bytes(live - HEADER + extra))
            told = self.info(library.bytes + dead + CLOSING)
            self.assertEqual((told["deadBytes"], told["rewriteDue"]), (live + extra, due))

    def test_ls_lists_items_by_place_and_order(self):
        self.write("a.libvx", full_library().closed())
        cases = [([], ["Chairs/Oak", "chairs/pine", "Tables"]), (["chairs"], ["Chairs/Oak", "chairs/pine"]),
                 (["/CHAIRS/OAK/"], ["Chairs/Oak"]), (["preset://shelf.libvx/tables"], ["Tables"]), (["--reverse"], ["Tables", "chairs/pine", "Chairs/Oak"]),
                 (["--sort", "size"], ["Tables", "Chairs/Oak", "chairs/pine"])]
        for words, expected in cases:
            with self.subTest(words=words):
                self.assertEqual([item["path"] for item in self.lib(DONE, "ls", "a.libvx", "--json", *words).entries()], expected)
        oak = self.lib(DONE, "ls", "a.libvx", "chairs/oak", "--json").entries()[0]
        self.assertEqual((oak["id"], oak["size"], oak["previews"], oak["type"]), (1, len(ITEM_DATA), 2, 1001026))
        self.assertEqual((oak["created"], oak["modified"]), ("2026-01-02T03:04:05", "2026-11-23T07:08:09"))
        self.assertEqual(len(self.lib(DONE, "ls", "a.libvx").out.splitlines()), 3)
        for place in ("chair", "tables/x"):
            self.lib(NOT_FOUND, "ls", "a.libvx", place, sentence="not found in")

    def test_dump_tells_chunks_and_what_is_in_them(self):
        content = full_library().closed()
        self.write("a.libvx", content)
        chunks = self.lib(DONE, "dump", "--raw", "--json", "a.libvx").entries()
        self.assertEqual(sum(HEADER + int(each["length"]) for each in chunks), len(content))
        for each in chunks:
            self.assertEqual(content[each["offset"]:each["offset"] + 4].decode(), each["tag"])
            self.assertNotIn("values", each)
        states = {(each["tag"], each["state"]) for each in chunks}
        self.assertTrue({("ivld", "dead"), ("bina", "unused"), ("bina", "used"), ("ditm", "used")} <= states)
        self.assertEqual(len(self.lib(DONE, "dump", "--raw", "a.libvx").out.splitlines()), len(chunks))
        values = {value["name"]: value["value"] for each in self.lib(DONE, "dump", "--json", "a.libvx").entries()
                  if each["id"] in (0, 1) for value in each["values"]}
        url = "preset://shelf.libvx"
        self.assertEqual((values["url"], values["names.de"], values["path.text"]), (url, "Regal", url + "/Chairs/Oak"))
        self.assertEqual((values["changed"], values["previews.2.width"]), ("2026-11-23T07:08:09", "2"))
        self.assertEqual(values["path.hash"], "0x%08x" % path_hash(url + "/Chairs/Oak"))
        self.assertIn("previews.1.offset", self.lib(DONE, "dump", "a.libvx").out)

    def test_a_file_without_its_closing_chunk_is_no_damaged_one(self):
        library = small_library()
        for content in (library.bytes, library.bytes + CLOSING[:7]):
            self.assertEqual(self.codes(content, DONE), [("note", "open-end")])
        self.assertEqual(self.codes(library.closed() + b"tail", DONE), [("note", "tail")])

    def test_a_locked_file_is_read(self):
        file = self.write("a.libvx", full_library().closed())
        with open(file, "r+b") as stream:
            fcntl.flock(stream, fcntl.LOCK_EX)
            fcntl.lockf(stream, fcntl.LOCK_EX)
            for verb in READING:
                self.lib(DONE, verb, file)

    def test_what_is_no_library(self):
        cases = {"empty": (b"", "is empty"), "three": (b"abc", "is no library file"), "text": (b"words and words and words\n" * 9, "is no library file"),
                 "zeros": (bytes(64), "is no library file")}
        for name, (content, sentence) in cases.items():
            file = self.write(name, content)
            for verb in READING:
                with self.subTest(name=name, verb=verb):
                    self.lib(DAMAGED, verb, file, sentence="is damaged" if verb == "check" else sentence)
        self.assertEqual(self.info(chunk(b"dbfh", 0) + CLOSING, DAMAGED)["items"], 0)
        os.mkfifo(self.path("pipe"))
        for verb in READING + ("recover",):
            self.lib(REFUSED, verb, self.folder(verb), sentence="is a folder")
            self.lib(REFUSED, verb, "pipe", sentence="no ordinary file")
            self.lib(NOT_FOUND, verb, "none.libvx", sentence="not found")
            self.lib(USAGE, verb, "", sentence="must not be empty")
        for words in (["lib"], ["lib", "info"], ["lib", "nothing", "a"], ["lib", "info", "a", "--raw"], ["lib", "check", "a", "b"]):
            self.expect(USAGE, words, "vx3 lib --help")

    def test_an_unreadable_file_is_refused(self):
        options = self.as_ordinary_user()
        file = self.write("a.libvx", small_library().closed())
        os.chmod(file, 0)
        for verb in READING + ("recover",):
            self.lib(REFUSED, verb, file, sentence="cannot be read", **options)

    def test_the_example_of_the_document(self):
        with open(DOCUMENT, encoding="utf-8") as stream:
            block = re.search(r"```hex library\n(.*?)```", stream.read(), re.DOTALL).group(1)
        example = bytes.fromhex("".join(line[:54] for line in block.splitlines()))
        library = Library("preset://a.libvx", names={"us": "A"})
        data = library.data(1, b"hello")
        library.append(b"ditm", 1, container({6: nested({0: text("preset://a.libvx/x"), 2: unsigned(path_hash("preset://a.libvx/x"))}), 1: int32(1001026),
                                               14: nested({0: int64(data), 1: int32(0), 2: int64(5)})}, 1))
        self.assertEqual(example, library.closed())
        self.assertEqual(self.codes(example, DONE), [])


class Damage(LibraryCase):
    def test_every_prefix_ends_well(self):
        library = Library("preset://s.libvx")
        stored = library.data(1, packed(ITEM_DATA))
        library.item(1, "x", (stored, 2, len(ITEM_DATA)), {1: (2, 1, library.preview(1, picture()))})
        content = library.closed()
        ends = [end for end in range(HEADER, len(content)) if content[end:end + 4] in (b"bina", b"imag", b"ditm", b"dbfe")]
        for length in range(len(content)):
            self.write("cut.libvx", content[:length])
            # Damaged but where a chunk ends, or the header of the next one is not there yet.
            is_sound = any(end <= length < end + HEADER for end in ends)
            others = READING[length // 3 % len(READING):][:length % 3 == 0]
            for verb in ("check", *others):
                result = self.call("lib", verb, "cut.libvx", "--json")
                self.assertEqual(result.code, DONE if is_sound else DAMAGED, (length, verb, result.out, result.err))
                if result.out:
                    result.entries()

    def test_every_header_field_through_hostile_values(self):
        content = full_library().closed()
        self.write("a.libvx", content)
        offsets = [each["offset"] for each in self.lib(DONE, "dump", "--raw", "--json", "a.libvx").entries()]
        lengths = [0, 1, 15, len(content), 2**31 - 1, 2**31, 2**32, 2**40, 2**63 - 1, 2**63, 2**64 - 16, 2**64 - 1]
        fields = [(0, struct.pack(">4s", tag)) for tag in (b"\0\0\0\0", b"dbfh", b"dbas", b"ditm", b"difm", b"cati", b"bina", b"ivld", b"dbfe", b"what")]
        fields += [(4, struct.pack(">i", number)) for number in (0, -1, -2, 2**31 - 1, -2**31)]
        fields += [(8, struct.pack(">Q", length)) for length in lengths]
        for index, offset in enumerate(offsets):
            for at, field in fields:
                place = offset + at
                self.write("hostile.libvx", content[:place] + field + content[place + len(field):])
                result = self.call("lib", READING[(index + len(field) + field[-1]) % len(READING)], "hostile.libvx", "--json")
                self.assertIn(result.code, (DONE, DAMAGED), (offset, at, field, result.err))

    def test_each_kind_of_damage_is_told_by_its_name(self):
        def with_item(own=1, header=None, data=None, previews=None, path="x", more=None, stored=ITEM_DATA, tag=b"bina", of=None):
            library = Library()
            offset = library.append(tag, own if of is None else of, stored)
            library.item(own, path, data and (offset, *data), previews and {1: (2, 1, offset)}, header, more)
            return library.closed()

        size = len(ITEM_DATA)
        good = small_library(1)
        cases = {
            "info-missing": chunk(b"dbfh", 0) + CLOSING,
            "info-twice": good.bytes + chunk(b"difm", 0, container({0: int32(7)})) + CLOSING,
            "category-twice": good.bytes + 2 * chunk(b"cati", 0, container({1: text("a")})) + CLOSING,
            "item-twice": good.bytes + chunk(b"ditm", 1, container({6: nested({0: text(""), 2: int32(0)})}, 1)) + CLOSING,
            "item-id": good.bytes + chunk(b"ditm", -1),
            "item-id-differs": with_item(own=5, header=6, of=6),
            "container-unreadable": good.bytes + chunk(b"ditm", 2, b"nonsense") + CLOSING,
            "container-longer": good.bytes + chunk(b"ditm", 2, container({6: nested({0: text("x"), 2: int32(0)})}, 2) + b"more") + CLOSING,
            "payload-cut": good.bytes + chunk(b"bina", 2, b"", 99),
            "no-tag": good.bytes + bytes(16),
            "path-missing": with_item(path=None),
            "path-hash": with_item(more={6: nested({0: text("preset://shelf.libvx/x"), 2: int32(5)})}),
            "payload-outside": with_item(more={14: nested({0: int64(2**40), 1: int32(0), 2: int64(1)})}),
            "payload-dead": with_item(data=(0, size), tag=b"ivld"),
            "payload-kind": with_item(data=(0, size), tag=b"imag"),
            "payload-id": with_item(data=(0, size), of=2),
            "data-size": with_item(data=(0, size + 1)),
            "data-mode": with_item(data=(3, size)),
            "data-packed": with_item(data=(2, size), stored=packed(ITEM_DATA)[:-1]),
            "preview-picture": with_item(previews=True, tag=b"imag", stored=b"no picture"),
            "preview-missing": with_item(more={5: nested({1: nested({1: int32(2)}, 1)})}),
            "old-record": good.bytes + chunk(b"dbas", 0, struct.pack(">i", 99)) + CLOSING,
        }
        for code, content in cases.items():
            with self.subTest(code=code):
                self.assertIn(("damage", code), self.codes(content))

    def test_a_chunk_is_passed_over_up_to_a_length(self):
        head = small_library(1).bytes
        for length, code in ((2**31 - 1, DONE), (2**31, DAMAGED)):
            file = self.write("long.libvx", head + chunk(b"what", 0, b"", length))
            os.truncate(file, len(head) + HEADER + length)
            with open(file, "ab") as stream:
                stream.write(CLOSING)
            sentence = "is damaged" if code else None
            findings = self.lib(code, "check", file, "--json", sentence=sentence).entries()
            self.assertEqual("payload-long" in [finding["code"] for finding in findings], code == DAMAGED)
            os.remove(file)

    def test_packed_data_of_another_size_is_told(self):
        for stored in (packed(ITEM_DATA) + b"x", struct.pack(">I", 9) + packed(ITEM_DATA)[4:], b"abc", packed(bytes(10**6))):
            library = Library()
            library.item(1, "x", (library.data(1, stored), 2, len(ITEM_DATA)))
            codes = self.codes(library.closed())
            self.assertTrue({("damage", "data-packed"), ("damage", "data-size")} & set(codes), codes)

    def test_payloads_belong_to_one_item_and_are_chunks(self):
        library = Library()
        inner = chunk(b"bina", 1, b"inner")
        outer = library.data(1, b"....." + inner)
        library.item(1, "a", (outer + HEADER + 5, 0, 5))
        self.assertEqual(self.codes(library.closed()), [("damage", "payload-inside"), ("note", "unused")])
        library = Library()
        image = library.preview(1, picture())
        library.item(1, "a", None, {1: (2, 1, image), 2: (2, 1, image)})
        self.assertEqual(self.codes(library.closed()), [("damage", "payload-shared")])

    def test_notes_are_no_damage(self):
        library = full_library()
        library.item(4, "tables")
        library.append(b"what", 0, b"something new")
        codes = self.codes(library.closed(), DONE)
        self.assertEqual(sorted(codes), [("note", "path-twice"), ("note", "unknown-chunk"), ("note", "unused")])

    def test_old_files_are_read(self):
        library = Library(version=2)
        image = library.preview(0, picture())
        data = library.data(0, bytes(4) + packed(ITEM_DATA)[4:])
        old = {6: nested({0: text("preset://shelf.libvx/old"), 1: nested({7: nested({1: int32(2), 2: int32(1), 5: int64(image)}, 7)})}),
               14: nested({0: int64(data), 1: int32(1), 2: int64(len(ITEM_DATA))})}
        library.append(b"ditm", 0, container(old, 5))
        library.append(b"ditm", 0, container(old, 0))
        record = container({6: nested({0: text("preset://shelf.libvx/older")})}, 6)
        library.append(b"dbas", 0, struct.pack(">i", len(record)) + record)
        codes = self.codes(library.closed(), DONE)
        self.assertEqual({code for _, code in codes}, {"version", "old-items", "item-skipped"})
        items = self.lib(DONE, "ls", "checked.libvx", "--json").entries()
        self.assertEqual([(item["id"], item["previews"], item["path"]) for item in items], [(5, 1, "old"), (6, 0, "older")])

    def test_nothing_is_written_by_reading(self):
        file = self.write("a.libvx", full_library().closed()[:-20])
        os.chmod(file, 0o444)
        before = self.snapshot(), os.stat(file).st_mtime_ns
        for verb in READING + ("recover",):
            self.call("lib", verb, file)
        self.assertEqual((self.snapshot(), os.stat(file).st_mtime_ns), before)

    def test_many_findings_are_counted_and_not_kept(self):
        library = Library()
        for own in range(1, 1200):
            library.item(own, None)
        self.write("a.libvx", library.closed())
        result = self.lib(DAMAGED, "check", "a.libvx", "--json", sentence="199 more findings")
        self.assertEqual(len(result.entries()), 1000)


class Recovery(LibraryCase):
    """The file, .bak and .new in all states, and which of them is left in place."""

    def put(self, **contents):
        for moment, (suffix, content) in enumerate(sorted(contents.items(), key=lambda each: each[0] == "new")):
            if content is not None:
                file = self.write("a.libvx" + ("" if suffix == "file" else "." + suffix), content)
                os.utime(file, (1000000 + moment, 1000000 + moment))

    def clear(self):
        for name in os.listdir(self.top):
            os.remove(self.path(name))

    def best(self, result):
        return [entry["file"] for entry in result.entries() if entry["best"]]

    def test_the_best_is_offered_and_put_in_place(self):
        two, three = small_library(2).closed(), small_library(3).closed()
        broken_payload = three.replace(b"data3", b"dataX", 1)[:-HEADER] + chunk(b"ditm", 9, b"broken")
        cut = two[:len(two) - HEADER - 5]
        open_end = small_library(1).bytes
        new = chunk(b"dbfh", 0) + CLOSING
        cases = [
            # file, bak, new, which is best, code without --yes
            (two, three, three, "", DONE),
            (two, cut, None, "", DONE),
            (None, two, None, ".bak", REFUSED),
            (None, None, two, ".new", REFUSED),
            (None, two, two, ".new", REFUSED),
            (None, two, cut, ".bak", REFUSED),
            (None, None, None, None, NOT_FOUND),
            (None, b"text", None, None, NOT_FOUND),
            (cut, None, None, "", DAMAGED),
            (cut, two, None, ".bak", REFUSED),
            (cut, b"text", new, "", DAMAGED),
            (broken_payload, two, None, "", DAMAGED),
            (b"text", two, None, ".bak", REFUSED),
            (b"", b"", two, ".new", REFUSED),
            (b"", None, None, None, DAMAGED),
            (new, two, None, ".bak", REFUSED),
            (open_end, None, None, "", DONE),
            (open_end, two, None, ".bak", REFUSED),
            (open_end, open_end + CLOSING, None, "", DONE),
        ]
        for file, bak, fresh, best, code in cases:
            self.clear()
            with self.subTest(file=file and file[-40:], bak=bak and bak[-40:], new=fresh and fresh[-40:]):
                self.put(file=file, bak=bak, new=fresh)
                before = self.snapshot()
                sentence = "has 1 more item" if file == two and bak == three else None if code == DONE else "vx3:"
                result = self.lib(code, "recover", "a.libvx", "--json", sentence=sentence)
                self.assertEqual(self.best(result), [] if best is None else ["a.libvx" + best])
                self.assertEqual(self.snapshot(), before)
                result = self.lib(DONE if best else code, "recover", "a.libvx", "--yes", sentence="is recovered from" if best else sentence)
                if not best:
                    self.assertEqual(self.snapshot(), before)
                    continue
                expected = {name: content for name, content in before.items()}
                main = os.fsencode(self.path("a.libvx"))
                if file is not None:
                    expected[main + b".damaged"] = expected[main]
                expected[main] = before[main + best.encode()]
                self.assertEqual(self.snapshot(), expected)

    def test_a_named_source_is_taken(self):
        two, three = small_library(2).closed(), small_library(3).closed()
        self.put(file=two, bak=three)
        words = ["a.libvx", "a.libvx.bak"]
        self.assertEqual(self.best(self.lib(REFUSED, "recover", *words, "--json", sentence="can take the place")), words[1:])
        self.lib(DONE, "recover", *words, "--yes", sentence="is recovered from")
        with open(self.path("a.libvx"), "rb") as stream:
            self.assertEqual(stream.read(), three)
        before = self.snapshot()
        self.lib(NOT_FOUND, "recover", "a.libvx", "none", "--yes", sentence="'none': not found")
        self.lib(DAMAGED, "recover", "a.libvx", self.write("text", b"text"), "--yes", sentence="is no library file")
        os.remove(self.path("text"))
        self.assertEqual(self.snapshot(), before)

    def test_what_was_kept_before_stays(self):
        two = small_library(2).closed()
        for number, kept in enumerate(("a.libvx.damaged", "a.libvx.damaged.2")):
            self.put(file=b"wrong %d" % number, bak=two)
            self.lib(DONE, "recover", "a.libvx", "--yes", sentence=kept)
        for name, content in (("a.libvx.damaged", b"wrong 0"), ("a.libvx.damaged.2", b"wrong 1"), ("a.libvx", two), ("a.libvx.bak", two)):
            with open(self.path(name), "rb") as stream:
                self.assertEqual(stream.read(), content)
        self.assertEqual(len(os.listdir(self.top)), 4)

    def test_a_file_in_use_is_left_alone(self):
        self.put(file=b"wrong", bak=small_library().closed())
        before = self.snapshot()
        with open(self.path("a.libvx"), "r+b") as stream:
            fcntl.flock(stream, fcntl.LOCK_EX)
            self.lib(REFUSED, "recover", "a.libvx", "--yes", sentence="is in use")
        self.assertEqual(self.snapshot(), before)

    def test_a_folder_that_cannot_be_written(self):
        options = self.as_ordinary_user()
        self.put(file=b"wrong", bak=small_library().closed())
        for name in os.listdir(self.top):
            os.chmod(self.path(name), 0o644)
        os.chmod(self.top, 0o555)
        before = self.snapshot()
        self.lib(REFUSED, "recover", "a.libvx", "--yes", sentence="cannot be made", **options)
        self.assertEqual(self.snapshot(), before)


if __name__ == "__main__":
    unittest.main()
