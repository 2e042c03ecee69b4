"""The settings screen on images."""

from tests.entry.case import BoxTest

PATH_ROW = 16


class SettingsScreenTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.load()
        self.screen = self.box.session.open(self.module.Veltro, "/plugin")

    def test_a_chosen_directory_is_shown_at_once(self):
        self.screen.gotEPGpath("/media/usb/epg.dat")
        self.assertEqual(self.screen["config"].list[PATH_ROW][0], "EPG Path : /media/usb")

    def test_no_choice_leaves_the_list_alone(self):
        before = self.screen["config"].list
        self.screen.gotEPGpath(None)
        self.assertIs(self.screen["config"].list, before)

    def test_the_language_is_asked_for_once_for_all_rows(self):
        asked = []
        self.box.getLanguage = lambda: asked.append(True) or self.box.language
        self.screen.createSetup()
        self.assertEqual(len(asked), 1)
        self.box.language, self.box.catalogue = "sv_SE", {"Enable EIT EPG": "EIT"}
        self.screen.createSetup()
        self.assertIn("EIT", [row[0] for row in self.screen["config"].list])

    def test_its_class_has_the_name_that_skins_know(self):
        self.assertEqual(type(self.screen).__name__, "Veltro")

    def test_settings_that_exclude_each_other_go_back(self):
        """Images take what one language has out of the other's choices."""
        first, second = self.config.autolanguage.audio_epglanguage, self.config.autolanguage.audio_epglanguage_alternative

        def exclude(element):
            first.setChoices(["ara", "eng"] if second.value else ["", "ara", "eng"])
        second.addNotifier(exclude)
        first.value, second.value = "eng", "eng"
        self.screen.keyClose()
        self.assertEqual((first.value, second.value), ("", ""))
