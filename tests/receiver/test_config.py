"""The configuration tree and its elements: values, keys, notifiers, and the keys of the EPG settings."""
import os
from unittest import mock

from Components import config as host
from Components.UsageConfig import InitUsageConfig
from receiver.data.epg_cache import eEPGCache
from receiver.profile import PROFILES
from tests.receiver.boxes import BoxTest


PAUSE = "pause"


def press(element, *keys):
    """Press keys on an element: KEY_ constants, a text of digits, or PAUSE. How often it reported a change."""
    changes = []
    for key in keys:
        if key is PAUSE:
            element.endTyping()
            continue
        for code in [host.KEY_NUMBERS[int(digit)] for digit in key] if isinstance(key, str) else [key]:
            element.handleKey(code, lambda: changes.append(1))
    return len(changes)


class Elements(BoxTest):
    def test_save_and_cancel(self):
        element = host.ConfigText(default="a")
        element.value = "b"
        self.assertTrue(element.isChanged())
        element.cancel()
        self.assertEqual((element.value, element.isChanged()), ("a", False))
        element.value = "b"
        element.save()
        element.value = "c"
        element.cancel()
        self.assertEqual((element.value, element.saved_value), ("b", "b"))
        element.value = "a"
        element.save()
        self.assertIsNone(element.saved_value)

    def test_notifiers(self):
        element, seen, final = host.ConfigYesNo(), [], []
        notifier = seen.append
        element.addNotifier(notifier)
        element.addNotifier(final.append, initial_call=False, immediate_feedback=False)
        self.assertEqual((seen, final), ([element], []))
        element.value = True
        element.value = True
        self.assertEqual(len(seen), 2)
        element.save()
        element.save()
        self.assertEqual(len(final), 1)
        element.value = False
        element.cancel()
        self.assertEqual(len(seen), 4)
        element.removeNotifier(notifier)
        element.removeNotifier(notifier)
        element.value = False
        self.assertEqual(len(seen), 4)

    def test_class_tree(self):
        self.assertFalse(issubclass(host.ConfigYesNo, host.ConfigSelection))
        self.assertTrue(issubclass(host.ConfigNothing, host.ConfigSelection))
        self.assertTrue(issubclass(host.ConfigSelectionNumber, host.ConfigSelection))
        for kind in (host.ConfigInteger, host.ConfigText):
            self.assertFalse(issubclass(kind, host.ConfigSelection))

    def test_nothing(self):
        element = host.ConfigNothing()
        self.assertEqual(press(element, host.KEY_LEFT, host.KEY_RIGHT, "1"), 0)
        self.assertEqual((element.value, element.getText(), element.isChanged()), ("", "", False))

    def test_list_entry(self):
        self.assertEqual(host.getConfigListEntry("a", 1, "", "tag"), ("a", 1, "", "tag"))
        with self.assertRaises(AssertionError):
            host.getConfigListEntry()

    def test_rows_are_hashable(self):
        self.assertEqual(len({host.getConfigListEntry("a", host.ConfigNothing()) for _ in range(3)}), 3)


class YesNo(BoxTest):
    def test_keys(self):
        element = host.ConfigYesNo()
        values = []
        for key in (host.KEY_RIGHT, host.KEY_LEFT, host.KEY_LEFT):
            press(element, key)
            values.append(element.value)
        self.assertEqual(values, [True, False, True])
        self.assertEqual(press(element, PAUSE, "5"), 0)

    def test_texts(self):
        element = host.ConfigYesNo(default=True)
        self.assertEqual((element.getText(), element.marked()), ("yes", ()))
        for text, value in (("1", True), ("enable", True), ("ON", True), ("true", True), ("Yes", True), ("false", False),
                            ("0", False), ("", False), ("maybe", False)):
            self.assertIs(element.fromstring(text), value)


