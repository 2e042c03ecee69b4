"""The EPG cache: saved, loaded and deleted by the rows, with real events, over restarts; and what the user is told."""

from __future__ import absolute_import

import os

from . import case

EMPTY = 100  # bytes; a host may write the header of an empty cache


class CacheCase(case.HostCase):
    def run_row(self, label):
        """OK on an action row of the settings, which must be on top; what the user reads then, in the status line or else."""
        self.go_to(label)
        self.press("ok")
        self.assertAlive()
        if self.name() == "Veltro":
            return self.text("status")
        text = self.text("text")
        self.press("exit")
        self.assertShows("Veltro")
        return text

    def file(self):
        """The EPG file in force, as the host has it."""
        return self.python("from Components.config import config\nconfig.misc.epgcache_filename.value")

    def size(self):
        return os.path.getsize(self.path(self.file())) if self.exists(self.file()) else 0

    def events(self):
        return self.python(case.epg_count())


class TestCache(CacheCase):
    def setUp(self):
        super(TestCache, self).setUp()
        self.python(case.epg())
        self.assertGreater(self.events(), 1000)
        self.open_settings()

    def test_save_and_load(self):
        finished = self.run_row("Save EPG cache")
        self.assertIn(self.file(), finished)
        self.assertGreater(self.size(), 10240)
        self.python("from enigma import eEPGCache\neEPGCache.getInstance().flushEPG()")
        self.assertEqual(self.events(), 0)
        self.assertIn(self.file(), self.run_row("Load EPG data from epg.dat"))
        self.assertGreater(self.events(), 1000)

    def test_power_failure_after_save(self):
        self.run_row("Save EPG cache")
        self.host.kill()
        self.host.start()
        self.host.wait(case.epg_count() + " > 1000")

    def test_delete_what_the_host_could_not_read(self):
        path = self.file()
        for name, data in ((path, b"\x65\x87\x43\x21 broken" * 2000), (path + ".loading", b"x" * 20000)):
            self.write(name, data)
        self.run_row("Delete broken")
        self.assertLess(self.size(), EMPTY)
        self.assertFalse(self.exists(path + ".loading"))


class TestCacheGerman(CacheCase):
    language = "de_DE"
    resolution = "fhd"

    def test_words(self):
        self.python(case.epg())
        self.open_settings()
        self.assertIn(u"Speichern", self.run_row("Save EPG cache"))
        self.assertIn(u"Laden", self.run_row("Load EPG data from epg.dat"))
        self.assertIn(u"Leeren", self.run_row("Delete broken"))
