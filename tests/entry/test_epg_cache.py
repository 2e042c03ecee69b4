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
        self.assertEqual(self.calls, [("setCacheFile", "/x"), ("save",)])
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
