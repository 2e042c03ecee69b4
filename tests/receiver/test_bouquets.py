"""The reader of the bouquet files, in all styles and states that people have them in."""
import os

from receiver.data.bouquets import read_bouquets
from receiver.data.reference import eServiceReference
from tests.receiver.boxes import SAMPLE, BoxTest

ONE = "1:0:19:1B7B:C88:3:EB0000:0:0:0:"
TWO = "1:0:1:1B7C:C88:3:EB0000:0:0:0:"
LINK = '1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "%s" ORDER BY bouquet'


class BouquetsTest(BoxTest):
    def setUp(self):
        super().setUp()
        self.write("bouquets.radio", "#NAME Radio\n")

    def load(self, content, name="userbouquet.a.tv", root="#NAME TV\n#SERVICE " + LINK % "userbouquet.a.tv" + "\n"):
        """The bouquet `name` of a folder whose only bouquet has this content."""
        self.write("bouquets.tv", root)
        self.write(name, content)
        return read_bouquets(self.etc)["userbouquet.a.tv"]

    def texts(self, content):
        return [ref.toString() for ref in self.load(content).services]


class Styles(BouquetsTest):
    def test_plain(self):
        bouquet = self.load("#NAME Mine\n#SERVICE %s\n#SERVICE %s\n" % (ONE, TWO))
        self.assertEqual(bouquet.name, "Mine")
        self.assertEqual([ref.toString() for ref in bouquet.services], [ONE, TWO])
        self.assertEqual(self.console, [])

    def test_crlf_colons_and_missing_last_line_end(self):
        self.assertEqual(self.texts("#NAME Mine\r\n\r\n#SERVICE: %s\r\n#DESCRIPTION: First\r\n#SERVICE: %s" % (ONE, TWO)),
                         [ONE + ":First", TWO])
        self.assertEqual(self.console, [])

    def test_a_description_names_the_service_before_it_once(self):
        self.assertEqual(self.texts("#SERVICE %s:Old\n#DESCRIPTION New\n#DESCRIPTION Newer\n#SERVICE %s\n" % (ONE, TWO)),
                         [ONE + ":New", TWO])

    def test_a_description_before_any_service_names_nothing(self):
        self.assertEqual(self.texts("#DESCRIPTION New\n#SERVICE %s\n" % ONE), [ONE])

    def test_markers_and_streams(self):
        stream = "4097:0:1:0:0:0:0:0:0:0:http%3a//example.org/x.ts:Stream"
        self.assertEqual(self.texts("#SERVICE 1:64:1:0:0:0:0:0:0:0:\n#DESCRIPTION -- News --\n#SERVICE %s\n" % stream),
                         ["1:64:1:0:0:0:0:0:0:0::-- News --", stream])

    def test_path_style_and_quoted_links(self):
        for link in ("#SERVICE: 1:7:1:0:0:0:0:0:0:0:userbouquet.a.tv", "#SERVICE " + LINK % "userbouquet.a.tv",
                     "#SERVICE 1:7:1:0:0:0:0:0:0:0:/etc/enigma2/userbouquet.a.tv:Name"):
            with self.subTest(link):
                self.assertEqual(self.load("#NAME Mine\n", root=link + "\n").name, "Mine")

    def test_other_lines_starting_with_a_hash_are_left_alone(self):
        self.assertEqual(self.texts("#SORT\n#SERVICES %s\n#SERVICE %s\n" % (TWO, ONE)), [ONE])
        self.assertEqual(self.console, [])

    def test_bytes_that_are_no_utf8_survive(self):
        bouquet = self.load(b"#NAME caf\xe9\n#SERVICE " + ONE.encode() + b"\n#DESCRIPTION \xff\xfe\x85\n")
        self.assertEqual((bouquet.name, bouquet.services[0].getName()), ("caf\udce9", "\udcff\udcfe\udc85"))

    def test_where_files_are_looked_for(self):
        self.load("#NAME plain\n")
        for folder in ("bouquets", "alternatives"):
            self.write(folder + "/userbouquet.a.tv", "#NAME %s\n" % folder)
            self.assertEqual(read_bouquets(self.etc)["userbouquet.a.tv"].name, folder)


