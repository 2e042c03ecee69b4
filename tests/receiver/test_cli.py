"""The command line."""

import os
import re
import shutil
import socket
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

from receiver import cli
from tests.receiver.tv import TvTest, run_cli

ROOT = cli.HERE.parent


class CommandLineTest(TvTest):
    def run_keys(self, keys, *arguments):
        code, out, err = run_cli("--etc", str(self.etc), "--keys", keys, *arguments)
        self.assertEqual(code, 0, err)
        return out

    def test_last_picture(self):
        out = self.run_keys("")
        self.assertIn("ORSA Veltro", out)
        self.assertIn("▶ Multi-EPG bouquet selection", out)
        self.assertEqual(len(out.split("\n")), 37 + 1)

    def test_all_pictures(self):
        out = self.run_keys("down down*2", "--print", "all", "--size", "80x30")
        self.assertEqual(len([line for line in out.split("\n") if line.startswith("> ")]), 2)
        self.assertEqual(out.count("ORSA Veltro"), 3)
        self.assertLess(out.index("▶ Multi-EPG"), out.index("▶ Show icon"))

    def test_time(self):
        self.assertIn("EPG file none", self.run_keys("wait:59m"))
        self.assertNotIn("EPG file none", self.run_keys("wait:61m"))

    def test_console_goes_to_standard_error(self):
        code, out, err = run_cli("--etc", str(self.etc), "--keys", "")
        self.assertIn("[EPGCache]", err)
        self.assertNotIn("[EPGCache]", out)

    def test_looking_around_changes_no_file(self):
        before = {path: path.read_bytes() for path in self.etc.iterdir()}
        self.run_keys("down*15 ok exit down ok exit exit")
        after = {path: path.read_bytes() for path in self.etc.iterdir() if path.name != "settings"}
        self.assertEqual(after, before)

    def test_help(self):
        code, out, err = run_cli("--help")
        self.assertEqual(code, 0)
        for word in ("--etc", "--keys", "channelup", "wait:15s", "F1 F2 F3 F4"):
            self.assertIn(word, out)
        self.assertLessEqual(max(map(len, out.split("\n"))), 100)

    def test_sample_is_copied_once(self):
        with tempfile.TemporaryDirectory() as folder:
            with mock.patch.dict(os.environ, VELTRO_BOXES=folder):
                for number in range(2):
                    with cli.open_box(None) as (etc, root):
                        path = Path(etc)
                        self.assertEqual((path / "settings").exists(), bool(number))
                        (path / "settings").write_text("kept")
                        self.assertTrue((path / "lamedb").exists())
                        self.assertEqual(path, Path(root) / "etc" / "enigma2")


class RefusalTest(unittest.TestCase):
    def refused(self, *arguments):
        code, out, err = run_cli(*arguments)
        self.assertEqual((code, out), (2, ""))
        self.assertEqual(err.count("\n"), 1, err)
        self.assertTrue(err.startswith("script/run: "))
        return err

    def test_missing_folder(self):
        self.assertIn("no such folder: /no/such", self.refused("--etc", "/no/such", "--keys", ""))

    def test_a_file_for_a_folder(self):
        self.assertIn(__file__, self.refused("--etc", __file__, "--keys", ""))

    @unittest.skipIf(os.geteuid() == 0, "root reads everything")
    def test_unreadable_folder(self):
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0)
            self.addCleanup(os.chmod, folder, 0o700)
            self.assertIn("not readable", self.refused("--etc", folder, "--keys", ""))

    def test_unreadable_folder_as_the_system_tells(self):
        with tempfile.TemporaryDirectory() as folder, mock.patch("os.access", return_value=False):
            self.assertIn("not readable", self.refused("--etc", folder, "--keys", ""))

    def test_a_folder_without_lists(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertIn("no channel lists in %s: neither lamedb nor bouquets.tv\n" % folder, self.refused("--etc", folder))
            place = Path(folder) / "usr" / "enigma2"
            shutil.copytree(cli.SAMPLE, place)
            self.assertIn("there are some in %s\n" % place, self.refused("--etc", folder))
            (place / "backup").mkdir()
            self.assertIn("there are some in %s\n" % place, self.refused("--etc", str(place / "backup")))

    def test_options_that_do_nothing_together(self):
        for words in ("--port 1 --keys", "--port 1 --terminal", "--terminal --keys", "--terminal --shot", "--print all --shot",
                      "--size 80x30 --shot"):
            *first, last = words.split()
            with self.subTest(words):
                error = self.refused(*first, *([last, ""] if last != "--terminal" else [last]))
                self.assertRegex(error, "%s .*%s" % (first[0], last))
        self.assertIn("--print needs --keys", self.refused("--print", "last"))
        self.assertIn("--size needs --keys", self.refused("--size", "80x30", "--terminal"))

    def test_keys(self):
        for word in ("coffee", "down*x", "wait:soon", "hold:", "*3", "wait:5"):
            self.assertIn("unknown key: %s" % word, self.refused("--keys", "down " + word))

    def test_options(self):
        self.assertIn("--nothing", self.refused("--nothing"))
        self.assertIn("--print", self.refused("--keys", "", "--print", "some"))
        self.assertIn("COLUMNSxLINES", self.refused("--keys", "", "--size", "9x9"))
        self.assertIn("extra", self.refused("extra"))

    def test_no_terminal(self):
        result = subprocess.run([sys.executable, "-m", "receiver", "--terminal"], cwd=ROOT, stdin=subprocess.DEVNULL,
                                capture_output=True, text=True)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stderr, "script/run: --terminal needs a terminal; --keys works without one\n")


