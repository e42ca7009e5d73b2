"""plugins, icons, prefs, selfcheck, help, man page and completions."""
import json
import os
import re
import shutil
import struct
import subprocess
import tempfile
import unittest

from case import DAMAGED, DONE, NOT_FOUND, PROGRAM, REFUSED, SECONDS, Case

VERBS = ["roots", "ls", "stat", "tree", "mkdir", "rename", "move", "copy", "delete", "plugins", "icons", "prefs", "lib", "selfcheck",
         "completion", "help"]


def output_of(*words):
    return subprocess.run([PROGRAM, *words], check=True, capture_output=True, timeout=SECONDS).stdout


class Information(Case):
    def test_plugins_have_one_id_each_and_names_in_both_languages(self):
        us, de = (self.expect(DONE, ["plugins", "--json", "--names", "--lang", code]).entries() for code in ("us", "de"))
        ids = [plugin["plugin"] for plugin in us]
        self.assertEqual(len(set(ids)), len(ids))
        self.assertEqual(ids, [plugin["plugin"] for plugin in de])
        self.assertIn(1018021, ids)
        self.assertTrue(all(plugin["name"] for plugin in us + de))
        self.assertNotEqual([plugin["name"] for plugin in us], [plugin["name"] for plugin in de])
        self.assertTrue(any(plugin["matchesFiles"] for plugin in us) and any(plugin["typeNames"] for plugin in us))
        self.assertEqual(len(self.expect(DONE, ["plugins"]).out.splitlines()), len(ids))

    def test_icons_and_their_sheet(self):
        icons = self.expect(DONE, ["icons", "--json"]).entries()
        self.assertEqual([icon["number"] for icon in icons], list(range(45)))
        self.assertTrue(all(icon["width"] > 0 and icon["height"] > 0 for icon in icons))
        self.assertEqual(len({icon["file"] for icon in icons}), 45)
        self.expect(DONE, ["icons", "--sheet", "sheet.png"])
        with open(self.path("sheet.png"), "rb") as stream:
            head = stream.read(24)
        self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n")
        width, height = struct.unpack(">II", head[16:])
        self.assertGreaterEqual(width * height, 45 * (128 + 64 + 32 + 16) * 2 * 128)
        self.expect(REFUSED, ["icons", "--sheet", "no/such/sheet.png"], "cannot be written")

    def test_settings_survive_a_restart(self):
        settings = self.expect(DONE, ["prefs", "--json"]).entries()
        numbers = [setting for setting in settings if setting["type"] == "number" and setting["highest"] > setting["lowest"]]
        texts = [setting for setting in settings if setting["type"] == "text"]
        self.assertTrue(numbers and texts)
        for setting in numbers[::5]:
            other = int(setting["highest"] if setting["value"] != str(int(setting["highest"])) else setting["lowest"])
            self.expect(DONE, ["prefs", "set", setting["name"], str(other)])
            self.assertEqual(self.expect(DONE, ["prefs", "get", str(setting["key"])]).out, "%d\n" % other)
        word = "file://localhost/tmp/\u00e4 b"
        self.expect(DONE, ["prefs", "set", str(texts[0]["key"]), word])
        self.assertEqual(self.expect(DONE, ["prefs", "get", texts[0]["name"]]).out, word + "\n")
        keys = [setting["key"] for setting in settings]
        names = [setting["name"] for setting in settings]
        self.assertEqual((len(set(keys)), len(set(names))), (len(keys), len(names)))

    def test_wrong_settings_are_refused_and_change_nothing(self):
        before = self.expect(DONE, ["prefs", "--json"]).out
        number = next(setting for setting in json.loads(before)["entries"] if setting["type"] == "number")
        for value in ("many", "", "1e", "99999999999999999999"):
            with self.subTest(value=value):
                self.expect(REFUSED, ["prefs", "set", number["name"], value], "is not a value of " + number["name"])
        for words in (["get", "nosuchsetting"], ["set", "99999", "1"]):
            self.expect(NOT_FOUND, ["prefs", *words], "there is no setting")
        self.assertEqual(self.expect(DONE, ["prefs", "--json"]).out, before)

    def test_selfcheck_finds_nothing_wrong(self):
        lines = self.call("selfcheck").out.splitlines()
        self.assertEqual([line for line in lines if not line.startswith("ok ")], [])
        self.assertGreater(len(lines), 100)

    def test_modules_that_cannot_be_used(self):
        broken = self.write("broken.so", b"\x7fELF and nothing more")
        self.expect(NOT_FOUND, ["roots", "--module", "none.so"], "was not found")
        self.expect(DAMAGED, ["roots", "--module", broken], "cannot be used")
        environment = {**os.environ, "VX3_BROWSER_MODULE": broken}
        self.expect(DAMAGED, ["roots"], "cannot be used", env=environment)

    def test_the_module_is_found_from_any_folder(self):
        environment = {name: value for name, value in os.environ.items() if name != "VX3_BROWSER_MODULE"}
        self.expect(DONE, ["roots"], env=environment, cwd="/")


