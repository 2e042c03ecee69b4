"""plugin/src/channel_picker.cpp: what OK and the colour keys do there."""

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, host, press, shown

CONTEXTS = ["OkCancelActions", "TvRadioActions", "ChannelSelectBaseActions"]
ACTIONS = ["cancel", "keyRadio", "keyTV", "ok", "showAllServices", "showProviders", "showSatellites"]
BOUQUET = "1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"userbouquet.favourites.tv\" ORDER BY bouquet"
SERVICE, OTHER, MARKER, NUMBERED = "1:0:1:1:", "4097:0:1:2:", "1:64:1:0:", "1:320:1:0:"
ASKED = ("getCurrentSelection",)
FAVOURITES = ("showFavourites",)


class PickerTestCase(HostTestCase):
    def at(self, text, content=None):
        return self.picker(host.reference(text, content=content))


class Construction(PickerTestCase):
    def open(self):
        return self.Veltro.DVB_EPG_blacklist_ChannelSelection(host.session, PLUGIN_PATH)

    def test_every_step_in_order(self):
        self.open()
        self.assertEqual(host.recorder.events[0], ("_", "Select service to add..."))
        self.assertEqual(self.steps, [
            ("skin_path =", PLUGIN_PATH),
            ("SimpleChannelSelection.__init__", "Session", "[Select service to add...]"),
            ("onShown.append", self.steps[2][1]),
            ("servicelist.setPythonConfig",),
            ("ActionMap", CONTEXTS, ACTIONS), ('["actions"] =', "ActionMap"),
            ("StaticText", "[Close]"), ('["key_red"] =', "StaticText"),
            ("StaticText", "[All]"), ('["key_green"] =', "StaticText"),
            ("StaticText", "[Add bouquet services]"), ('["key_yellow"] =', "StaticText"),
            ("StaticText", "[Favourites]"), ('["key_blue"] =', "StaticText"),
        ])
        self.assertIn("__onExecCallback", self.steps[2][1])

    def test_key_map(self):
        screen = self.open()
        keys = dict.__getitem__(screen, "actions")
        self.assertEqual(list(keys._contexts), CONTEXTS)
        self.assertEqual(keys._priority, (), "the host's default")
        self.assertEqual(keys._actions, {
            "showProviders": screen.doNothing, "showSatellites": screen.showAllServices,
            "showAllServices": screen.cancel, "cancel": screen.cancel,
            "ok": screen.channelSelected, "keyRadio": screen.setModeRadio, "keyTV": screen.setModeTv})

    def test_the_plugin_path_is_kept(self):
        self.assertEqual(self.open().skin_path, PLUGIN_PATH)

    def test_arguments(self):
        for arguments in ((), (host.session,), (host.session, "", 1)):
            self.error_of(TypeError, self.Veltro.DVB_EPG_blacklist_ChannelSelection, *arguments)
        self.assertEqual(host.recorder.events, [])


class Modes(PickerTestCase):
    def test_each_showing_returns_to_the_tv_favourites(self):
        screen = self.picker()
        for _ in range(2):
            shown(screen)
        self.assertCalls(*[("setTvMode",), FAVOURITES] * 2)

    def test_tv_and_radio(self):
        for key, mode in (("keyTV", "setTvMode"), ("keyRadio", "setRadioMode")):
            screen = self.picker()
            self.assertIsNone(press(screen, key))
            self.assertCalls((mode,), FAVOURITES)

    def test_green_shows_all_services(self):
        press(self.picker(), "showSatellites")
        self.assertCalls(("showAllServices",))

    def test_red_and_exit_close_with_no_value(self):
        for key in ("showAllServices", "cancel"):
            self.assertIsNone(press(self.picker(), key))
            self.assertCalls(("close", None))


