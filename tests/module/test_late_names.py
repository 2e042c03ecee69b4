"""Names are looked up when an operation runs: in the module's namespace, then in the built-ins."""

from tests.module.case import HostTestCase, PLUGIN_PATH, builtins, host


class Heard(object):
    """A callable or anything else that writes down how it is used."""

    def __init__(self, result=None):
        self.calls, self.result = [], result

    def __call__(self, *arguments, **keywords):
        self.calls.append(arguments + ((keywords,) if keywords else ()))
        return self.result


class LateNames(HostTestCase):
    def not_defined(self, name, operation, *arguments):
        error = self.error_of(NameError, operation, *arguments)
        self.assertEqual(str(error), "name '%s' is not defined" % name)

    def without(self, name):
        delattr(self.Veltro, name)

    def test_the_translation_function_of_the_built_ins(self):
        screen = self.editor()
        self.replace(builtins, "_", lambda text: "other " + text)
        screen.setWindowTitle()
        self.assertCalls(("setTitle", "other Edit blacklist for DVB EPG"))

    def test_the_translation_function_of_the_namespace_comes_first(self):
        self.Veltro._ = lambda text: "own " + text
        self.editor().setWindowTitle()
        self.assertCalls(("setTitle", "own Edit blacklist for DVB EPG"))
        screen = self.settings()
        self.assertEqual(screen.list[0][0], "own Multi-EPG bouquet selection")

    def test_without_a_translation_function(self):
        screen = self.editor()
        translate = builtins._
        del builtins._
        self.addCleanup(setattr, builtins, "_", translate)
        self.not_defined("_", screen.setWindowTitle)
        self.not_defined("_", self.Veltro.Veltro, host.session, PLUGIN_PATH)
        self.not_defined("_", self.Veltro.DVB_EPG_blacklist_ChannelSelection, host.session, PLUGIN_PATH)

    def test_a_replaced_action_function_is_called_by_screen_and_timer(self):
        self.Veltro.doEPGAction = heard = Heard()
        for row in (20, 21, 22):
            self.settings(selected=row).keyOk()
        self.Veltro.epg_timer.init_timer()
        self.Veltro.epg_timer.do_epg_action()
        self.assertEqual(heard.calls, [("save",), ("load",), ("cleardb",), ("save",)])

    def test_a_replaced_search_is_called_by_the_editor(self):
        screen = self.editor()
        self.Veltro.find_in_list = heard = Heard(result=False)
        host.service_names.update({"1:a": "same", "1:b": "same", "1:c": ""})
        screen.finishedChannelSelection(["1:a", "1:b", "1:c"])
        self.assertEqual([row[0] for row in screen.servicelist], ["same", "same", "N/A"])
        self.assertEqual([call[1:] for call in heard.calls], [("same", 0), ("same", 0), ("N/A", 0)])
        for call in heard.calls:
            self.assertIs(call[0], screen.servicelist)
        heard.result = True
        screen.finishedChannelSelection(["1:d"])
        self.assertEqual(len(screen.servicelist), 3)

    def test_a_search_that_is_replaced_meanwhile_is_called_from_then_on(self):
        screen = self.editor()
        heard = Heard(result=False)

        class Meddling(object):
            def __init__(proxy, reference):
                proxy.ref = proxy
                proxy.text = reference

            def getServiceName(proxy):
                if proxy.text == "1:b":
                    self.Veltro.find_in_list = heard
                return "same"

            def toString(proxy):
                return proxy.text
        self.replace(self.Veltro, "ServiceReference", Meddling)
        screen.finishedChannelSelection(["1:a", "1:b", "1:c"])
        self.assertEqual([row[3] for row in screen.servicelist], ["1:a", "1:b", "1:c"])
        self.assertEqual(len(heard.calls), 2)

    def test_without_a_search(self):
        screen = self.editor()
        self.without("find_in_list")
        self.not_defined("find_in_list", screen.finishedChannelSelection, ["1:a"])
        self.replace(builtins, "find_in_list", Heard(result=False))
        screen.finishedChannelSelection(["1:a"])
        self.assertEqual(len(screen.servicelist), 1)

    def test_the_cache(self):
        class Cache(object):
            getInstance = Heard()
        Cache.getInstance.result = cache = type("Instance", (), {"save": Heard(), "setCacheFile": Heard()})()
        self.Veltro.eEPGCache = Cache
        self.Veltro.doEPGAction("save")
        self.settings().keySave()
        self.assertEqual(cache.save.calls, [()])
        self.assertEqual(cache.setCacheFile.calls, [("/media/hdd/epg.dat",)])

    def test_each_name_may_also_stand_in_the_built_ins(self):
        cache = self.Veltro.eEPGCache
        self.without("eEPGCache")
        self.not_defined("eEPGCache", self.Veltro.doEPGAction, "save")
        self.replace(builtins, "eEPGCache", cache)
        self.Veltro.doEPGAction("save")
        self.assertCalls(("eEPGCache.getInstance",), ("eEPGCache.save",))

    def test_each_name_that_is_missing_is_named(self):
        self.etc(b"#SERVICE 1:0:\n")
        row = lambda number: lambda: self.settings(selected=number).keyOk()
        open_settings = lambda: self.Veltro.Veltro(host.session, PLUGIN_PATH)
        bouquet = lambda: self.picker(host.reference("1:7:", content=["1:0:"])).doNothing()
        for name, operation in (
            ("eEPGCache", lambda: self.Veltro.doEPGAction("save")), ("eEPGCache", lambda: self.settings().keySave()),
            ("eTimer", self.Veltro.epg_timer.init_timer), ("config", self.Veltro.epg_timer.init_timer),
            ("config", self.Veltro.epg_timer.do_epg_action), ("config", open_settings), ("NoSave", open_settings),
            ("ConfigNothing", open_settings), ("Label", open_settings), ("StaticText", self.editor),
            ("ActionMap", open_settings), ("getConfigListEntry", open_settings),
            ("doEPGAction", row(20)), ("DirChoose", row(17)), ("Edit_DVB_EPG_Blacklist", row(16)),
            ("ConfigSelection", row(3)), ("getSelectionChoices", row(3)), ("ChoiceBox", row(3)),
            ("FileList", self.chooser), ("Label", self.chooser), ("ActionMap", self.chooser),
            ("eEnv", self.editor), ("ConfigList", self.editor), ("path", self.editor),
            ("ServiceReference", self.editor), ("ConfigNothing", self.editor),
            ("DVB_EPG_blacklist_ChannelSelection", lambda: self.editor().bluePressed()),
            ("eServiceCenter", bouquet), ("eServiceReference", bouquet), ("ActionMap", self.picker),
            ("StaticText", self.picker),
        ):
            there = getattr(self.Veltro, name)
            self.without(name)
            try:
                self.not_defined(name, operation)
            finally:
                setattr(self.Veltro, name, there)

    def test_the_deletion_of_a_failed_save(self):
        self.etc()
        screen = self.editor()
        self.Veltro.unlink = heard = Heard()
        host.recorder.fail("open", IOError())
        screen.saveFile()
        self.assertEqual(heard.calls, [(screen.filename,)])
        self.without("unlink")
        host.recorder.fail("open", IOError())
        self.not_defined("unlink", screen.saveFile)

    def test_screens_that_are_opened(self):
        for name, number, position in (("DirChoose", 17, 1), ("Edit_DVB_EPG_Blacklist", 16, 0), ("ChoiceBox", 3, 1)):
            screen = self.settings(selected=number)
            other = object()
            setattr(self.Veltro, name, other)
            screen.keyOk()
            self.assertIs(host.recorder.calls[-1][1:][position], other)

    def test_the_base_classes_are_those_of_the_definition(self):
        bases = self.Veltro.DirChoose.__bases__

        class Other(object):
            pass
        self.Veltro.SimpleChannelSelection = Other
        self.assertEqual(self.Veltro.DirChoose.__bases__, bases)
        self.assertNotIn(Other, self.Veltro.DVB_EPG_blacklist_ChannelSelection.__mro__)

    def test_load_only_names_are_not_used(self):
        for name in ("GUIComponent", "ConfigSubsection", "ConfigText", "Pixmap", "MessageBox", "LoadPixmap",
                     "Notifications", "loadSkin", "system", "_enigma", "new"):
            self.without(name)
        self.settings(selected=20).keyOk()
        self.chooser().down()
        self.editor().greenPressed
        self.picker().setModeTv()
        self.Veltro.epg_timer.init_timer()

    def test_the_namespace_of_an_older_load_is_its_own(self):
        older = self.Veltro
        newer = host.load()
        older.doEPGAction = heard = Heard()
        newer.epg_timer.init_timer()
        newer.epg_timer.do_epg_action()
        self.assertEqual(heard.calls, [])
        older.epg_timer.init_timer()
        older.epg_timer.do_epg_action()
        self.assertEqual(heard.calls, [("save",)])
