"""eServiceCenter and ServiceReference: lists and names from lamedb and the bouquets together."""
import shutil

from ServiceReference import ServiceReference
from receiver.data.reference import eServiceReference
from receiver.data.service_center import eServiceCenter
from tests.receiver.boxes import SAMPLE, BoxTest


class SampleTest(BoxTest):
    """The sample channel lists in a folder of their own."""

    def setUp(self):
        super().setUp()
        shutil.copytree(SAMPLE, self.etc, dirs_exist_ok=True)
        self.addCleanup(setattr, eServiceCenter, "_instance", None)
        self.read_lists()

    def read_lists(self):
        """Read the folder's lists anew."""
        self.center = eServiceCenter._instance = eServiceCenter()

    def list(self, text):
        return self.center.list(eServiceReference(text))

    def bouquet(self, name, root=eServiceCenter.ROOT_TV_FAVOURITES):
        """The reference of the bouquet with this name."""
        return next(ref for ref, title in self.list(root).getContent("RN") if title == name)


class Lists(SampleTest):
    def test_favourites(self):
        self.assertEqual(self.list(eServiceCenter.ROOT_TV_FAVOURITES).getContent("N"),
                         ["Favourites (TV)", "Sport, films and more", "Regional", "Streams"])
        self.assertEqual(self.list(eServiceCenter.ROOT_RADIO_FAVOURITES).getContent("N"), ["Favourites (Radio)", "Music"])

    def test_a_bouquet_in_its_order_with_markers_and_sub_bouquets(self):
        names = self.center.list(self.bouquet("Sport, films and more")).getContent("N")
        self.assertEqual(names[:3] + names[-2:], ["Sport", "Pinecone Sport 1 HD", "Pinecone Sport 2 HD", "For the young",
                                                  "Kids"])
        sub = self.center.list(self.bouquet("Sport, films and more")).getContent("R")[-1]
        self.assertEqual(sub.flags & 7, 7)
        self.assertEqual(self.center.list(sub).getContent("N"), ["Lantern Kids", "Atlantica Kids", "Paper Boats"])

    def test_get_next_ends_with_an_invalid_reference_for_ever(self):
        services = self.center.list(self.bouquet("Streams"))
        types = [services.getNext().type for _ in range(6)]
        self.assertEqual(types, [4097] * 4 + [-1] * 2)

    def test_references_handed_out_are_copies(self):
        ref = self.center.list(self.bouquet("Streams")).getNext()
        ref.setName("spoilt")
        self.center.list(self.bouquet("Streams")).getContent("R")[0].setName("spoilt")
        self.assertEqual(self.center.list(self.bouquet("Streams")).getContent("N")[0], "Harbour Live")

    def test_get_content(self):
        def content(*arguments, **keywords):
            bouquet = self.bouquet("Favourites (Radio)", eServiceCenter.ROOT_RADIO_FAVOURITES)
            return self.center.list(bouquet).getContent(*arguments, **keywords)
        self.assertEqual(content("SN")[0], ("1:0:2:801:401:FE:640000:0:0:0:", "Lantern Radio"))
        self.assertEqual(content("C")[0], "1:0:2:801:401:FE:640000:0:0:0:")
        self.assertEqual(content("N", True)[:2], ["Corner FM", "Lantern Jazz"])
        self.assertEqual(content("N", sorted=True), sorted(content("N"), key=str.casefold))
        services = self.center.list(eServiceReference(eServiceCenter.ROOT_RADIO_FAVOURITES))
        self.assertTrue(services.getContent("N"))
        self.assertEqual(services.getContent("N"), [], "they are taken out")

    def test_all_services(self):
        tv = self.list(eServiceCenter.ROOT_TV_ALL).getContent("N")
        radio = self.list(eServiceCenter.ROOT_RADIO_ALL).getContent("N")
        self.assertEqual((len(tv), len(radio)), (42, 12))
        self.assertEqual(tv, sorted(tv, key=lambda name: (not name, name.casefold())))
        self.assertIn("Radio Größe", radio)

    def test_what_has_no_name_comes_last(self):
        self.write("lamedb", self.read("lamedb").replace(b"\nAtlantica HD\n", b"\n.\n").replace(
            b"\nAtlantica Kids\n", b"\n  Zz\n"))
        self.read_lists()
        names = self.list(eServiceCenter.ROOT_TV_ALL).getContent("N")
        self.assertEqual(names[-2:], ["", "."])
        self.assertGreater(names.index("  Zz"), names.index("Tidewater Nature HD"))

    def test_what_is_no_list(self):
        for text in ("", "1:0:19:101:401:FE:640000:0:0:0:", "1:64:1:0:0:0:0:0:0:0::Marker", "2:7:0:0:0:0:0:0:0:0:/tmp/",
                     "4097:0:1:0:0:0:0:0:0:0:http%3a//x:y", "1:7:1:0:0:0:0:0:0:0:", "1:7:1:0:0:0:0:0:0:0:nonsense"):
            with self.subTest(text):
                self.assertIsNone(self.list(text))

    def test_a_bouquet_that_nobody_links_is_empty(self):
        services = self.list('1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.gone.tv" ORDER BY bouquet')
        self.assertEqual(services.getContent("R"), [])

    def test_a_linked_bouquet_without_a_file_is_empty(self):
        self.write("bouquets.tv", "#SERVICE: 1:7:1:0:0:0:0:0:0:0:userbouquet.gone.tv\n")
        self.read_lists()
        self.complaint("userbouquet.gone.tv")
        (ref, name), = self.list(eServiceCenter.ROOT_TV_FAVOURITES).getContent("RN")
        self.assertEqual(name, "userbouquet.gone.tv")
        self.assertEqual(self.center.list(ref).getNext().valid(), 0)

    def test_hidden_bouquets_are_not_listed(self):
        self.write("bouquets.tv", self.read("bouquets.tv").replace(b"1:7:1", b"1:519:1", 1))
        self.read_lists()
        self.assertEqual(len(self.list(eServiceCenter.ROOT_TV_FAVOURITES).getContent("R")), 3)

    def test_an_empty_folder(self):
        shutil.rmtree(self.etc)
        self.read_lists()
        self.assertEqual(self.list(eServiceCenter.ROOT_TV_FAVOURITES).getContent("R"), [])
        self.assertEqual(self.list(eServiceCenter.ROOT_TV_ALL).getContent("R"), [])
        self.assertEqual(len(self.console), 3)


