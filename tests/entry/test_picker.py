"""The channel picker on hosts whose channel list has its own idea of the colour keys."""

from tests.entry.case import BoxTest, press, text_of
from tests.entry.fake_screens import ActionMap, ChannelSelection, MessageBox, Reference, ServiceList

FOLDER = 7


class PickerTest(BoxTest):
    def open(self, keys=ActionMap(["ChannelSelectBaseActions"], {}, -2)):
        ChannelSelection.keys = keys
        self.load()
        self.picker = self.box.session.open(self.module.DVB_EPG_blacklist_ChannelSelection, "/plugin")
        return self.picker

    def press(self, action):
        return press(self.picker, "veltro_keys", action)

    def test_comes_before_the_hosts_keys(self):
        for prio in (-2, -1, 0, 1):
            picker = self.open(ActionMap(["ChannelSelectBaseActions"], {}, prio))
            self.assertEqual(picker["veltro_keys"].prio, min(prio, 0) - 1)
            self.assertIn("ChannelSelectBaseActions", picker["veltro_keys"].contexts)

    def test_colours(self):
        picker = self.open()
        self.press("showSatellites")
        self.press("showFavourites")
        self.assertEqual(picker.calls, ["showAllServices", "showFavourites"])
        self.press("showAllServices")
        self.assertEqual(self.box.session.closed, [(None,)])

    def test_the_release_of_a_colour_key_is_taken_away(self):
        picker = self.open()
        for colour in ("red", "green", "yellow", "blue"):
            self.assertEqual(self.press(colour), 1)
        self.assertEqual((picker.calls, self.box.session.closed), ([], []))

    def test_ok_on_a_service(self):
        picker = self.open()
        service = picker.servicelist.selected = Reference("1:0:1")
        self.press("ok")
        self.assertEqual(self.box.session.closed, [([service],)])

    def test_ok_on_a_bouquet_lets_the_host_ask_as_it_is_used_to(self):
        picker = self.open()
        bouquet = picker.servicelist.selected = Reference("1:7:1", FOLDER)
        nothing = Reference()

        def enter(ref):
            picker.servicelist.selected = nothing  # an empty bouquet
            ChannelSelection.enterPath(picker, ref)
        picker.enterPath = enter
        self.press("ok")
        self.assertEqual(picker.calls, [("enterPath", bouquet, nothing)])

    def test_nothing_selected(self):
        """Hosts have an invalid reference then, and some None."""
        picker = self.open()
        for nothing in (Reference(), None):
            picker.servicelist.selected = nothing
            for key, text in (("ok", "Nothing is selected."), ("showProviders", "Select a bouquet first.")):
                self.press(key)
                notice = self.box.session.current_dialog
                self.assertEqual((notice.text, notice.type, notice.timeout), (text, MessageBox.TYPE_INFO, 4))
                self.box.session.popCurrent()
        self.assertEqual(self.box.session.closed, [])

    def test_a_notice_leaves_the_user_where_he_was(self):
        picker = self.open()
        picker.servicelist.selected = Reference("1:0:1")
        self.press("showProviders")
        self.box.session.popCurrent()
        for shown in ([], ["setTvMode", "showFavourites"]):
            for function in picker.onShown:
                function()
            self.assertEqual(picker.calls, shown)

    def test_yellow_on_a_service(self):
        picker = self.open()
        picker.servicelist.selected = Reference("1:0:1")
        self.press("showProviders")
        self.assertEqual(self.box.session.current_dialog.text, "Select a bouquet first.")

    def test_a_title_of_a_bouquet_with_an_odd_name(self):
        picker = self.open()
        picker.setTitle(text_of(b"Add Service - My \xff"))
        self.assertEqual(picker.title, text_of(u"Add Service - My \ufffd".encode("utf-8")))

    def test_a_host_that_forgets_what_the_list_is_for(self):
        picker = self.open()
        picker.setTitle(" (TV)")
        self.assertEqual(picker.title, "Add Service (TV)")

    def test_yellow_adds_the_bouquet(self):
        picker = self.open()
        picker.servicelist.selected = Reference("1:7:1", FOLDER)
        services = [Reference("1:0:1"), Reference("1:64:1", 64), Reference("1:0:2")]

        class Content(object):
            def __init__(self):
                self.left = services + [Reference()]

            def getNext(self):
                return self.left.pop(0)
        center = type("Center", (object,), {"list": lambda self, ref: Content()})()
        self.module.eServiceCenter.getInstance = staticmethod(lambda: center)
        self.press("showProviders")
        self.assertEqual(self.box.session.closed, [([services[0], services[2]],)])

    def test_the_list_takes_the_call_that_hosts_do_not_know(self):
        picker = self.open()
        self.assertIsNone(picker.servicelist.setPythonConfig())
        self.assertFalse(hasattr(ServiceList, "setPythonConfig"))

    def test_shown_callbacks_are_guarded(self):
        picker = self.open()

        def failing():
            raise ValueError("no TV")
        picker.setTvMode = failing
        for function in picker.onShown:
            function()
        self.assertIn("__onExecCallback failed", self.console)
        self.assertEqual(self.box.session.current_dialog.text, "That did not work.")


class FactoryTest(BoxTest):
    def test_a_host_that_makes_its_list_by_a_function(self):
        self.box.modules["Components.ServiceList"].ServiceList = lambda *arguments: ServiceList()
        self.load()
        self.assertIs(self.module.SimpleChannelSelection, self.box.part("bridge.picker").Picker)
