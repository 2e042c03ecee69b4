"""The blacklist in force on hosts whose EPG cache has one of its own: our lines come and go, the user's stay."""

import os
import time

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigYesNo

A, B = b"1:0:19:2B66:3F3:1:C00000:0:0:0", b"1:0:1:6DCA:44D:1:C00000:0:0:0"
OURS = b"#SERVICE " + A + b":\n#SERVICE " + B + b":\n"


class Case(BoxTest):
    facts = {"cache": ("flushEPG", "reloadEITConfig")}

    def setUp(self):
        BoxTest.setUp(self)
        self.box.modules["enigma"].eEnv.resolve = staticmethod(
            lambda text: text.replace("${sysconfdir}/enigma2", self.folder))

    @property
    def reloads(self):
        return [call for call in self.box.eEPGCache.getInstance().calls if call[0] == "reloadEITConfig"]

    def start(self):
        self.load()
        self.mode = self.module.config.misc.epg_dvb_blacklist_mode

    def switch(self, on):
        self.mode.value = on
        self.mode.save()

    def file(self, name="blacklist.eit"):
        if not os.path.exists(self.path(name)):
            return None
        with open(self.path(name), "rb") as file:
            return file.read()


class EitBlacklistTest(Case):
    def test_off_leaves_everything_alone(self):
        self.write("blacklist_dvb_epg", OURS)
        self.write("blacklist.eit", b"his")
        self.start()
        self.mode.save()
        self.assertEqual((self.file(), self.reloads, sorted(os.listdir(self.folder))),
                         (b"his", [], ["blacklist.eit", "blacklist_dvb_epg"]))

    def test_on_when_it_is_saved(self):
        self.write("blacklist_dvb_epg", OURS)
        self.start()
        self.mode.value = True
        self.assertIsNone(self.file(), "EXIT could still take it back")
        self.mode.save()
        self.assertEqual(self.file(), A + b":\n" + B + b":\n")
        self.assertEqual(self.reloads, [("reloadEITConfig", 2)])

    def test_off_again(self):
        self.write("blacklist_dvb_epg", OURS)
        self.start()
        self.switch(True)
        self.switch(False)
        self.assertEqual(os.listdir(self.folder), ["blacklist_dvb_epg"])
        self.assertEqual(len(self.reloads), 2)

    def test_a_link_stays(self):
        self.write("blacklist_dvb_epg", OURS)
        self.write("elsewhere", b"")
        os.symlink(self.path("elsewhere"), self.path("blacklist.eit"))
        self.start()
        self.switch(True)
        self.assertIn(A, self.file("elsewhere"))
        self.switch(False)
        self.assertTrue(os.path.islink(self.path("blacklist.eit")))
        self.assertEqual(self.file(), b"")

    def test_his_own_lines(self):
        for his in (b"1:0:1:1:2:3:4:0:0:0:\n", b"# his\r\n\r\n\xff\xfe\n1:0:1:1:2:3:4:0:0:0:", A + b"\n", A.lower() + b"::Name\n"):
            self.write("blacklist_dvb_epg", OURS)
            self.write("blacklist.eit", his)
            if not hasattr(self, "mode"):
                self.start()
            self.switch(True)
            self.assertTrue(self.file().endswith(his))
            self.assertIn(B + b":\n", self.file())
            self.assertEqual(self.file().upper().count(A), 1, "nothing twice")
            self.switch(False)
            self.assertEqual(self.file(), his)

    def test_what_he_changes_meanwhile(self):
        self.write("blacklist_dvb_epg", OURS)
        self.start()
        self.switch(True)
        self.write("blacklist.eit", b"1:0:1:1:2:3:4:0:0:0:\n" + self.file() + A + b":\n")
        self.switch(False)
        self.assertEqual(self.file(), b"1:0:1:1:2:3:4:0:0:0:\n" + A + b":\n", "one of the two is his")

    def test_another_program_has_written_it_anew(self):
        self.write("blacklist_dvb_epg", OURS)
        self.start()
        self.switch(True)
        self.write("blacklist.eit", b"1:0:1:1:2:3:4:0:0:0\n" + B.lower() + b"\n" + A + b"\n")
        self.switch(False)
        self.assertEqual(self.file(), b"1:0:1:1:2:3:4:0:0:0\n")

    def test_after_each_save_of_the_editor(self):
        self.write("blacklist.eit", b"1:0:1:1:2:3:4:0:0:0:\n")
        self.start()
        editor = self.box.session.open(self.module.Edit_DVB_EPG_Blacklist, "/plugin")
        self.write("blacklist_dvb_epg", OURS)
        self.switch(True)
        editor.servicelist[:] = [("B", None, 0, B.decode() + ":")]
        editor.saveFile()
        self.assertEqual(self.file(), B + b":\n1:0:1:1:2:3:4:0:0:0:\n")
        self.assertEqual(len(self.reloads), 2)

    def test_nothing_new_is_nothing_to_do(self):
        self.write("blacklist_dvb_epg", OURS)
        self.start()
        self.switch(True)
        self.switch(True)
        self.assertEqual(len(self.reloads), 1)

    def test_what_is_no_service_stays_out(self):
        self.write("blacklist_dvb_epg", b"# text\n#SERVICE \n#SERVICE \xff\n#SERVICE 1:0:1\n#SERVICE " + A + b"::Name\xff\r\n")
        self.start()
        self.switch(True)
        self.assertEqual(self.file(), A + b":\n")

    def test_a_long_list_takes_no_time(self):
        lines = [b"1:0:1:%X:1:1:11A0000:0:0:0" % number for number in range(20000)]
        self.write("blacklist_dvb_epg", b"".join(b"#SERVICE " + line + b":\n" for line in lines))
        self.write("blacklist.eit", b"".join(line + b"\n" for line in lines[::2]))
        self.start()
        begin = time.time()
        self.switch(True)
        self.assertEqual(len(self.file().splitlines()), 20000)
        self.switch(False)
        self.assertEqual(len(self.file().splitlines()), 10000)
        self.assertLess(time.time() - begin, 5)

    def test_a_failure_is_told_and_loses_nothing(self):
        self.write("blacklist_dvb_epg", OURS)
        self.write("blacklist.eit", b"his")
        self.start()
        os.mkdir(self.path("blacklist.eit.veltro-new"))
        self.switch(True)
        self.assertEqual(self.file(), b"his")
        self.assertEqual(len(self.box.popups), 1)
        self.assertTrue(self.mode.value, "the settings are saved all the same")
        os.rmdir(self.path("blacklist.eit.veltro-new"))
        self.switch(False)
        self.assertEqual(sorted(os.listdir(self.folder)), ["blacklist.eit", "blacklist_dvb_epg"])
        self.assertEqual(self.file(), b"his")

    def test_the_last_start_ended_half_way(self):
        """Before the host's file was written, or before the note of what is ours was brought up to date."""
        for before in (b"his\n", A + b":\n" + B + b":\nhis\n", B + b":\nhis\n"):
            self.write("blacklist_dvb_epg", b"")
            self.write("blacklist.eit", before)
            self.write("blacklist.eit.veltro", A + b":\n" + B + b":\n")
            if not hasattr(self, "mode"):
                self.start()
            self.mode.save()
            self.assertEqual((self.file(), self.file("blacklist.eit.veltro")), (b"his\n", None))


