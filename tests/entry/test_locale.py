# -*- coding: utf-8 -*-
"""The translations in plugin/entry/locale hold exactly the texts that the sources pass to `_`, in every language."""

import ast
import io
import os
import re
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
MODULE = os.path.join(ROOT, "plugin", "src")
ENTRY = os.path.join(ROOT, "plugin", "entry")
LOCALE = os.path.join(ENTRY, "locale")

LANGUAGES = ["cs", "de", "es", "fr", "it", "nl", "pl", "ru", "tr"]

# Where a text of the compiled module becomes a message id.
TEXT = r'"((?:[^"\\]|\\.)*)"_t'
IN_THE_MODULE = [
    r"\btranslate_?\((?:[\w:]+\(\), )?" + TEXT,
    r'\baddKeyLabel\("\w+"_t, ' + TEXT,
    r"\bresultWithFile\(" + TEXT,
    r"\b(?:SettingRow|ActionRow)\{" + TEXT,
    r'\bSettingRow\{"[^"]*"_t, [\w:]+, ' + TEXT,
]

# Texts of several words that nobody translates: what goes to the console or into the blacklist file, and blanks.
NOT_TRANSLATED = re.compile(r".*\\n$|#SERVICE $|[ \\trn]*$| %s$")


def read(path):
    with io.open(path, encoding="utf-8") as source:
        return source.read()


def files(folder, *endings):
    for place, folders, names in os.walk(folder):
        for name in sorted(names):
            if name.endswith(endings):
                yield os.path.join(place, name)


def module_sources():
    return "\n".join(read(path) for path in files(MODULE, ".cpp", ".h"))


def module_ids():
    source = module_sources()
    return set(text for pattern in IN_THE_MODULE for text in re.findall(pattern, source))


class Calls(ast.NodeVisitor):
    """The ids of one Python file: each `_("...")` and `N_("...")`, and the texts of `_selection(default, (value, "..."), ...)`.

    `others` are the functions that pass something else to `_`.
    """

    def __init__(self):
        self.ids = set()
        self.others = []
        self.function = None

    def visit_FunctionDef(self, node):
        before, self.function = self.function, node.name
        self.generic_visit(node)
        self.function = before

    def visit_Call(self, node):
        name = getattr(node.func, "id", None)
        if name in ("_", "N_"):
            self.note(node.args[0])
        elif name == "_selection":
            for choice in node.args[1:]:
                if isinstance(choice, ast.Tuple):
                    self.note(choice.elts[1])
        self.generic_visit(node)

    def note(self, node):
        try:
            self.ids.add(u"" + ast.literal_eval(node))
        except ValueError:
            self.others.append(self.function)


def entry_calls():
    calls = Calls()
    for path in files(ENTRY, ".py"):
        calls.visit(ast.parse(read(path).encode("utf-8"), path))
    return calls


class Catalogue(object):
    """A .po file: its header as a text, and the translations by their ids; `twice` are the ids that come again."""

    def __init__(self, path):
        self.texts = {}
        self.twice = []
        lines = [line for line in read(path).split(u"\n") if line and not line.startswith(u"#")]
        key, texts = None, {}
        for line in lines + [u'msgid ""']:
            word, _, text = line.rpartition(u' "') if line.startswith(u"msg") else (u"", u"", line[1:])
            if word == u"msgid" and key == u"msgstr":
                self.keep(texts)
                texts = {}
            key = word or key
            texts[key] = texts.get(key, u"") + self.unescaped(text[:-1])
        self.header = self.texts.pop(u"", u"")

    def keep(self, texts):
        if texts[u"msgid"] in self.texts:
            self.twice.append(texts[u"msgid"])
        self.texts[texts[u"msgid"]] = texts[u"msgstr"]

    @staticmethod
    def unescaped(text):
        return text.replace(u'\\"', u'"').replace(u"\\n", u"\n").replace(u"\\\\", u"\\")


class Sources(unittest.TestCase):
    """The sources show all their ids to this test."""

    def test_the_module_has_texts(self):
        self.assertIn(u"EPG Path :", module_ids())
        self.assertIn(u"Configure the primary EPG language.", module_ids())
        self.assertGreater(len(module_ids()), 40)

    def test_every_text_of_several_words_is_an_id(self):
        texts = set(text for text in re.findall(TEXT, module_sources()) if u" " in text)
        self.assertEqual(set(text for text in texts - module_ids() if not NOT_TRANSLATED.match(text)), set())

    def test_no_other_text_reaches_the_translation(self):
        self.assertEqual(set(entry_calls().others) - {"_selection", "getConfigListEntry"}, set())


class Catalogues(unittest.TestCase):
    longMessage = True

    def each(self):
        for language in LANGUAGES:
            yield language, Catalogue(os.path.join(LOCALE, language + ".po"))

    def test_languages(self):
        self.assertEqual([os.path.basename(path)[:-3] for path in files(LOCALE, ".po")], LANGUAGES)

    def test_same_ids_as_in_the_sources(self):
        ids = module_ids() | entry_calls().ids
        for language, catalogue in self.each():
            self.assertEqual(ids - set(catalogue.texts), set(), "missing in " + language)
            self.assertEqual(set(catalogue.texts) - ids, set(), "no longer used, in " + language)
            self.assertEqual(catalogue.twice, [], language)

    def test_translated_with_the_same_places_for_values(self):
        for language, catalogue in self.each():
            for text, translation in catalogue.texts.items():
                self.assertTrue(translation.strip(), language + ": " + text)
                self.assertEqual(re.findall(u"%.", translation), re.findall(u"%.", text), language + ": " + text)
                self.assertEqual(translation.endswith(u"..."), text.endswith(u"..."), language + ": " + text)

    def test_header(self):
        for language, catalogue in self.each():
            self.assertIn(u"Content-Type: text/plain; charset=UTF-8\n", catalogue.header)
            self.assertIn(u"Language: %s\n" % language, catalogue.header)

    def test_the_escapes_are_read(self):
        self.assertEqual(Catalogue.unescaped(u'a \\"b\\"\\n'), u'a "b"\n')


if __name__ == "__main__":
    unittest.main()
