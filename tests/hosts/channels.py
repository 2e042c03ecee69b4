"""A channel list as boxes have them, made anew for each test: 5,000 services and everything that is odd about real ones."""

from __future__ import absolute_import

import os

SERVICES = 5000
SATELLITES = (0x11a, 0x0c0, 0x082, 0x0eb)  # tenths of a degree east
PER_TRANSPONDER = 10

# Names that end a careless program. As bytes: what is broadcast need not be UTF-8.
ODD_NAMES = tuple(name if isinstance(name, bytes) else name.encode("utf-8") for name in (
    u"", u" ", u"N/A", u"(...)", u".", u"100% Sport", u"%s %d %(name)s", u"Tom & Jerry <b>TV</b>", u"it's \"quoted\"",
    u"back\\slash \\n \\c00ff0000red", u"\u041f\u0435\u0440\u0432\u044b\u0439 \u043a\u0430\u043d\u0430\u043b",
    u"\u0627\u0644\u062c\u0632\u064a\u0631\u0629", u"\u4e2d\u592e\u7535\u89c6\u53f0", u"\U0001f4fa TV", u"\x86Das\x87 Erste",
    u"TV\u00a0\u200bZero", u"W" * 240, u"{0} {name}", u"#SERVICE 1:0:1:1:1:1:1:0:0:0:", u"a:b:c", b"T\xe9l\xe9 Latin-1",
    b"cut \xc3", b"\xff\xfe", b"\xed\xa0\x80 surrogate"))


def services():
    """All services: (namespace, transponder, network, service id, type, name), the first at each position the same."""
    found = []
    for number in range(SERVICES):
        place, index = number % len(SATELLITES), number // len(SATELLITES)
        name = ODD_NAMES[index] if index < len(ODD_NAMES) else b"Channel %d" % (index if index % 3 else number + SERVICES)
        kind = 2 if number % 10 == 9 else 25 if index % 2 else 1
        found.append((SATELLITES[place] << 16, 1 + index // PER_TRANSPONDER, 1 + place, 1 + index, kind, name))
    return found


def reference(service):
    """A service of the list as text."""
    namespace, transponder, network, number, kind, _ = service
    return "1:0:%X:%X:%X:%X:%X:0:0:0:" % (kind, number, transponder, network, namespace)


def unknown(number):
    """A service that no list of this box knows, as a blacklist or an old bouquet has them."""
    return "1:0:1:%X:3E8:2A:C00000:0:0:0:" % (0x6000 + number)


def stream(number, name):
    """A stream of the internet with its name."""
    return "4097:0:1:%X:0:0:0:0:0:0:http%%3a//192.0.2.1/%d.ts?a=1&b=%%25:%s" % (number, number, name)


def write(folder):
    """Fill a folder with the files of /etc/enigma2."""
    if not os.path.isdir(folder):
        os.makedirs(folder)
    everything = services()
    _write(folder, "lamedb", _lamedb(everything))
    tv = [each for each in everything if each[4] != 2]
    radio = [each for each in everything if each[4] == 2]
    bouquets = [
        ("favourites.tv", "Favourites (TV)", [reference(each) for each in tv[:40]]),
        ("mixed.tv", "Mixed & odd %s", _mixed(tv)),
        ("all.tv", "All of them", [reference(each) for each in tv]),
        ("empty.tv", "Nothing in here", []),
        ("favourites.radio", "Favourites (Radio)", [reference(each) for each in radio[:40]]),
    ]
    for name, title, lines in bouquets:
        _write(folder, "userbouquet." + name, _bouquet(title, lines))
    for kind, number in (("tv", 1), ("radio", 2)):
        lines = ['1:7:%d:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.%s" ORDER BY bouquet' % (number, name)
                 for name, _, _ in bouquets if name.endswith(kind)]
        _write(folder, "bouquets." + kind, _bouquet("Bouquets (%s)" % kind.upper(), lines))


def _mixed(tv):
    """Markers, streams, a bouquet in the bouquet, services that are unknown or there twice."""
    return (["1:64:1:0:0:0:0:0:0:0::News\n#DESCRIPTION News"] + [reference(each) for each in tv[100:105]]
            + [stream(number, "Stream %d" % number) for number in range(1, 6)] + [stream(6, "Stream 5"), stream(7, "L" * 1000)]
            + ["1:832:D:2:0:0:0:0:0:0:", "1:64:2:0:0:0:0:0:0:0::100% %s\n#DESCRIPTION 100% %s"]
            + [unknown(number) for number in range(5)] + [reference(tv[100])]
            + ['1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.empty.tv" ORDER BY bouquet',
               "5002:0:1:7:0:0:0:0:0:0:rtmp%3a//192.0.2.1/x:Other player"])


def _lamedb(everything):
    transponders = sorted(set(each[:3] for each in everything))
    lines = [b"eDVB services /4/", b"transponders"]
    for namespace, transponder, network in transponders:
        lines += [b"%08x:%04x:%04x" % (namespace, transponder, network),
                  b"\ts %d:27500000:%d:4:%d:2:0" % (10700000 + 1000 * transponder, transponder % 2, namespace >> 16), b"/"]
    lines += [b"end", b"services"]
    for namespace, transponder, network, number, kind, name in everything:
        lines += [b"%04x:%08x:%04x:%04x:%d:0" % (number, namespace, transponder, network, kind), name, b"p:Provider %d" % network]
    return b"\n".join(lines + [b"end", b"Have a lot of bugs!", b""])


def _bouquet(title, lines):
    return "\n".join(["#NAME " + title] + ["#SERVICE " + line for line in lines] + [""]).encode("utf-8")


def _write(folder, name, data):
    with open(os.path.join(folder, name), "wb") as file:
        file.write(data)
