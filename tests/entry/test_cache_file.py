"""The path of the EPG file on hosts that build it anew at every start."""

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigSelection, ConfigText

BUILT = "/etc/enigma2/epg.dat"


class CacheFileTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.start_host({})

    def start_host(self, stored):
        """What such a host does when its GUI starts: the path is what two other keys say, whatever was stored."""
        misc = self.misc = self.config.misc
        misc.__dict__["_stored"] = stored
        misc.epgcachepath = ConfigSelection(["/etc/enigma2/", "/media/usb/"])
        misc.epgcachefilename = ConfigText("epg")
        misc.epgcache_filename = ConfigText(BUILT)

        def build(element=None):
            misc.epgcache_filename.value = misc.epgcachepath.value + misc.epgcachefilename.value + ".dat"
            misc.epgcache_filename.save()
        misc.epgcachepath.addNotifier(build, initial_call=False, immediate_feedback=False)
        misc.epgcachefilename.addNotifier(build, immediate_feedback=False)
        self.build = build

    def restart(self):
        """The GUI starts again with what is stored."""
        stored = dict((name, element.saved_value) for name, element in vars(self.misc).items()
                      if getattr(element, "saved_value", None) is not None)
        for name in list(vars(self.misc)):
            if name.startswith("veltro_"):
                del self.misc.__dict__[name]
        self.start_host(stored)
        del self.calls[:]

    @property
    def calls(self):
        return self.box.eEPGCache.getInstance().calls

    def element(self):
        """What the module finds as config.misc.epgcache_filename."""
        self.import_entry()
        return self.box.part("bridge.keys").changes()["Components.config"]["config"].misc.epgcache_filename

    def choose(self, path):
        element = self.element()
        element.value = path
        element.save()
        return element

    def test_an_offered_directory_goes_into_the_hosts_keys(self):
        element = self.choose("/media/usb/epg.dat")
        self.assertEqual((self.misc.epgcachepath.value, element.value), ("/media/usb/", "/media/usb/epg.dat"))
        self.assertEqual(self.misc.epgcachepath.saved_value, "/media/usb/")
        self.assertIn(("setCacheFile", "/media/usb/epg.dat"), self.calls)
        self.assertIsNone(self.misc.veltro_epgcache_filename.saved_value)
        self.restart()
        self.assertEqual(self.element().value, "/media/usb/epg.dat")
        self.assertEqual(self.calls, [])

    def test_another_name_of_the_file_gives_way(self):
        self.misc.epgcachefilename.value = "mine"
        self.choose("/media/usb/epg.dat")
        self.assertEqual(self.misc.epgcache_filename.value, "/media/usb/epg.dat")

    def test_any_other_directory_is_kept_too(self):
        self.choose("/media/net/box/epg.dat")
        self.assertEqual(self.misc.epgcache_filename.value, "/media/net/box/epg.dat")
        self.assertEqual(self.misc.epgcachepath.value, "/etc/enigma2/")
        for _ in range(2):
            self.restart()
            self.assertEqual(self.misc.epgcache_filename.value, BUILT)
            self.assertEqual(self.element().value, "/media/net/box/epg.dat")
            self.assertEqual(self.calls, [("setCacheFile", "/media/net/box/epg.dat"), ("load",)])

    def test_the_host_builds_it_later(self):
        self.choose("/media/net/box/epg.dat")
        self.restart()
        self.element()
        self.build()
        self.assertEqual(self.misc.epgcache_filename.value, "/media/net/box/epg.dat")
        self.assertEqual(self.calls[-1], ("setCacheFile", "/media/net/box/epg.dat"))

    def test_a_second_choice_replaces_the_first(self):
        self.choose("/media/net/box/epg.dat")
        self.choose("/media/other/epg.dat")
        self.restart()
        self.assertEqual(self.element().value, "/media/other/epg.dat")

    def test_back_to_the_hosts_own(self):
        self.choose("/media/net/box/epg.dat")
        self.choose(BUILT)
        self.assertIsNone(self.misc.veltro_epgcache_filename.saved_value)
        self.restart()
        self.assertEqual(self.element().value, BUILT)
        self.assertEqual(self.calls, [])

    def test_a_later_choice_in_the_hosts_menu_counts(self):
        self.choose("/media/net/box/epg.dat")
        self.misc.epgcachepath.value = "/media/usb/"
        self.misc.epgcachepath.save()
        self.assertEqual(self.misc.epgcache_filename.value, "/media/usb/epg.dat")
        self.restart()
        self.misc.epgcachepath.value = "/media/usb/"
        self.build()
        self.assertEqual(self.element().value, "/media/usb/epg.dat")

    def test_other_hosts_keep_their_element(self):
        del self.misc.__dict__["epgcachepath"]
        self.assertIs(self.element(), self.misc.epgcache_filename)
