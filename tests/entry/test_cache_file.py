"""The path of the EPG file: the host's own keys are the one truth, on hosts that store it and on hosts that build it."""

import os

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigSelection, ConfigText


class PathTest(BoxTest):
    """A host that stores the path, and does not tell its cache of a new one."""

    def setUp(self):
        BoxTest.setUp(self)
        self.misc = self.config.misc
        self.misc.epgcache_filename = ConfigText(self.path("old", "epg.dat"))
        for name in ("old", "new", "usb"):
            os.mkdir(self.path(name))
        self.events = 1200
        self.box.eEPGCache.save = self.save_events

    def save_events(self, *cache):
        """A host's save: what the cache was told last is its file; it writes nothing when there is little."""
        self.calls.append(("save",))
        path = [call[1] for call in self.calls if call[0] == "setCacheFile"][-1]
        if self.events > 100:
            with open(path, "wb") as file:
                file.write(b"2Tv\x98 events")

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

    def test_it_counts_at_once(self):
        element = self.choose(self.path("new", "epg.dat"))
        self.assertEqual(element.value, self.path("new", "epg.dat"))
        self.assertEqual(self.misc.epgcache_filename.saved_value, self.path("new", "epg.dat"))
        self.assertIn(("setCacheFile", self.path("new", "epg.dat")), self.calls)

    def test_it_is_stored_at_once(self):
        self.choose(self.path("new", "epg.dat"))
        self.assertEqual(self.box.configfile.saves, 1)

    def test_the_events_go_there(self):
        self.choose(self.path("new", "epg.dat"))
        self.assertTrue(os.path.exists(self.path("new", "epg.dat")))

    def test_the_old_file_goes_there_when_little_is_in_memory(self):
        self.events = 0
        self.write(os.path.join("old", "epg.dat"))
        self.choose(self.path("new", "epg.dat"))
        with open(self.path("new", "epg.dat"), "rb") as file:
            self.assertEqual(file.read(), b"old events")

    def test_a_file_that_is_there_stays(self):
        self.write(os.path.join("new", "epg.dat"))
        self.choose(self.path("new", "epg.dat"))
        with open(self.path("new", "epg.dat"), "rb") as file:
            self.assertEqual(file.read(), b"old events")

    def test_a_client_writes_none(self):
        self.element()
        self.misc.epg_is_client_stb.value = True
        self.choose(self.path("new", "epg.dat"))
        self.assertEqual(os.listdir(self.path("new")), [])

    def test_another_name_of_the_file_stays(self):
        self.misc.epgcache_filename.value = self.path("old", "mine.dat")
        element = self.choose(self.path("new", "epg.dat"))
        self.assertEqual(element.value, self.path("new", "epg.dat"), "the module knows one name")
        self.assertEqual(self.misc.epgcache_filename.value, self.path("new", "mine.dat"))

    def test_a_directory_as_the_path(self):
        self.misc.epgcache_filename.value = self.path("old")
        element = self.element()
        self.assertEqual(element.value, self.path("old", "epg.dat"))


