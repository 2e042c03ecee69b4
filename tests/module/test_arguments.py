"""The arguments of every operation: by position and by keyword, too few, too many, wrong names."""

import inspect
import unittest

from tests.module.case import HostTestCase, PLUGIN_PATH, PYTHON2, host
from tests.module.operations import REQUIRED, bare, each, shown_name


class Arguments(HostTestCase):
    def refused(self, class_name, operation, *arguments, **keywords):
        error = self.error_of(TypeError, getattr(bare(self.Veltro, class_name), operation), *arguments, **keywords)
        self.assertIn("Veltro.%s.%s() " % (class_name, shown_name(operation)), str(error))
        self.assertEqual(host.recorder.events, [])

    def test_too_many(self):
        for class_name, operation, parameters in each():
            if parameters is not None:
                self.refused(class_name, operation, *range(len(parameters) + 1))

    def test_too_few(self):
        for class_name, operation, parameters in each():
            required = [name for name, default in parameters or () if default is REQUIRED]
            for count in range(len(required)):
                self.refused(class_name, operation, *range(count))

    def test_unknown_keyword(self):
        for class_name, operation, parameters in each():
            required = [0 for name, default in parameters or () if default is REQUIRED]
            self.refused(class_name, operation, *required, nonsense=1)

    def test_twice_the_same(self):
        for class_name, operation, parameters in each():
            for position, (name, _) in enumerate(parameters or ()):
                self.refused(class_name, operation, *range(position + 1), **{name: 1})

    def test_one_missing_among_keywords(self):
        for class_name, operation, parameters in each():
            for name, default in parameters or ():
                if default is REQUIRED:
                    self.refused(class_name, operation,
                                 **dict((other, 1) for other, _ in parameters if other != name))

    def test_functions(self):
        for arguments, keywords in (((), {}), (("save", "load"), {}), ((), {"action": "save"}),
                                    (("save",), {"action": "save"})):
            error = self.error_of(TypeError, self.Veltro.doEPGAction, *arguments, **keywords)
            self.assertEqual(str(error).split(" ")[0], "Veltro.doEPGAction()")
        for arguments, keywords in (((), {}), (([],), {}), (([], 1, 0, 0), {}), (([], 1), {"pos": 0}),
                                    (([], 1), {"search": 1}), ((), {"list": []})):
            error = self.error_of(TypeError, self.Veltro.find_in_list, *arguments, **keywords)
            self.assertEqual(str(error).split(" ")[0], "Veltro.find_in_list()")
        self.assertEqual(host.recorder.events, [])

    def test_by_keyword(self):
        self.assertIsNone(self.Veltro.epg_timer.setSession(session="session"))
        self.assertEqual(self.Veltro.epg_timer.session, "session")
        self.assertTrue(self.Veltro.find_in_list(list=[(0, 1)], search=1, listpos=1))
        self.assertTrue(self.Veltro.find_in_list([(0, 1)], listpos=1, search=1))
        screen = self.Veltro.Veltro(plugin_path=PLUGIN_PATH, session=host.session)
        self.assertEqual(screen.skin_path, PLUGIN_PATH)
        screen.epgBackupfinished(statustext="text")
        self.assertEqual(screen.text, "text")
        screen.gotEPGpath(res="/x")
        self.assertEqual(self.value("misc.epgcache_filename"), "/x")
        screen.configSelectionCallBack(ret=None)
        self.Veltro.DirChoose(initDir="/", session=host.session)
        self.Veltro.Edit_DVB_EPG_Blacklist(plugin_path=PLUGIN_PATH, session=host.session)
        self.Veltro.DVB_EPG_blacklist_ChannelSelection(plugin_path=PLUGIN_PATH, session=host.session)

    def test_the_third_argument_of_the_settings_screen_changes_nothing(self):
        self.Veltro.Veltro(host.session, PLUGIN_PATH)
        usual = self.steps
        for arguments, keywords in (((1,), {}), ((object(),), {}), ((), {"args": None})):
            host.recorder.clear()
            screen = self.Veltro.Veltro(host.session, PLUGIN_PATH, *arguments, **keywords)
            self.assertEqual(self.steps, usual)
            self.assertFalse(hasattr(screen, "args"))

    def test_finished_channel_selection_takes_any_number(self):
        screen = self.editor()
        for arguments in ((), (None,), (None, 1), ([], 1, 2, 3)):
            self.assertIsNone(screen.finishedChannelSelection(*arguments))
        self.assertCalls()

    @unittest.skipIf(PYTHON2, "Python 2.7 has no inspect.signature")
    def test_signatures(self):
        def spell(parameters):
            if parameters is None:
                return "(self, *args)"
            return "(%s)" % ", ".join(["self"] + [name if default is REQUIRED else "%s=%r" % (name, default)
                                                  for name, default in parameters])
        for class_name, operation, parameters in each():
            function = getattr(getattr(self.Veltro, class_name), operation)
            expected = spell(parameters)
            found = str(inspect.signature(function)).replace(", /", "")
            if parameters is None:
                self.assertRegex(found, r"^\(self, \*\w+\)$")
            else:
                self.assertEqual(found, expected, "%s.%s" % (class_name, operation))
            bound = str(inspect.signature(getattr(bare(self.Veltro, class_name), operation)))
            self.assertEqual(bound.replace(", /", ""), found.replace("self, ", "").replace("self", ""))
        self.assertEqual(str(inspect.signature(self.Veltro.doEPGAction)), "(action, /)")
        self.assertEqual(str(inspect.signature(self.Veltro.find_in_list)), "(list, search, listpos=0)")

    @unittest.skipIf(PYTHON2, "Python 2.7 has no inspect.signature")
    def test_signatures_of_the_classes(self):
        self.assertEqual(str(inspect.signature(self.Veltro.Veltro)), "(session, plugin_path, args=0)")
        self.assertEqual(str(inspect.signature(self.Veltro.DirChoose)), "(session, initDir)")
