"""plugin/src/blacklist.cpp: saving the blacklist file, also where that fails. Everything here happens in real files."""

import os
import unittest

from tests.module.blacklist_case import FileTestCase, ONE, TWO
from tests.module.case import Boom, PYTHON2, builtins, host, press

FAILED = ("console", "[Veltro] writing DVB EPG blacklist failed\n")


class Save(FileTestCase):
    def saved(self, *services):
        self.path = self.etc()
        self.screen = self.editor(*services)
        self.assertIsNone(self.screen.saveFile())
        return self.content(self.path)

    def test_lines_in_list_order(self):
        self.assertEqual(self.saved(("Two", TWO), ("One", ONE)), self.line(TWO) + self.line(ONE))

    def test_an_empty_list_writes_an_empty_file(self):
        self.assertEqual(self.saved(), b"")
        self.assertIn(("file.write", ""), host.recorder.calls)

    def test_an_empty_list_empties_a_file(self):
        path = self.etc(b"before")
        screen = self.editor()
        press(screen, "green")
        self.assertEqual(self.content(path), b"")

    def test_the_whole_text_is_written_in_one_call(self):
        self.saved(("One", ONE), ("Two", TWO))
        text = {} if PYTHON2 else {"encoding": "utf-8", "errors": "surrogateescape", "newline": "\n"}
        self.assertCalls(("open", self.path, "w") + ((text,) if text else ()),
                         ("file.write", "#SERVICE %s\n#SERVICE %s\n" % (ONE, TWO)), ("file.close",))

    def test_loaded_rows_first_then_added_ones_without_deleted_ones(self):
        self.references(b"#SERVICE 1:a\n#SERVICE 1:b\n#NAME x\n#SERVICE 2:c\n#SERVICE 1:d")
        self.screen.finishedChannelSelection(["1:e", "4097:f", "5:g"])
        dict.__getitem__(self.screen, "ServiceList")._index = 1
        self.screen.delete()
        self.screen.saveFile()
        self.assertEqual(self.content(self.path), b"#SERVICE 1:a\n#SERVICE 1:d\n#SERVICE 1:e\n#SERVICE 4097:f\n")

    def test_the_members_are_used(self):
        path = self.etc()
        screen = self.editor()
        screen.start_str, screen.filename, screen.servicelist = "#X ", path + ".other", [[0, 0, 0, "reference", 5]]
        screen.saveFile()
        self.assertEqual(self.content(path + ".other"), b"#X reference\n")
        self.assertFalse(os.path.exists(path))

    def test_saving_tells_nobody(self):
        self.saved(("One", ONE))
        self.assertEqual([name for name in host.recorder.names() if "." not in name and name != "open"], [])

    def test_a_row_that_makes_no_line_leaves_the_file(self):
        for row, kind in ((("a", None, 0), IndexError), ((), IndexError), (("a", None, 0, None), TypeError),
                          (("a", None, 0, 5), TypeError), (None, TypeError)):
            path = self.etc(b"before")
            screen = self.editor()
            screen.servicelist[:] = [("a", None, 0, "1:"), row]
            self.error_of(kind, screen.saveFile)
            self.assertEqual(self.content(path), b"before")
            self.assertCalls()

    def test_many_rows(self):
        texts = ["1:0:1:%x:" % number for number in range(5000)]
        self.named_by_text()
        self.assertEqual(self.saved(*[(text, text) for text in texts]), b"".join(self.line(text) for text in texts))


