# -*- coding: utf-8 -*-
"""Nothing is lost: the EPG file and where it is, the blacklist and its lines; and the user is told what happened."""

from __future__ import absolute_import

import os
import re

from . import case, channels

FILE = "from Components.config import config\nconfig.misc.epgcache_filename.value"
SMALL_DISK = "import os\nos.system('mount -t tmpfs -o size=%s tmpfs %s')"


class LossesCase(case.HostCase):
    def message(self):
        self.assertTrue(self.name().startswith("MessageBox"), self.screen())
        text = self.python("session.current_dialog['text'].getText()")
        self.python("session.current_dialog.close(False)")  # not by a key: it may have gone by itself then
        self.host.settle()
        return text

    def ok(self, label):
        """OK on a row of the settings; the status line."""
        self.go_to(label)
        self.press("ok")
        return self.python("session.current_dialog['status'].getText()")

    def choose(self, *directories):
        """Chooses a directory by keys, from the root on."""
        self.go_to("EPG Path")
        self.press("ok")
        self.assertShows("DirChoose")
        while self.python("session.current_dialog['filelist'].getCurrentDirectory()") != "/":
            self.enter("<")
        for directory in directories[:-1]:
            self.enter(directory)
        self.point_at(directories[-1])
        self.press("green")
        self.assertShows("Veltro")

    def enter(self, name):
        self.point_at(name)
        self.press("ok")

    def point_at(self, name):
        rows = [row[0] if row else "" for row in self.screen()["rows"]]
        self.select([index for index, row in enumerate(rows) if row.startswith(name)][0])


