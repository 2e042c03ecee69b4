"""Console lines: they go to the host's sys.stdout, once, each as one whole line."""

import os
import sys

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, host

TITLE_LINE = 'self["title"] was not found in skin\n'
SAVE_LINE = "[Veltro] writing DVB EPG blacklist failed\n"


class Console(HostTestCase):
    def lines_of(self):
        """Each place that prints: the line, and what to do for it."""
        def settings():
            host.recorder.fail("StaticText", Boom())
            return self.Veltro.Veltro(host.session, PLUGIN_PATH)

        def chooser():
            host.recorder.fail("StaticText", Boom())
            return self.Veltro.DirChoose(host.session, "/")

        def save():
            self.etc(b"")
            screen = self.editor()
            host.recorder.fail("file.write", IOError())
            screen.saveFile()
        return ((TITLE_LINE, settings), (TITLE_LINE, chooser), (SAVE_LINE, save))

    def test_one_write_per_line(self):
        for line, cause in self.lines_of():
            host.recorder.clear()
            cause()
            self.assertEqual(host.recorder.named("console"), [(line,)])

    def test_the_console_is_looked_up_when_it_is_needed(self):
        written = []

        class Other(object):
            def write(self, text):
                written.append(text)
        self.replace(sys, "stdout", Other())
        for line, cause in self.lines_of():
            cause()
        self.assertEqual(written, [TITLE_LINE, TITLE_LINE, SAVE_LINE])
        self.assertEqual([type(text) for text in written], [str] * 3)

    def test_an_error_of_the_console_passes_with_the_units_line(self):
        for error in (IOError("gone"), ValueError("closed"), Boom(), KeyboardInterrupt()):
            for line, cause in self.lines_of():
                host.recorder.clear()
                host.recorder.fail("console", error)
                frames = self.raised_by(error, cause)
                self.assertEqual(host.recorder.named("console"), [(line,)])
                self.assertIn(os.path.basename(frames[0][1]), ("settings_screen.cpp", "dir_choose.cpp", "blacklist.cpp"))

    def test_a_console_that_can_not_be_written_is_an_error(self):
        for line, cause in self.lines_of():
            self.replace(sys, "stdout", object())
            self.error_of(AttributeError, cause)

    def test_a_missing_console_costs_nothing(self):
        console = sys.stdout
        self.addCleanup(setattr, sys, "stdout", console)
        for line, cause in self.lines_of():
            sys.stdout = None
            cause()
            del sys.stdout
            cause()
            sys.stdout = console

    def test_a_failed_save_deletes_the_file_whatever_the_console_does(self):
        for error in (IOError("gone"), Boom(), KeyboardInterrupt()):
            path = self.etc(b"before")
            screen = self.editor()
            host.recorder.fail("file.write", IOError("disk full"))
            host.recorder.fail("console", error)
            self.raised_by(error, screen.greenPressed)
            self.assertEqual(host.recorder.names()[-2:], ["console", "unlink"])
            self.assertFalse(os.path.exists(path))

    def test_the_consoles_error_counts_before_that_of_the_deletion(self):
        error = Boom()
        self.etc(b"before")
        screen = self.editor()
        for event, failure in (("file.write", IOError("disk full")), ("console", error), ("unlink", OSError())):
            host.recorder.fail(event, failure)
        self.raised_by(error, screen.saveFile)
        self.assertEqual(host.recorder.names()[-1], "unlink")

    def test_nothing_else_is_printed(self):
        self.settings(selected=20).keyOk()
        self.Veltro.doEPGAction("nonsense")
        self.editor()
        self.assertEqual(host.recorder.named("console"), [])