class Ok(PickerTestCase):
    def test_a_directory_is_entered(self):
        for text in (BOUQUET, "1:7:", "1:519:", "1:15:"):
            screen = self.at(text)
            self.assertIsNone(press(screen, "ok"))
            self.assertCalls(ASKED, ("enterPath", "eServiceReference"))
            self.assertIs(host.recorder.calls[-1][1], screen._selection)

    def test_a_marker_does_nothing(self):
        for text in (MARKER, NUMBERED, "1:65:"):
            self.assertIsNone(press(self.at(text), "ok"))
            self.assertCalls(ASKED)

    def test_a_service_is_returned(self):
        for text in (SERVICE, OTHER, "2:0:", "1:1:", "1:2:", "1:3:", "1:4:", "1:5:", "1:6:", "1:128:", ":0:"):
            screen = self.at(text)
            selection = screen._selection
            self.assertIsNone(press(screen, "ok"))
            self.assertEqual(host.recorder.names(), ["getCurrentSelection", "close"])
            result, = host.recorder.calls[-1][1:]
            self.assertEqual((type(result), len(result)), (list, 1))
            self.assertIs(result[0], selection)

    def test_nothing_selected_is_an_error_and_the_picker_stays_open(self):
        self.error_of(AttributeError, self.picker().channelSelected)
        self.assertCalls(ASKED)

    def test_the_marker_bit_is_the_hosts(self):
        self.replace(self.Veltro.eServiceReference, "isMarker", 1024)
        press(self.at("1:64:"), "ok")
        self.assertIn("close", host.recorder.names())
        host.recorder.clear()
        press(self.at("1:1024:"), "ok")
        self.assertCalls(ASKED)

    def test_the_directory_bits_are_not(self):
        self.replace(self.Veltro.eServiceReference, "isDirectory", 1024)
        press(self.at("1:7:"), "ok")
        self.assertCalls(ASKED, ("enterPath", "eServiceReference"))


class AddBouquet(PickerTestCase):
    def close_with(self, screen):
        """The texts of the result."""
        host.recorder.clear()
        self.assertIsNone(press(screen, "showProviders"))
        self.assertEqual(host.recorder.names()[-1], "close")
        result, = host.recorder.calls[-1][1:]
        self.assertIs(type(result), list)
        return [reference._text for reference in result]

    def test_the_services_in_order(self):
        texts = [SERVICE, OTHER, "1:0:1:3:", "2:0:2:4:"]
        self.assertEqual(self.close_with(self.at(BOUQUET, texts)), texts)

    def test_markers_and_directories_are_skipped(self):
        content = [MARKER, SERVICE, "1:7:sub-bouquet", NUMBERED, OTHER, "1:1:folder", "1:3:folder", "1:65:",
                   "1:6:no folder"]
        self.assertEqual(self.close_with(self.at(BOUQUET, content)), [SERVICE, OTHER, "1:6:no folder"])

    def test_duplicates_and_odd_types_are_the_editors_affair(self):
        self.assertEqual(self.close_with(self.at(BOUQUET, [SERVICE, SERVICE, "5:0:"])), [SERVICE, SERVICE, "5:0:"])

    def test_an_empty_bouquet(self):
        self.assertEqual(self.close_with(self.at(BOUQUET, [])), [])

    def test_a_bouquet_without_content(self):
        screen = self.at(BOUQUET)
        self.assertEqual(self.close_with(screen), [])
        self.assertCalls(ASKED, ("eServiceCenter.getInstance",), ("eServiceCenter.list", "eServiceReference"),
                         ("close", []))

    def test_the_calls(self):
        screen = self.at(BOUQUET, [MARKER, SERVICE])
        selection = screen._selection
        self.close_with(screen)
        self.assertEqual(self.calls, [
            ASKED, ("eServiceCenter.getInstance",), ("eServiceCenter.list", "eServiceReference"),
            ("getNext",), ("valid", MARKER), ("getNext",), ("valid", SERVICE), ("getNext",), ("valid", ""),
            ("close", ["eServiceReference"])])
        self.assertIs(host.recorder.named("eServiceCenter.list")[0][0], selection)

    def test_flags_of_an_invalid_reference_are_not_read(self):
        self.close_with(self.at(BOUQUET, [SERVICE]))
        self.assertEqual(set(host.recorder.named("flags")), set([(BOUQUET,), (SERVICE,)]))

    def test_it_stops_at_the_first_invalid_reference(self):
        self.assertEqual(self.close_with(self.at(BOUQUET, [SERVICE, "", OTHER])), [SERVICE])

    def test_the_bits_are_the_hosts(self):
        self.replace(self.Veltro.eServiceReference, "isMarker", 1024)
        self.replace(self.Veltro.eServiceReference, "isDirectory", 2048)
        content = ["1:64:", "1:1:", "1:1024:", "1:2048:", "1:3072:"]
        self.assertEqual(self.close_with(self.at(BOUQUET, content)), ["1:64:", "1:1:"])

    def content_with(self, *flags):
        """A picker at a bouquet of services with these flags."""
        class Reference(object):
            def __init__(self, flags):
                self.flags = self._text = flags

            def valid(self):
                return self.flags != "end"
        left = [Reference(each) for each in flags + ("end",)]

        class Content(object):
            def getNext(self):
                return left.pop(0)
        self.replace(self.Veltro.eServiceCenter, "list", lambda self, reference: Content())
        return self.at(BOUQUET)

    def test_flags_that_are_no_plain_number(self):
        class Number(int):
            def __and__(self, mask):
                return self == 64 and []
        odd = (Number(64), Number(0), False, 1 << 40, -128, 1 << 80, 0)
        marked = (True, (1 << 40) + 64, -1, (1 << 80) + 1, 64)
        self.assertEqual(self.close_with(self.content_with(*(odd + marked))), list(odd))
        self.assertEqual(self.close_with(self.content_with(*(marked + odd))), list(odd))
        for flags in ("64", None, 64.0):
            self.error_of(TypeError, self.content_with(0, flags).doNothing)

    def test_bits_that_are_no_plain_number(self):
        for marker, flags in ((True, (1, 65)), (1 << 40, (1 << 40,)), (-128, (128, 1 << 40)), (1 << 80, (1 << 80,))):
            self.replace(self.Veltro.eServiceReference, "isMarker", marker)
            self.replace(self.Veltro.eServiceReference, "isDirectory", 0)
            self.assertEqual(self.close_with(self.content_with(0, 2, *flags)), [0, 2])

    def test_getNext_as_any_callable(self):
        references = [host.reference(text) for text in (SERVICE, OTHER, "")]

        class Content(object):
            def __init__(self, getNext):
                self.getNext = getNext
        class Next(object):
            def __init__(self):
                self.left = references[::-1]

            def __call__(self):
                return self.left.pop()
        for getNext in (Next(), Next().__call__, lambda left=references[::-1]: left.pop(), references[::-1].pop):
            screen = self.at(BOUQUET)
            self.replace(self.Veltro.eServiceCenter, "list", lambda self, reference: Content(getNext))
            self.assertEqual(self.close_with(screen), [SERVICE, OTHER])

    def test_anything_but_a_directory_does_nothing(self):
        for text in (SERVICE, MARKER, "1:1:", "1:6:", "1:3:"):
            self.assertIsNone(press(self.at(text, [SERVICE]), "showProviders"))
            self.assertCalls(ASKED)

    def test_nothing_selected_does_nothing(self):
        self.assertIsNone(press(self.picker(), "showProviders"))
        self.assertCalls(ASKED)

    def test_a_content_that_tests_false_is_still_a_content(self):
        class Content(object):
            left = [host.reference(SERVICE), host.reference("")]

            def __len__(self):
                return 0

            def getNext(self):
                return self.left.pop(0)
        screen = self.at(BOUQUET)
        self.replace(self.Veltro.eServiceCenter, "list", lambda self, reference: Content())
        self.assertEqual(self.close_with(screen), [SERVICE])

    def test_an_error_leaves_the_picker_open(self):
        for event in ("eServiceCenter.getInstance", "eServiceCenter.list", "getNext", "valid"):
            screen = self.at(BOUQUET, [SERVICE, OTHER])
            error = Boom()
            host.recorder.fail(event, error)
            self.raised_by(error, screen.doNothing)
            self.assertNotIn("close", host.recorder.names())


