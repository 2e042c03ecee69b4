"""Translations: the plug-in's own in locale/<language>/LC_MESSAGES/Veltro.mo first, then the host's catalogue.

The host's would answer some texts of a screen and not the others, in words of its own.
"""

from __future__ import absolute_import

import gettext
import os
import sys

try:
    import builtins
except ImportError:  # Python 2.7
    import __builtin__ as builtins

DOMAIN = "Veltro"
PACKAGE = __name__.rpartition(".")[0]

_known = {}  # language: {text: its translation}, for a screen asks for the same ones again and again
_held = None  # the language while it is kept
_words = {}  # text: what is said in its place
_catalogues = {}
_host_language = None


def N_(text):
    """Marks a text that is translated later."""
    return text


def translate(text):
    """The text in the GUI's language; as it is where nobody has a translation. On Python 2.7 all are UTF-8 bytes."""
    language = _held or _language()
    try:
        return _known[language][text]
    except KeyError:
        return _known.setdefault(language, {}).setdefault(text, _translation(language, _words.get(text, text)))


def keep_language(function, *arguments):
    """Call a function during which the language can't change; to ask the host takes as long as all else of a translation."""
    global _held
    before, _held = _held, _held or _language()
    try:
        return function(*arguments)
    finally:
        _held = before


def _translation(language, text):
    if not text:
        return text  # catalogues answer the empty text with their header
    translated = _catalogue(language).gettext(text)
    return getattr(builtins, "_", str)(text) if translated == text else translated


def install(module):
    """Give `translate` to the compiled module as its own `_`; the one in the built-ins is everybody's."""
    module._ = translate


def replace(words):
    """From now on say other texts, before they are translated. words -- {text: the other one}"""
    _words.update(words)


def _language():
    """The GUI's language such as de_DE; it may change while the GUI runs."""
    global _host_language
    try:
        if _host_language is None:
            from Components.Language import language
            _host_language = language
        return _host_language.getLanguage()
    except Exception:
        return os.environ.get("LANGUAGE", "").split(":")[0]


def _catalogue(language):
    if language not in _catalogues:
        folders = [os.path.join(folder, "locale") for folder in sys.modules[PACKAGE].__path__]
        found = [folder for folder in folders if language and gettext.find(DOMAIN, folder, [language])]
        _catalogues[language] = (gettext.translation(DOMAIN, found[0], [language]) if found
                                 else gettext.NullTranslations())
    return _catalogues[language]