class ProcessTest(TvTest):
    def run_receiver(self, *arguments, **environment):
        return subprocess.run([sys.executable, "-m", "receiver", "--etc", str(self.etc), *arguments], cwd=ROOT, text=True,
                              capture_output=True, env={**os.environ, **environment}, encoding="latin-1")

    def test_locales_that_lack_characters(self):
        for encoding in ("iso-8859-1", "ascii", "cp437"):
            result = self.run_receiver("--keys", "", PYTHONIOENCODING=encoding)
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertIn("Multi-EPG bouquet selection", result.stdout)

    def test_what_is_no_request_leaves_the_terminal_alone(self):
        process = subprocess.Popen([sys.executable, "-m", "receiver", "--etc", str(self.etc), "--port", "0"], cwd=ROOT,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        port = int(re.search(r":(\d+) ", process.stdout.readline())[1])
        for data in (b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + bytes(200), b"\xff\xfe rubbish\r\n\r\n", b"GET / HTTP/9.9\r\n\r\n",
                     b"GET /" + b"x" * 20000 + b" HTTP/1.1\r\n\r\n"):
            with socket.create_connection(("127.0.0.1", port)) as connection:
                connection.sendall(data)
                connection.settimeout(5)
                connection.recv(100)
        process.terminate()
        out, err = process.communicate(timeout=30)
        self.assertEqual((out, err), ("", "[EPGCache] there is no /media/hdd/epg.dat yet\n"))

    def test_the_script_answers_at_once(self):
        script = str(ROOT / "script" / "run")
        for arguments, code in ((["--help"], 0), (["--coffee"], 2), (["--etc", "/no/such"], 2), (["--port", "x"], 2)):
            # Nothing can be installed or built: there is no PATH to do it with.
            result = subprocess.run(["/bin/bash", script, *arguments], capture_output=True, text=True,
                                    env={"PATH": "/nowhere:" + str(self.links("dirname", "readlink"))})
            self.assertEqual(result.returncode, code, result.stderr)
            self.assertIn("usage:" if code == 0 else "script/run: ", result.stdout + result.stderr)

    def test_the_script_says_what_it_does_before_it_takes_long(self):
        """Before anything is installed or built, which can't be done here."""
        result = subprocess.run(["/bin/bash", str(ROOT / "script" / "run")], capture_output=True, text=True,
                                env={"PATH": "/nowhere:" + str(self.links("dirname", "readlink"))})
        self.assertNotEqual(result.returncode, 0)
        self.assertTrue(result.stderr.startswith("script/run: starting the receiver ...\n"), result.stderr)

    def links(self, *programs):
        """A folder with these programs alone."""
        folder = self.root.parent / "bin"
        folder.mkdir(exist_ok=True)
        for program in programs:
            if not (folder / program).exists():
                (folder / program).symlink_to(shutil.which(program))
        return folder

    def test_a_reader_that_leaves_early_gets_no_trace(self):
        process = subprocess.Popen(
            [sys.executable, "-m", "receiver", "--etc", str(self.etc), "--keys", "down*1 " * 200, "--print", "all"],
            cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.stderr.close)
        process.stdout.read(10)
        process.stdout.close()
        self.assertEqual(process.wait(timeout=30), 0)
        self.assertNotIn("Traceback", process.stderr.read())
        self.assertNotIn("Exception", process.stderr.read())

    def test_a_pipe_that_is_closed_before_the_last_flush(self):
        command = "%s -m receiver --etc '%s' --keys '' | true" % (sys.executable, self.etc)
        result = subprocess.run(["bash", "-c", command], cwd=ROOT, capture_output=True, text=True)
        self.assertNotIn("Traceback", result.stderr)
        self.assertNotIn("BrokenPipe", result.stderr)
