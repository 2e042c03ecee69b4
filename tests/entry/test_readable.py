# -*- coding: utf-8 -*-
"""Texts that a host can show and store, whatever bytes they are made of."""

from tests.entry.case import BoxTest, text_of

MARK = text_of(u"\ufffd".encode("utf-8"))


class ReadableTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.import_entry()
        self.part = self.box.part("bridge.readable")

    def test_texts(self):
        for data, text in ((b"ORF 1", "ORF 1"), (b"M\xc3\xbcnchen", text_of(b"M\xc3\xbcnchen")), (b"", ""),
                           (b"M\xfcnchen", "M" + MARK + "nchen"), (b"a\nb\tc\0d\x7f", "a b c d ")):
            self.assertEqual(self.part.readable(text_of(data)), text)
            self.assertEqual(self.part.is_readable(text_of(data)), text == text_of(data))

    def test_every_byte(self):
        for byte in range(256):
            text = self.part.readable(text_of(bytearray([byte]).decode("latin-1").encode("latin-1")))
            self.assertIs(type(text), str)
            self.assertTrue(text.encode("utf-8") if str is not bytes else text.decode("utf-8"))
            self.assertTrue(self.part.is_readable(text))

    def test_references_keep_what_they_mean(self):
        text = text_of(b"1:0:1:a\xff")
        escaped = self.part.escaped(text)
        self.assertEqual(escaped, text if str is bytes else "1:0:1:a%ff")
        self.assertEqual(self.part.escaped("1:0:1:"), "1:0:1:")
