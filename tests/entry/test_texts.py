"""Translations: the plug-in's own catalogue before the host's."""

import os
import struct
import types

from tests.entry.box import PYTHON2
from tests.entry.case import BoxTest


def catalogue(texts):
    """The content of a .mo file."""
    texts = dict(texts)
    texts[""] = "Content-Type: text/plain; charset=UTF-8\n"
    pairs = sorted((key.encode("utf-8"), value.encode("utf-8")) for key, value in texts.items())
    at = 28 + 16 * len(pairs)
    tables, data = [b"", b""], b""
    for table in (0, 1):
        for pair in pairs:
            tables[table] += struct.pack("<II", len(pair[table]), at + len(data))
            data += pair[table] + b"\0"
    return struct.pack("<7I", 0x950412de, 0, len(pairs), 28, 28 + 8 * len(pairs), 0, 0) + tables[0] + tables[1] + data


class TextsTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        for language, text in (("de", u"EPG-Men\u00fc"), ("pt_BR", u"Menu do EPG")):
            os.makedirs(self.path("locale", language, "LC_MESSAGES"))
            self.write(os.path.join("locale", language, "LC_MESSAGES", "Veltro.mo"), catalogue({u"EPG menu": text}))
        self.import_entry(self.folder)
        self.translate = self.box.part("texts").translate

    def text(self, text):
        return text.encode("utf-8") if PYTHON2 else text

    def test_in_the_language_of_the_gui(self):
        for language, text in (("de_DE", u"EPG-Men\u00fc"), ("de", u"EPG-Men\u00fc"), ("pt_BR", u"Menu do EPG"),
                               ("pt_PT", u"EPG menu"), ("fr_FR", u"EPG menu"), ("", u"EPG menu")):
            self.box.language = language
            self.assertEqual(self.translate("EPG menu"), self.text(text))
            self.assertIsInstance(self.translate("EPG menu"), str)

    def test_our_own_words_come_first(self):
        self.box.catalogue = {"EPG menu": "EPG nach Art des Hauses", "Skin": "Oberflaeche"}
        self.box.language = "de_DE"
        self.assertEqual(self.translate("EPG menu"), self.text(u"EPG-Men\u00fc"))
        self.assertEqual(self.translate("Skin"), "Oberflaeche")
        self.box.language = "sv_SE"
        self.assertEqual(self.translate("EPG menu"), "EPG nach Art des Hauses", "a language that only the host speaks")

    def test_each_text_is_looked_up_once_in_a_language(self):
        asked = []
        texts = self.box.part("texts")
        catalogue = texts._catalogue
        texts._catalogue = lambda language: asked.append(language) or catalogue(language)
        for language in ("de_DE", "pt_BR", "de_DE", "pt_BR"):
            self.box.language = language
            for text in ("EPG menu", "Save %s", "EPG menu", ""):
                self.translate(text)
        self.assertEqual(asked, ["de_DE"] * 2 + ["pt_BR"] * 2)

    def test_nobody_knows_it(self):
        self.box.language = "de_DE"
        self.assertEqual(self.translate("Save %s"), "Save %s")

    def test_the_empty_text(self):
        self.box.language = "de_DE"
        self.assertEqual(self.translate(""), "")

    def test_a_host_that_does_not_tell_its_language(self):
        del self.box.modules["Components.Language"].language
        before = os.environ.get("LANGUAGE")
        os.environ["LANGUAGE"] = "de_AT:en"
        self.addCleanup(os.environ.__setitem__ if before is not None else os.environ.pop, "LANGUAGE",
                        *[before] if before is not None else [None])
        self.assertEqual(self.translate("EPG menu"), self.text(u"EPG-Men\u00fc"))

    def test_the_module_gets_it_as_its_own(self):
        module = types.ModuleType("Veltro")
        self.box.part("texts").install(module)
        self.assertIs(module._, self.translate)


class ModuleTextsTest(BoxTest):
    def test_screens_are_translated(self):
        self.load()
        self.box.catalogue = {"Cancel": "Raus", "EPG Path :": "Pfad:"}
        screen = self.box.session.open(self.module.Veltro, "/plugin")
        self.assertEqual(screen["key_red"].text, "Raus")
        self.assertEqual(screen.list[16][0], "Pfad: /nowhere")
