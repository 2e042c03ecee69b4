"""The entry points that the host calls."""

import inspect
import sys
import xml.etree.ElementTree as ElementTree

from tests.entry.box import MENU, OLD_MENU
from tests.entry.case import BoxTest, press
from tests.entry.fake_screens import Descriptor

try:
    arguments_of = inspect.getfullargspec
except AttributeError:
    arguments_of = inspect.getargspec


class Content(object):
    """What a host's subsection keeps for keys that nobody has made."""

    def __init__(self, stored):
        self.stored_values = stored


class DescriptorsTest(BoxTest):
    def test_plain_functions_for_each_place(self):
        found = self.import_entry().Plugins(path="/plugin")
        places = dict((each.where, each) for each in found)
        self.assertEqual(sorted(places), [Descriptor.WHERE_PLUGINMENU, Descriptor.WHERE_MENU, Descriptor.WHERE_SESSIONSTART])
        for each in found:
            self.assertTrue(inspect.isfunction(each.fnc))
        self.assertEqual(arguments_of(places[Descriptor.WHERE_PLUGINMENU].fnc).args, ["session"])
        self.assertEqual(arguments_of(places[Descriptor.WHERE_MENU].fnc).args, ["menuid"])
        self.assertEqual(places[Descriptor.WHERE_PLUGINMENU].icon, "plugin.png")
        self.assertEqual(places[Descriptor.WHERE_PLUGINMENU].description, "EPG settings")
        self.assertEqual(len(set(each.fnc for each in found)), len(found), "hosts tell descriptors apart by this")

    def test_importing_it_loads_nothing(self):
        self.import_entry().Plugins(path="/plugin")
        self.assertNotIn("Veltro", sys.modules)
        self.assertNotIn("Plugins.Extensions.Veltro.loading", sys.modules)


class MenuTest(BoxTest):
    def places(self, menu=None):
        if menu is not None:
            self.box.modules["Screens.Menu"].mdom = menu
        in_menu = self.import_entry().in_menu
        return [name for name in ("mainmenu", "setup", "system", "gui", "epg") if in_menu(name)]

    def test_where_the_epg_settings_are(self):
        for text, place in ((MENU, "epg"), (OLD_MENU, "gui"), ("<menu/>", "setup"),
                            ("<menu><item key='epg_setup'/></menu>", "setup")):
            self.assertEqual(self.places(ElementTree.ElementTree(ElementTree.fromstring(text))), [place])

    def test_a_host_that_keeps_the_root_itself(self):
        self.assertEqual(self.places(ElementTree.fromstring(MENU)), ["epg"])

    def test_a_host_that_has_them_behind_functions(self):
        menus = self.box.modules["Screens.Menu"]
        root = ElementTree.fromstring(MENU)
        del menus.mdom
        menus.findMenu = lambda key: [menu for menu in root.iter("menu") if menu.get("key") == key][0]
        self.assertEqual(self.places(), ["epg"])
        menus.menuDom = lambda: ElementTree.ElementTree(root)
        self.assertEqual(self.places(), ["epg"])
        menus.menuDom = lambda: root
        self.assertEqual(self.places(), ["epg"])

    def test_an_item_is_known_by_the_setup_that_it_opens(self):
        for text, place in (("""<menu key="setup"><menu key="epg"><item key="setup_epg"><setup id="epgsettings"/></item>
                                </menu></menu>""", "epg"),
                            ("""<menu key="setup"><menu key="epg"><item><setup id="usage"/></item></menu></menu>""", "setup")):
            self.assertEqual(self.places(ElementTree.fromstring(text)), [place])

    def test_a_host_with_other_menus(self):
        self.assertEqual(self.places(object()), ["setup"])

    def test_the_entry(self):
        plugin = self.import_entry()
        (name, function, key, weight), = plugin.in_menu(self.places()[0])
        self.assertIs(function, plugin.main)
        self.assertEqual((name, key, type(weight)), ("EPG settings (Veltro)", "veltro", int))


