"""Our screens in the look of the image's own: the skin's places and parts, in its skins, in one with everything elsewhere, in
none, and after the skin was changed while the GUI runs."""

from __future__ import absolute_import

import array
import os
import struct
import unittest

from . import case

ELSEWHERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "elsewhere.xml")
PLACES = """
dialog = session.current_dialog
def place(part):
    instance = getattr(part, "instance", None)
    return instance and [instance.position().x(), instance.position().y(), instance.size().width(), instance.size().height()]
places = dict((name, place(part)) for name, part in dialog.items() if place(part))
for each in dialog.renderer:
    names = [name for name, part in dialog.items() if part is each.source]
    if names and getattr(each, "text", None) is not None:
        places[names[0]] = place(each)
places["screen"] = [0, 0, dialog.instance.size().width(), dialog.instance.size().height()]
places
"""
KEYS = ["key_" + colour for colour in ("red", "green", "yellow", "blue")]


CUT = """
from Plugins.Extensions.Veltro import plugin, texts
module, cut, language = plugin.load(), [], texts._language
try:
    for each in %r:
        texts._language = lambda: each
        for name, argument in (("Veltro", "/plugin"), ("Edit_DVB_EPG_Blacklist", "/plugin"), ("DirChoose", "/media/"),
                               ("DVB_EPG_blacklist_ChannelSelection", "/plugin")):
            dialog = session.instantiateDialog(getattr(module, name), argument)
            shown = 0
            for renderer in dialog.renderer:
                of = [key for key, part in dialog.items() if part is renderer.source]
                if of and (of[0].startswith("key_") or of[0].lower() == "title") and getattr(renderer, "text", None):
                    needed, room = renderer.instance.calculateSize(), renderer.instance.size()
                    shown += 1
                    if needed.width() > room.width() or needed.height() > room.height() + 4:
                        cut.append((each, name, renderer.text, needed.width(), room.width()))
            if not shown:
                cut.append((each, name, "no label at all"))
            session.deleteDialog(dialog)
finally:
    texts._language = language
cut
"""
LANGUAGES = ["cs_CZ", "de_DE", "es_ES", "fr_FR", "it_IT", "nl_NL", "pl_PL", "ru_RU", "tr_TR"]


class Looks(case.HostCase):
    def assertNothingCut(self):
        """Titles and labels of keys, in our languages."""
        self.assertEqual(self.python(CUT % (LANGUAGES,)), [])

    def open_image_setup(self):
        self.python("from Screens.Setup import Setup\nsession.open(Setup, 'epgsettings')")
        self.host.settle()

    def places(self, opens):
        self.home()
        opens()
        return self.python(PLACES)

    def colours(self, place):
        """The number of colours that are seen at a place."""
        x, y, wide, high = place
        with open(self.path("/run/host/screen"), "rb") as file:
            width = struct.unpack("i", file.read(4))[0]
            file.seek(4096)
            pixels = array.array("I", file.read())
        return len(set(colour for line in range(y, y + high) for colour in pixels[line * width + x:line * width + x + wide]))

    def assertInPlace(self, places, *names):
        """All is on the screen, and labels of keys stand apart."""
        width, height = places["screen"][2:]
        for name in names:
            self.assertIn(name, places)
            x, y, wide, high = places[name]
            self.assertTrue(x >= 0 and y >= 0 and x + wide <= width and y + high <= height and wide and high, name)
        labels = [places[name] for name in names if name in KEYS]
        for index, (x, y, wide, high) in enumerate(labels):
            for x2, y2, wide2, high2 in labels[index + 1:]:
                self.assertTrue(x + wide <= x2 or x2 + wide2 <= x or y + high <= y2 or y2 + high2 <= y, labels)

    def assertFromSkin(self):
        self.assertNotIn("makes no layout", self.host.log)
        self.assertNotIn("no layout from the skin", self.host.log)


