"""The verb script: windows without a screen, on the real module and real folders."""
import os
import unittest

import case

PNG = b"\x89PNG\r\n\x1a\n"
SELECT = """
folder pictures
file pictures/a.png pictures/b.png "pictures/with blank.txt"
open pictures
settle
dump list
"""


class ScriptTest(case.Case):
    def script(self, text):
        with open(self.path("play.script"), "w", encoding="utf-8") as file:
            file.write(text)
        return "play.script"

    def play(self, text, *options, code=case.DONE):
        result = self.call("script", *options, self.script(text))
        self.assertEqual(result.code, code, result.out + result.err)
        return result

    def test_dumps_go_to_the_output_and_the_cost_to_the_errors(self):
        result = self.play(SELECT + "say done\n")
        for name in ("a.png", "b.png", "with blank.txt", "done"):
            self.assertIn(name, result.out)
        self.assertRegex(result.err, r"^vx3: longest event: [0-9.]+ ms")
        self.assertIn("calls from wrong threads: 0\n", result.err)

    def test_each_run_is_like_the_first(self):
        text = SELECT + "goto .\nsettle\ndump history\ndump state\n"
        self.assertEqual(self.play(text).out, self.play(text).out)

    def test_the_folder_is_made_and_swept_or_the_users(self):
        self.play("file here.txt\n", "--folder", "kept")
        self.assertTrue(os.path.exists(self.path("kept", "here.txt")))
        os.mkdir(self.path("temporary"))
        result = self.call("script", self.script("file here.txt\n"), env=dict(os.environ, TMPDIR=self.path("temporary")))
        self.assertEqual(result.code, case.DONE, result.err)
        self.assertEqual(os.listdir(self.path("temporary")), [])

    def test_a_picture_at_the_end(self):
        self.play(SELECT, "--shot", "window.png")
        with open(self.path("window.png"), "rb") as file:
            self.assertEqual(file.read(len(PNG)), PNG)
        result = self.play("say nothing is open\n", "--shot", "none.png", code=case.NOT_FOUND)
        self.assertIn("no window is open", result.err)
        self.assertFalse(os.path.exists(self.path("none.png")))
        self.play(SELECT, "--shot", "nowhere/window.png", code=case.SOME_FAILED)

    def test_what_does_not_go_as_the_script_says(self):
        for text, sentence in (
            ("fly away\n", "line 1: 'fly' is no verb"),
            ("open nowhere/at/all\nclick 99999 1 1\n", "line 2: the window has no gadget 99999"),
            ("say before\nclick 1 1 1\nsay behind\n", "line 2: no window is open"),
            ("open\ncommand 4242\n", "line 2: the command 4242 is not there, disabled, or failed"),
        ):
            result = self.play(text, code=case.SOME_FAILED)
            self.assertIn("play.script: " + sentence, result.err)
            self.assertNotIn("behind", result.out)
        self.expect(case.NOT_FOUND, ["script", "missing.script"], "cannot be read")
        self.expect(case.USAGE, ["script"])

    def test_the_help_lists_the_lines_of_scripts(self):
        help = self.call("script", "--help").out
        for verb in ("open [PLACE]", "drag-splitter GADGET", "settle", "dump WHAT"):
            self.assertIn(verb, help)


if __name__ == "__main__":
    unittest.main()
