"""The keys of the settings screen that a keymap of our own names."""

import time

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigSelection


class Keymap(object):
    def __init__(self):
        self.bound = {}

    def bindKey(self, domain, device, code, flags, context, action):
        assert (device, flags) == ("generic", 1) and code not in self.bound
        self.bound[code] = context, action


class SettingsKeysTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.keymap = keymap = Keymap()
        self.box.modules["enigma"].eActionMap = type("eActionMap", (object,), {
            "getInstance": staticmethod(lambda: keymap)})
        self.config.epg.maxdays = ConfigSelection([str(day) for day in range(1, 366)], default="7")
        self.load()
        self.screen = self.box.session.open(self.module.Veltro, "/plugin")
        self.addCleanup(lambda: self.assertNotIn("failed", self.console))

    def press(self, code):
        """The answer of our map: 0 leaves the key to the next."""
        context, action = self.keymap.bound[code]
        self.assertEqual(self.screen["veltro_keys"].contexts, [context])
        return self.screen["veltro_keys"].action(context, action)

    def go_to(self, number):
        self.screen["config"].move_to(number - 1)
        return self.screen.list[number - 1][1]

    def test_before_the_modules_own_map(self):
        self.assertLess(self.screen["veltro_keys"].prio, self.screen["shortcuts"].prio)
        self.box.session.open(self.module.Veltro, "/plugin")  # binds no key twice

    def test_red_is_the_hosts_way_to_leave(self):
        left = []
        type(self.screen).keyCancel, before = lambda screen: left.append(screen), type(self.screen).keyCancel
        self.addCleanup(setattr, type(self.screen), "keyCancel", before)
        self.screen = self.box.session.open(self.module.Veltro, "/plugin")
        self.assertEqual(self.press(398), 1)
        self.assertEqual(len(left), 1)
        self.assertEqual(self.keymap.bound[398][1], "leave")

    def test_ok_on_a_yes_no_row_is_the_hosts(self):
        element = self.go_to(9)
        for name in ("keyOK", "keySelect"):  # an old host's and a new one's
            setattr(type(self.screen), name, lambda screen: setattr(element, "value", not element.value))
            self.addCleanup(delattr, type(self.screen), name)
            before, rows = element.value, self.screen.list
            self.assertEqual(self.press(352), 1)
            self.assertNotEqual(element.value, before)
            self.assertIsNot(self.screen.list, rows, "the module is told")

    def test_ok_elsewhere_is_the_modules(self):
        for number in (5, 16, 17, 20):
            self.go_to(number)
            self.assertEqual(self.press(352), 0)

    def test_no_list_of_365_lines(self):
        self.go_to(4)
        self.assertEqual((self.press(352), self.press(139)), (1, 1))

    def test_menu_and_its_like_do_nothing_on_action_rows(self):
        for number in (16, 17, 20, 21, 22):
            self.go_to(number)
            for code in (139, 393, 144, 395, 226):
                self.assertEqual(self.press(code), 1)
        self.go_to(5)
        self.assertEqual(self.press(139), 0, "the host's own list of choices")

    def test_digits_type_a_number(self):
        element = self.go_to(4)
        rows = self.screen.list
        self.assertEqual([self.press(code) for code in (2, 5)], [1, 1])
        self.assertEqual(element.value, "14")
        self.assertIsNot(self.screen.list, rows, "the module is told")
        self.press(10)
        self.assertEqual(element.value, "149")
        self.press(9)
        self.assertEqual(element.value, "8", "more than the largest begins anew")

    def test_after_a_pause_a_new_number_begins(self):
        element = self.go_to(4)
        self.press(2)
        real, before = time.time, time.time()
        time.time = lambda: before + 60
        self.addCleanup(setattr, time, "time", real)
        self.press(5)
        self.assertEqual(element.value, "4")

    def test_the_nearest_choice(self):
        element = self.go_to(19)
        self.press(5)
        self.press(8)
        self.assertEqual(element.value, "45")

    def test_digits_elsewhere_are_the_hosts(self):
        for number in (3, 5, 7, 9, 16):  # 30 is shown as "half an hour" in the fifth
            self.go_to(number)
            self.assertEqual(self.press(2), 0)

    def test_an_empty_list(self):
        self.screen["config"].l.setList([])
        self.assertEqual([self.press(code) for code in (352, 2)], [0, 0])
        self.assertEqual(self.press(139), 1)


class OldHostTest(BoxTest):
    def test_a_host_without_bindings(self):
        self.load()
        self.assertNotIn("veltro_keys", self.box.session.open(self.module.Veltro, "/plugin"))

    def test_a_host_that_takes_them_in_another_form(self):
        maps = type("Maps", (object,), {"bindKey": lambda self, key: None})()
        self.box.modules["enigma"].eActionMap = type("eActionMap", (object,), {"getInstance": staticmethod(lambda: maps)})
        self.load()
        self.assertNotIn("veltro_keys", self.box.session.open(self.module.Veltro, "/plugin"))
        self.assertIn("no keymap", self.console)