class InTheSkin(object):
    def test_settings_are_where_the_images_own_are(self):
        theirs, ours = self.places(self.open_image_setup), self.places(self.open_settings)
        self.assertEqual(ours["config"][:3], theirs["config"][:3])
        self.assertLess(theirs["config"][3] - ours["config"][3], 60, "less than a row")
        help_line = theirs["description"]
        self.assertEqual(ours["description"], help_line)
        self.assertEqual(ours["status"], help_line)
        self.home()
        self.open_image_setup()
        red = self.text("key_red")
        self.home()
        self.open_settings()
        self.assertEqual(self.text("key_red"), red)
        self.assertFromSkin()

    def test_the_host_takes_the_layout_as_it_is(self):
        """One that a host reads as a text it keeps in the screen. Pictures it need not look for."""
        for opens in (self.open_settings, self.open_editor, self.open_picker, self.open_chooser):
            self.home()
            opens()
            self.assertFalse(self.python("'parsedSkin' in vars(session.current_dialog)"))
            pictures = self.python("[each.get('pixmap') for each in session.current_dialog.parsedSkin.iter() if each.get('pixmap')]")
            found = [each for each in pictures if each.startswith("/")]
            self.assertTrue(found, pictures)
            lacking = [each for each in pictures if each not in found]
            self.assertEqual(self.python("from Tools.Directories import fileExists, resolveFilename, SCOPE_CURRENT_SKIN\n"
                                         "[n for n in %r if fileExists(resolveFilename(SCOPE_CURRENT_SKIN, n))]" % (lacking,)), [])

    def test_help_and_results_are_to_be_seen(self):
        self.open_settings()
        place = self.python(PLACES)["description"]
        self.assertGreater(self.colours(place), 2, "the first row's help")
        self.go_to("Delete broken epg.dat")
        self.press("ok")
        self.assertGreater(self.colours(place), 2, "the result")

    def test_editor(self):
        settings, editor = self.places(self.open_settings), self.places(self.open_editor)
        self.assertEqual(editor["ServiceList"], settings["config"])
        self.assertFromSkin()

    def test_picker_is_where_the_channel_list_is(self):
        theirs, ours = self.places(lambda: self.press("down")), self.places(self.open_picker)
        self.assertEqual(ours["list"][:3], theirs["list"][:3])
        for name in KEYS:
            if theirs.get(name, [0, 0, -1])[2] > 0:  # it is not shown in another way
                self.assertEqual(ours.get(name), theirs[name])
        self.assertFromSkin()

    def test_chooser(self):
        settings, chooser = self.places(self.open_settings), self.places(self.open_chooser)
        self.assertEqual(chooser["filelist"][:3], settings["config"][:3])
        self.assertEqual(chooser["driverfile"], settings["status"])
        self.assertFromSkin()

    def test_nothing_is_cut_in_any_language(self):
        self.assertNothingCut()

    def test_titles_say_where_one_is(self):
        for opens, title in ((self.open_settings, self.titles[0]), (self.open_editor, self.titles[1]),
                             (self.open_chooser, self.titles[2])):
            self.home()
            opens()
            self.assertEqual(self.screen()["title"], title)
            self.assertEqual(self.text("title") or title, title)


class HdTest(InTheSkin, Looks):
    titles = "EPG settings", "Edit blacklist for DVB EPG", "EPG Path"


class FhdTest(InTheSkin, Looks):
    resolution, language = "fhd", "de_DE"
    titles = "EPG-Einstellungen", "Sperrliste für DVB-EPG bearbeiten", "EPG-Pfad"

    def test_titles_say_where_one_is(self):
        self.open_settings()
        self.assertIn(self.screen()["title"], (self.titles[0], "EPG Einstellungen"))
        self.open_editor()
        self.assertEqual(self.screen()["title"], self.titles[1])


class SmallDesktop(object):
    """720x576, in the skin that hosts fall back on, where a kit has it: windows, keys on top, pictures behind labels."""

    resolution, values = None, {"config.skin.primary_skin": "skin_default/skin.xml"}

    @classmethod
    def setUpClass(cls):
        super(SmallDesktop, cls).setUpClass()
        if cls.host.python("from enigma import getDesktop\ngetDesktop(0).size().width()") != 720:
            raise unittest.SkipTest("this kit has no skin for 720x576")


class SmallTest(SmallDesktop, InTheSkin, Looks):
    titles = HdTest.titles


