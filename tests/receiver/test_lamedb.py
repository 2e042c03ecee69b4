"""The reader of lamedb, formats 4 and 5, whole and broken."""
import os
import random
import time

from receiver.data.lamedb import read_lamedb
from tests.receiver.boxes import SAMPLE, BoxTest

HEAD = ("eDVB services /4/\ntransponders\n00c00000:0401:0001\n\ts 11719000:29500000:0:3:192:2:0:1:1:1\n/\nend\n"
        "services\n")
ONE = "1b7b:00c00000:0401:0001:25:0\nOne\np:Maker,c:000202,f:40\n"
TWO = "1b7c:00c00000:0401:0001:1:0:ff\nTwo\np:\n"
TAIL = "end\nHave a lot of bugs!\n"


class LamedbTest(BoxTest):
    def load(self, data, name="lamedb"):
        self.write(name, data)
        return read_lamedb(self.etc)

    def names(self, data):
        return [service.name for service in self.load(data).values()]


class Format4(LamedbTest):
    def test_services(self):
        db = self.load(HEAD + ONE + TWO + TAIL)
        one, two = db.values()
        self.assertEqual((one.name, one.type), ("One", 25))
        self.assertEqual((two.name, two.type), ("Two", 1))
        self.assertEqual(one.reference, "1:0:19:1B7B:401:1:C00000:0:0:0:")
        self.assertEqual(self.console, [])

    def test_crlf(self):
        self.assertEqual(self.names((HEAD + ONE + TWO + TAIL).replace("\n", "\r\n")), ["One", "Two"])
        self.assertEqual(self.console, [])

    def test_names_of_every_kind(self):
        data = HEAD + ONE.replace("One", "") + TWO.replace("Two", "end") + TAIL
        self.assertEqual(self.names(data), ["", "end"])
        self.assertEqual(self.names(HEAD + ONE.replace("One", "Größe \u0085\u2028|") + TAIL), ["Größe \u0085\u2028|"])
        self.assertEqual(self.names((HEAD + ONE + TAIL).encode().replace(b"One", b"caf\xe9\x86")), ["caf\udce9\udc86"])
        self.assertEqual(self.console, [])


class Broken4(LamedbTest):
    def test_missing_file(self):
        self.assertEqual(read_lamedb(self.etc), {})
        self.complaint("lamedb", "No such file")

    def test_a_directory_in_its_place(self):
        os.mkdir(os.path.join(self.etc, "lamedb"))
        self.assertEqual(read_lamedb(self.etc), {})
        self.complaint("Is a directory")

    def test_wrong_first_line(self):
        for data in ("", "\n", "eDVB services /2/\n", "eDVB services /44/\n", "hello\n" + HEAD, b"\x7fELF\0\xff" * 999):
            with self.subTest(data[:20]):
                self.console.clear()
                self.assertEqual(self.names(data), [])
                self.complaint("lamedb:1: is no lamedb")

    def test_a_broken_id_line_costs_one_service(self):
        self.assertEqual(self.names(HEAD + ONE.replace(":25:", ":") + TWO + TAIL), ["Two"])
        self.assertEqual(len(self.console), 3)
        self.assertIn("lamedb:8: is no service", self.console[0])

    def test_missing_name_or_options_do_not_shift_the_rest(self):
        self.assertEqual(self.names(HEAD + "1b7b:00c00000:0401:0001:25:0\n" + TWO + TAIL), ["", "Two"])
        self.complaint("lamedb:8: service without name")
        self.console.clear()
        self.assertEqual(self.names(HEAD + "1b7b:00c00000:0401:0001:25:0\nOne\n" + TWO + TAIL), ["One", "Two"])
        self.complaint("lamedb:8: service without options")

    def test_truncated_anywhere(self):
        whole = HEAD + ONE + TWO + "end\n"
        for length in range(len("eDVB services /4/\n"), len(whole) - 4):
            with self.subTest(length):
                self.console.clear()
                names = self.names(whole[:length])
                self.assertTrue(self.console)
                self.assertLessEqual(len(names), 2)
                self.assertTrue(length < len(HEAD + ONE) or names[0] == "One")

    def test_missing_ends(self):
        self.assertEqual(self.names(HEAD.replace("end\n", "") + ONE + TAIL), ["One"])
        self.assertEqual(self.console, [])
        self.assertEqual(self.names(HEAD + ONE), ["One"])
        self.complaint("lamedb:10: the file stops")

    def test_a_broken_transponder_costs_only_itself(self):
        broken = HEAD.replace("00c00000:0401:0001\n", "00c00000:0402:0001\n\n00c00000:0401:0001\n")
        db = self.load(broken + ONE + TAIL)
        self.assertEqual([service.name for service in db.values()], ["One"])
        self.assertEqual(self.names(HEAD.replace("/\nend", "end") + ONE + TAIL), ["One"])

    def test_rubbish_in_the_middle_does_not_drown_the_console(self):
        data = (HEAD + ONE).encode() + random.Random(1).randbytes(2000) + b"\n" * 100 + (TWO + TAIL).encode()
        names = self.names(data)
        self.assertEqual((names[0], names[-1]), ("One", "Two"))
        self.assertEqual(len(self.console), 11)
        self.assertIn("more broken lines", self.console[-1])


class Format5(LamedbTest):
    HEAD = "eDVB services /5/\n# a comment\nt:00c00000:0401:0001,s:11719000:29500000:0:3:192:2:0:1:1:1,MIS/PLS:1:2:3\n"

    def test_services(self):
        db = self.load(self.HEAD + 's:1b7b:00c00000:0401:0001:25:0:0,"One",p:Maker,c:000202\n'
                                   's:1b7c:00c00000:0401:0001:1:0,"A "quoted", name"\n', "lamedb")
        self.assertEqual([service.name for service in db.values()], ["One", 'A "quoted", name'])
        self.assertEqual(self.console, [])

    def test_broken_lines(self):
        data = self.HEAD + 's:zz,"x"\nt:1:2\nhello\n\ns:1:2:3:4:1:0,"no end\ns:1b7c:00c00000:0401:0001:1:0,"Two",p:\n'
        self.assertEqual(self.names(data), ["Two"])
        self.assertEqual([line.split(": ")[0][-8:] for line in self.console],
                         ["lamedb:%d" % number for number in (4, 6, 8)])

    def test_crlf_and_missing_last_line_end(self):
        data = self.HEAD + 's:1b7c:00c00000:0401:0001:1:0,"Two",p:x'
        self.assertEqual(self.names(data.replace("\n", "\r\n")), ["Two"])


class Size(LamedbTest):
    def test_five_thousand_services_are_quick(self):
        data = HEAD + "".join("%04x:00c00000:0401:0001:1:0\nService %d\np:P\n" % (i, i) for i in range(5000)) + TAIL
        self.write("lamedb", data)
        before = time.process_time()
        self.assertEqual(len(read_lamedb(self.etc)), 5000)
        self.assertLess(time.process_time() - before, 1)

    def test_the_sample_is_clean(self):
        self.assertEqual(len(read_lamedb(SAMPLE)), 54)
        self.assertEqual(self.console, [])