class BuiltPathTest(PathTest):
    """A host that builds the path from two other keys, whenever one of them is saved and at each start, and saves its
    cache then."""

    def setUp(self):
        PathTest.setUp(self)
        self.start_host({})

    def start_host(self, stored):
        misc = self.misc
        misc.__dict__["_stored"] = stored
        misc.epgcachepath = ConfigSelection([(self.path("old", ""), "Internal Flash"), (self.path("usb"), "usb")])
        misc.epgcachefilename = ConfigText("epg")
        misc.epgcache_filename = ConfigText("")
        cache = self.box.eEPGCache.getInstance()

        def build(element=None):
            misc.epgcache_filename.value = os.path.join(misc.epgcachepath.value, misc.epgcachefilename.value + ".dat")
            misc.epgcache_filename.save()
            cache.setCacheFile(misc.epgcache_filename.value)
            if element is not None:
                cache.save()
        misc.epgcachepath.addNotifier(build, initial_call=False, immediate_feedback=False)
        misc.epgcachefilename.addNotifier(build, initial_call=False, immediate_feedback=False)
        build()

    def restart(self, **more):
        """The GUI starts again with what is stored."""
        stored = dict((name, element.saved_value) for name, element in vars(self.misc).items()
                      if getattr(element, "saved_value", None) is not None)
        stored.update(more)
        self.start_host(stored)
        del self.calls[:]
        self.import_entry()
        self.box.part("bridge").start()

    def test_it_counts_after_a_restart(self):
        for path in (self.path("new", "epg.dat"), self.path("usb", "epg.dat")):
            self.choose(path)
            for _ in range(2):
                self.restart()
                self.assertEqual(self.misc.epgcache_filename.value, path)
                self.assertEqual(self.element().value, path)

    def test_the_host_has_read_another_file(self):
        self.choose(self.path("new", "epg.dat"))
        self.restart()
        self.assertEqual(self.calls, [("setCacheFile", self.path("new", "epg.dat")), ("load",)])

    def test_an_offered_directory_is_the_hosts_choice(self):
        self.choose(self.path("usb", "epg.dat"))
        self.assertEqual(self.misc.epgcachepath.saved_value, self.path("usb"))
        self.restart()
        self.assertEqual(self.calls, [])

    def test_a_later_choice_in_the_hosts_menu_counts(self):
        self.choose(self.path("new", "epg.dat"))
        self.misc.epgcachepath.value = self.path("old", "")
        self.misc.epgcachepath.save()
        self.assertEqual(self.element().value, self.path("old", "epg.dat"))
        self.restart()
        self.assertEqual(self.element().value, self.path("old", "epg.dat"))

    def test_a_choice_in_the_hosts_menu_counts_at_once_after_a_restart_too(self):
        self.choose(self.path("new", "epg.dat"))
        self.restart()
        self.misc.epgcachepath.value = self.path("old", "")
        self.misc.epgcachepath.save()
        self.assertEqual(self.misc.epgcache_filename.value, self.path("old", "epg.dat"))

    def test_the_host_makes_its_choices_anew(self):
        self.choose(self.path("new", "epg.dat"))
        self.restart()
        self.misc.epgcachepath.setChoices([self.path("old", ""), self.path("usb")])
        self.assertEqual(self.misc.epgcachepath.value, self.path("new", ""))
        self.assertEqual(self.misc.epgcache_filename.value, self.path("new", "epg.dat"))

    def test_another_name_of_the_file_stays(self):
        self.misc.epgcachefilename.value = "mine"
        self.misc.epgcachefilename.save()
        self.assertEqual(self.element().value, self.path("old", "epg.dat"))
        self.choose(self.path("new", "epg.dat"))
        self.assertEqual(self.misc.epgcache_filename.value, self.path("new", "mine.dat"))
        self.restart()
        self.assertEqual(self.misc.epgcache_filename.value, self.path("new", "mine.dat"))

    def test_old_keys_are_taken_over_once(self):
        old = dict(veltro_epgcache_filename=self.path("new", "epg.dat"),
                   veltro_epgcache_instead_of=self.path("old", "epg.dat"))
        self.restart(**old)
        self.assertEqual(self.misc.epgcachepath.saved_value, self.path("new", ""))
        self.assertIsNone(self.misc.veltro_epgcache_filename.saved_value)
        self.assertEqual(self.misc.epgcache_filename.value, self.path("new", "epg.dat"))
        self.restart()
        self.assertEqual(self.misc.epgcache_filename.value, self.path("new", "epg.dat"))

    def test_old_keys_of_another_time(self):
        """The user has chosen another directory in the host's menu since."""
        self.restart(veltro_epgcache_filename=self.path("new", "epg.dat"), veltro_epgcache_instead_of="/elsewhere")
        self.assertEqual(self.misc.epgcache_filename.value, self.path("old", "epg.dat"))
        self.assertIsNone(self.misc.veltro_epgcache_filename.saved_value)

    test_a_directory_as_the_path = None
