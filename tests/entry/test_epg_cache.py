"""Emptying the EPG cache: what is called, and that no old event is left in any file that the host would load."""

import os
import struct

from tests.entry.case import BoxTest

MAGIC = struct.pack("<I", 0x98765432)


class ClearTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.import_entry()
        self.file = self.write("epg.dat")
        self.config.misc.epgcache_filename.value = self.file
        self.part = self.box.part("bridge.epg_cache")
        self.part.IN_FLASH = self.path("flash.dat")
        self.cache = self.part.EPGCache.getInstance()
        self.calls = self.box.eEPGCache.getInstance().calls

    def test_all_else_is_the_hosts(self):
        self.cache.setCacheFile("/x")
        self.cache.save()
        self.assertEqual(self.calls, [("setCacheFile", self.file), ("save",)], "the host's own path")
        with self.assertRaises(AttributeError):
            self.cache.no_such_operation
        self.assertTrue(os.path.exists(self.file))

    def test_flushes_and_removes_the_file(self):
        self.cache.clearDB()
        self.assertEqual(self.calls, [("flushEPG",)])
        self.assertEqual(os.listdir(self.folder), [])

    def test_removes_a_file_that_the_host_could_not_read(self):
        os.rename(self.file, self.file + ".loading")
        self.cache.clearDB()
        self.assertEqual(os.listdir(self.folder), [])

    def test_no_file_at_all(self):
        os.unlink(self.file)
        self.cache.clearDB()
        self.assertEqual(self.calls, [("flushEPG",)])

    def test_a_directory_as_the_path(self):
        self.config.misc.epgcache_filename.value = self.folder
        self.cache.clearDB()
        self.assertEqual(os.listdir(self.folder), [])

    def test_a_link_stays_and_its_file_goes(self):
        os.rename(self.file, self.path("elsewhere.dat"))
        os.symlink(self.path("elsewhere.dat"), self.file)
        self.cache.clearDB()
        self.assertEqual(os.listdir(self.folder), ["epg.dat"])
        self.assertTrue(os.path.islink(self.file))

    def test_the_copy_in_flash_goes_too(self):
        for order in ("<I", ">I"):
            self.write("flash.dat", struct.pack(order, 0x98765432) + b"ENIGMA_EPG_V8")
            self.write("flash.dat.loading", struct.pack(order, 0x98765432))
            self.cache.clearDB()
            self.assertEqual(os.listdir(self.folder), [])

    def test_another_file_of_that_name_in_flash_stays(self):
        self.write("flash.dat", b"my own notes")
        self.cache.clearDB()
        self.assertEqual(os.listdir(self.folder), ["flash.dat"])

    def test_a_file_that_can_not_be_removed_is_emptied(self):
        self.fail_to_unlink()
        self.cache.clearDB()
        self.assertEqual(os.path.getsize(self.file), 0)

    def test_a_file_that_can_be_neither_is_an_error(self):
        os.unlink(self.file)
        os.makedirs(os.path.join(self.file, "epg.dat"))
        self.fail_to_unlink()
        with self.assertRaises((IOError, OSError)):
            self.cache.clearDB()

    def fail_to_unlink(self):
        def unlink(path):
            if os.path.exists(path):
                raise OSError(30, "Read-only file system")
            raise OSError(2, "No such file or directory")
        real, os.unlink = os.unlink, unlink
        self.addCleanup(setattr, os, "unlink", real)


class ClearByClearTest(BoxTest):
    facts = {"cache": ("flushEPG", "clear", "setSave")}

    def test_clear_comes_first(self):
        self.import_entry()
        self.config.misc.epgcache_filename.value = self.path("epg.dat")
        self.box.part("bridge.epg_cache").EPGCache.getInstance().clearDB()
        self.assertEqual(self.box.eEPGCache.getInstance().calls, [("clear",)])


class ClearWithTheModuleTest(BoxTest):
    def test_clear_then_save(self):
        self.load()
        self.config.misc.epgcache_filename.value = self.write("epg.dat")
        self.module.doEPGAction("cleardb")
        self.assertEqual(self.box.eEPGCache.getInstance().calls, [("flushEPG",), ("save",)])
        self.assertEqual(os.listdir(self.folder), [])


class HostThatCanClearTest(BoxTest):
    facts = {"cache": ("clearDB",)}

    def test_nothing_is_changed(self):
        self.import_entry()
        self.assertEqual(self.box.part("bridge.epg_cache").changes(), {})