class BehaviourTest(Looks):
    def test_a_result_takes_the_place_of_the_help(self):
        self.open_settings()
        self.go_to("Delete broken epg.dat")
        self.press("ok")
        self.assertTrue(self.text("status"))
        self.assertEqual(self.text("description"), "")
        self.press("up")
        self.assertEqual(self.text("status"), "")

    def test_help_and_result_are_both_to_be_seen(self):
        x, y, width, height = self.places(self.open_settings)["description"]
        self.assertTrue(self.text("description"))
        self.assertGreater(len(self.colours(x, y, width, height)), 1, "the help")
        self.go_to("Delete broken epg.dat")
        self.python("session.current_dialog['description'].text = ''")
        self.host.settle()
        empty = self.colours(x, y, width, height)
        self.press("ok")
        self.assertGreater(len(self.colours(x, y, width, height)), len(empty), "the result")

    def colours(self, x, y, width, height):
        """The colours of a part of the screen."""
        path = self.host.path("run/host/screen")
        with open(path, "rb") as screen:
            wide = struct.unpack("i", screen.read(4))[0]
            lines = []
            for line in range(y, y + height):
                screen.seek(4096 + 4 * (line * wide + x))
                lines.append(screen.read(4 * width))
        return set(line[at:at + 4] for line in lines for at in range(0, len(line), 4))

    def test_the_front_display_has_the_row_and_its_value(self):
        self.open_settings()
        self.go_to("Enable MHW EPG")
        shown = "[session.summary[name].text for name in ('SetupTitle', 'SetupEntry', 'SetupValue')]"
        title, entry, value = self.python(shown)
        self.assertEqual((title, entry), ("EPG settings", "Enable MHW EPG"))
        self.press("right")
        self.assertNotEqual(self.python(shown)[2], value)
        self.press("right")
        self.assertEqual(self.python(shown)[2], value)

    def test_what_green_would_take_is_on_the_screen_at_once(self):
        self.open_chooser()
        self.assertEqual(self.text("driverfile"), self.python("session.current_dialog['filelist'].getCurrentDirectory()"))

    def test_an_empty_directory_can_be_chosen_from_inside(self):
        empty = "/media/hdd/empty \xc3\xa4/".encode("latin-1").decode("utf-8")
        os.makedirs(self.path(empty), exist_ok=True)
        self.open_settings()
        self.python("from Plugins.Extensions.Veltro import plugin\nchosen = []\n"
                    "session.openWithCallback(lambda *path: chosen.extend(path), plugin.load().DirChoose, '/media/hdd/')")
        self.host.settle()
        self.select_text(empty.split("/")[-2])
        self.press("ok")
        self.assertEqual(self.text("driverfile"), empty)
        self.press("green")
        self.assertEqual(self.python("chosen"), [empty + "epg.dat"])

    def test_ok_on_the_directory_itself_takes_it(self):
        self.open_settings()
        self.python("from Plugins.Extensions.Veltro import plugin\nchosen = []\n"
                    "session.openWithCallback(lambda *path: chosen.extend(path), plugin.load().DirChoose, '/media/hdd/')")
        self.host.settle()
        self.press("ok")
        self.assertEqual(self.python("chosen"), ["/media/hdd/epg.dat"])

    def test_names_that_are_no_text(self):
        """A directory of such a name could not be stored, so it is no choice."""
        folder = os.fsencode(self.path("/media/usb"))
        os.makedirs(os.path.join(folder, b"odd \xff\xfe"), exist_ok=True)
        os.makedirs(os.path.join(folder, b"zebra"), exist_ok=True)
        self.python("from Plugins.Extensions.Veltro import plugin\nsession.open(plugin.load().DirChoose, '/media/usb/')")
        self.host.settle()
        rows = self.rows()
        self.assertEqual([row for row in rows if row.startswith("odd")], [], rows)
        self.press(*["down"] * len(rows))
        self.select_text("zebra")
        self.press("ok", "down", "ok")
        self.assertEqual(self.row()[0], "zebra")

    def test_who_leaves_a_directory_stays_on_it(self):
        os.makedirs(self.path("/media/hdd/one"), exist_ok=True)
        os.makedirs(self.path("/media/hdd/two"), exist_ok=True)
        self.python("from Plugins.Extensions.Veltro import plugin\nsession.open(plugin.load().DirChoose, '/media/hdd/')")
        self.host.settle()
        self.select_text("two")
        self.press("ok", "down", "ok")
        self.assertEqual(self.row()[0], "two")
        self.assertEqual(self.text("driverfile"), "/media/hdd/two/")

    def test_a_layout_for_our_screen_wins(self):
        self.write("/etc/enigma2/ours.xml", b'<skin><screen name="Veltro" position="0,0" size="700,500">'
                   b'<widget name="config" position="11,22" size="600,300"/></screen></skin>')
        self.python("import skin\nskin.loadSkin('/etc/enigma2/ours.xml')")
        try:
            self.assertEqual(self.places(self.open_settings)["config"][:2], [11, 22])
        finally:
            self.python("import skin\ndel skin.domScreens['Veltro']")


