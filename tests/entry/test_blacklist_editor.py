# -*- coding: utf-8 -*-
"""The blacklist's editor on images: what the user sees, and that nothing of the file is lost."""

import os

from tests.entry.case import BoxTest, press, text_of
from tests.entry.fake_screens import MessageBox, Reference

ERSTE = "1:0:19:283D:3FB:1:C00000:0:0:0:"
ERSTE_13E = "1:0:19:283D:3FB:1:820000:0:0:0:"
ZDF = "1:0:19:2B66:3F3:1:C00000:0:0:0:"
NAMELESS = "1:0:1:%X:1:1:C00000:0:0:0:"


class EditorTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.box.etc = self.folder
        os.mkdir(self.path("enigma2"))
        self.box.services.update({ERSTE: "Das Erste", ERSTE_13E: "Das Erste", ZDF: "ZDF"})
        self.file = self.path("enigma2", "blacklist_dvb_epg")
        self.load()

    def open(self, *lines):
        if lines:
            self.write(self.file, b"".join(line + b"\n" for line in lines))
        self.editor = self.box.session.open(self.module.Edit_DVB_EPG_Blacklist, "/plugin")
        return self.editor

    def names(self):
        return [row[0] for row in self.editor.servicelist]

    def save(self):
        self.editor.greenPressed()
        with open(self.file, "rb") as file:
            return file.read().split(b"\n")[:-1]

    def message(self):
        return self.box.session.current_dialog.text

    def test_services_without_a_name_are_told_apart(self):
        lines = [b"#SERVICE " + (NAMELESS % number).encode() for number in range(1, 301)]
        self.open(*lines)
        self.assertEqual(self.names()[:2], [NAMELESS % 1, NAMELESS % 2])
        self.assertEqual(self.save(), lines)

    def test_services_of_one_name_are_told_apart(self):
        third = "1:0:19:283E:3FB:1:820000:0:0:0:"
        self.box.services[third] = "Das Erste"
        lines = [b"#SERVICE " + each.encode() for each in (ERSTE, ERSTE_13E, third, ZDF)]
        self.open(*lines)
        self.assertEqual(self.names(), ["Das Erste", "Das Erste (13.0E)", "Das Erste (%s)" % third, "ZDF"])
        self.assertEqual(self.save(), lines)

    def test_a_service_twice_is_one(self):
        self.open(*[b"#SERVICE " + each.encode() for each in (ERSTE, ERSTE, ERSTE + ":Das Erste HD")])
        self.assertEqual(self.names(), ["Das Erste"])
        self.assertEqual(self.save(), [b"#SERVICE " + ERSTE.encode()])

    def test_where_services_are_from(self):
        position = self.box.part("bridge.services").position
        for namespace, place in (("C00000", "19.2E"), ("E080000", "0.8W"), ("FFFF0000", "DVB-C"),
                                 ("EEEE0000", "DVB-T"), ("0", ""), ("x", "")):
            self.assertEqual(position("1:0:1:1:1:1:%s:0:0:0:" % namespace), place)
        self.assertEqual(position("4097"), "")

    def test_lines_that_are_no_services_stay(self):
        lines = [b"# my list", b"#SERVICE " + ERSTE.encode(), b"", b"#DESCRIPTION The First", b"#SERVICE 1:7:1",
                 b"#SERVICE 2:0:1:x", b"  #SERVICE indented", b"#SERVICE " + ZDF.encode(), b"the end"]
        self.open(*lines)
        self.assertEqual(self.names(), ["Das Erste", "1:7:1", "ZDF"])
        self.assertEqual(self.save(), lines)

    def test_a_deleted_service_goes_and_a_new_one_comes_last(self):
        self.open(b"#SERVICE " + ERSTE.encode(), b"# between", b"#SERVICE " + ZDF.encode(), b"# after")
        self.editor.yellowPressed()
        self.editor.finishedChannelSelection([Reference(ERSTE_13E)])
        self.assertEqual(self.save(), [b"# between", b"#SERVICE " + ZDF.encode(), b"# after",
                                       b"#SERVICE " + ERSTE_13E.encode()])

    def test_any_bytes(self):
        lines = [b"#SERVICE 1:0:1:%d:1:1:1:0:0:0::" % byte + bytes(bytearray([byte])) for byte in range(32, 256)
                 ] if str is not bytes else ["#SERVICE 1:0:1:%d:1:1:1:0:0:0::%c" % (byte, byte) for byte in range(32, 256)]
        lines += [b"\xff\xfe\x00", b"#SERVICE \xff", b"#SERVICE 4097:0:1:\xc3"]
        lines[0] = lines[0].strip()
        self.open(*lines)
        for row in self.editor.servicelist:
            for text in (row[0], row[3]):
                text.encode("utf-8") if str is not bytes else row[0].decode("utf-8")
        self.assertEqual(self.save(), lines)

    def test_a_picked_service_with_any_bytes(self):
        self.open()
        odd = text_of(b"1:0:1:1:1:1:C00000:0:0:0::\xff")
        self.box.modules["ServiceReference"].ServiceReference.__init__ = lambda self, ref: setattr(self, "ref", ref)
        self.editor.finishedChannelSelection([Reference(odd)])
        self.assertEqual(self.editor.servicelist[0][3], self.box.part("bridge.readable").escaped(odd))

    def test_what_was_left_out_is_said(self):
        self.open(b"#SERVICE " + ERSTE.encode())
        self.assertIs(self.box.session.current_dialog, self.editor, "not while it opens")
        self.editor.finishedChannelSelection([Reference(ERSTE), Reference("2:0:1:x"), Reference(ZDF)])
        notice = self.box.session.current_dialog
        self.assertEqual(notice.text, "Left out: 2 (listed already, or no TV or radio service)")
        self.assertEqual((notice.type, notice.timeout), (MessageBox.TYPE_INFO, 4))
        self.assertEqual(self.names(), ["Das Erste", "ZDF"])

    def test_nothing_is_said_when_all_came_in(self):
        self.open()
        self.editor.finishedChannelSelection([Reference(ZDF)])
        self.editor.finishedChannelSelection(None)
        self.editor.finishedChannelSelection()
        self.assertIs(self.box.session.current_dialog, self.editor)

    def test_a_full_disk(self):
        """Wherever it is found: when the module writes its lines, or when they are put in place."""
        line = b"#SERVICE " + ERSTE.encode()
        for target in ("open", "fsync"):
            editor = self.open(line)
            self.fail_with_a_full_disk(target)
            self.box.part("bridge.guard").guarded(editor.greenPressed)()
            self.assertEqual(self.message().split("\n")[0], "The blacklist could not be saved. The file is as it was.")
            self.box.session.popCurrent()
            self.assertIs(self.box.session.current_dialog, editor, "it stays open")
            self.doCleanups_of_disk()
            self.assertEqual(self.save(), [line])
            self.assertEqual(os.listdir(self.path("enigma2")), ["blacklist_dvb_epg"])

    def fail_with_a_full_disk(self, target):
        def full(*arguments):
            raise OSError(28, "No space left on device")
        if target == "fsync":
            real, os.fsync = os.fsync, full
            self.doCleanups_of_disk = lambda: setattr(os, "fsync", real)
        else:
            os.mkdir(self.file + ".veltro-new")
            self.doCleanups_of_disk = lambda: os.rmdir(self.file + ".veltro-new")

    def test_a_file_that_can_not_be_read(self):
        os.mkdir(self.file)
        screen = self.box.session.open(self.module.Veltro, "/plugin")
        screen["config"].l.cursor = 15
        press(screen, "shortcuts", "ok")
        self.assertEqual(self.message().split("\n")[0], "The blacklist can't be read.")

    def test_five_thousand_services(self):
        lines = [b"#SERVICE " + (NAMELESS % number).encode() for number in range(1, 5001)]
        self.open(*lines)
        self.assertEqual(len(self.editor.servicelist), 5000)
        self.assertEqual(self.save(), lines)
