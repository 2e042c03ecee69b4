"""plugin/src/blacklist.cpp: loading the blacklist file, and that its bytes survive. All of it happens in real files."""

import os

from tests.module.blacklist_case import FileTestCase, ONE, TWO
from tests.module.case import Boom, PLUGIN_PATH, PYTHON2, host, press

ALL_BYTES = bytes(bytearray(code for code in range(256) if code != 0x0a))


class Load(FileTestCase):
    def load(self, data):
        self.path = self.etc(data)
        screen = self.editor()
        self.assertIsNone(screen.loadFile())
        return screen

    def test_no_file(self):
        screen = self.load(None)
        self.assertEqual(screen.servicelist, [])
        self.assertCalls(("path.exists", self.path))

    def test_a_file(self):
        self.named_by_text()
        self.assertEqual(self.references(self.line(ONE) + self.line(TWO)), [ONE, TWO])

    def test_the_widget_is_redrawn_last_with_the_screens_list(self):
        self.path = self.etc(self.line(ONE))
        screen = self.Veltro.Edit_DVB_EPG_Blacklist(host.session, PLUGIN_PATH)
        redraws = [call for call in host.recorder.calls if call[0] == "ServiceList.l.setList"]
        self.assertEqual(len(redraws), 2, "once for the added services and once for the file")
        self.assertIs(redraws[-1][1], screen.servicelist)
        self.assertEqual(host.recorder.names()[-1], "ServiceList.l.setList")

    def test_items_are_handed_over_as_one_list(self):
        self.path = self.etc(self.line(ONE) + b"other\n" + self.line(TWO))
        screen, given = self.editor(), []
        screen.finishedChannelSelection = lambda *arguments: given.append(arguments)
        screen.loadFile()
        self.assertEqual(given, [([ONE, TWO],)])

    def test_no_usable_line_only_redraws(self):
        for data in (b"", b"\n\n", b"#NAME Favourites\n\nother\n", b"#SERVICE", b"#SERVICE\n", b" #SERVICE 1:0:\n",
                     b"#service 1:0:\n", b"#SERVICE\t1:0:\n", b"#SERVICE: 1:0:\n", b"\xef\xbb\xbf#SERVICE 1:0:\n",
                     b"\xff\n"):
            self.path = self.etc(data)
            screen = self.editor()
            screen.finishedChannelSelection = lambda *arguments: self.fail("called with %r" % (arguments,))
            screen.loadFile()
            self.assertEqual([call for call in self.calls if "setList" in call[0]], [("ServiceList.l.setList", [])])

    def test_a_prefix_alone_is_an_item_and_then_dropped(self):
        self.path = self.etc(b"#SERVICE \n#SERVICE    \t \n")
        screen, given = self.editor(), []
        screen.finishedChannelSelection = lambda *arguments: given.append(arguments)
        screen.loadFile()
        self.assertEqual(given, [(["", ""],)])
        self.assertEqual(self.editor().servicelist, [])

    def test_white_space_at_both_ends_is_stripped(self):
        for data in (b"#SERVICE 1:0:\r\n", b"#SERVICE 1:0:\r\r\n", b"#SERVICE \t 1:0: \t\n", b"#SERVICE 1:0:",
                     b"#SERVICE 1:0:\r", b"#SERVICE   1:0:   "):
            self.assertEqual(self.references(data), ["1:0:"], data)

    def test_only_line_feeds_end_a_line(self):
        for inside in (b"\r", b"\x0b", b"\x0c", b"\x1c", b"\x1d", b"\x1e", b"\x85", b"\xc2\x85", b"\xe2\x80\xa8",
                       b"\x00"):
            data = b"#SERVICE 1:0:a" + inside + b"b\n"
            texts = self.references(data)
            self.assertEqual(len(texts), 1, repr(inside))
            self.screen.saveFile()
            self.assertEqual(self.content(self.path), data)

    def test_only_blank_tab_and_line_ends_are_white_space(self):
        for edge in (b"\x0b", b"\x0c", b"\x1c", b"\x85", b"\xa0", b"\xc2\xa0", b"\xc2\x85", b"\xe2\x80\xa8",
                     b"\xe3\x80\x80", b"\x00"):
            data = b"#SERVICE 1:0:" + edge + b"\n"
            self.references(data)
            self.screen.saveFile()
            self.assertEqual(self.content(self.path), data, repr(edge))
            # At the front such a character makes another service type of it.
            self.assertEqual(self.references(b"#SERVICE " + edge + b"1:0:\n"), [], repr(edge))

    def test_every_occurrence_of_the_prefix_is_removed(self):
        for data, text in ((b"#SERVICE #SERVICE 1:0:\n", "1:0:"), (b"#SERVICE 1:0:#SERVICE 2:\n", "1:0:2:"),
                           (b"#SERVICE 1:0:#SERVICE \n", "1:0:"), (b"#SERVICE 1:#SERVICE\n", "1:#SERVICE"),
                           (b"#SERVICE #SERVICE #SERVICE 1:\n", "1:"),
                           (b"#SERVICE 1:#SER#SERVICE VICE 2\n", "1:#SERVICE 2")):
            self.assertEqual(self.references(data), [text], data)

    def test_types(self):
        data = b"".join(b"#SERVICE " + text + b"\n"
                        for text in (b"1:a", b"2:b", b"4097:c", b"1 :d", b"10:e", b"1", b"4097"))
        self.assertEqual(self.references(data), ["1:a", "4097:c", "1", "4097"])

    def test_of_equal_names_the_first_stays(self):
        for text in (ONE, TWO):
            host.service_names[text] = "same"
        self.assertEqual(self.references(self.line(ONE) + self.line(TWO), named=False), [ONE])
        self.screen.saveFile()
        self.assertEqual(self.content(self.path), self.line(ONE))

    def test_of_unknown_names_the_first_stays(self):
        self.assertEqual(self.references(self.line(ONE) + self.line(TWO), named=False), [ONE])

    def test_the_prefix_and_the_path_are_the_members(self):
        path = self.etc(b"#X 1:a\n#SERVICE 1:b\n")
        os.rename(path, path + ".other")
        screen = self.editor()
        screen.start_str, screen.filename = "#X ", path + ".other"
        screen.loadFile()
        self.assertEqual([row[3] for row in screen.servicelist], ["1:a"])

    def test_a_large_file(self):
        texts = ["1:0:1:%x:" % number for number in range(5000)]
        self.assertEqual(self.references(b"".join(self.line(text) for text in texts)), texts)

    def test_a_long_line(self):
        text = "1:" + "x" * 300000
        self.assertEqual(self.references(self.line(text)), [text])

    def test_a_directory_in_its_place_ends_the_construction(self):
        os.mkdir(self.etc())
        self.error_of(IOError, self.editor)

    def test_the_file_is_closed(self):
        self.references(self.line(ONE))
        self.path = self.etc(self.line(ONE))
        self.Veltro.Edit_DVB_EPG_Blacklist(host.session, PLUGIN_PATH)
        names = host.recorder.names()
        self.assertEqual(names.count("file.close"), 1)
        self.assertLess(names.index("file.close"), names.index("ServiceReference"))

    def test_the_file_is_closed_when_reading_fails(self):
        """Whichever step of the reading it is."""
        self.path = self.etc(self.line(ONE) + self.line(TWO))
        self.editor().loadFile()
        events = [event[0] for event in host.recorder.events]
        steps = range(events.index("open") + 1, events.index("file.close"))
        self.assertTrue(steps)
        for error in (Boom(), IOError("bad sector"), KeyboardInterrupt()):
            for step in steps:
                screen = self.editor()
                before = list(screen.servicelist)
                host.recorder.clear()
                host.recorder.fail_at(step, error)
                self.raised_by(error, screen.loadFile)
                names = [event[0] for event in host.recorder.events]
                self.assertEqual(names, events[:step + 1] + ["file.close"])
                self.assertEqual(screen.servicelist, before)

    def test_a_read_error_ends_the_construction(self):
        self.etc(self.line(ONE))
        error = IOError("bad sector")
        host.recorder.fail("open", error)
        self.raised_by(error, self.Veltro.Edit_DVB_EPG_Blacklist, host.session, PLUGIN_PATH)
        self.assertEqual(host.recorder.named("console"), [])

    def test_how_the_file_is_opened(self):
        self.path = self.etc(b"")
        self.editor().loadFile()
        text = {} if PYTHON2 else {"encoding": "utf-8", "errors": "surrogateescape", "newline": "\n"}
        self.assertEqual(self.calls[1], ("open", self.path, "r") + ((text,) if text else ()))

    def test_a_file_that_can_not_be_asked_for(self):
        error = Boom()
        screen = self.editor()
        host.recorder.fail("path.exists", error)
        self.raised_by(error, screen.loadFile)
        self.assertEqual(host.recorder.names(), ["path.exists"])