class ElsewhereTest(Looks):
    @classmethod
    def start_afresh(cls):
        super(ElsewhereTest, cls).start_afresh()
        with open(ELSEWHERE, "rb") as skin, open(cls.host.path("/etc/enigma2/elsewhere.xml"), "wb") as file:
            file.write(skin.read())
        cls.host.python("import skin\nskin.loadSkin('/etc/enigma2/elsewhere.xml')")

    def test_settings(self):
        self.assertInPlace(self.places(self.open_settings), "config", "description", "status", *KEYS[:2])
        self.assertFromSkin()

    def test_editor(self):
        places = self.places(self.open_editor)
        self.assertInPlace(places, "ServiceList", *KEYS)
        self.assertEqual(places["key_yellow"][0] - places["key_green"][0], places["key_green"][0] - places["key_red"][0])
        self.assertFromSkin()

    def test_picker(self):
        self.assertInPlace(self.places(self.open_picker), "list", *KEYS)
        self.press("ok")
        self.assertTrue(self.rows())
        self.assertFromSkin()

    def test_chooser(self):
        self.assertInPlace(self.places(self.open_chooser), "filelist", "driverfile", *KEYS[:2])
        self.assertFromSkin()


class NothingToMakeItFromTest(Looks):
    """A skin whose screens are all unlike ours."""

    @classmethod
    def start_afresh(cls):
        super(NothingToMakeItFromTest, cls).start_afresh()
        cls.host.python("from Plugins.Extensions.Veltro import plugin, skin_screens\nplugin.load()\n"
                        "skin_screens.loaded = lambda: {}")

    def test_ours(self):
        self.assertInPlace(self.places(self.open_settings), "config", "description", "status", *KEYS[:2])
        self.assertInPlace(self.places(self.open_editor), "ServiceList", *KEYS)
        self.assertInPlace(self.places(self.open_picker), "list", *KEYS)
        self.assertEqual(len(self.screen()["rows"]) > 0, True)


    def test_nothing_is_cut_in_any_language(self):
        self.assertNothingCut()


class NothingToMakeItFromFhdTest(NothingToMakeItFromTest):
    resolution = "fhd"


class NothingToMakeItFromSmallTest(SmallDesktop, NothingToMakeItFromTest):
    pass


class AnotherSkinTest(Looks):
    """A host that loads another skin while it runs."""

    def test_layouts_follow(self):
        if not self.python("hasattr(session, 'reloadSkin')"):
            self.skipTest("this host loads a skin at its start only")
        before = self.places(self.open_settings)
        self.home()
        self.python("from Components.config import config\nconfig.skin.primary_skin.value = %r\nsession.reloadSkin()"
                    % self.host.info["skins"]["fhd"])
        self.host.settle()
        theirs, after = self.places(self.open_image_setup), self.places(self.open_settings)
        self.assertNotEqual(after["config"], before["config"])
        self.assertEqual(after["config"][:3], theirs["config"][:3])


class EventTest(Looks):
    resolution = "fhd"

    def test_the_picker_shows_the_event_of_the_selected_service(self):
        """A skin's channel list has room for it, and so has ours."""
        self.python(case.epg())
        self.open_picker()
        self.select_service(205)
        self.host.wait("session.current_dialog['ServiceEvent'].event is not None")
        self.assertTrue(self.python("session.current_dialog['ServiceEvent'].event.getEventName()").startswith("Event "))
        self.press("exit")

    def test_it_is_asked_for_once_when_the_picker_opens(self):
        """The list selects several times while it opens."""
        self.open_editor()
        self.python("from Components.Sources.ServiceEvent import ServiceEvent\nasked, real = [], ServiceEvent.newService\n"
                    "ServiceEvent.newService = lambda self, *service: asked.append(1) or real(self, *service)")
        try:
            self.press("blue")
            self.assertShows("DVB_EPG_blacklist_ChannelSelection")
            self.host.wait("asked")
            self.host.settle()
            self.assertEqual(self.python("len(asked)"), 1)
        finally:
            self.python("ServiceEvent.newService = real")

    def select_service(self, index):
        """By the list of all services, which every host's GREEN shows."""
        reference = case.channels.reference(case.channels.services()[index])
        self.press("green")
        self.python("from enigma import eServiceReference\nsession.current_dialog.setCurrentSelection(eServiceReference(%r))"
                    % reference)
        self.host.settle()
        self.assertEqual(self.python("session.current_dialog.getCurrentSelection().toString().split('::')[0]"),
                         reference.split("::")[0])