class Broken(BouquetsTest):
    def test_an_empty_line_ends_the_file(self):
        self.assertEqual(self.texts("#SERVICE %s\n\n#SERVICE %s\n" % (ONE, TWO)), [ONE])
        self.complaint("userbouquet.a.tv:2: an empty line", "1 lines are not read")

    def test_an_empty_line_at_the_end_is_nothing_to_report(self):
        self.assertEqual(self.texts("#SERVICE %s\n\n" % ONE), [ONE])
        self.assertEqual(self.console, [])

    def test_broken_lines_cost_a_console_line_each(self):
        self.assertEqual(self.texts("#SERVICE x:y\nwhat is this\n#SERVICE\n#SERVICE %s\n" % ONE), [ONE])
        self.assertEqual([line.split("userbouquet.a.tv:")[1][0] for line in self.console], ["1", "2", "3"])

    def test_a_link_without_a_file_name_is_an_empty_list(self):
        self.load("", root="#SERVICE 1:7:1:0:0:0:0:0:0:0:\n#SERVICE %s\n" % (LINK % "userbouquet.a.tv"))
        self.complaint("not read: Is a directory")

    def test_a_description_behind_a_broken_service_names_nothing(self):
        self.assertEqual(self.texts("#SERVICE %s\n#SERVICE x\n#DESCRIPTION lost\n" % ONE), [ONE])

    def test_missing_files(self):
        os.unlink(os.path.join(self.etc, "bouquets.radio"))
        self.write("bouquets.tv", "#SERVICE %s\n#SERVICE %s\n" % (LINK % "userbouquet.gone.tv", LINK % "userbouquet.a.tv"))
        self.write("userbouquet.a.tv", "#NAME Mine\n")
        bouquets = read_bouquets(self.etc)
        self.assertEqual(bouquets["userbouquet.a.tv"].name, "Mine")
        self.assertEqual(bouquets["userbouquet.gone.tv"].services, [])
        self.assertEqual(len(self.console), 2)
        self.assertIn("bouquets.radio", self.console[0])
        self.assertIn("userbouquet.gone.tv", self.console[1])

    def test_an_unreadable_file(self):
        self.load("")
        os.unlink(os.path.join(self.etc, "userbouquet.a.tv"))
        os.mkdir(os.path.join(self.etc, "userbouquet.a.tv"))
        self.assertEqual(read_bouquets(self.etc)["userbouquet.a.tv"].services, [])
        self.complaint("userbouquet.a.tv", "Is a directory")

    def test_impossible_file_names(self):
        self.write("bouquets.tv", '#SERVICE 1:7:1:0:0:0:0:0:0:0:a%%00b\n#SERVICE %s\n' % (LINK % "../../etc/shadow"))
        names = set(read_bouquets(self.etc))
        self.assertEqual(names, {"bouquets.tv", "bouquets.radio", "a\0b", "shadow"})
        self.assertEqual(len(self.console), 2)
        self.assertIn(os.path.join(self.etc, "shadow"), self.console[1])

    def test_bouquets_that_contain_each_other(self):
        bouquet = self.load("#SERVICE %s\n#SERVICE %s\n" % (LINK % "userbouquet.a.tv", LINK % "bouquets.tv"))
        self.assertEqual(len(bouquet.services), 2)
        self.assertEqual(self.console, [])

    def test_a_long_chain(self):
        for number in range(2000):
            self.write("userbouquet.%d.tv" % number, "#SERVICE %s\n" % (LINK % ("userbouquet.%d.tv" % (number + 1))))
        self.write("userbouquet.2000.tv", "#NAME The end\n")
        self.write("bouquets.tv", "#SERVICE %s\n" % (LINK % "userbouquet.0.tv"))
        self.assertEqual(read_bouquets(self.etc)["userbouquet.2000.tv"].name, "The end")

    def test_rubbish(self):
        self.assertEqual(self.texts(bytes(range(256)) * 40), [])
        self.assertEqual(len(self.console), 11)


class Sample(BoxTest):
    def test_the_sample_is_clean(self):
        bouquets = read_bouquets(SAMPLE)
        self.assertEqual(len(bouquets), 9)
        self.assertEqual(self.console, [])
        refs = [ref for bouquet in bouquets.values() for ref in bouquet.services]
        self.assertTrue(any(ref.type == 4097 for ref in refs))
        self.assertTrue(any(ref.flags & eServiceReference.isMarker for ref in refs))