class OutcomeTest(BoxTest):
    """What the user is told of saving and loading, and that the old file is not lost. Hosts themselves say nothing."""

    def setUp(self):
        BoxTest.setUp(self)
        self.load()
        self.file = self.write("epg.dat", MAGIC + b"old")
        self.config.misc.epgcache_filename.value = self.file
        self.part = self.box.part("bridge.epg_cache")
        self.part.IN_FLASH = self.path("flash.dat")
        self.screen = self.box.session.open(self.module.Veltro, "/plugin")
        self.host(save=self.writes(MAGIC + b"new"))

    def host(self, **operations):
        for name, operation in operations.items():
            setattr(self.box.eEPGCache, name, operation)

    def writes(self, data, name="epg.dat"):
        return lambda cache: self.write(name, data) and None

    def ok(self, row):
        self.screen["config"].l.cursor = row
        self.screen["shortcuts"].actions["ok"]()
        return self.screen.text

    def save(self):
        return self.ok(19)

    def restore(self):
        return self.ok(20)

    def content(self):
        with open(self.file, "rb") as file:
            return file.read()

    def assert_old_file(self):
        self.assertEqual(self.content(), MAGIC + b"old")
        self.assertEqual(sorted(os.listdir(self.folder))[0], "epg.dat")
        self.assertEqual([name for name in os.listdir(self.folder) if "veltro" in name], [])

    def test_saved(self):
        self.assertEqual(self.save(), "Saving of EPG cache to %s finished" % self.file)
        self.assertEqual((self.content(), os.listdir(self.folder)), (MAGIC + b"new", ["epg.dat"]))

    def test_saved_where_no_file_was(self):
        os.unlink(self.file)
        self.assertEqual(self.save(), "Saving of EPG cache to %s finished" % self.file)

    def test_the_hosts_own_name_is_said(self):
        self.config.misc.epgcache_filename.value = self.path("mine.dat")
        self.host(save=self.writes(MAGIC, "mine.dat"))
        self.assertEqual(self.save(), "Saving of EPG cache to %s finished" % self.path("mine.dat"))

    def test_too_little_to_be_saved(self):
        self.host(save=lambda cache: None)
        self.assertEqual(self.save(), "Nothing was saved: there is too little EPG data, or the image does not save any.")
        self.assert_old_file()

    def test_a_full_disk(self):
        self.host(save=self.writes(b""))  # it finds out when it has opened the file
        self.assertEqual(self.save(), "There is not enough room for %s." % self.file)
        self.assert_old_file()

    def test_a_file_that_was_not_finished(self):
        self.host(save=self.writes(MAGIC + b"UNFINISHED_V8"))
        self.assertEqual(self.save(), "There is not enough room for %s." % self.file)
        self.assert_old_file()

    def test_a_directory_that_is_gone(self):
        self.config.misc.epgcache_filename.value = self.path("gone", "epg.dat")
        self.host(save=lambda cache: None)
        self.assertEqual(self.save(), "%s can't be written." % self.path("gone", "epg.dat"))

    def test_saved_in_flash_instead(self):
        self.config.misc.epgcache_filename.value = self.path("gone", "epg.dat")
        self.host(save=self.writes(MAGIC, "flash.dat"))
        self.assertEqual(self.save(), "%s can't be written. The EPG data was saved to %s."
                         % (self.path("gone", "epg.dat"), self.path("flash.dat")))

    def test_a_disk_that_can_not_be_written(self):
        """The file can't be put aside there. That it was not written shows all the same."""
        def refused(*paths):
            raise OSError(30, "Read-only file system")
        real, os.rename = os.rename, refused
        self.addCleanup(setattr, os, "rename", real)
        self.host(save=lambda cache: None)
        self.assertIn(self.save(), ("%s can't be written." % self.file,
                                    "Nothing was saved: there is too little EPG data, or the image does not save any."))
        self.assert_old_file()

    def test_loaded(self):
        self.assertEqual(self.restore(), "Loading EPG data from %s finished" % self.file)

    def test_nothing_to_load(self):
        os.unlink(self.file)
        self.assertEqual(self.restore(), "There is no EPG file %s." % self.file)

    def test_loaded_from_flash(self):
        os.rename(self.file, self.path("flash.dat"))
        self.assertEqual(self.restore(), "Loading EPG data from %s finished" % self.file)

    def test_a_file_that_the_host_can_not_read(self):
        self.host(load=lambda cache: os.rename(self.file, self.file + ".loading"))
        self.assertEqual(self.restore(), "%s can't be read." % self.file)

    def test_an_empty_file(self):
        self.write("epg.dat", b"")
        self.assertEqual(self.restore(), "%s can't be read." % self.file)

    def test_cleared(self):
        self.host(save=lambda cache: None)
        self.assertEqual(self.ok(21), "Clearing EPG DB finished")

    def test_nothing_to_remove_on_a_disk_that_can_not_be_written(self):
        os.unlink(self.file)

        def refused(path):
            raise OSError(30, "Read-only file system")
        real, os.unlink = os.unlink, refused
        self.addCleanup(setattr, os, "unlink", real)
        self.assertEqual(self.ok(21), "Clearing EPG DB finished")

    def test_the_timers_problem_is_not_the_users(self):
        self.host(save=lambda cache: None)
        self.module.doEPGAction("save")
        self.host(save=self.writes(MAGIC))
        self.assertEqual(self.save(), "Saving of EPG cache to %s finished" % self.file)

    def test_a_power_failure_in_between(self):
        os.rename(self.file, self.file + ".veltro-aside")
        self.write("epg.dat", MAGIC + b"UNFINISHED_V8")
        self.box.part("bridge").start()
        self.assert_old_file()
