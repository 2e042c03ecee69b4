"""The blacklist's editor and its channel picker: every key, with 5,000 services."""

from __future__ import absolute_import

from . import case, channels

TV = [each for each in channels.services() if each[4] != 2]


def lines(references):
    return b"".join(b"#SERVICE " + each.encode("ascii") + b"\n" for each in references)


class BlacklistCase(case.HostCase):
    resolution = "fhd"

    def setUp(self):
        super(BlacklistCase, self).setUp()
        self.write(case.BLACKLIST, b"")

    def services_of_file(self):
        return [line for line in self.read(case.BLACKLIST).split(b"\n") if line.startswith(b"#SERVICE ")]

    def open_with(self, data):
        self.write(case.BLACKLIST, data)
        self.open_editor()

    def back_to_editor(self):
        """A message that goes by itself may be on top."""
        self.host.wait("session.current_dialog.__class__.__name__ == 'Edit_DVB_EPG_Blacklist'")


class TestEditor(BlacklistCase):
    def test_keys(self):
        """GREEN saves, RED and EXIT do not, YELLOW deletes the selected one."""
        data = lines(channels.reference(each) for each in TV[200:204])
        for key, left in (("green", 3), ("red", 4), ("exit", 4)):
            with self.subTest(key=key):
                self.home()
                self.open_with(data)
                self.assertEqual(len(self.rows()), 4)
                self.select(1)
                self.press("yellow")
                self.assertEqual(len(self.rows()), 3)
                self.press(key)
                self.assertShows("Veltro")
                self.assertEqual(len(self.services_of_file()), left)
        self.home()
        self.open_with(b"")
        self.press("yellow", "ok", "left", "right", "up", "down", "green")
        self.assertShows("Veltro")


class TestPicker(BlacklistCase):
    def test_ok_adds_a_service(self):
        self.open_picker()
        self.press("ok")  # into the first bouquet
        self.select(35)
        self.press("ok")
        self.back_to_editor()
        self.press("green")
        self.assertEqual(self.read(case.BLACKLIST), lines([channels.reference(TV[35])]))

    def test_yellow_adds_a_bouquet(self):
        """Everything that can be played in it, markers and bouquets in it left out."""
        self.open_picker()
        self.select(1)
        self.press("yellow")
        self.back_to_editor()
        self.press("green")
        saved = self.services_of_file()
        for reference in [channels.reference(each) for each in TV[100:105]] + [channels.unknown(each) for each in range(5)]:
            self.assertIn(b"#SERVICE " + reference.encode("ascii"), saved)
        self.assertEqual(len([line for line in saved if line.startswith(b"#SERVICE 4097:")]), 7)
        self.assertFalse([line for line in saved if line.startswith((b"#SERVICE 1:64:", b"#SERVICE 1:7:", b"#SERVICE 1:832:"))])

    def test_yellow_adds_thousands(self):
        self.open_picker()
        self.select(2)
        self.press("yellow")
        self.back_to_editor()
        self.assertEqual(len(self.rows()), len(TV))
        self.press("green")
        self.assertEqual(len(self.services_of_file()), len(TV))
        self.press("ok")
        self.assertShows("Edit_DVB_EPG_Blacklist")
        self.assertEqual(len(self.rows()), len(TV))
        self.press("exit")

    def test_colours_and_modes(self):
        self.open_picker()
        self.assertEqual(len(self.rows()), 4)
        self.press("green")
        self.assertEqual(len(self.rows()), len(TV))
        self.press("blue")
        self.assertEqual(len(self.rows()), 4)
        self.press("radio")
        self.assertEqual(self.rows(), ["Favourites (Radio)"])
        self.press("tv")
        self.assertEqual(len(self.rows()), 4)
        self.press("red")
        self.assertShows("Edit_DVB_EPG_Blacklist")

    def test_doubles_are_left_out(self):
        self.open_with(lines([channels.reference(TV[35])]))
        self.press("blue", "ok")
        self.select(35)
        self.press("ok")
        self.back_to_editor()
        self.assertEqual(len(self.rows()), 1)
        self.press("exit")
