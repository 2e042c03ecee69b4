"""Keys to actions: the keymap, and who gets a key first."""

import tempfile
import unittest

from receiver.actions import BREAK, KEYS, MAKE, REPEAT, ActionMaps, read_keymap
from receiver.profile import PROFILES
from tests.receiver.tv import TvTest, host


def keymap(text):
    with tempfile.NamedTemporaryFile("w", suffix=".xml") as file:
        file.write("<keymap>%s</keymap>" % text)
        file.flush()
        return read_keymap(file.name)


class DeliveryTest(unittest.TestCase):
    def setUp(self):
        self.maps = ActionMaps(keymap("""
            <map context="A"><key id="KEY_OK" mapto="ok" flags="m"/><key id="KEY_UP" mapto="up" flags="mr"/>
              <key id="KEY_DOWN" mapto="down" flags="b"/></map>
            <map context="B"><key id="KEY_OK" mapto="yes"/><key id="KEY_RED" mapto="red"/></map>"""))
        self.calls = []

    def bind(self, context, priority, name, answer=1):
        def function(context, action):
            self.calls.append((name, context, action))
            return answer
        self.maps.bindAction(context, priority, function)
        return function

    def test_lower_priority_number_comes_first(self):
        self.bind("A", 0, "normal")
        self.bind("A", -2, "urgent")
        self.bind("A", 1, "late")
        self.assertTrue(self.maps.deliver("ok", MAKE))
        self.assertEqual(self.calls, [("urgent", "A", "ok")])

    def test_same_priority_goes_by_age(self):
        self.bind("B", 0, "old")
        self.bind("A", 0, "young")
        self.maps.deliver("ok", MAKE)
        self.assertEqual(self.calls, [("old", "B", "yes")])

    def test_zero_passes_the_key_on(self):
        self.bind("A", -1, "first", answer=0)
        self.bind("B", 0, "second")
        self.maps.deliver("ok", MAKE)
        self.assertEqual([name for name, _, _ in self.calls], ["first", "second"])

    def test_nobody(self):
        self.bind("A", 0, "a")
        self.assertFalse(self.maps.deliver("red", MAKE))
        self.assertEqual(self.calls, [])

    def test_who_is_asked_is_fixed_before_the_first_call(self):
        def open_another(context, action):
            self.bind("B", 5, "new")
            return 0
        self.maps.bindAction("A", 0, open_another)
        self.assertFalse(self.maps.deliver("ok", MAKE))
        self.assertEqual(self.calls, [])

    def test_repeat_needs_a_press_seen(self):
        self.bind("A", 0, "a")
        self.maps.deliver("up", REPEAT)
        self.assertEqual(self.calls, [])
        self.maps.deliver("up", MAKE)
        self.maps.deliver("up", REPEAT)
        self.assertEqual(len(self.calls), 2)
        self.bind("A", -1, "later")
        self.maps.deliver("up", REPEAT)
        self.assertEqual({name for name, _, _ in self.calls}, {"a"})

    def test_release(self):
        self.bind("A", 0, "a")
        self.maps.deliver("down", BREAK)
        self.assertEqual(self.calls, [])
        self.maps.deliver("down", MAKE)
        self.maps.deliver("down", BREAK)
        self.assertEqual(self.calls, [("a", "A", "down")])

    def test_unbound_is_gone(self):
        function = self.bind("A", 0, "a")
        self.maps.unbindAction("A", function)
        self.assertFalse(self.maps.deliver("ok", MAKE))

    def test_a_keymap_with_a_key_that_no_remote_has_is_refused(self):
        with self.assertRaisesRegex(ValueError, "KEY_COFFEE"):
            keymap('<map context="A"><key id="KEY_COFFEE" mapto="brew"/></map>')


class FullKeymapTest(unittest.TestCase):
    """What the module's labels expect of the host that offers everything."""

    def test_color_keys(self):
        keys = read_keymap(*PROFILES["full"].keymaps)
        colors = ("red", "green", "yellow", "blue")
        self.assertEqual([keys["ColorActions"][key, MAKE] for key in colors], list(colors))
        self.assertEqual([keys["ChannelSelectBaseActions"][key, MAKE] for key in colors],
                         ["showAllServices", "showSatellites", "showProviders", "showFavourites"])
        self.assertNotIn(("red", MAKE), keys["SetupActions"])

    def test_every_action_that_the_module_asks_for_has_a_key(self):
        keys = read_keymap(*PROFILES["full"].keymaps)
        wanted = {"SetupActions": ["ok", "cancel", "up", "down"], "DirectionActions": ["up", "down", "left", "right"],
                  "WizardActions": ["ok", "back"], "OkCancelActions": ["ok", "cancel"],
                  "TvRadioActions": ["keyTV", "keyRadio"]}
        for context, actions in wanted.items():
            found = {keys[context].get((key, MAKE)) for key in KEYS}
            self.assertLessEqual(set(actions), found, context)


class ActionMapTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()
        self.calls = []
        self.ActionMap = host("Components.ActionMap").ActionMap

    def map(self, *arguments, **kwargs):
        action_map = self.ActionMap(*arguments, **kwargs)
        action_map.execBegin()
        self.addCleanup(action_map.execEnd)
        return action_map

    def test_none_counts_as_handled_and_unknown_actions_are_not(self):
        action_map = self.map(["OkCancelActions"], {"ok": lambda: None, "cancel": lambda: 0})
        self.assertEqual(action_map.action("OkCancelActions", "ok"), 1)
        self.assertEqual(action_map.action("OkCancelActions", "cancel"), 0)
        self.assertEqual(action_map.action("OkCancelActions", "left"), 0)

    def test_disabled_map_gets_no_keys(self):
        action_map = self.map(["OkCancelActions"], {"ok": lambda: self.calls.append(1)}, -9)
        action_map.setEnabled(False)
        self.press("ok")
        self.assertEqual(self.calls, [])
        self.press("exit exit")
        action_map.setEnabled(True)
        self.press("ok")
        self.assertEqual(self.calls, [1])

    def test_contexts_in_their_order(self):
        self.map(["WizardActions", "OkCancelActions"], {"back": lambda: self.calls.append("back"),
                                                        "cancel": lambda: self.calls.append("cancel")}, -9)
        self.press("exit")
        self.assertEqual(self.calls, ["back"])

    def test_a_keymap_that_a_plug_in_makes(self):
        actions = host("enigma").eActionMap.getInstance()
        actions.bindKey("plug-in", "generic", 398, 1 | 2, "PluginActions", "red")
        actions.bindKey("plug-in", "generic", 9999, 1, "PluginActions", "no such key")
        self.map(["PluginActions"], {"red": lambda: self.calls.append("red")}, -9)
        self.press("red green")
        self.assertEqual(self.calls, ["red", "red"], "pressed and released")
