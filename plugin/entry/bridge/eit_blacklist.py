"""The blacklist in force: on hosts whose EPG cache keeps a blacklist by service of its own, ours is part of it.

Such a cache drops what the broadcast says of a listed service and keeps what is imported. It reads blacklist.eit, a bare
reference a line, when it starts and when it is told to. The user may have lines of his own there, so ours go before
them, his bytes stay as they are, and a second file says which lines are ours.
"""

from __future__ import absolute_import, print_function

import os
import re

import enigma
from Components import config as host

from ..texts import translate as _
from . import messages
from .safe_files import remove, write_whole

FOLDER = "${sysconfdir}/enigma2/"
OURS, IN_FORCE, ADDED = "blacklist_dvb_epg", "blacklist.eit", "blacklist.eit.veltro"
BLACKLIST = 2  # of eEPGCache: both lists are 0, the whitelist is 1

SERVICE = re.compile(b"#SERVICE ([0-9A-Fa-f]+(?::[0-9A-Fa-f]*){9})")
REFERENCE = re.compile(b"[0-9A-Fa-f]+(?::[0-9A-Fa-f]*){9}")

_mode = None


def is_possible():
    """Whether this host's EPG cache has a blacklist that can be read anew."""
    return hasattr(enigma.eEPGCache, "reloadEITConfig")


def is_at_work():
    """Whether lines of ours are in force, which must follow what happens to the setting and to the file."""
    return os.path.exists(_path(ADDED))


class Mode(host.ConfigYesNo):
    """The setting: saved, it takes effect at once."""

    def save(self):
        host.ConfigYesNo.save(self)
        update()


def begin(mode):
    """Follow this setting. The host has read its file already; what happened to it and to ours since comes to pass now."""
    global _mode
    _mode = mode
    update()


class Editor(object):
    """The editor of our list, whose saving takes effect at once."""

    def saveFile(self):
        super(Editor, self).saveFile()
        update()


SCREENS = {"Edit_DVB_EPG_Blacklist": Editor}


def update():
    """Bring the host's blacklist in line with the setting and our list. A failure costs a message."""
    if _mode is None or not is_possible():
        return
    try:
        _update(bool(_mode.value))
    except (IOError, OSError) as error:
        print("[Veltro] the blacklist is not in force: %s" % error)
        what = _("The EPG blacklist could not be put into force.")
        messages.later(messages.with_reason(what, error))


def _update(on):
    path, added = _path(IN_FORCE), _path(ADDED)
    before, ours_before = _read(path), _lines(_read(added))
    users = _without(before, ours_before)
    his = set(_key(line) for line in _lines(users))
    ours = [line for line in _listed() if _key(line) not in his] if on else []
    after = b"".join(ours) + users
    # While the two files differ, every line that is or will be ours is known as ours.
    if not set(ours) <= set(ours_before):
        write_whole(added, b"".join(ours) + _without(b"".join(ours_before), ours))
    if after != before:
        write_whole(path, after)
        enigma.eEPGCache.getInstance().reloadEITConfig(getattr(enigma.eEPGCache, "BLACKLIST", BLACKLIST))
    if not ours:
        remove(added)
    elif _read(added) != b"".join(ours):
        write_whole(added, b"".join(ours))
    if not after and before and not os.path.islink(path):
        remove(path)


def _listed():
    """The services of our list, each once, as lines for the host."""
    lines, seen = [], set()
    for line in _lines(_read(_path(OURS))):
        service = SERVICE.match(line)
        if service and service.group(1) not in seen:
            seen.add(service.group(1))
            lines.append(service.group(1) + b":\n")
    return lines


def _key(line):
    """What tells one service from another: a host does not mind the final colon, or a name."""
    reference = REFERENCE.match(line)
    return reference.group(0).upper() if reference else line


def _without(data, ours):
    """What is left of the lines, however another program has written them since. A service that is there twice is once ours
    and once the user's."""
    times, left = {}, []
    for line in ours:
        times[_key(line)] = times.get(_key(line), 0) + 1
    for line in _lines(data):
        if times.get(_key(line)):
            times[_key(line)] -= 1
        else:
            left.append(line)
    return b"".join(left)


def _lines(data):
    return re.findall(b"[^\n]*\n|[^\n]+$", data)


def _path(name):
    return enigma.eEnv.resolve(FOLDER + name)


def _read(path):
    if not os.path.exists(path):
        return b""
    with open(path, "rb") as file:
        return file.read()