class StartTest(Case):
    """On at the start: the host has read its file, which may no longer hold what it did."""

    facts = {"cache": ("flushEPG", "reloadEITConfig"), "stored": {"epg_dvb_blacklist_mode": "True"}}

    def test_the_hosts_file_is_brought_up_to_date(self):
        self.write("blacklist_dvb_epg", OURS)
        self.write("blacklist.eit", b"his")
        self.start()
        self.assertEqual(self.file(), A + b":\n" + B + b":\nhis")
        self.assertEqual(len(self.reloads), 1)

    def test_all_as_it_was_left(self):
        self.write("blacklist_dvb_epg", OURS)
        self.write("blacklist.eit", A + b":\n" + B + b":\nhis")
        self.write("blacklist.eit.veltro", A + b":\n" + B + b":\n")
        self.start()
        self.assertEqual(self.reloads, [])


class OtherHostTest(BoxTest):
    def test_no_such_call(self):
        self.load()
        mode = self.module.config.misc.epg_dvb_blacklist_mode
        mode.value = True
        mode.save()
        self.assertEqual(self.box.eEPGCache.getInstance().calls, [])

    def test_a_host_with_the_setting_itself(self):
        own = self.config.misc.epg_dvb_blacklist_mode = ConfigYesNo()
        self.load()
        self.assertIs(self.module.config.misc.epg_dvb_blacklist_mode, own)
