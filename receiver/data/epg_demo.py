"""Demo programmes: a PC receives no broadcast, so the guide of a service is made up from its reference and the date.

Nothing is left to chance: at one moment of one day every run makes the same guide.
"""
import itertools
import random

from . import env
from .files import read_lines
from .reference import eServiceReference

DAY = 86400
MOST_SERVICES = 200
_MINUTES = (10, 15, 25, 30, 45, 60, 90, 120)
_TITLES = (
    "News", "News in brief", "Weather", "Morning magazine", "Harbour stories", "The long way home", "Kitchen garden",
    "Night train", "Nature: the marsh", "Nature: high peaks", "Quiz at six", "Concert hall", "Sports review",
    "Cycling live", "The lighthouse", "Old maps", "Science today", "Cartoon hour", "Museum after dark", "Small talk",
    "Road film", "Crime on Monday", "Workshop", "Lost recipes", "Late show", "Chess corner")


def schedule(ref, now, days):
    """The programmes of a service that are not over at `now` and start within `days` days: (start, duration, title)."""
    events = []
    for day in range(int(now) // DAY, int(now + days * DAY) // DAY + 1):
        events += _day(ref.toCompareString(), day)
    return [event for event in events if event[0] + event[1] > now and event[0] < now + days * DAY]


def _day(key, day):
    """A full day, midnight to midnight UTC; `day` counts from 1970-01-01."""
    dice = random.Random("%a %d" % (key, day))
    start, end = day * DAY, (day + 1) * DAY
    events = []
    while start < end:
        duration = min(dice.choice(_MINUTES) * 60, end - start)
        events.append((start, duration, dice.choice(_TITLES)))
        start += duration
    return events


def first_services(center, root, bouquets=2, most=MOST_SERVICES):
    """What a tuner would pass by first: the services of the first bouquets below `root`, as eServiceReferences. A bouquet
    of thousands would fill the memory with programmes that nobody looks at: `most` of them are enough."""
    lists = center.list(eServiceReference(root)).getContent("R")[:bouquets]
    contents = (center.list(bouquet) for bouquet in lists)
    services = (ref for content in contents if content is not None for ref in iter(content.getNext, eServiceReference())
                if not ref.flags & (ref.isMarker | ref.isDirectory))
    return list(itertools.islice(services, most))


def blacklisted():
    """Compare forms of the services in the blacklist, whose EPG must not be updated while that is on."""
    start = "#SERVICE "
    try:
        lines = read_lines(env.ETC + "/blacklist_dvb_epg")
    except OSError:
        return frozenset()
    return frozenset(eServiceReference.read(line[len(start):].strip()).toCompareString() for line in lines if line.startswith(start))
