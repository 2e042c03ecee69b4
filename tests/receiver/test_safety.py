"""Nothing of the user's is lost: what the GUI may write, and odd files in a folder given with --etc."""
import builtins
import errno
import io
import os
import pathlib

import shutil
import subprocess
import sys
from unittest import mock

from receiver import cli

from receiver.data import env, walls
from receiver.data.bouquets import read_bouquets
from receiver.data.lamedb import read_lamedb

from receiver.profile import PROFILES
from tests.receiver.boxes import SAMPLE, BoxTest
from tests.receiver.tv import TvTest, run_cli

FOREIGN = b"\x98\x76\x54\x32ENIGMA_EPG_V8 and a thousand events"


def content(folder):
    """Every file below a folder with its bytes, links as what they say."""
    return {str(path): os.readlink(path) if path.is_symlink() else path.read_bytes()
            for path in pathlib.Path(folder).rglob("*") if path.is_symlink() or path.is_file()}


class WallsTest(BoxTest):
    """Code of the GUI, which works with open and os."""

    def setUp(self):
        super().setUp()
        self.outside = os.path.join(os.path.dirname(self.root), "letters")
        os.mkdir(self.outside)
        self.letter = os.path.join(self.outside, "letter")
        with open(self.letter, "w") as file:
            file.write("dear all")
        walls.made.clear()

    def test_paths_are_those_of_the_box(self):
        with walls.inside():
            self.assertEqual(sorted(set(os.listdir("/")) & {"etc", "media", "usr", "root"}), ["etc", "media"])
            with open("/media/hdd/film.ts", "w") as file:
                file.write("film")
            pathlib.Path("/media/usb/below").mkdir()
            os.rename("/media/hdd/film.ts", "/media/usb/below/film.ts")
            self.assertTrue(os.path.exists("/media/usb/below/film.ts"))
            self.assertFalse(os.path.exists(self.letter))
            self.assertEqual(io.open("/media/usb/below/film.ts").read(), "film")
        self.assertTrue(os.path.exists(self.root + "/media/usb/below/film.ts"))
        self.assertTrue(os.path.exists(self.letter))

    def test_nothing_outside_is_written(self):
        os.symlink(self.outside, self.root + "/media/usb/out")
        os.symlink(self.letter, self.root + "/media/usb/letter")
        os.symlink(self.letter, os.path.join(self.etc, "settings"))
        before = content(self.outside)
        for path in ("/media/usb/out/letter", "/media/usb/letter", "/etc/enigma2/settings", "/media/usb/out/new", env.__file__):
            for attempt in (lambda: open(path, "w"), lambda: open(path, "ab"), lambda: os.open(path, os.O_WRONLY),
                            lambda: os.truncate(path, 0), lambda: os.mkdir(path + "/x"), lambda: os.chmod(path, 0),
                            lambda: open(file=path, mode="w"), lambda: os.open(path=path, flags=os.O_WRONLY),
                            lambda: os.chmod(path=path, mode=0)):
                with self.subTest(path), walls.inside(), self.assertRaises(OSError):
                    attempt()
        for path in ("/media/usb/out/letter", env.__file__):
            for attempt in (os.remove, lambda path: os.rename(path, "/media/hdd/x"), lambda path: os.replace(path, path + "x"),
                            lambda path: os.remove(path=path), lambda path: os.replace(src=path, dst="/media/hdd/x")):
                with self.subTest(path), walls.inside(), self.assertRaises(OSError):
                    attempt(path)
        self.assertEqual(content(self.outside), before)

    def test_whole_folders(self):
        """shutil works with descriptors of folders and names in them."""
        with walls.inside():
            os.makedirs("/media/hdd/a/b/c")
            open("/media/hdd/a/b/film", "w").close()
            shutil.copytree("/media/hdd/a", "/media/usb/copy")
            shutil.rmtree("/media/hdd/a")
            self.assertEqual((os.listdir("/media/hdd"), os.listdir("/media/usb/copy/b/c")), ([], []))
        self.write("userbouquets/mine.tv", "#NAME mine")
        os.symlink(self.outside, self.root + "/media/hdd/out")
        before = content(self.etc), content(self.outside)
        for path in ("/etc/enigma2/userbouquets", "/etc/enigma2", "/media/hdd/out/", self.outside):
            with self.subTest(path), walls.inside(), self.assertRaises(OSError):
                shutil.rmtree(path)
        self.assertEqual((content(self.etc), content(self.outside)), before)

    def test_a_link_itself_can_go(self):
        os.symlink(self.letter, self.root + "/media/usb/letter")
        with walls.inside():
            os.remove("/media/usb/letter")
        self.assertEqual(os.listdir(self.root + "/media/usb"), [])
        self.assertTrue(os.path.exists(self.letter))

    def test_what_is_in_the_users_folder_stays(self):
        for name in ("lamedb", "notes", "epg.dat"):
            self.write(name, FOREIGN)
        os.mkdir(os.path.join(self.etc, "backup"))
        before = content(self.etc)
        for name in ("lamedb", "notes", "epg.dat", "backup"):
            path = "/etc/enigma2/" + name
            for attempt in (lambda: open(path, "wb"), lambda: os.remove(path), lambda: os.rename(path, "/media/hdd/x"), lambda: os.rmdir(path),
                            lambda: os.rename("/media/hdd", path)):
                with self.subTest(name), walls.inside(), self.assertRaises(OSError):
                    attempt()
        self.assertEqual(content(self.etc), before)

    def test_what_the_receiver_keeps_there_changes(self):
        with walls.inside():
            for name in ("settings", "blacklist_dvb_epg", "new"):
                for _ in range(2):
                    with open("/etc/enigma2/%s.new" % name, "w") as file:
                        file.write(name)
                    os.replace("/etc/enigma2/%s.new" % name, "/etc/enigma2/" + name)
                os.remove("/etc/enigma2/" + name)
        self.assertEqual(os.listdir(self.etc), [])

    def test_pipes_devices_and_huge_files_are_errors(self):
        os.mkfifo(self.root + "/media/hdd/pipe")
        os.symlink("/dev/zero", self.root + "/media/hdd/zero")
        with open(self.root + "/media/hdd/huge", "wb") as file:
            file.truncate(1 << 40)
        for name in ("pipe", "zero", "huge"):
            with walls.inside(), self.assertRaises(OSError):
                open("/media/hdd/" + name)

    def test_outside_nothing_is_changed(self):
        self.assertEqual(open(self.letter).read(), "dear all")
        self.assertFalse(os.path.exists("/media/hdd/film.ts"))
        self.assertIs(builtins.open, io.open)


