"""The directory chooser: what is chosen stays, and directories that are odd or gone."""

from __future__ import absolute_import

import os

from . import case

NOT_UTF8 = b"Latin-1 \xe9\xff"


class TestChooser(case.HostCase):
    def choose(self, *folders):
        """Chooses a directory by keys: from the root of the file system through the folders' names as the list shows them."""
        self.open_chooser()
        parent = [row for row in self.rows() if row.startswith("<")]
        while parent:
            self.select_text(parent[0])
            self.press("ok")
            parent = [row for row in self.rows() if row.startswith("<")]
        for folder in folders[:-1]:
            self.select_text(folder)
            self.press("ok")
        self.select_text(folders[-1])
        self.press("green")

    def test_exit_keeps_the_directory(self):
        os.makedirs(self.path("/media/usb/kept"))
        self.choose("media", "usb", "kept")
        self.press("exit")
        self.open_settings()
        self.assertIn("/media/usb/kept", self.rows()[16])

    def test_a_directory_that_is_gone(self):
        os.makedirs(self.path("/media/usb/stick"))
        self.choose("media", "usb", "stick")
        os.rmdir(self.path("/media/usb/stick"))
        self.go_to("EPG Path")
        self.press("ok")
        self.assertShows("DirChoose")
        self.press("down", "up", "ok")
        self.assertAlive()
        self.home()
        self.restart()
        self.open_chooser()
        self.press("exit")
        self.go_to("Save EPG cache")
        self.press("ok")
        self.go_to("Load EPG data from epg.dat")
        self.press("ok")
        self.go_to("Delete")
        self.press("ok")
        self.assertAlive()

    def test_not_utf8(self):
        """A name that no text can hold is shown, and can be chosen, without harm."""
        os.makedirs(os.path.join(os.fsencode(self.path("/media/usb")), NOT_UTF8, b"in it"))
        self.choose("media", "usb")
        self.go_to("EPG Path")
        self.press("ok")
        rows = self.rows()
        for index, row in enumerate(rows):
            if row.startswith("Latin-1"):
                for key in ("ok", "green"):
                    self.assertShows("DirChoose")
                    self.select(index)
                    self.press(key)
                    self.assertAlive()
                    if self.name() == "Veltro":
                        self.press("ok")
                    elif self.name() != "DirChoose":
                        self.press("exit")
        self.press("right", "left", "exit")
        self.home()
        self.restart()
        self.open_settings()
        self.assertEqual(len(self.rows()), 22)
