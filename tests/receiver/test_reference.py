"""eServiceReference, ServiceReference and the folders of a run."""
import contextlib
import io
import os
from unittest import mock

from receiver.data import env
from receiver.data.env import eEnv
from receiver.data.reference import eServiceReference
from tests.receiver.boxes import BoxTest

FULL = "1:0:19:1B7B:C88:3:EB0000:0:0:0:"


class Text(BoxTest):
    def test_full_form(self):
        ref = eServiceReference("1:64:19:1b7b:c88:3:eb0000:0:0:ffffffff:")
        self.assertEqual((ref.type, ref.flags), (1, 64))
        self.assertEqual([ref.getUnsignedData(i) for i in range(8)],
                         [0x19, 0x1B7B, 0xC88, 3, 0xEB0000, 0, 0, 0xFFFFFFFF])
        self.assertEqual(ref.toString(), "1:64:19:1B7B:C88:3:EB0000:0:0:FFFFFFFF:")
        self.assertEqual(ref.toCompareString(), "1:0:19:1B7B:C88:3:EB0000:0:0:FFFFFFFF:")

    def test_name_field(self):
        ref = eServiceReference(FULL + ":Kanal %c3%84%3a 50%25")
        self.assertEqual(ref.getName(), "Kanal Ä: 50%")
        self.assertEqual(ref.getPath(), "")
        self.assertEqual(ref.toString(), FULL + ":Kanal Ä%3a 50%25")
        self.assertEqual(ref.toCompareString(), FULL)

    def test_a_name_keeps_further_colons(self):
        self.assertEqual(eServiceReference(FULL + ":a:b").getName(), "a:b")

    def test_control_characters_can_not_break_a_line(self):
        ref = eServiceReference(FULL)
        ref.setName("a\nb\t\x7f")
        self.assertEqual(ref.toString(), FULL + ":a%0ab%09%7f")
        self.assertEqual(eServiceReference(ref.toString()).getName(), "a\nb\t\x7f")

    def test_bytes_that_are_no_utf8_survive(self):
        ref = eServiceReference.read(FULL + ":caf\udce9")
        self.assertEqual(ref.toString(), FULL + ":caf\udce9")
        self.assertEqual(eServiceReference(FULL + ":caf%e9").getName(), "caf\udce9")

    def test_escaped_address(self):
        text = "4097:0:1:0:0:0:0:0:0:0:http%3a//example.org%3a80/a%2520b.ts:Radio%3a one"
        ref = eServiceReference(text)
        self.assertEqual((ref.type, ref.getPath(), ref.getName()), (4097, "http://example.org:80/a%20b.ts", "Radio: one"))
        self.assertEqual(ref.toString(), text)
        self.assertEqual(len(text.split(":")), 12)

    def test_truncated_forms(self):
        self.assertEqual(eServiceReference("1:7").toString(), "1:7:0:0:0:0:0:0:0:0:")
        self.assertEqual(eServiceReference("1:0:19:1B7B").toString(), "1:0:19:1B7B:0:0:0:0:0:0:")
        self.assertEqual(eServiceReference("1:0:1:2:3:4:5:6:7:8").toString(), "1:0:1:2:3:4:5:6:7:8:")

    def test_no_reference_at_all(self):
        for text in ("", "1", "x:y", ":", "1 :0:1", "hello", "\x00\xff", "1:z:1:2", ":" * 50):
            with self.subTest(text):
                ref = eServiceReference(text)
                self.assertEqual((ref.valid(), ref.type, ref.flags), (0, -1, 0))

    def test_blanks_signs_and_numbers_that_are_too_large(self):
        self.assertEqual(eServiceReference(" 1:-1:1:2:3:4:5:6:7:9FFFFFFFF:p").toString(), "1:-1:1:2:3:4:5:6:7:FFFFFFFF:p")


class Object(BoxTest):
    def test_constructors(self):
        self.assertEqual(eServiceReference().valid(), 0)
        ref = eServiceReference(1, 7, 'FROM BOUQUET "a:b"')
        self.assertEqual(ref.toString(), '1:7:0:0:0:0:0:0:0:0:FROM BOUQUET "a%3ab"')
        copy = eServiceReference(ref)
        copy.flags = 0
        copy.setName("x")
        self.assertEqual((ref.flags, ref.getName(), ref.getPath()), (7, "", 'FROM BOUQUET "a:b"'))
        for arguments in (("caf\udce9",), (1,), (1, 2), (b"1:0",), (1, 2, None)):
            with self.subTest(arguments), self.assertRaises(TypeError):
                eServiceReference(*arguments)

    def test_always_true(self):
        self.assertTrue(eServiceReference())

    def test_equal_when_they_mean_the_same_service(self):
        self.assertEqual(eServiceReference(FULL), eServiceReference(FULL.replace("1:0", "1:64", 1) + ":name"))
        self.assertNotEqual(eServiceReference(FULL), eServiceReference(FULL.replace("19", "1")))
        self.assertEqual(len({eServiceReference(FULL), eServiceReference(FULL + ":n")}), 1)
        self.assertFalse(eServiceReference(FULL) == FULL)

    def test_constants(self):
        ref = eServiceReference
        self.assertEqual((ref.isDirectory, ref.mustDescent, ref.canDescent, ref.flagDirectory), (1, 2, 4, 7))
        self.assertEqual((ref.isMarker, ref.isGroup, ref.isNumberedMarker, ref.isInvisible), (64, 128, 256, 512))
        self.assertEqual((ref.idInvalid, ref.idDVB, ref.idServiceMP3), (-1, 1, 4097))


class Folders(BoxTest):
    def test_the_chosen_folder_is_the_boxs_whatever_its_name(self):
        self.assertEqual(eEnv.resolve("${sysconfdir}/enigma2/blacklist_dvb_epg"), "/etc/enigma2/blacklist_dvb_epg")
        self.assertEqual(env.real("/etc/enigma2/blacklist_dvb_epg"), os.path.join(self.etc, "blacklist_dvb_epg"))
        self.assertEqual(env.real("/etc/enigma22"), self.root + "/etc/enigma22")
        self.assertEqual(eEnv.resolve("/plain"), "/plain")

    def test_a_path_of_the_box_and_one_of_the_pc(self):
        for path, place in (("/media/hdd/epg.dat", self.hdd + "/epg.dat"), ("//media/../x", self.root + "/x"), ("/", self.root + "/"),
                            ("x", self.root + "/x"), (self.etc, self.etc), (env.__file__, env.__file__)):
            self.assertEqual(env.real(path), place)

    def test_console_is_standard_output_and_takes_any_text(self):
        mock.patch.stopall()
        with contextlib.redirect_stdout(io.StringIO()) as out:
            env.log("caf\udce9 é")
        self.assertEqual(out.getvalue(), "caf\\udce9 é\n")