class EpgFile(LossesCase):
    """The EPG file: where it is, what is in it, and what the user is told."""

    def setUp(self):
        super(EpgFile, self).setUp()
        self.python(case.epg())
        self.open_settings()

    def cache_file(self):
        """The file that the cache writes, by the log."""
        self.python("from enigma import eEPGCache\neEPGCache.getInstance().save()")
        return re.findall(r"events written to (.*)", self.host.log)[-1]

    def test_1_a_chosen_directory_counts_at_once_and_after_a_restart(self):
        for directories, path in ((("media", "usb"), "/media/usb/epg.dat"), (("media", "hdd"), "/media/hdd/epg.dat"),
                                  (("media", "net"), "/media/net/epg.dat")):
            if not os.path.isdir(os.path.dirname(self.path(path))):
                os.makedirs(os.path.dirname(self.path(path)))
            self.choose(*directories)
            rows = self.screen()["rows"]
            self.assertTrue(rows[self.index_of("EPG Path", rows)][0].endswith(os.path.dirname(path)))
            self.assertEqual((self.python(FILE), self.cache_file()), (path, path))
            self.press("exit")
            events = self.python(case.epg_count())
            self.assertEqual(events, 1200)
            self.restart()
            self.assertEqual((self.python(FILE), self.cache_file()), (path, path))
            self.host.wait(case.epg_count() + " == %d" % events)
            self.open_settings()
        self.assertEqual([each for each in ("veltro_epgcache_filename", "veltro_epgcache_instead_of")
                          if self.stored("config.misc." + each)], [])

    def test_2_a_power_failure_after_the_choice(self):
        directory = os.path.dirname(self.python(FILE))
        other = "usb" if directory != "/media/usb" else "hdd"
        self.choose("media", other)
        self.host.kill()
        self.host.start()
        self.assertEqual(self.python(FILE), "/media/%s/epg.dat" % other)
        self.host.wait(case.epg_count() + " == 1200")

    def test_3_what_saving_has_done(self):
        path = self.python(FILE)
        self.assertEqual(self.ok("Save EPG cache"), "Saving of EPG cache to %s finished" % path)
        before = self.read(path)
        self.python("from enigma import eEPGCache\neEPGCache.getInstance().flushEPG()")
        status = self.ok("Save EPG cache")  # some hosts write an empty one, some nothing
        if status.startswith("Saving"):
            self.assertNotEqual(self.read(path), before)
        else:
            self.assertEqual(status, "Nothing was saved: there is too little EPG data, or the image does not save any.")
            self.assertEqual(self.read(path), before)

    def test_4_a_full_disk(self):
        self.choose("media", "usb")
        self.assertEqual(self.ok("Save EPG cache"), "Saving of EPG cache to /media/usb/epg.dat finished")
        self.python("import os, shutil\nshutil.copy('/media/usb/epg.dat', '/tmp/epg.dat')\n"
                    + SMALL_DISK % ("600k", "/media/usb") + "\nshutil.copy('/tmp/epg.dat', '/media/usb/epg.dat')\n"
                    "os.system('dd if=/dev/zero of=/media/usb/full bs=4k 2>/dev/null')")
        try:
            before = self.python("os.path.getsize('/media/usb/epg.dat')")
            self.assertEqual(self.ok("Save EPG cache"), "There is not enough room for /media/usb/epg.dat.")
            self.assertEqual(self.python("os.path.getsize('/media/usb/epg.dat'), sorted(os.listdir('/media/usb'))"),
                             [before, ["epg.dat", "full"]])
            self.python("os.unlink('/media/usb/full')\nos.system('mount -o remount,ro /media/usb')")
            self.assertEqual(self.ok("Save EPG cache"),
                             "/media/usb/epg.dat can't be written. The EPG data was saved to /epg.dat.")
            self.assertEqual(self.python("os.listdir('/media/usb')"), ["epg.dat"])
            self.python("os.system('mount -o remount,rw /media/usb')\nos.unlink('/media/usb/epg.dat')\nos.unlink('/epg.dat')\n"
                        "os.system('mount -o remount,ro /media/usb')")
            self.assertEqual(self.ok("Delete broken"), "Clearing EPG DB finished")
        finally:
            self.python("os.system('umount /media/usb')")

    def test_5_what_loading_has_done(self):
        path = self.python(FILE)
        self.ok("Save EPG cache")
        self.assertEqual(self.ok("Load EPG data from epg"), "Loading EPG data from %s finished" % path)
        self.write(path, b"broken")
        self.assertEqual(self.ok("Load EPG data from epg"), "%s can't be read." % path)
        self.assertEqual(self.ok("Load EPG data from epg"), "There is no EPG file %s." % path)

    def test_6_deleted_is_deleted(self):
        self.ok("Save EPG cache")
        self.assertEqual(self.ok("Delete broken"), "Clearing EPG DB finished")
        self.restart()
        self.assertEqual(self.python(case.epg_count()), 0)

    def test_6_a_power_failure_while_the_file_is_written(self):
        path = self.python(FILE)
        self.ok("Save EPG cache")
        whole = self.read(path)
        self.host.kill()
        self.write(path + ".veltro-aside", whole)
        self.write(path, whole.replace(b"ENIGMA_EPG", b"UNFINISHED")[:100])
        self.host.start()
        self.host.wait(case.epg_count() + " == 1200")
        self.assertEqual([name for name in os.listdir(os.path.dirname(self.path(path))) if "aside" in name], [])

    def test_7_names_of_directories(self):
        odd = [b"with space", b"100% %s", b"it's \"quoted\"", u"M\u00fcnchen".encode("utf-8"), b"a=b", b"x" * 200]
        bad = [b"caf\xe9", b"line\nfeed"]
        for name in odd + bad:
            folder = os.path.join(os.fsencode(self.path("/media/hdd")), name)
            if not os.path.isdir(folder):
                os.makedirs(folder)
        for name in odd:
            name = name.decode("utf-8")
            with self.subTest(name=name):
                self.choose("media", "hdd", name)
                path = "/media/hdd/%s/epg.dat" % name
                self.assertEqual((self.python(FILE), self.cache_file()), (path, path))
                if name in ("100% %s", "a=b"):
                    self.press("exit")
                    self.restart()
                    self.assertEqual(self.python(FILE), path)
                    self.python(case.epg())
                    self.open_settings()
        self.go_to("EPG Path")
        self.press("ok")
        self.assertAlive()
        self.press("exit")