class RoundTrip(FileTestCase):
    DATA = (b"#SERVICE 1:" + ALL_BYTES + b":\n#SERVICE 4097:0:\xc3\xa4\xff\xfe\xed\xa0\x80\xf0\x9f\x93\xba:\n"
            b"#SERVICE 1:\xe9\n")

    def test_bytes_survive(self):
        self.assertEqual(len(self.references(self.DATA)), 3)
        self.screen.saveFile()
        self.assertEqual(self.content(self.path), self.DATA)

    def test_bytes_survive_with_the_real_open(self):
        self.Veltro = host.load(recording_files=False)
        self.assertEqual(len(self.references(self.DATA)), 3)
        press(self.screen, "green")
        self.assertEqual(self.content(self.path), self.DATA)
        self.assertEqual(host.recorder.named("open"), [])

    SCRIPT = """if True:
        import sys
        from tests.host_double import host, platform_services
        host.reset()
        host.start()
        class EveryName(dict):
            def get(self, text, default=None):
                return text
        platform_services.ServiceReference.names = EveryName()
        host.set_sysconfdir(sys.argv[1])
        screen = host.load(recording_files=False).Edit_DVB_EPG_Blacklist(host.session, "")
        screen.greenPressed()
        host.stop()
        """

    def test_bytes_survive_in_any_locale(self):
        for settings in ({"LC_ALL": "C"}, {"LC_ALL": "POSIX"}, {"LC_ALL": "C.UTF-8"}, {"LC_ALL": "en_US.ISO-8859-1"},
                         {"LC_ALL": "C", "PYTHONIOENCODING": "latin-1"}, {"PYTHONUTF8": "1"}):
            path = self.etc(self.DATA)
            settings = dict({"PYTHONCOERCECLOCALE": "0", "PYTHONUTF8": "0"}, **settings)
            self.assertEqual(self.run_apart(self.SCRIPT, os.path.dirname(os.path.dirname(path)), **settings), 0)
            self.assertEqual(self.content(path), self.DATA, settings)