class Words(unittest.TestCase):
    def test_each_verb_is_in_the_help_the_page_and_the_completions(self):
        general = output_of("--help").decode()
        page = output_of("help", "--man").decode()
        scripts = [output_of("completion", shell).decode() for shell in ("bash", "zsh", "fish")]
        for verb in VERBS:
            self.assertIn("\n  %s " % verb, general)
            self.assertIn(".SS vx3 %s" % verb, page)
            explained = output_of(verb, "--help").decode()
            self.assertIn("Usage: vx3 %s " % verb, explained)
            for script in scripts:
                self.assertRegex(script, r"\b%s\b" % verb)
            for option in re.findall(r"^  --([a-z-]+)", explained, re.MULTILINE):
                self.assertIn(option.replace("-", "\\-"), page)

        self.assertEqual(output_of("help", "ls"), output_of("ls", "--help"))

    def test_the_page_is_sound(self):
        if not shutil.which("mandoc"):
            self.skipTest("no mandoc")
        result = subprocess.run(["mandoc", "-T", "lint"], input=output_of("help", "--man"), capture_output=True, timeout=SECONDS)
        self.assertEqual(result.stdout + result.stderr, b"")

    def test_the_shells_read_the_completions(self):
        for shell in ("bash", "zsh", "fish"):
            if not shutil.which(shell):
                continue
            result = subprocess.run([shell, "-n"] + ([] if shell != "fish" else ["/dev/stdin"]), input=output_of("completion", shell),
                                    capture_output=True, timeout=SECONDS)
            self.assertEqual((result.returncode, result.stderr), (0, b""), shell)

    def test_bash_completes(self):
        if not shutil.which("bash"):
            self.skipTest("no bash")
        cases = {"vx3 sel": "selfcheck", "vx3 ls --so": "--sort", "vx3 ls --sort mod": "modified", "vx3 prefs g": "get",
                 "vx3 ls /us": "/usr", "vx3 lib ch": "check", "vx3 lib info --js": "--json",
                 "vx3 lib --json info /us": "/usr", "vx3 tree --json --de": "--depth", "vx3 help st": "stat",
                 "vx3 --lang de sel": "selfcheck", "vx3 ls --sort = mod": "modified", "vx3 --lang = de sel": "selfcheck",
                 "vx3 --profile /tmp tree --de": "--depth"}
        for line, expected in cases.items():
            script = output_of("completion", "bash").decode() + 'COMP_WORDS=(%s)\nCOMP_CWORD=$((${#COMP_WORDS[@]}-1))\n_vx3\n' % line
            result = subprocess.run(["bash", "-c", script + 'printf "%s\\n" "${COMPREPLY[@]}"'], capture_output=True, timeout=SECONDS)
            self.assertEqual(result.stdout.decode(), expected + "\n", line)

    def test_bash_completes_names_with_spaces(self):
        if not shutil.which("bash"):
            self.skipTest("no bash")
        with tempfile.TemporaryDirectory() as top:
            os.mkdir(os.path.join(top, "two words"))
            for line in ("vx3 ls tw", "vx3 ls --profile tw", "vx3 icons --sheet tw"):
                script = output_of("completion", "bash").decode() + 'COMP_WORDS=(%s)\nCOMP_CWORD=$((${#COMP_WORDS[@]}-1))\n_vx3\n' % line
                result = subprocess.run(["bash", "-c", script + 'printf "%s\n" "${COMPREPLY[@]}"'], capture_output=True, timeout=SECONDS, cwd=top)
                self.assertEqual(result.stdout.decode(), "two words\n", line)


if __name__ == "__main__":
    unittest.main()