class Selection(BoxTest):
    def setUp(self):
        super().setUp()
        self.element = host.ConfigSelection([("a", "First"), ("b", "Second"), ("c", "Third")], default="b")

    def test_choices(self):
        self.assertEqual(self.element.choices, ["a", "b", "c"])
        self.assertEqual(self.element.description["c"], "Third")
        self.assertEqual((self.element.getIndex(), self.element.getText()), (1, "Second"))
        self.assertEqual(host.ConfigSelection(["x", "y"]).description, {"x": "x", "y": "y"})

    def test_keys_go_round(self):
        values = []
        for key in (host.KEY_RIGHT, host.KEY_RIGHT, host.KEY_LEFT):
            press(self.element, key)
            values.append(self.element.value)
        self.assertEqual(values, ["c", "a", "c"])

    def test_an_unknown_value_selects_the_default(self):
        self.element.value = "a"
        self.element.value = "zzz"
        self.assertEqual(self.element.value, "b")

    def test_set_choices(self):
        seen = []
        self.element.addNotifier(seen.append, initial_call=False)
        self.element.setChoices(["b", "d"], default="d")
        self.assertEqual((self.element.value, self.element.default, seen), ("b", "d", []))
        self.element.setChoices(["e", "f"])
        self.assertEqual((self.element.value, len(seen)), ("e", 1))

    def test_number(self):
        element = host.ConfigSelectionNumber(1, 9, 2, default=3)
        self.assertEqual((element.choices, element.value), ([1, 3, 5, 7, 9], 3))
        self.assertEqual(press(element, *[host.KEY_RIGHT] * 9), 3)
        self.assertEqual((element.value, element.fromstring("5")), (9, 5))
        press(element, *[host.KEY_LEFT] * 9)
        self.assertEqual(element.value, 1)


class Number(BoxTest):
    def setUp(self):
        super().setUp()
        self.element = host.ConfigInteger(default=60, limits=(0, 1440), step=5)

    def test_typed(self):
        self.assertEqual(press(self.element, "90"), 2)
        self.assertEqual((self.element.value, self.element.getText()), (90, "90"))

    def test_the_first_digit_starts_a_new_number_after_any_other_key(self):
        for key in (PAUSE, host.KEY_RIGHT):
            press(self.element, "12", key, "7")
            self.assertEqual(self.element.value, 7)

    def test_no_leading_zeros(self):
        press(self.element, "007")
        self.assertEqual((self.element.value, self.element.getText()), (7, "7"))
        press(self.element, PAUSE, "00")
        self.assertEqual((self.element.value, self.element.getText()), (0, "0"))

    def test_a_digit_too_many_starts_anew(self):
        press(self.element, "1441")
        self.assertEqual(self.element.value, 1)
        press(self.element, "440")
        self.assertEqual(self.element.value, 1440)

    def test_left_and_right_move_to_multiples_and_stop_at_the_limits(self):
        press(self.element, "7", host.KEY_RIGHT)
        self.assertEqual(self.element.value, 10)
        press(self.element, "7", host.KEY_LEFT, host.KEY_LEFT, host.KEY_LEFT)
        self.assertEqual(self.element.value, 0)
        self.assertEqual(press(self.element, "1439", host.KEY_RIGHT, host.KEY_RIGHT), 5)
        self.assertEqual(self.element.value, 1440)

    def test_backspace(self):
        press(self.element, host.KEY_BACKSPACE)
        self.assertEqual(self.element.value, 6)
        press(self.element, host.KEY_BACKSPACE, host.KEY_BACKSPACE)
        self.assertEqual((self.element.value, self.element.getText()), (0, "0"))
        press(self.element, "5")
        self.assertEqual(self.element.value, 5)

    def test_assigned_values_stay_within_the_limits(self):
        self.element.value = 99999
        self.assertEqual(self.element.value, 1440)
        self.element.value = "15"
        self.assertEqual(self.element.value, 15)
        with self.assertRaises(ValueError):
            self.element.value = "soon"

    def test_cancel_while_typing(self):
        press(self.element, "9")
        self.element.cancel()
        self.assertEqual((self.element.value, self.element.getText()), (60, "60"))

    def test_marks(self):
        self.assertEqual((self.element.getText(), self.element.marked()), ("60", (0, 1)))
        press(self.element, "8")
        self.assertEqual((self.element.getText(), self.element.marked()), ("8", ()))