class FileName(LossesCase):
    """Where the host has a name for the file, it stays."""

    values = {"config.misc.epgcachefilename": "myepg"}

    def test_it_stays(self):
        if not self.python("from Components.config import config\nhasattr(config.misc, 'epgcachefilename')"):
            self.skipTest("this host has no name for the file")
        self.python(case.epg())
        self.open_settings()
        rows = self.screen()["rows"]
        before = os.path.dirname(self.python(FILE))
        self.assertEqual(rows[self.index_of("EPG Path", rows)][0], "EPG Path : " + before)
        self.go_to("EPG Path")
        self.press("ok")
        self.assertEqual(self.python("session.current_dialog['filelist'].getCurrentDirectory()"), before + "/")
        self.press("exit")
        self.choose("media", "usb")
        self.assertEqual(self.python(FILE), "/media/usb/myepg.dat")
        self.assertEqual(self.ok("Save EPG cache"), "Saving of EPG cache to /media/usb/myepg.dat finished")
        self.press("exit")
        self.restart()
        self.assertEqual(self.python(FILE), "/media/usb/myepg.dat")
        self.host.wait(case.epg_count() + " == 1200")


class HostsMenu(LossesCase):
    """A directory chosen in the host's own menu counts, whatever was chosen in ours."""

    def test_the_last_choice_counts(self):
        if not self.python("from Components.config import config\nhasattr(config.misc, 'epgcachepath')"):
            self.skipTest("this host has the whole path in one key")
        for directory in ("usb", "hdd"):
            self.open_settings()
            self.choose("media", directory)
            self.press("exit")
            self.restart()
        for choice in ("/media/hdd/", "/etc/enigma2/"):
            self.python("from Components.config import config, configfile\nconfig.misc.epgcachepath.value = %r\n"
                        "config.misc.epgcachepath.save()\nconfigfile.save()" % choice)
            self.assertEqual(self.python(FILE), choice + "epg.dat")
            self.restart()
            self.assertEqual(self.python("from Components.config import config\nconfig.misc.epgcachepath.value"), choice)
            self.assertEqual(self.python(FILE), choice + "epg.dat")


class OldKeys(LossesCase):
    """A directory that version 1.0 has kept in keys of its own."""

    values = {"config.misc.veltro_epgcache_filename": "/media/usb/epg/epg.dat",
              "config.misc.veltro_epgcache_instead_of": "/etc/enigma2/epg.dat"}

    def test_are_taken_over_once(self):
        if not self.python("from Components.config import config\nhasattr(config.misc, 'epgcachepath')"):
            self.skipTest("this host has the whole path in one key")
        self.assertEqual(self.python(FILE), "/media/usb/epg/epg.dat")
        self.restart()
        self.assertEqual(self.python(FILE), "/media/usb/epg/epg.dat")
        self.assertIsNone(self.stored("config.misc.veltro_epgcache_filename"))


