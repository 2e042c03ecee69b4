"""Reader of lamedb, the list of all services that a box has found; formats 3 to 5.

A broken entry costs a console line with its number, never the rest of the list: the reader goes on at the next line that
looks like the start of one. What the file says of transponders nobody needs here.
"""
import os
import re
from typing import NamedTuple

from .files import parse_file

_FIRST = re.compile(r"eDVB services /([345])/\s*")
_ID = r"\s*([0-9a-f]{1,4}):([0-9a-f]{1,8}):([0-9a-f]{1,4}):([0-9a-f]{1,4}):([0-9]{1,3}):[0-9]+(?::[0-9a-f]+)?\s*"
_SERVICE = re.compile(_ID, re.I)
_LINE = re.compile("s:" + _ID + ',"(.*?)"(?:,(?:[pcf]:.*)?)?', re.I | re.DOTALL)  # names may hold quotes


class Service(NamedTuple):
    """One service as a box found it."""
    reference: str
    type: int
    name: str


def read_lamedb(folder):
    """What a folder's lamedb holds, or its lamedb5 where that is the only one: (sid, namespace, tsid, onid) -> Service, in the
    order of the file. Missing, unreadable or of another kind: nothing, and the console says so."""
    paths = [os.path.join(folder, name) for name in ("lamedb", "lamedb5")]
    return parse_file(next(filter(os.path.exists, paths), paths[0]), _services)


def _services(lines, broken):
    services = {}
    lines = [line.removesuffix("\r") for line in lines]
    first = _FIRST.fullmatch(lines[0]) if lines else None
    if not first:
        broken.append((1, "is no lamedb of format 3, 4 or 5"))
        return {}
    for match, name in (_entries5 if first[1] == "5" else _entries)(lines, broken):
        sid, namespace, tsid, onid = key = tuple(int(field, 16) for field in match.groups()[:4])
        reference = "1:0:%X:%X:%X:%X:%X:0:0:0:" % (int(match[5]), sid, tsid, onid, namespace)
        services[key] = Service(reference, int(match[5]), name)
    return services


def _entries(lines, broken):
    """The (match of the id, name) pairs of the older formats. There an entry has three lines: id, name, options; what follows
    the "end" of the section is a signature."""
    at = next((number for number, line in enumerate(lines, 1) if line.strip() == "services"), len(lines))
    while at < len(lines) and lines[at].strip() != "end":
        service, name, options = (lines[at:at + 3] + ["", ""])[:3]
        match, problem, count = _SERVICE.fullmatch(service), None, 3
        if not match:
            problem, count = "is no service", 1
        elif _SERVICE.fullmatch(name):
            name, problem, count = "", "service without name and options", 1
        elif _SERVICE.fullmatch(options) or options.strip() == "end":
            problem, count = "service without options", 2
        if problem:
            broken.append((at + 1, problem))
        if match:
            yield match, name
        at += count
    if at >= len(lines):
        broken.append((len(lines), 'the file stops without "end"'))


def _entries5(lines, broken):
    """The same of the newest format, which has a line for each: "t:id,values" and 's:id,"name",options'."""
    for number, line in enumerate(lines[1:], 2):
        match = _LINE.fullmatch(line)
        if match:
            yield match, match[6]
        elif line.strip() and not line.startswith(("#", "t:")):
            broken.append((number, "is neither transponder nor service"))