class Tree(BoxTest):
    def test_missing_keys(self):
        with self.assertRaises(AttributeError):
            host.Config().nothing
        with self.assertRaises(AttributeError):
            host.Config().misc.nothing

    def test_only_elements_and_branches(self):
        with self.assertRaises(AssertionError):
            host.Config().misc.value = 5

    def test_misc_is_there_from_the_start(self):
        self.assertIsInstance(host.config.misc, host.ConfigSubsection)


class EpgSettings(BoxTest):
    KEYS = """usage.multiepg_ask_bouquet misc.timer_show_movie_available usage.epg_default_view usage.epg_buffer
        usage.show_old_epg usage.show_nownext_eit usage.autolanguage.epglanguage
        usage.autolanguage.epglanguage_alternative usage.epg.eit usage.epg.mhw usage.epg.freesat usage.epg.viasat
        usage.epg.netmed usage.epg.virgin misc.epg_dvb_blacklist_mode misc.epg_is_client_stb misc.epg_data_timer
        misc.epgcache_filename""".split()

    def setUp(self):
        super().setUp()
        patch = mock.patch.object(eEPGCache, "_instance", None)
        patch.start()
        self.addCleanup(patch.stop)
        self.tree = host.Config()
        self.file = host.ConfigFile(self.tree)
        InitUsageConfig(self.tree, PROFILES["full"])
        self.all = dict(self.tree.elements())

    def test_every_key_is_there_and_no_other(self):
        self.assertEqual(sorted(self.all), sorted("config." + key for key in self.KEYS))

    def test_every_element_can_be_shown_changed_reverted_and_stored(self):
        for path, element in self.all.items():
            with self.subTest(path):
                before = element.value
                self.assertTrue(element.getText())
                if not isinstance(element, host.ConfigText):
                    self.assertTrue(press(element, host.KEY_RIGHT, "1"))
                changed = element.value
                element.save()
                element.cancel()
                self.assertEqual(element.value, changed)
                element.value = before
        for element in self.all.values():
            press(element, host.KEY_RIGHT, "1")
            if isinstance(element, host.ConfigText):
                element.value += "1"
            element.save()
        values = {path: element.value for path, element in self.all.items()}
        self.file.save()
        self.assertEqual(len(self.read("settings").splitlines()), len(self.KEYS))
        again = host.Config()
        host.ConfigFile(again).load()
        InitUsageConfig(again, PROFILES["full"])
        self.assertEqual({path: element.value for path, element in again.elements()}, values)

    def test_kinds(self):
        misc, usage = self.tree.misc, self.tree.usage
        for name in ("eit", "mhw", "freesat", "viasat", "netmed", "virgin"):
            self.assertIsInstance(getattr(usage.epg, name), host.ConfigYesNo)
        for element in (usage.epg_default_view, usage.epg_buffer, usage.show_old_epg, usage.autolanguage.epglanguage):
            self.assertIsInstance(element, host.ConfigSelection)
            self.assertGreater(len(element.choices), 4)
        self.assertIsInstance(misc.epg_is_client_stb, host.ConfigYesNo)
        self.assertEqual((int(misc.epg_data_timer.value), misc.epg_data_timer.getText()), (60, "60"))
        self.assertEqual(usage.autolanguage.epglanguage.description["deu ger"], "German")
        self.assertEqual([usage.show_old_epg.description[minutes] for minutes in (0, 60, 120, 1440)],
                         ["0 minutes", "1 hour", "2 hours", "1 day"])

    def test_the_cache_is_told_its_file(self):
        cache = eEPGCache.getInstance()
        self.assertEqual(cache.path, "/media/hdd/epg.dat")
        self.tree.misc.epgcache_filename.value = "/elsewhere/epg.dat"
        self.assertEqual(cache.path, "/elsewhere/epg.dat")
        self.tree.misc.epgcache_filename.cancel()
        self.assertEqual(cache.path, "/media/hdd/epg.dat")

    def test_a_directory_means_the_usual_name_in_it(self):
        self.tree.misc.epgcache_filename.value = self.etc
        self.assertEqual(self.tree.misc.epgcache_filename.value, os.path.join(self.etc, "epg.dat"))
        self.assertEqual(eEPGCache.getInstance().path, os.path.join(self.etc, "epg.dat"))
