"""The settings file: what is read, what is written, what survives."""
import errno
import os
from unittest import mock

from Components.config import Config, ConfigFile, ConfigInteger, ConfigSelection, ConfigSubsection, ConfigText, ConfigYesNo
from tests.receiver.boxes import BoxTest


class SettingsTest(BoxTest):
    def start(self):
        """A receiver start: a fresh tree with a few keys, and the file read."""
        tree = Config()
        file = ConfigFile(tree)
        file.load()
        tree.usage = ConfigSubsection()
        tree.usage.flag = ConfigYesNo(default=True)
        tree.usage.view = ConfigSelection([("a", "A"), ("b", "B")])
        tree.misc.number = ConfigInteger(default=5, limits=(0, 100))
        tree.misc.text = ConfigText(default="x")
        return tree, file


class Reading(SettingsTest):
    def test_stored_values_apply_to_elements_defined_later(self):
        self.write("settings", "config.usage.flag=false\nconfig.usage.view=b\nconfig.misc.number=7\nconfig.misc.text=a=b\n")
        tree, _ = self.start()
        self.assertEqual((tree.usage.flag.value, tree.usage.view.value), (False, "b"))
        self.assertEqual((tree.misc.number.value, tree.misc.text.value), (7, "a=b"))
        self.assertEqual(self.console, [])

    def test_a_carriage_return_is_no_part_of_a_text(self):
        self.write("settings", "config.usage.flag=False\r\n")
        self.assertFalse(self.start()[0].usage.flag.value)

    def test_no_file(self):
        tree, file = self.start()
        self.assertEqual(tree.misc.number.value, 5)
        self.assertTrue(file.save())
        self.assertEqual((self.read("settings"), self.console), (b"", []))

    def test_a_branch_built_before_it_is_put_in(self):
        self.write("settings", "config.late.inner.flag=True\n")
        tree, _ = self.start()
        late = ConfigSubsection()
        late.inner = ConfigSubsection()
        late.inner.flag = ConfigYesNo()
        self.assertFalse(late.inner.flag.value)
        tree.late = late
        self.assertTrue(tree.late.inner.flag.value)

    def test_of_two_lines_the_last_counts(self):
        self.write("settings", "config.misc.number=1\nconfig.misc.number=2\n")
        tree, file = self.start()
        self.assertEqual(tree.misc.number.value, 2)
        file.save()
        self.assertEqual(self.read("settings"), b"config.misc.number=2\n")


class Writing(SettingsTest):
    def test_only_what_is_saved_and_differs_from_the_default(self):
        tree, file = self.start()
        tree.usage.flag.value = False
        tree.usage.flag.save()
        tree.misc.number.value = 8                     # not saved
        tree.misc.text.save()                          # the default
        file.save()
        self.assertEqual(self.read("settings"), b"config.usage.flag=False\n")
        tree, _ = self.start()
        self.assertFalse(tree.usage.flag.value)

    def test_back_to_the_default_takes_the_line_away(self):
        self.write("settings", "config.usage.flag=False\n")
        tree, file = self.start()
        tree.usage.flag.value = True
        tree.usage.flag.save()
        file.save()
        self.assertEqual(self.read("settings"), b"")

    def test_unknown_lines_are_kept_as_they_stand(self):
        lines = [b"config.audio.volume=77", b"config.usage=what", b"config.usage.flag.more=1", b"# note", b"caf\xe9=\xff",
                 b"no equals sign", b"  config.misc.number = 3", b"x=1\r"]
        self.write("settings", b"\n".join(lines))
        tree, file = self.start()
        tree.usage.flag.value = False
        tree.usage.flag.save()
        file.save()
        self.assertEqual(sorted(self.read("settings").split(b"\n")[:-1]), sorted(lines + [b"config.usage.flag=False"]))
        before = self.read("settings")
        self.start()[1].save()
        self.assertEqual(self.read("settings"), before)

    def test_digits_without_end(self):
        self.write("settings", "config.%s=1\n" % ("7" * 9999))
        self.assertTrue(self.start()[1].save())

    def test_a_value_without_meaning_stays_until_it_is_saved_over(self):
        self.write("settings", "config.misc.number=many\nconfig.usage.view=z\n")
        tree, file = self.start()
        self.assertEqual((tree.misc.number.value, tree.usage.view.value), (5, "a"))
        self.assertEqual(len(self.console), 2)
        self.assertIn("config.misc.number", self.console[1])
        self.assertIn("many", self.console[1])
        file.save()
        self.assertEqual(self.read("settings"), b"config.misc.number=many\nconfig.usage.view=z\n")
        tree.misc.number.value = 6
        tree.misc.number.save()
        file.save()
        self.assertEqual(self.read("settings"), b"config.misc.number=6\nconfig.usage.view=z\n")

    def test_text_of_any_kind(self):
        tree, file = self.start()
        for text in ("/media/hdd/caf\udce9/epg.dat", " blanks ", "a=b", "ünï"):
            tree.misc.text.value = text
            tree.misc.text.save()
            file.save()
            self.assertEqual(self.start()[0].misc.text.value, text)

    def test_a_line_end_in_a_value_can_not_forge_a_line(self):
        tree, file = self.start()
        tree.misc.text.value = "x\nconfig.usage.flag=False"
        tree.misc.text.save()
        self.assertTrue(file.save())
        self.complaint("config.misc.text", "line end")
        self.assertEqual(self.read("settings"), b"")

    def test_one_element_under_two_paths(self):
        tree, file = self.start()
        tree.misc.alias = tree.misc.number
        tree.misc.alias.value = 9
        tree.misc.alias.save()
        file.save()
        self.assertEqual(self.read("settings"), b"config.misc.alias=9\nconfig.misc.number=9\n")


class Failures(SettingsTest):
    def changed(self):
        self.write("settings", "config.usage.flag=False\n")
        tree, file = self.start()
        tree.misc.number.value = 9
        tree.misc.number.save()
        return file

    def kept(self, file, *words):
        self.assertFalse(file.save())
        self.complaint(*words)
        self.assertEqual(self.read("settings"), b"config.usage.flag=False\n")
        self.assertEqual(os.listdir(self.etc), ["settings"])

    def test_crash_before_the_rename(self):
        file = self.changed()
        with mock.patch("os.replace", side_effect=OSError(errno.EIO, "broken disk")):
            self.kept(file, "settings not saved", "broken disk")
        self.assertTrue(file.save())
        self.assertEqual(self.read("settings"), b"config.misc.number=9\nconfig.usage.flag=False\n")

    def test_full_disk(self):
        file = self.changed()
        with mock.patch("os.fsync", side_effect=OSError(errno.ENOSPC, "No space left on device")):
            self.kept(file, "No space left")

    def test_an_unreadable_file_is_never_overwritten(self):
        os.mkdir(os.path.join(self.etc, "settings"))
        tree, file = self.start()
        self.complaint("reading settings failed")
        os.rmdir(os.path.join(self.etc, "settings"))
        self.write("settings", "config.usage.flag=False\n")
        self.console.clear()
        self.kept(file, "not saved")
