"""eEPGCache: the guide in memory, its file in every state, and the demo programmes."""
import errno
import os
import stat
import subprocess
import sys
from unittest import mock

from receiver.data import epg_cache
from receiver.data.epg_cache import eEPGCache
from receiver.data.reference import eServiceReference
from tests.receiver.boxes import SAMPLE, BoxTest

ONE = eServiceReference("1:0:19:1B7B:C88:3:EB0000:0:0:0::One")
TWO = eServiceReference.read("4097:0:1:0:0:0:0:0:0:0:http%3a//x/caf\udce9:Two")
THREE = eServiceReference("1:0:1:1:1:1:1:0:0:0:")


class CacheTest(BoxTest):
    def setUp(self):
        super().setUp()
        self.cache = eEPGCache()
        self.path = os.path.join(self.hdd, "epg.dat")

    def fill(self):
        self.cache.receive([ONE, TWO])

    def content(self):
        """Bytes of the cache file."""
        with open(self.path, "rb") as file:
            return file.read()

    def overwrite(self, data):
        with open(self.path, "wb") as file:
            file.write(data)


class Memory(CacheTest):
    def test_a_week_of_each_service(self):
        for _ in range(2):
            self.fill()
            self.assertEqual(self.cache.counts(), (420, 2))

    def test_services_of_the_blacklist_receive_nothing(self):
        self.cache.receive([ONE, TWO], skip={ONE.toCompareString()})
        self.assertEqual(self.cache.counts(), (210, 1))

    def test_clear(self):
        self.fill()
        self.assertIsNone(self.cache.clearDB())
        self.assertEqual(self.cache.counts(), (0, 0))

    def test_one_instance(self):
        self.assertIs(eEPGCache.getInstance(), eEPGCache.getInstance())


class File(CacheTest):
    def test_save_and_load(self):
        self.fill()
        self.assertIsNone(self.cache.save())
        self.assertEqual(os.listdir(self.hdd), ["epg.dat"])
        fresh = eEPGCache()
        self.assertEqual(fresh.fileCounts(), (420, 2))
        self.assertIsNone(fresh.load())
        self.assertEqual(fresh.counts(), (420, 2))
        self.assertEqual(self.console, [])

    def test_load_replaces_what_was_there(self):
        self.fill()
        self.cache.save()
        self.cache.receive([eServiceReference("1:0:1:1:1:1:1:0:0:0:")])
        self.cache.load()
        self.assertEqual(self.cache.counts(), (420, 2))

    def test_clear_then_save_empties_the_file(self):
        self.fill()
        self.cache.save()
        self.cache.clearDB()
        self.assertEqual(self.cache.fileCounts(), (420, 2))
        self.cache.save()
        self.assertEqual(self.cache.fileCounts(), (0, 0))
        self.cache.load()
        self.assertEqual((self.cache.counts(), self.console), ((0, 0), []))

    def test_another_file(self):
        other = os.path.join(self.etc, "epg.dat")
        self.fill()
        self.assertIsNone(self.cache.setCacheFile("/etc/enigma2/epg.dat"))
        self.assertFalse(os.path.exists(other))
        self.cache.save()
        self.assertEqual((os.path.exists(other), os.path.exists(self.path)), (True, False))

    def test_counts_of_the_file_follow_the_file(self):
        self.assertIsNone(self.cache.fileCounts())
        self.fill()
        self.cache.save()
        self.assertEqual(self.cache.fileCounts(), (420, 2))
        with mock.patch.object(epg_cache, "unpack", side_effect=AssertionError("read again")):
            self.assertEqual(self.cache.fileCounts(), (420, 2))
        self.overwrite(b"rubbish")
        self.assertIsNone(self.cache.fileCounts())
        os.unlink(self.path)
        self.assertIsNone(self.cache.fileCounts())
        self.assertEqual(self.console, [])

    def test_a_link_stays_a_link_and_the_mode_stays(self):
        target = os.path.join(self.root, "real.dat")
        self.overwrite(b"")
        os.rename(self.path, target)
        os.chmod(target, 0o640)
        os.symlink(target, self.path)
        self.fill()
        self.cache.save()
        self.assertTrue(os.path.islink(self.path))
        self.assertEqual(os.stat(target).st_mode & 0o777, 0o640)
        self.assertEqual(self.cache.fileCounts(), (420, 2))


class BrokenFile(CacheTest):
    def setUp(self):
        super().setUp()
        self.fill()
        self.cache.save()
        self.whole = self.content()

    def refused(self, *words, complaint="not loaded"):
        self.cache.load()
        self.assertEqual(self.cache.counts(), (420, 2))
        self.complaint(complaint, *words)
        self.console.clear()

    def test_missing(self):
        os.unlink(self.path)
        self.refused(complaint="there is no")

    def test_every_truncation(self):
        for length in range(len(self.whole)):
            self.overwrite(self.whole[:length])
            self.refused()

    def test_every_broken_byte(self):
        for index in range(len(self.whole)):
            data = bytearray(self.whole)
            data[index] ^= 0x11
            self.overwrite(data)
            self.refused()

    def test_too_long(self):
        self.overwrite(self.whole + b"\0")
        self.refused("broken")

    def test_foreign_files(self):
        for data in (b"", b"\x98\x76\x54\x32ENIGMA_EPG_V8", b"hello", bytes(5000)):
            self.overwrite(data)
            self.refused("not an EPG cache file")

    def test_a_later_version(self):
        self.overwrite(self.whole.replace(b" 3 ", b" 2 ", 1))
        self.refused("another version")

    def test_what_is_no_file(self):
        os.unlink(self.path)
        os.mkdir(self.path)
        self.refused()
        os.rmdir(self.path)
        os.mkfifo(self.path)
        self.refused("a pipe")
        self.cache.setCacheFile("a\0b")
        self.refused()
        self.assertIsNone(self.cache.fileCounts())


