"""The ground of the tests: a fresh folder and profile for each test, and calls of the program."""
import json
import os
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["VX3_PROGRAM"]
SECONDS = 30  # no call takes longer unless it hangs
NOBODY = 65534

DONE, SOME_FAILED, USAGE, NOT_FOUND, DAMAGED, REFUSED, CONFLICT, CANCELLED = range(8)


class Result:
    def __init__(self, code, out, err):
        self.code = code
        self.out = out.decode("utf-8", "surrogateescape")
        self.err = err.decode("utf-8", "surrogateescape")

    def entries(self):
        document = json.loads(self.out)
        assert document["version"] == 1
        return document["entries"]


class Case(unittest.TestCase):
    def setUp(self):
        base = tempfile.mkdtemp(prefix="vx3test")
        self.addCleanup(self.sweep, base)
        self.profile = os.path.join(base, "profile")
        self.top = os.path.join(base, "top")
        os.mkdir(self.profile)
        os.mkdir(self.top)

    @staticmethod
    def sweep(base):
        for folder, _, _ in os.walk(base):
            os.chmod(folder, 0o700)
        shutil.rmtree(base)

    def path(self, *parts):
        return os.path.join(self.top, *parts)

    def write(self, name, content=b"content"):
        file = self.path(name)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "wb") as stream:
            stream.write(content)
        return file

    def folder(self, name):
        os.makedirs(self.path(name))
        return self.path(name)

    def start(self, *words, **options):
        verb, *rest = words
        command = [PROGRAM, verb, "--profile", self.profile, *rest]
        return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                cwd=options.pop("cwd", self.top), **options)

    def finish(self, process):
        try:
            out, err = process.communicate(timeout=SECONDS)
        except subprocess.TimeoutExpired:
            process.kill()
            process.communicate()
            self.fail("the program hangs: %s" % process.args)
        return Result(process.returncode, out, err)

    def call(self, *words, **options):
        result = self.finish(self.start(*words, **options))
        self.assertGreaterEqual(result.code, 0, "ended by a signal: %s" % result.err)
        return result

    def expect(self, code, words, sentence=None, **options):
        """Calls the program, which must give this code, and say the sentence if it fails."""
        result = self.call(*words, **options)
        self.assertEqual(result.code, code, "%s: %s%s" % (words, result.out, result.err))
        if sentence:
            self.assertIn(sentence, result.err)
        elif code == DONE:
            self.assertEqual(result.err, "")
        return result

    def snapshot(self):
        """Everything below the test's folder: kinds, names, contents."""
        seen = {}
        for folder, folders, files in os.walk(os.fsencode(self.top)):
            for name in folders + files:
                file = os.path.join(folder, name)
                if os.path.islink(file):
                    seen[file] = ("link", os.readlink(file))
                elif os.path.isfile(file) and os.access(file, os.R_OK):
                    with open(file, "rb") as stream:
                        seen[file] = ("file", stream.read())
                else:
                    seen[file] = ("other", os.stat(file).st_mode)
        return seen

    def as_ordinary_user(self):
        """Options of a call for a user whom permissions bind; leaves the test out if there is none."""
        if os.getuid() != 0:
            return {}
        options = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
        base = os.path.dirname(self.top)
        for folder in (base, self.profile, self.top):
            os.chown(folder, NOBODY, NOBODY)
        try:
            module = os.environ.get("VX3_BROWSER_MODULE", PROGRAM)
            subprocess.run(["test", "-r", module, "-a", "-x", PROGRAM], check=True, timeout=SECONDS, **options)
        except (subprocess.CalledProcessError, PermissionError):
            self.skipTest("an ordinary user cannot reach the program")
        return options

    def interrupt_when(self, process, condition):
        """Sends an interrupt as soon as the condition holds; False if the program was faster."""
        end = time.monotonic() + SECONDS
        while process.poll() is None and time.monotonic() < end:
            if condition():
                process.send_signal(signal.SIGINT)
                return True
            time.sleep(0.001)
        return False