class Blacklist(LossesCase):
    def lines(self):
        return self.read(case.BLACKLIST).split(b"\n")[:-1]

    def rows_in_editor(self, *lines):
        """What the editor lists of a file."""
        self.write(case.BLACKLIST, b"".join(line + b"\n" for line in lines))
        self.open_editor()
        return self.rows()

    def test_services_are_told_apart(self):
        everything = channels.services()
        lines = [b"#SERVICE " + channels.unknown(number).encode() for number in range(300)]
        lines += [b"#SERVICE " + channels.reference(each).encode() for each in everything[::7]]
        rows = self.rows_in_editor(*lines)
        self.assertEqual((len(rows), len(set(rows))), (len(lines), len(lines)))
        self.assertEqual(rows[0], channels.unknown(0))
        self.press("green")
        self.assertShows("Veltro")
        self.assertEqual(self.lines(), lines)

    def test_five_thousand(self):
        lines = [b"#SERVICE " + channels.reference(each).encode() for each in channels.services()]
        self.assertEqual(len(self.rows_in_editor(*lines)), len(lines))
        self.press("green")
        self.assertEqual(self.lines(), lines)

    def test_any_bytes(self):
        lines = [b"# any bytes: \xff\xfe\x00\x80"]
        lines += [b"#SERVICE 1:0:1:%X:1:1:C00000:0:0:0::name " % byte + bytes(bytearray([byte])) + b" end"
                  for byte in range(256) if byte != 10]
        lines += [b"#SERVICE \xff", b"#SERVICE 4097:0:1:1:0:0:0:0:0:0:http%3a//\xe9/%ff\xed\xa0\x80", b"#SERVICE ", b"#SERVICE"]
        rows = self.rows_in_editor(*lines)
        self.assertGreater(len(rows), 250)
        for _ in range(12):
            self.press("right")  # every row is painted
        self.press("yellow")
        self.press("blue", "exit", "green")
        self.assertShows("Veltro")
        left = [line for line in self.lines() if line not in lines]
        self.assertEqual(left, [])
        self.assertEqual(len(self.lines()), len(lines) - 1, "all but the deleted one")

    def test_lines_that_are_no_services_stay(self):
        first = b"#SERVICE " + channels.reference(channels.services()[200]).encode()
        lines = [b"# mine", b"", first, b"#DESCRIPTION x", b"#SERVICE 5002:0:1:7:0:0:0:0:0:0:rtmp%3a//192.0.2.1/x:Other"]
        self.assertEqual(len(self.rows_in_editor(*lines)), 1)
        self.press("green")
        self.assertEqual(self.lines(), lines)

    def test_a_full_disk(self):
        line = b"#SERVICE " + channels.unknown(1).encode()
        self.write(case.BLACKLIST, line + b"\n")
        self.python("import os, shutil\nshutil.copytree('/etc/enigma2', '/tmp/etc')\n" + SMALL_DISK % ("8m", "/etc/enigma2")
                    + "\nos.system('cp -a /tmp/etc/. /etc/enigma2; dd if=/dev/zero of=/etc/enigma2/full bs=1k 2>/dev/null')")
        try:
            self.open_editor()
            self.press("green")
            self.assertEqual(self.message().split("\n")[0], "The blacklist could not be saved. The file is as it was.")
            self.assertShows("Edit_DVB_EPG_Blacklist")
            self.assertEqual(self.python("open('/etc/enigma2/blacklist_dvb_epg').read()"), line.decode() + "\n")
            self.python("os.unlink('/etc/enigma2/full')")
            self.press("green")
            self.assertShows("Veltro")
            self.assertEqual(self.python("[n for n in os.listdir('/etc/enigma2') if 'veltro' in n]"), [])
        finally:
            self.python("os.system('umount -l /etc/enigma2')\nshutil.rmtree('/tmp/etc')")

    def test_a_directory_in_its_place(self):
        if os.path.exists(self.path(case.BLACKLIST)):
            os.unlink(self.path(case.BLACKLIST))
        os.mkdir(self.path(case.BLACKLIST))
        try:
            self.open_settings()
            self.ok_without_status("Edit blacklist")
            self.assertEqual(self.message().split("\n")[0], "The blacklist can't be read.")
            self.assertShows("Veltro")
        finally:
            os.rmdir(self.path(case.BLACKLIST))

    traces_expected = True  # of what could not be read or written

    def ok_without_status(self, label):
        self.go_to(label)
        self.press("ok")


class Notices(LossesCase):
    def tearDown(self):
        super(Notices, self).tearDown()
        if os.path.exists(self.path(case.BLACKLIST)):
            os.unlink(self.path(case.BLACKLIST))

    def select_bouquet(self, name):
        self.select([index for index, row in enumerate(self.rows()) if row.startswith(name)][0])

    def test_nothing_is_selected(self):
        self.open_picker()
        self.select_bouquet("Nothing")
        self.press("ok")
        self.press("ok")
        self.assertEqual(self.message(), "Nothing is selected.")
        self.assertShows("DVB_EPG_blacklist_ChannelSelection")
        self.press("yellow")
        self.assertEqual(self.message(), "Select a bouquet first.")

    def test_what_was_left_out(self):
        self.open_picker()
        self.select_bouquet("Mixed")
        self.press("yellow")
        self.assertEqual(self.message(), "Left out: 2 (listed already, or no TV or radio service)")
        self.assertShows("Edit_DVB_EPG_Blacklist")
        self.assertEqual(len(self.rows()), 17)

    def test_a_notice_goes_by_itself(self):
        self.open_picker()
        self.select_bouquet("Nothing")
        self.press("ok", "yellow")
        self.assertTrue(self.name().startswith("MessageBox"))
        self.host.wait("session.current_dialog.__class__.__name__ == 'DVB_EPG_blacklist_ChannelSelection'")
