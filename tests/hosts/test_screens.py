"""Each screen is opened, and left by each key that leaves it."""

from . import case


class TestSettings(case.HostCase):
    def test_is_left_by_exit(self):
        self.open_settings()
        self.assertEqual(len(self.screen()["rows"]), 22)
        self.press("exit")
        self.assertShows("InfoBar")