class FailedSave(FileTestCase):
    def setUp(self):
        FileTestCase.setUp(self)
        self.path = self.etc(b"before")
        self.screen = self.editor(("One", ONE))

    def test_an_input_output_error_at_each_step(self):
        class Worse(IOError):
            pass
        for step in ("open", "file.write", "file.close"):
            for error in (IOError("disk full"), IOError(28, "No space left on device"), Worse()):
                host.recorder.clear()
                host.recorder.fail(step, error)
                with open(self.path, "wb") as file:
                    file.write(b"before")
                self.assertIsNone(self.screen.saveFile())
                calls = host.recorder.calls
                self.assertEqual(calls[-2:], [FAILED, ("unlink", self.path)])
                self.assertFalse(os.path.exists(self.path))
                done = [call[0] for call in calls[:-2]]
                # A file that could not be written may be closed before the line is printed.
                allowed = [["open", "file.write", "file.close"][:["open", "file.write", "file.close"].index(step) + 1]]
                if step == "file.write":
                    allowed.append(["open", "file.write", "file.close"])
                self.assertIn(done, allowed)

    def test_the_screen_then_closes_all_the_same(self):
        host.recorder.fail("file.write", IOError())
        press(self.screen, "green")
        self.assertEqual(host.recorder.names()[-3:], ["console", "unlink", "close"])

    def test_any_other_error_passes(self):
        for step in ("open", "file.write", "file.close"):
            for error in (Boom(), ValueError(), KeyboardInterrupt(), UnicodeError()):
                host.recorder.clear()
                host.recorder.fail(step, error)
                self.raised_by(error, self.screen.greenPressed)
                names = host.recorder.names()
                self.assertNotIn("console", names)
                self.assertNotIn("unlink", names)
                self.assertNotIn("close", names)
                self.assertTrue(os.path.exists(self.path))

    if PYTHON2:
        def test_an_operating_system_error_is_another_error_here(self):
            error = OSError(28, "No space left on device")
            host.recorder.fail("open", error)
            self.raised_by(error, self.screen.saveFile)
            self.assertNotIn("console", host.recorder.names())

    def test_a_failing_deletion_passes_and_the_screen_stays_open(self):
        for error in (OSError("gone"), IOError("gone"), Boom()):
            host.recorder.clear()
            host.recorder.fail("file.write", IOError("disk full"))
            host.recorder.fail("unlink", error)
            self.raised_by(error, self.screen.greenPressed)
            self.assertEqual(host.recorder.names()[-2:], ["console", "unlink"])
            self.assertEqual(len(self.screen.servicelist), 1)

    def test_the_path_is_read_again_for_the_deletion(self):
        """Of the member, as every other use of it."""
        host.recorder.fail("open", IOError())
        self.screen.saveFile()
        self.assertEqual(host.recorder.calls[-1], ("unlink", self.screen.filename))

    def test_a_full_disk(self):
        if not os.path.exists("/dev/full"):
            self.skipTest("no /dev/full here")
        os.unlink(self.path)
        os.symlink("/dev/full", self.path)
        self.assertIsNone(self.screen.saveFile())
        self.assertEqual(host.recorder.calls[-2:], [FAILED, ("unlink", self.path)])
        self.assertFalse(os.path.lexists(self.path))
        self.assertTrue(os.path.exists("/dev/full"))

    def test_a_full_disk_with_more_than_a_buffer(self):
        if not os.path.exists("/dev/full"):
            self.skipTest("no /dev/full here")
        os.unlink(self.path)
        os.symlink("/dev/full", self.path)
        self.screen.servicelist[:] = [("x", None, 0, "1:" + "x" * 100000)] * 3
        self.assertIsNone(self.screen.saveFile())
        self.assertFalse(os.path.lexists(self.path))

    def test_a_missing_folder(self):
        self.screen.filename = os.path.join(self.path + ".missing", "blacklist")
        error = self.error_of(OSError, self.screen.greenPressed)
        self.assertEqual(error.errno, 2)
        self.assertEqual(host.recorder.names(), ["open", "console", "unlink"])

    def test_a_directory_in_its_place(self):
        os.unlink(self.path)
        os.mkdir(self.path)
        self.error_of(OSError, self.screen.greenPressed)
        self.assertEqual(host.recorder.names(), ["open", "console", "unlink"])
        self.assertTrue(os.path.isdir(self.path))

    @unittest.skipIf(not hasattr(os, "geteuid") or os.geteuid() == 0, "for this user no file is read-only")
    def test_a_read_only_file(self):
        os.chmod(self.path, 0o400)
        self.assertIsNone(self.screen.saveFile())
        self.assertFalse(os.path.exists(self.path))


class BoundAtStartUp(FileTestCase):
    """`open` and the input/output error are those of the built-ins at the time of loading."""

    def test_open(self):
        path = self.etc()
        screen = self.editor(("One", ONE))

        def other(*arguments, **keywords):
            raise Boom()
        self.replace(builtins, "open", other)
        self.Veltro.open = other
        screen.saveFile()
        self.assertTrue(os.path.exists(path))

    def test_the_error_type(self):
        screen = self.editor(("One", ONE))
        self.etc()
        self.replace(builtins, "IOError", Boom)
        self.Veltro.IOError = Boom
        error = Boom()
        host.recorder.fail("open", error)
        self.raised_by(error, screen.saveFile)

    def test_a_host_with_an_error_type_of_its_own(self):
        kind = builtins.IOError
        builtins.IOError = Boom
        try:
            self.Veltro = host.load()
        finally:
            builtins.IOError = kind
        path = self.etc(b"before")
        screen = self.editor(("One", ONE))
        host.recorder.fail("open", Boom())
        screen.saveFile()
        self.assertFalse(os.path.exists(path))
        error = kind()
        host.recorder.fail("open", error)
        self.raised_by(error, screen.saveFile)
