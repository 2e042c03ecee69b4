"""The plug-in is removed: its package leaves, and the box starts and keeps what is the user's."""

from __future__ import absolute_import

import os
import shutil

from . import case


class TestRemoval(case.HostCase):
    def test_removal(self):
        self.python(case.epg())
        self.open_settings()
        self.python("session.current_dialog.gotEPGpath('/media/usb/epg.dat')")
        self.select(18)
        self.press("right", "green")
        self.write(case.BLACKLIST, b"#SERVICE 1:0:1:1:1:1:1:0:0:0:\n")
        self.restart()
        self.python(case.epg())
        self.host.stop()
        settings = self.read(case.SETTINGS)

        self.host.plugin, plugin = None, self.host.plugin
        shutil.rmtree(os.path.join(self.host.state, "plugins/Extensions/Veltro"))
        self.host.start()
        self.assertNotIn("Veltro", self.python("__import__('sys').modules.keys()"))
        self.assertEqual(self.python("from Components.PluginComponent import plugins\n[e.name for e in plugins.getPlugins("
                                     "list(plugins.plugins)) if e.name == 'Veltro']"), [])
        self.press("menu", "exit", "epg", "exit", "exit")
        self.assertAlive()
        self.assertEqual(self.read(case.BLACKLIST), b"#SERVICE 1:0:1:1:1:1:1:0:0:0:\n")
        self.restart()
        self.assertAlive()

        self.host.plugin = plugin  # and it comes back
        self.host.stop()
        self.host.start()
        self.open_settings()
        self.assertEqual(len(self.rows()), 22)
        self.assertTrue(settings)
