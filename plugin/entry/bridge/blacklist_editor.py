"""The blacklist's editor on images: no service and no line of the file is lost, and the user is told what was left out."""

from __future__ import absolute_import

import os

from ..texts import translate as _
from . import messages, safe_files
from .guard import Refused
from .services import Listed, NamedService, identity

PREFIX = b"#SERVICE "


class Editor(object):
    """Keeps the lines of the file that the module does not list, and the old file until the new one is whole."""

    _old = ()  # the file's lines as they were read: (line, its service's reference, or None if the module lists none)
    _texts = None  # while the file is read: what the module makes of each reference

    def loadFile(self):
        self._texts = {}
        super(Editor, self).loadFile()
        self._old = list(self._read_lines())
        self._texts = None

    def _read_lines(self):
        listed = dict((identity(row[3]), row[3]) for row in self.servicelist)
        for line in _lines(self.filename):
            text = self._texts.get(_item(line)) if line.startswith(PREFIX) else None
            if text is None or identity(text) not in listed:
                yield line, None
            elif listed[identity(text)] == text:
                yield line, text
                listed[identity(text)] = None  # another line of the service is one too many

    def finishedChannelSelection(self, *args):
        if not args or not args[0]:
            return super(Editor, self).finishedChannelSelection(*args)
        listed, before = Listed(self.servicelist), len(self.servicelist)
        services = [NamedService(each, listed) for each in args[0]]
        super(Editor, self).finishedChannelSelection(services)
        left_out = before + len(services) - len(self.servicelist)
        if self._texts is not None:
            self._texts.update((_as_bytes(item), service.toString()) for item, service in zip(args[0], services))
        elif left_out:
            messages.notice(self.session, _("Left out: %d (listed already, or no TV or radio service)") % left_out)

    def saveFile(self):
        """Let the module write its lines beside the file, put the others back among them, and only then replace it."""
        name, beside = self.filename, os.path.realpath(self.filename) + safe_files.BESIDE
        self.filename = beside
        try:
            super(Editor, self).saveFile()
            if not os.path.exists(beside):  # the module deletes what it could not write to its end
                raise IOError()
            safe_files.write_whole(name, b"".join(line + b"\n" for line in self._merged(_lines(beside))))
        except (IOError, OSError) as error:
            what = _("The blacklist could not be saved. The file is as it was.")
            raise Refused(messages.with_reason(what, error))
        finally:
            self.filename = name
            safe_files.remove(beside)

    def _merged(self, written):
        """The old lines that still count, in their order, and the new ones after them."""
        left = dict((line[len(PREFIX):], line) for line in written)
        for line, text in self._old:
            if text is None:
                yield line
            elif left.pop(_as_bytes(text), None) is not None:
                yield line
        for line in written:
            if line[len(PREFIX):] in left:
                yield line


def _lines(path):
    """The lines of a file as bytes; none without a file. Only a line feed ends a line."""
    if not os.path.exists(path):
        return []
    with open(path, "rb") as file:
        lines = file.read().split(b"\n")
    return lines if lines[-1] else lines[:-1]


def _item(line):
    """A line's reference as the module takes it."""
    return line.replace(PREFIX, b"").strip(b" \t\r\n")


def _as_bytes(text):
    return text if isinstance(text, bytes) else text.encode("utf-8", "surrogateescape")


SCREENS = {"Edit_DVB_EPG_Blacklist": Editor}
