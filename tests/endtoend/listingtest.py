"""roots, ls, stat, tree: what is shown, in which order, and what is said of what is not there."""
import os
import subprocess
import unittest

from case import DONE, NOT_FOUND, PROGRAM, REFUSED, SECONDS, SOME_FAILED, USAGE, Case

HARD_NAMES = [
    b"plain.txt", b"a b#?%:x", b"quote\"and'", b"byte\xffname", b"back\\slash", b"\xc3\xa4\xf0\x9f\x98\x80.png", b"x" * 255,
    b"\xff" * 255, b"A.png", b"a.png", b"line\nend", b"tab\t", b"-", b"--json", b"file:", b"~", b"\xed\xa0\x80", b"trail.", b" ",
]


def argument_of(entry):
    """The URL of an entry as bytes for a command line."""
    return bytes.fromhex(entry["urlBytes"]) if "urlBytes" in entry else entry["url"].encode()


def name_of(entry):
    return bytes.fromhex(entry["nameBytes"]) if "nameBytes" in entry else entry["name"].encode()


class Listing(Case):
    def test_hard_names_come_back_through_their_urls(self):
        for name in HARD_NAMES:
            with open(os.path.join(os.fsencode(self.top), name), "wb") as stream:
                stream.write(name)
        os.mkfifo(self.path("fifo"))
        os.symlink("nowhere", self.path("dead"))
        os.symlink(".", self.path("loop"))
        expected = sorted(HARD_NAMES + [b"fifo", b"dead", b"loop"])
        entries = self.expect(DONE, ["ls", "--json"]).entries()
        self.assertEqual(sorted(map(name_of, entries)), expected)
        again = self.expect(DONE, ["stat", "--json", "--", *map(argument_of, entries)]).entries()
        for first, second in zip(entries, again):
            for field in ("url", "name", "hash", "size", "created", "modified"):
                self.assertEqual(first[field], second[field])
        by_path = self.expect(DONE, ["stat", "--json", "--", *map(name_of, entries)]).entries()
        self.assertEqual(by_path, again)
        sizes = {name_of(entry): entry["size"] for entry in entries}
        for name in HARD_NAMES:
            self.assertEqual(sizes[name], len(name))

    def test_links_pipes_and_loops_are_files_and_end(self):
        os.mkfifo(self.path("fifo"))
        os.symlink("nowhere", self.path("dead"))
        self.folder("a")
        self.folder("b")
        os.symlink("../b", self.path("a", "over"))
        os.symlink("../a", self.path("b", "back"))
        os.symlink(".", self.path("loop"))
        kinds = {entry["name"]: int(entry["attributes"], 16) & 1 for entry in self.expect(DONE, ["ls", "--json"]).entries()}
        self.assertEqual(kinds, {"fifo": 0, "dead": 0, "loop": 0, "a": 1, "b": 1})
        self.expect(DONE, ["stat", "fifo", "dead", "loop"])
        self.assertLess(self.call("tree").out.count("\n"), 30)

    def test_orders(self):
        self.folder("zfolder")
        for number, (name, size) in enumerate([("f10.txt", 3), ("f2.txt", 5), ("F1.png", 4)]):
            os.utime(self.write(name, b"x" * size), (1000000 * (number + 1),) * 2)
        cases = {
            ("name",): ["zfolder", "F1.png", "f10.txt", "f2.txt"],
            ("name", "--reverse"): ["zfolder", "f2.txt", "f10.txt", "F1.png"],
        }
        for words, expected in cases.items():
            result = self.expect(DONE, ["ls", "--json", "--sort", *words])
            self.assertEqual([entry["name"] for entry in result.entries()], expected)
        for order, key in (("size", "size"), ("modified", "modified")):
            entries = [entry for entry in self.expect(DONE, ["ls", "--json", "--sort=" + order]).entries() if entry["name"] != "zfolder"]
            values = [entry[key] for entry in entries]
            self.assertIn(values, (sorted(values), sorted(values, reverse=True)))
            self.assertEqual(len(set(values)), 3)

    def test_columns_show_kind_size_date_and_name(self):
        os.utime(self.write("note.txt", b"12345"), (0, 86400 * 365))
        os.chmod(self.path("note.txt"), 0o444)
        self.folder("shelf")
        self.write("shelf/in.txt")
        lines = self.expect(DONE, ["ls"], env={**os.environ, "TZ": "UTC"}).out.splitlines()
        self.assertEqual(len(lines), 2)
        self.assertRegex(lines[0], r"^d---- +- +\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  .+ shelf$")
        self.assertRegex(lines[1], r"^--r-- +5  1971-01-01 00:00:00  .+ note.txt$")
        self.assertIn("in.txt", self.expect(DONE, ["ls", "shelf", "note.txt"]).out)

    def test_stat_tells_all(self):
        self.write("note.txt", b"12345")
        out = self.expect(DONE, ["stat", "./x/../note.txt"]).out
        for line in ("Name:       note.txt", "URL:        file://localhost" + self.path("note.txt"), "Path:       " + self.path("note.txt"),
                     "Size:       5", "Node type:  2"):
            self.assertIn(line + "\n", out)
        self.assertIn("URL:        file://localhost\n", self.expect(DONE, ["stat", "/"]).out)

    def test_types_are_found_by_bytes_where_asked(self):
        self.write("picture.png", b"\x89PNG\r\n\x1a\n" + b"\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\2\0\0\0\x90wS\xde" + b"\0" * 600)
        self.write("text.png", b"only words\n" * 100)
        quick = {entry["name"]: entry["plugin"] for entry in self.expect(DONE, ["ls", "--json"]).entries()}
        deep = {entry["name"]: entry["plugin"] for entry in self.expect(DONE, ["stat", "--json", "picture.png", "text.png"]).entries()}
        self.assertEqual(quick["text.png"], quick["picture.png"])
        self.assertEqual(deep["picture.png"], quick["picture.png"])
        self.assertNotEqual(deep["text.png"], deep["picture.png"])

    def test_tree_draws_and_stops_where_told(self):
        self.write("a/b/c.txt")
        self.write("z.txt")
        result = self.call("tree")
        self.assertEqual(result.out, "top\n├── a\n│   └── b\n│       └── c.txt\n└── z.txt\n")
        self.assertEqual(result.err, "3 folders, 2 files\n")
        self.assertNotIn("b", self.call("tree", "--depth", "1").out)
        self.assertEqual(self.call("tree", "--depth=0").out, "top\n")
        depths = [(entry["name"], entry["depth"]) for entry in self.call("tree", "--json").entries()]
        self.assertEqual(depths, [("top", 0), ("a", 1), ("b", 2), ("c.txt", 3), ("z.txt", 1)])

    def test_roots_can_be_asked_for_by_their_urls(self):
        roots = self.expect(DONE, ["roots", "--json"]).entries()
        urls = [root["url"] for root in roots]
        self.assertEqual(urls, ["preset:/", "catalog:/", "file:/", "recent:/", "search:/", "favorite:/"])
        self.assertEqual([entry["hash"] for entry in self.expect(DONE, ["stat", "--json", *urls]).entries()], [root["hash"] for root in roots])
        self.assertIn("file://localhost", [entry["url"] for entry in self.expect(DONE, ["ls", "--json", "file:/"]).entries()])
        us, de = (self.expect(DONE, ["roots", "--lang", code]).out for code in ("us", "de"))
        self.assertNotEqual(us, de)

    def test_two_runs_give_the_same_document(self):
        for name in ("b.png", "a/x.txt", "c.wav"):
            self.write(name)
        for words in (["ls", "--json"], ["tree", "--json"], ["plugins", "--json", "--names"], ["prefs", "--json"]):
            self.assertEqual(self.call(*words).out, self.call(*words).out)

    def test_what_is_not_there_is_explained(self):
        self.write("shelf/note.txt")
        self.write("repository/.git/config/x")
        self.write(".hidden")
        cases = [
            ("shelf/nope/deeper", "the deepest folder that exists is '%s'" % self.path("shelf")),
            ("shelf/NOTE.txt", "not found"),
            ("SHELF", "not found"),
            ("shelf/note.txt/x", "is not a folder"),
            ("repository/.git/config", "lies below the hidden folder .git, which the browser does not show"),
            (".hidden", "is hidden"),
            ("odd:/x", "there is no scheme 'odd'"),
            ("preset:/nothing/here", "not found"),
            ("network:/nothing", "not found"),
            ("file://localhost/no/such/place", "not found"),
        ]
        for place, sentence in cases:
            for verb in ("ls", "stat", "tree"):
                with self.subTest(place=place, verb=verb):
                    self.expect(NOT_FOUND, [verb, place], sentence)

    def test_one_missing_place_does_not_stop_the_others(self):
        self.write("note.txt")
        result = self.expect(SOME_FAILED, ["stat", "--json", "nope", "note.txt"], "'nope': not found")
        self.assertEqual([entry["name"] for entry in result.entries()], ["note.txt"])
        self.assertEqual(self.expect(NOT_FOUND, ["ls", "--json", "nope"], "not found").entries(), [])

    def test_an_unreadable_folder_is_told_from_an_empty_one(self):
        user = self.as_ordinary_user()
        self.folder("empty")
        os.chmod(self.folder("locked"), 0)
        self.expect(DONE, ["ls", "empty"], **user)
        self.expect(REFUSED, ["ls", "locked"], "cannot be read", **user)
        self.expect(REFUSED, ["tree", "locked"], "cannot be read", **user)
        self.expect(REFUSED, ["stat", "locked/x"], "cannot be read", **user)
        self.expect(SOME_FAILED, ["tree"], "cannot be read", **user)

    def test_a_tree_that_is_not_drawn_to_its_end_says_so(self):
        top = os.open(self.folder("deep"), os.O_RDONLY)
        for level in range(600):
            os.mkdir("a", dir_fd=top)
            below = os.open("a", os.O_RDONLY, dir_fd=top)
            os.close(top)
            top = below
        os.close(top)
        for options in ([], ["--depth", "550"]):
            self.expect(SOME_FAILED, ["tree", "deep", *options], "the folders below level 512 are not drawn")
        self.expect(DONE, ["tree", "deep", "--depth", "512"], "513 folders")
        self.expect(DONE, ["tree", "deep" + 88 * "/a"], "513 folders")

    def test_a_full_output_is_an_error(self):
        with open("/dev/full", "wb") as full:
            result = subprocess.run([PROGRAM, "roots", "--profile", self.profile], stdout=full, stderr=subprocess.PIPE, timeout=SECONDS)
        self.assertEqual(result.returncode, SOME_FAILED)
        self.assertIn(b"could not be written", result.stderr)

    def test_usage(self):
        cases = [[], ["nope"], ["ls", "--nope"], ["ls", "-x"], ["ls", "-xjson"], ["delete", "-yyes", "x"], ["stat"], ["ls", ""], ["rename", "a"], ["tree", "a", "b"], ["ls", "--sort", "odd"],
                 ["ls", "--sort"], ["tree", "--depth", "-1"], ["mkdir", "--json", "x"], ["ls", "--json=1"], ["prefs", "get"], ["prefs", "odd", "1"], ["\033[31m"],
                 ["ls", "--\033[31m"], ["ls", "--\033[31m=x"], ["ls", "--sort", "\033[31m"], ["tree", "--depth", "\033[31m"]]
        for words in cases:
            with self.subTest(words=words):
                result = subprocess.run([PROGRAM, *words], capture_output=True, timeout=SECONDS, cwd=self.top,
                                        env={**os.environ, "XDG_DATA_HOME": self.profile, "XDG_CONFIG_HOME": self.profile})
                self.assertEqual((result.returncode, result.stdout), (USAGE, b""))
                self.assertTrue(result.stderr.startswith(b"vx3: "), result.stderr)
                self.assertNotIn(b"\033", result.stderr, "an argument cannot speak to the terminal")


if __name__ == "__main__":
    unittest.main()