class OddListsTest(BoxTest):
    """What may lie among the channel lists."""

    def test_lamedb_that_is_no_usual_file(self):
        path = os.path.join(self.etc, "lamedb")

        def huge():
            with open(path, "wb") as file:
                file.truncate(1 << 42)
        for make in (lambda: os.mkfifo(path), lambda: os.symlink("/dev/zero", path), huge, lambda: os.symlink(path, path)):
            make()
            self.assertEqual(read_lamedb(self.etc), {})
            self.complaint("lamedb")
            self.console.clear()
            os.unlink(path)

    def test_bouquets_that_are_no_usual_files(self):
        self.write("bouquets.tv", '#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.a.tv" ORDER BY bouquet\n')
        self.write("bouquets.radio", "#NAME Radio\n")
        os.mkfifo(os.path.join(self.etc, "userbouquet.a.tv"))
        self.assertEqual(sorted(read_bouquets(self.etc)), ["bouquets.radio", "bouquets.tv", "userbouquet.a.tv"])
        self.complaint("a pipe")

    def test_byte_order_mark_version_3_and_lamedb5_alone(self):
        with open(os.path.join(SAMPLE, "lamedb"), "rb") as file:
            sample = file.read()
        for data in (b"\xef\xbb\xbf" + sample, sample.replace(b"/4/", b"/3/", 1), sample.replace(b"\n", b"\r\n")):
            self.write("lamedb", data)
            self.assertEqual(len(read_lamedb(self.etc)), 54)
        os.unlink(os.path.join(self.etc, "lamedb"))
        self.write("lamedb5", 'eDVB services /5/\ns:1b7b:00c00000:0401:0001:25:0,"One",p:Maker\n')
        self.assertEqual([service.name for service in read_lamedb(self.etc).values()], ["One"])
        self.assertEqual(self.console, [])


