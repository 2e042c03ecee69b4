"""Console lines: they go to the host's sys.stdout, once, each as one whole line."""

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

    def test_a_console_that_fails_costs_nothing(self):
        for error in (IOError("gone"), ValueError("closed"), Boom()):
            for line, cause in self.lines_of():
                host.recorder.clear()
                host.recorder.fail("console", error)
                cause()
                self.assertEqual(host.recorder.named("console"), [(line,)])

    def test_a_missing_console_costs_nothing(self):
        console = sys.stdout
        self.addCleanup(setattr, sys, "stdout", console)
        for line, cause in self.lines_of():
            sys.stdout = None
            cause()
            sys.stdout = object()
            cause()
            del sys.stdout
            cause()
            sys.stdout = console

    def test_a_failed_save_deletes_the_file_also_without_a_console(self):
        self.lines_of()[2][1]()
        host.recorder.clear()
        host.recorder.fail("console", Boom())
        self.lines_of()[2][1]()
        self.assertEqual(host.recorder.names()[-1], "unlink")

    def test_nothing_else_is_printed(self):
        self.settings(selected=20).keyOk()
        self.Veltro.doEPGAction("nonsense")
        self.editor()
        self.assertEqual(host.recorder.named("console"), [])
