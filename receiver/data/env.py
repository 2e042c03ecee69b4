"""Where this run of the receiver keeps its files, and its console.

    env.configure(etc="/home/me/etc/enigma2")   # once, before anything else of receiver.data is used
    env.log("one whole line")                   # console line; the terminal puts its own sink in with set_log
"""
import os
import re

_folders = {}
_sink = print


def configure(etc, hdd=None):
    """Choose the folders of this run. Nothing is created or read.

    etc -- folder that plays /etc/enigma2: channel lists, settings, blacklist.
    hdd -- folder that plays the hard disk, where epg.dat lives by default; without it, `etc` itself, the one folder
           that is known to exist.
    """
    _folders["etc"] = os.path.abspath(etc)
    _folders["hdd"] = os.path.abspath(hdd or etc)


def etc():
    """The folder that plays /etc/enigma2, absolute. RuntimeError before `configure`: a PC's own /etc stays untouched."""
    return _folder("etc")


def hdd():
    """The folder that plays the hard disk, absolute."""
    return _folder("hdd")


def epg_file():
    """Path of the EPG cache file as long as nobody chose another."""
    return os.path.join(hdd(), "epg.dat")


def log(line):
    """Print one line on the console. Bytes that are no UTF-8 (file names, service names) are shown as escapes."""
    _sink(str(line).encode("utf-8", "backslashreplace").decode("utf-8"))


def set_log(sink):
    """Send console lines to `sink(line)`; None gives them back to standard output."""
    global _sink
    _sink = sink or print


def _folder(name):
    if name not in _folders:
        raise RuntimeError("the receiver's folders are not chosen yet: call env.configure first")
    return _folders[name]


class eEnv:
    """The host's view of where things are installed."""

    @staticmethod
    def resolve(text):
        """Expand ${sysconfdir} and environment variables in `text`; "" when a variable is unknown.

        "${sysconfdir}/enigma2" is the chosen etc folder, whatever that folder is called.
        """
        text = re.sub(r"\$\{sysconfdir\}/enigma2(?=/|$)", lambda _: etc(), text)
        values = dict(os.environ, sysconfdir=os.path.dirname(etc()))
        if any(name not in values for name in re.findall(r"\$\{(\w+)\}", text)):
            return ""
        return re.sub(r"\$\{(\w+)\}", lambda match: values[match.group(1)], text)
