"""plugin/src/epg_actions.cpp: doEPGAction."""

from tests.module.case import Boom, HostTestCase, PYTHON2, host


class DoEPGAction(HostTestCase):
    def test_load(self):
        self.assertIsNone(self.Veltro.doEPGAction("load"))
        self.assertCalls(("eEPGCache.getInstance",), ("eEPGCache.load",))

    def test_save(self):
        self.assertIsNone(self.Veltro.doEPGAction("save"))
        self.assertCalls(("eEPGCache.getInstance",), ("eEPGCache.save",))

    def test_cleardb_clears_and_then_saves_the_empty_cache(self):
        self.assertIsNone(self.Veltro.doEPGAction("cleardb"))
        self.assertCalls(("eEPGCache.getInstance",), ("eEPGCache.clearDB",), ("eEPGCache.save",))

    def test_anything_else_only_asks_for_the_cache(self):
        for action in ("Save", "SAVE", "LOAD", "clearDB", "", "delete", "save ", " save", "saved", "sav", u"s\xe4ve",
                       b"\xff", None, 0, True, [], object()):
            host.recorder.clear()
            self.assertIsNone(self.Veltro.doEPGAction(action))
            self.assertCalls(("eEPGCache.getInstance",))

    def test_words_are_compared_as_the_host_compares_them(self):
        class Word(str):
            pass
        self.Veltro.doEPGAction(Word("save"))
        self.assertEqual(host.recorder.names(), ["eEPGCache.getInstance", "eEPGCache.save"])

    def test_the_other_text_type(self):
        """On Python 2.7 the two kinds of text can be equal, on 3 bytes and text never are."""
        self.Veltro.doEPGAction(u"save" if PYTHON2 else b"save")
        self.assertEqual(host.recorder.names(), ["eEPGCache.getInstance"] + ["eEPGCache.save"] * PYTHON2)

    def test_reads_no_configuration(self):
        self.Veltro.doEPGAction("save")
        self.assertEqual(len(host.recorder.events), 2)

    def test_client_mode_does_not_matter(self):
        self.set_value("misc.epg_is_client_stb", True)
        self.Veltro.doEPGAction("save")
        self.assertEqual(host.recorder.names(), ["eEPGCache.getInstance", "eEPGCache.save"])

    def test_argument_errors_come_before_the_cache(self):
        self.error_of(TypeError, self.Veltro.doEPGAction)
        self.error_of(TypeError, self.Veltro.doEPGAction, "save", "load")
        self.assertEqual(host.recorder.events, [])

    def test_a_failing_clear_is_not_followed_by_a_save(self):
        error = Boom()
        host.recorder.fail("eEPGCache.clearDB", error)
        self.raised_by(error, self.Veltro.doEPGAction, "cleardb")
        self.assertCalls(("eEPGCache.getInstance",), ("eEPGCache.clearDB",))

    def test_results_of_the_cache_are_ignored(self):
        instance = type(self.Veltro.eEPGCache._instance)
        self.replace(instance, "save", lambda self: 5)
        self.assertIsNone(self.Veltro.doEPGAction("save"))

    def test_the_cache_is_asked_for_at_each_call(self):
        self.Veltro.doEPGAction("load")
        self.Veltro.doEPGAction("load")
        self.assertEqual(host.recorder.names().count("eEPGCache.getInstance"), 2)