class GivenFolderTest(TvTest):
    """The receiver with a folder of the user's, outside its root."""

    def setUp(self):
        super().setUp()
        self.etc = self.root.parent / "box settings"
        shutil.copytree(cli.SAMPLE, self.etc)
        (self.etc / "epg.dat").write_bytes(FOREIGN)
        self.thesis = self.root.parent / "thesis.txt"
        self.thesis.write_text("years of work")

    def start(self, image, settings=""):
        (self.etc / "settings").write_text(settings)
        self.image = image
        self.new_receiver()
        self.switch_on()
        return content(self.root.parent)

    def changed(self, before):
        """Names of files that are not what they were before."""
        after = content(self.root.parent)
        return sorted(os.path.relpath(path, self.root.parent) for path in set(before) | set(after)
                      if before.get(path) != after.get(path))

    def use(self):
        """Saves, loads, deletes, lets time go by."""
        for label in ("Save EPG cache", "Load EPG data from epg", "Delete broken"):
            self.go_to(label)
            self.press("ok")
            while self.top.name == "MessageBox":
                self.press("ok")
        self.press("wait:3h exit*3")
        self.receiver.switch_off()

    def test_nothing_of_it_changes(self):
        for image in PROFILES:
            with self.subTest(image):
                before = self.start(image)
                self.use()
                changed = self.changed(before)
                self.assertTrue(all(name.startswith("box/media") for name in changed), changed)

    def test_the_blacklist_is_edited_there(self):
        comment = b"#NAME my own caf\xe9\n"
        for image in PROFILES:
            with self.subTest(image):
                place = self.etc / "blacklist_dvb_epg"
                place.write_bytes(b"#SERVICE 1:0:19:102:401:FE:640000:0:0:0:\n" + (comment if image != "full" else b""))
                before = self.start(image)
                self.go_to("Edit blacklist")
                self.press("ok blue yellow")
                if self.top.name == "MessageBox":  # something was left out, it says
                    self.press("ok")
                self.press("green")
                self.assertEqual(self.top.name, "Veltro")
                self.press("exit")
                self.receiver.switch_off()
                self.assertLessEqual(set(self.changed(before)), {"box settings/blacklist_dvb_epg", "box settings/settings",
                                                                "box/media/hdd/epg.dat"})
                self.assertGreater(place.read_bytes().count(b"#SERVICE"), 5)
                if image != "full":
                    self.assertIn(comment, place.read_bytes())

    def test_a_folder_that_can_not_be_written(self):
        """As for a user without the right to: every opening for writing fails there, and nothing ends the GUI."""
        def refuse(path, *arguments):
            raise OSError(errno.EROFS, "Read-only file system", path)
        for image in PROFILES:
            with self.subTest(image):
                before = self.start(image)
                with mock.patch.object(walls, "for_writing", refuse):
                    self.go_to("Edit blacklist")
                    self.press("ok blue yellow green")
                    self.assertIsNone(self.receiver.crash)
                    for _ in range(3):
                        if self.top.name == "MessageBox":
                            self.press("ok")
                    self.press("exit exit exit")
                    self.assertIsNone(self.receiver.crash)
                    self.receiver.switch_off()
                self.assertEqual([name for name in self.changed(before) if not name.startswith("box/")], [])

    def test_an_epg_path_that_came_with_a_list(self):
        lamedb = self.etc / "lamedb"
        for path in (self.thesis, "/etc/enigma2/lamedb", "/etc/enigma2/epg.dat", "../thesis.txt", lamedb):
            with self.subTest(path):
                before = self.start("full", "config.misc.epgcache_filename=%s\n" % path)
                self.use()
                self.assertEqual([name for name in self.changed(before) if not name.startswith("box/")], [])
                self.assertTrue(path == "../thesis.txt" or any("left alone" in line or "No such file" in line for line in self.receiver.console.lines))

    def test_a_foreign_epg_file_is_told_on_the_tv(self):
        self.start("full", "config.misc.epgcache_filename=/etc/enigma2/epg.dat\n")
        self.go_to("Save EPG cache")
        self.press("ok")
        self.assertIn("left alone", self.text("text"))

    def test_a_full_disk_is_told_on_the_tv(self):
        self.start("full")
        (self.root / "media" / "hdd").rmdir()
        self.go_to("Save EPG cache")
        self.press("ok")
        self.assertIn("/media/hdd/epg.dat was not saved: No such file or directory", self.text("text"))
        self.press("ok")
        (self.etc / "settings").unlink()
        (self.etc / "settings").mkdir()
        self.press("right green")
        self.assertIn("The settings could not be saved: ", self.text("text"))


class BigBouquetTest(TvTest):
    def test_twenty_thousand_services(self):
        """In a process of its own, whose memory is that of this alone."""
        lines = ["#SERVICE 1:0:1:%X:401:FE:640000:0:0:0:\n#DESCRIPTION Channel %d\n" % (number, number) for number in range(20000)]
        (self.etc / "userbouquet.favourites.tv").write_text("#NAME Big\n" + "".join(lines))
        peaks = []
        for keys in ("", "down*15 ok blue ok down*3 exit exit down*4 ok"):
            program = ("import resource\nfrom receiver import cli\ncli.main()\n"
                       "print(resource.getrusage(resource.RUSAGE_SELF).ru_maxrss)\n")
            etc = str(self.etc) if keys else str(cli.SAMPLE)
            if not keys:
                etc = str(self.root / "sample")
                shutil.copytree(cli.SAMPLE, etc)
            result = subprocess.run([sys.executable, "-c", program, "--etc", etc, "--keys", keys],
                                    cwd=cli.HERE.parent, capture_output=True, text=True, check=True)
            peaks.append(int(result.stdout.split()[-1]) / 1024)
        self.assertLess(peaks[1] - peaks[0], 50, "MB more than with a small list")
        self.assertLess(max(path.stat().st_size for path in self.root.parent.rglob("epg.dat")), 5 << 20)


class LockTest(TvTest):
    def test_two_receivers_on_one_folder(self):
        with cli.open_box(str(self.etc)) as box:
            code, out, err = run_cli("--etc", os.path.join(str(self.etc), "..", "enigma2"), "--keys", "")
            self.assertEqual((code, out, err), (2, "", "script/run: another receiver has this folder: %s\n" % self.etc.resolve()))
            with cli.open_box(None) as other:
                self.assertNotEqual(other[1], box[1])
        with cli.open_box(str(self.etc)) as again:
            self.assertEqual(again, box)