class WithTheEditor(PickerTestCase):
    """The picker's result as the editor takes it."""

    def add(self, text, content=None):
        editor = self.editor()
        picker = self.at(text, content)
        press(picker, "showProviders" if content is not None else "ok")
        result = host.recorder.calls[-1][1:]
        host.recorder.clear()
        editor.finishedChannelSelection(*result)
        return editor

    def test_a_service(self):
        host.service_names[SERVICE] = "One"
        self.assertEqual([row[3] for row in self.add(SERVICE).servicelist], [SERVICE])

    def test_a_bouquet_with_two_services_of_one_name(self):
        host.service_names.update({SERVICE: "same", OTHER: "same", "1:0:1:3:": "other"})
        self.assertEqual([row[3] for row in self.add(BOUQUET, [SERVICE, OTHER, "1:0:1:3:"]).servicelist],
                         [SERVICE, "1:0:1:3:"])

    def test_an_empty_bouquet_adds_nothing_and_does_not_redraw(self):
        self.add(BOUQUET, [])
        self.assertCalls()

    def test_cancelling_adds_nothing_and_does_not_redraw(self):
        editor = self.editor()
        press(self.picker(), "cancel")
        result = host.recorder.calls[-1][1:]
        host.recorder.clear()
        editor.finishedChannelSelection(*result)
        self.assertCalls()