class Names(SampleTest):
    def name(self, text):
        return ServiceReference(text).getServiceName()

    def test_from_lamedb(self):
        self.assertEqual(self.name("1:0:1:301:403:FE:640000:0:0:0:"), "Kanal Größe")
        self.assertEqual(self.name("1:0:19:301:403:FE:640000:0:0:0:"), "Kanal Größe", "whatever type the bouquet says")

    def test_the_reference_s_own_name_wins(self):
        self.assertEqual(self.name("1:0:1:301:403:FE:640000:0:0:0::My name"), "My name")
        self.assertEqual(self.name("4097:0:1:0:0:0:0:0:0:0:http%3a//x:Stream"), "Stream")

    def test_unknown_and_nameless_services_have_none(self):
        for text in ("1:0:1:307:403:FE:640000:0:0:0:", "1:0:1:FFF:1:1:1:0:0:0:", "4097:0:1:0:0:0:0:0:0:0:http%3a//x", "",
                     None, "1:64:1:0:0:0:0:0:0:0:", "1:0:1:301:403:FE:640000:0:0:0:/a/recording.ts"):
            with self.subTest(text):
                self.assertEqual(self.name(text), "")

    def test_two_services_may_have_the_same_name(self):
        self.assertEqual(self.list(eServiceCenter.ROOT_TV_ALL).getContent("N").count("Regional"), 2)

    def test_bouquets(self):
        self.assertEqual(self.name(eServiceCenter.ROOT_TV_FAVOURITES), "Bouquets (TV)")
        self.assertEqual(self.name("1:7:1:0:0:0:0:0:0:0:userbouquet.kids.tv"), "Kids")

    def test_service_reference(self):
        ref = eServiceReference("1:0:1:301:403:FE:640000:0:0:0:")
        self.assertIs(ServiceReference(ref).ref, ref)
        self.assertEqual(str(ServiceReference(ref)), ref.toString())
        self.assertEqual(ServiceReference(None).ref.valid(), 0)

    def test_the_service_centre_is_one(self):
        self.assertIs(eServiceCenter.getInstance(), eServiceCenter.getInstance())
