"""Texts that a host can show and store.

File names, services' names and lists' lines may hold any byte. Python 3 has those that are no UTF-8 as lone surrogates,
and hosts raise at such a text, or die of it, when it gets to their C++ side or into the settings file.
"""

from __future__ import absolute_import

import re
import sys

if sys.version_info[0] == 2:
    _BROKEN = re.compile(u"[\x00-\x1f\x7f]")

    def readable(text):
        """The text with a mark for each byte that is none, and blanks for control characters."""
        text = text if isinstance(text, unicode) else text.decode("utf-8", "replace")  # noqa: F821
        return _BROKEN.sub(u" ", text).encode("utf-8")

    def escaped(reference):
        """A service reference's text for lists; its bytes are as they are on Python 2.7."""
        return reference
else:
    _BROKEN = re.compile("[\x00-\x1f\x7f]")
    _SURROGATE = re.compile("[\ud800-\udfff]")

    def readable(text):
        """The text with a mark for each byte that is none, and blanks for control characters."""
        return _BROKEN.sub(" ", _SURROGATE.sub("\ufffd", text))

    def escaped(reference):
        """A service reference's text without lone surrogates: references have bytes as %xx, and mean the same."""
        return _SURROGATE.sub(_as_bytes, reference)

    def _as_bytes(match):
        code = ord(match.group())
        data = bytes([code - 0xdc00]) if 0xdc80 <= code <= 0xdcff else match.group().encode("utf-8", "surrogatepass")
        return "".join("%%%02x" % byte for byte in bytearray(data))


def is_readable(text):
    """Whether a host can show and store the text as it is."""
    return readable(text) == text