class ForeignFile(CacheTest):
    """What no receiver has made is somebody's."""

    def test_is_never_overwritten(self):
        failures = []
        self.cache.on_failure = failures.append
        self.fill()
        for data in (b"\x98\x76\x54\x32ENIGMA_EPG_V8", b"my thesis", b"PC-"):
            self.overwrite(data)
            self.cache.save()
            self.assertEqual(self.content(), data)
            self.complaint("not saved", "left alone")
            self.assertIn("left alone", failures.pop())
            self.console.clear()

    def test_one_of_ours_is_even_when_broken(self):
        for data in (b"", b"PC-EPG", b"PC-EPG\r\n\0\0 an older version"):
            self.overwrite(data)
            self.fill()
            self.cache.save()
            self.assertEqual(self.cache.fileCounts(), (420, 2))

    def test_a_pipe_or_a_device_is_neither_read_nor_written(self):
        os.mkfifo(self.path)
        self.cache.save()
        self.complaint("left alone")
        self.assertTrue(stat.S_ISFIFO(os.stat(self.path).st_mode))


class FailedSave(CacheTest):
    """The old file survives whatever happens, and no other file is left."""

    def setUp(self):
        super().setUp()
        self.fill()
        self.cache.save()
        self.old = self.content()
        self.cache.receive([THREE])

    def kept(self, *words):
        self.assertIsNone(self.cache.save())
        self.assertEqual(self.content(), self.old)
        self.assertEqual(os.listdir(self.hdd), ["epg.dat"])
        self.complaint("not saved", *words)

    def test_rename_fails(self):
        with mock.patch("os.replace", side_effect=OSError(errno.EIO, "broken disk")):
            self.kept("broken disk")

    def test_sync_fails(self):
        with mock.patch("os.fsync", side_effect=OSError(errno.EIO, "broken disk")):
            self.kept("broken disk")

    def test_full_disk(self):
        with mock.patch("os.fsync", side_effect=OSError(errno.ENOSPC, "No space left on device")):
            self.kept("No space left")

    def test_a_link_in_the_place_of_the_temporary_file_is_not_followed(self):
        victim = os.path.join(self.etc, "letter")
        self.write("letter", "dear all")
        os.symlink(victim, self.path + ".writing")
        self.cache.save()
        self.assertEqual(self.read("letter"), b"dear all")
        self.assertEqual(self.cache.fileCounts(), (630, 3))

    def test_folder_is_gone_or_no_folder(self):
        for path in (os.path.join(self.hdd, "gone", "epg.dat"), os.path.join(self.path, "epg.dat"), "a\0b"):
            self.console.clear()
            self.cache.setCacheFile(path)
            self.cache.save()
            self.complaint("not saved")
        self.assertEqual(self.content(), self.old)

    def test_crash_between_write_and_rename(self):
        """The process dies before the rename, then before the file is complete: the old file is whole, and the next
        save works although a temporary file lies about."""
        program = ("import os, sys\n"
                   "from receiver.data import env, epg_cache, reference\n"
                   "env.configure(*sys.argv[3:])\n"
                   "cache = epg_cache.eEPGCache()\n"
                   "cache.setCacheFile(sys.argv[1])\n"
                   "cache.receive([reference.eServiceReference('1:0:1:1:1:1:1:0:0:0:')])\n"
                   "setattr(os, sys.argv[2], lambda *args: os._exit(9))\n"
                   "cache.save()\n")
        for call in ("replace", "fsync"):
            result = subprocess.run([sys.executable, "-c", program, self.path, call, self.etc, self.root], cwd=os.path.join(SAMPLE, "..", ".."))
            self.assertEqual(result.returncode, 9)
            self.assertEqual(self.content(), self.old)
            self.assertEqual(eEPGCache().fileCounts(), (420, 2))
        self.cache.save()
        self.assertEqual(self.cache.fileCounts(), (630, 3))
        self.assertEqual(os.listdir(self.hdd), ["epg.dat"])

    def test_the_content_is_on_the_disk_before_its_name(self):
        """The other way round a power cut could leave half a file."""
        steps = []
        real_sync, real_replace = os.fsync, os.replace
        with mock.patch("os.fsync", lambda handle: (steps.append("content"), real_sync(handle))):
            with mock.patch("os.replace", lambda old, new: (steps.append("name"), real_replace(old, new))):
                self.cache.save()
        self.assertEqual(steps, ["content", "name"])