class SessionStartTest(BoxTest):
    facts = {"stored": {"epg_data_timer": "10"}}

    def test_records_the_session_and_starts_the_timer(self):
        self.load()
        self.plugin.session_start(reason=0, session=self.box.session)
        timer = self.module.epg_timer
        self.assertIs(timer.session, self.box.session)
        self.assertEqual(timer.epg_timer._timer.started, [(600000, True)])

    def start_with(self, **stored):
        """Start the GUI anew with these texts in its settings file; whether the module is loaded then."""
        vars(self.box.config.misc).update(content=Content(stored), _stored=stored)
        self.plugin = self.import_entry()
        self.plugin.session_start(reason=0, session=self.box.session)
        return "Veltro" in sys.modules

    def test_the_module_is_not_loaded_while_there_is_nothing_to_do(self):
        self.assertFalse(self.start_with(epg_show="1"))

    def test_the_module_is_loaded_for_the_timer(self):
        self.assertTrue(self.start_with(epg_data_timer="10"))

    def test_the_module_is_loaded_for_an_epg_client(self):
        self.assertTrue(self.start_with(epg_is_client_stb="True"))

    def test_the_module_is_loaded_for_a_blacklist_in_force(self):
        self.assertTrue(self.start_with(epg_dvb_blacklist_mode="True"))

    def test_a_period_that_is_set_later_starts_the_timer(self):
        self.assertFalse(self.start_with())
        self.plugin.main(session=self.box.session, close=None)
        module = sys.modules["Veltro"]
        module.config.misc.epg_data_timer.value = "10"
        press(self.box.session.current_dialog, "shortcuts", "green")
        self.box.session.callback(*self.box.session.closed[-1])
        self.assertIs(module.epg_timer.session, self.box.session)
        self.assertEqual(module.epg_timer.epg_timer._timer.started, [(600000, True)])

    def test_the_end_of_the_session_does_nothing(self):
        self.load()
        self.plugin.session_start(reason=1)
        self.plugin.session_start(reason=0)
        self.assertFalse(hasattr(self.module.epg_timer, "epg_timer"))

    def test_errors_cost_a_log_line(self):
        self.load()
        self.module.config.misc.epg_data_timer._value = "many"
        self.plugin.session_start(reason=0, session=self.box.session)
        self.assertIn("[Veltro] the EPG timer was not started:", self.console)
        self.assertIn("ValueError", self.console)


class ClosingTest(BoxTest):
    facts = {"stored": {"epg_data_timer": "10"}}

    def setUp(self):
        BoxTest.setUp(self)
        self.load()
        self.plugin.session_start(reason=0, session=self.box.session)
        self.timer = self.module.epg_timer.epg_timer
        self.plugin.main(session=self.box.session, close=None)
        self.screen = self.box.session.current_dialog
        self.callback = self.box.session.callback

    def close(self, action):
        press(self.screen, "shortcuts", action)
        self.callback(*self.box.session.closed[-1])

    def test_opens_with_its_folder(self):
        self.assertEqual(type(self.screen).__name__, "Veltro")
        self.assertEqual(self.screen.skin_path, self.plugin.plugin_path)

    def test_writes_the_settings_file(self):
        self.assertEqual(self.box.configfile.saves, 0)
        self.close("green")
        self.assertEqual(self.box.configfile.saves, 1)
        self.assertIs(self.module.epg_timer.epg_timer, self.timer, "nothing has changed")

    def test_a_changed_period_starts_the_timer_again(self):
        self.module.config.misc.epg_data_timer.value = "20"
        self.close("green")
        self.assertIsNot(self.module.epg_timer.epg_timer, self.timer)
        self.assertEqual(self.module.epg_timer.epg_timer._timer.started, [(1200000, True)])

    def test_a_changed_client_mode_starts_the_timer_again(self):
        self.module.config.misc.epg_is_client_stb.value = True
        self.close("green")
        self.assertEqual(self.module.epg_timer.epg_timer._timer.started, [(15000, True)])

    def test_a_reverted_change_does_not(self):
        self.module.config.misc.epg_data_timer.value = "20"
        self.close("cancel")
        self.assertIs(self.module.epg_timer.epg_timer, self.timer)

    def test_a_full_disk_is_a_message(self):
        def full():
            raise IOError(28, "No space left on device")
        self.box.configfile.save = full
        self.close("green")
        self.assertEqual(self.box.session.current_dialog.text,
                         "The settings could not be saved.\nNo space left on device")
