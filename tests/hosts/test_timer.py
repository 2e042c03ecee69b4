"""The timer that saves the EPG, or loads it in client mode; its period is a fraction of a minute here."""

from __future__ import absolute_import

import os

from . import case

MODULE = "import sys\nmodule = sys.modules['Veltro']\n"
ACTIVE = MODULE + "module.epg_timer.epg_timer.isActive()"


class TestTimer(case.HostCase):
    values = {"config.misc.epgcache_filename": "/media/usb/epg.dat", "config.misc.epgcachepath": "/media/usb/"}

    def file(self):
        return self.python("from Components.config import config\nconfig.misc.epgcache_filename.value")

    def period(self, milliseconds):
        """Makes the time that is left until the timer fires short."""
        self.python(MODULE + "module.epg_timer.epg_timer.start(%d, True)" % milliseconds)

    def choose_period(self, client=False):
        """A period of more than 0 by the rows of the settings, GREEN."""
        self.open_settings()
        if client != (self.value("Enable EPG client mode") not in ("No", "no")):
            self.go_to("Enable EPG client mode")
            self.press("right")
        self.select(18)
        self.press("right")
        if self.row()[1] == "0":
            self.press("right")
        self.press("green")
        self.assertShows("InfoBar")

    def replace(self, body):
        """Puts a function in the place of the module's own that does the work; `real` is that one."""
        self.python(MODULE + "asked = []\nreal = getattr(module, 'real_action', module.doEPGAction)\n"
                    "module.real_action = real\ndef replaced(action):\n    asked.append(action)\n    %s\n"
                    "module.doEPGAction = replaced" % body)

    def calls(self):
        """Writes down in `asked` what the timer does from here on."""
        self.replace("real(action)")

    def test_saves(self):
        self.choose_period()
        self.assertTrue(self.python(ACTIVE))
        self.python(case.epg())
        if self.exists(self.file()):
            os.remove(self.path(self.file()))
        self.calls()
        self.period(50)
        self.host.wait("'save' in asked")
        self.assertGreater(os.path.getsize(self.path(self.file())), 10240)
        self.assertTrue(self.python(ACTIVE))  # for the next time

    def test_loads_in_client_mode(self):
        self.choose_period(client=True)
        self.open_settings()
        self.assertEqual(len(self.rows()), 20)
        self.press("exit")
        self.calls()
        self.period(50)
        self.host.wait("asked == ['load']")
        self.assertTrue(self.python(ACTIVE))
        self.restart()
        self.assertTrue(self.python(ACTIVE))
        self.calls()
        self.period(50)
        self.host.wait("asked == ['load']")
        self.choose_period()

    def test_off(self):
        """A period of 0 ends the cycle; another one begins it again, without a restart."""
        self.choose_period()
        self.open_settings()
        self.select(18)
        for _ in range(20):
            if self.row()[1] == "0":
                break
            self.press("left")
        self.press("green")
        self.calls()
        self.host.wait(MODULE + "not module.epg_timer.epg_timer.isActive()")
        self.assertEqual(self.python("asked"), [])
        self.choose_period()
        self.assertTrue(self.python(ACTIVE))

    def test_error(self):
        """An error in the timer costs a message, wherever the user is, and nothing else."""
        self.traces_expected = True
        self.choose_period()
        self.replace("raise IOError('disk')")
        try:
            self.period(50)
            self.host.wait("session.current_dialog.__class__.__name__ == 'MessageBox'")
            self.press("ok")
            self.assertShows("InfoBar")
        finally:
            self.python("module.doEPGAction = module.real_action")
        self.choose_period()


class TestClient(case.HostCase):
    """A box that shares the file of another one: it loads, and never writes."""

    def test_client_mode(self):
        self.python(case.epg())
        self.open_settings()
        self.go_to("Enable EPG client mode")
        self.press("right")
        self.assertEqual(tuple(self.rows())[17:], case.CLIENT_ROWS[17:])
        self.go_to("Load EPG data from epg.dat")
        self.press("ok")
        self.assertShows("Veltro")
        self.go_to("Enable EPG client mode")
        self.press("exit")
        self.open_settings()
        self.assertEqual(len(self.rows()), 22)  # it was not saved
        self.go_to("Enable EPG client mode")
        self.press("right", "green")
        self.restart()
        self.open_settings()
        self.assertEqual(len(self.rows()), 20)
        self.go_to("Enable EPG client mode")
        self.press("left", "green")
        self.open_settings()
        self.assertEqual(len(self.rows()), 22)
