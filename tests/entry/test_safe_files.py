"""Files that are not lost."""

import os

from tests.entry.case import BoxTest


class SafeFilesTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.import_entry()
        self.part = self.box.part("bridge.safe_files")

    def content(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def test_a_new_file(self):
        self.part.write_whole(self.path("list"), b"new")
        self.assertEqual((os.listdir(self.folder), self.content("list")), (["list"], b"new"))

    def test_one_that_is_there_keeps_its_mode(self):
        os.chmod(self.write("list"), 0o640)
        self.part.write_whole(self.path("list"), b"new")
        self.assertEqual((os.stat(self.path("list")).st_mode & 0o777, self.content("list")), (0o640, b"new"))

    def test_a_link_stays(self):
        self.write("elsewhere")
        os.symlink(self.path("elsewhere"), self.path("list"))
        self.part.write_whole(self.path("list"), b"new")
        self.assertTrue(os.path.islink(self.path("list")))
        self.assertEqual(self.content("elsewhere"), b"new")

    def test_a_full_disk(self):
        self.write("list", b"old")

        def full(number):
            raise OSError(28, "No space left on device")
        real, os.fsync = os.fsync, full
        self.addCleanup(setattr, os, "fsync", real)
        with self.assertRaises(OSError):
            self.part.write_whole(self.path("list"), b"new")
        self.assertEqual((os.listdir(self.folder), self.content("list")), (["list"], b"old"))

    def test_aside_while_another_is_written(self):
        for new, is_whole, left in ((b"new", True, b"new"), (b"ne", False, b"old"), (None, False, b"old")):
            self.write("list", b"old")
            with self.part.aside(self.path("list"), lambda path: is_whole):
                self.assertFalse(os.path.exists(self.path("list")))
                if new is not None:
                    self.write("list", new)
            self.assertEqual((os.listdir(self.folder), self.content("list")), (["list"], left))

    def test_aside_when_the_writer_fails(self):
        self.write("list", b"old")
        with self.assertRaises(ValueError):
            with self.part.aside(self.path("list"), lambda path: False):
                raise ValueError()
        self.assertEqual(self.content("list"), b"old")

    def test_nothing_to_put_aside(self):
        with self.part.aside(self.path("no", "list"), lambda path: False):
            pass
        self.assertEqual(os.listdir(self.folder), [])
