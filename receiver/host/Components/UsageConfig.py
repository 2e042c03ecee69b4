"""The keys that the receiver's settings screens show: their kinds of value, choices and defaults."""
import os

from Components.config import (
    ConfigInteger, ConfigSelection, ConfigSelectionNumber, ConfigSubsection, ConfigText, ConfigYesNo)
from Components.config_elements import translate
from receiver.data import env
from receiver.data.epg_cache import eEPGCache

VIEWS = (("single", "Single EPG"), ("multi", "Multi EPG"), ("graphical", "Graphical multi EPG"),
         ("vertical", "Vertical EPG"), ("eventview", "Event view"))

# Both three-letter codes that broadcasters use for a language count as that language.
LANGUAGES = (
    ("", "none"), ("ara", "Arabic"), ("bul", "Bulgarian"), ("cat", "Catalan"), ("ces cze", "Czech"),
    ("dan", "Danish"), ("deu ger", "German"), ("ell gre", "Greek"), ("eng", "English"), ("est", "Estonian"),
    ("fas per", "Persian"), ("fin", "Finnish"), ("fra fre", "French"), ("heb", "Hebrew"), ("hrv scr", "Croatian"),
    ("hun", "Hungarian"), ("isl ice", "Icelandic"), ("ita", "Italian"), ("lav", "Latvian"), ("lit", "Lithuanian"),
    ("nld dut", "Dutch"), ("nor nob", "Norwegian"), ("pol", "Polish"), ("por", "Portuguese"), ("ron rum", "Romanian"),
    ("rus", "Russian"), ("slk slo", "Slovak"), ("slv", "Slovenian"), ("spa", "Spanish"), ("srp scc", "Serbian"),
    ("swe", "Swedish"), ("tur", "Turkish"), ("ukr", "Ukrainian"))


def _translated(choices):
    return [(value, translate(text)) for value, text in choices]


def _ages():
    """How long past events are shown, in minutes."""
    units = ((1, "minute", "minutes", (0, 15, 30, 45)), (60, "hour", "hours", (1, 2, 3, 4, 6, 8, 12, 18)),
             (1440, "day", "days", range(1, 8)))
    return [(count * unit, "%d %s" % (count, translate(one if count == 1 else many)))
            for unit, one, many, counts in units for count in counts]


def InitUsageConfig(config):
    """Define every key on `config`. The folders must be chosen (`env.configure`) and `_` installed, if at all. Stored
    texts apply whether `configfile.load()` comes before or after."""
    _init_usage(config)
    _init_misc(config.misc)


def _init_usage(config):
    usage = config.usage = ConfigSubsection()
    usage.multiepg_ask_bouquet = ConfigYesNo(default=False)
    usage.epg_default_view = ConfigSelection(_translated(VIEWS), default="graphical")
    usage.epg_buffer = ConfigSelectionNumber(1, 28, 1, default=7)
    usage.show_old_epg = ConfigSelection(_ages(), default=0)
    usage.show_nownext_eit = ConfigYesNo(default=True)
    usage.autolanguage = ConfigSubsection()
    usage.autolanguage.epglanguage = ConfigSelection(_translated(LANGUAGES), default="")
    usage.autolanguage.epglanguage_alternative = ConfigSelection(_translated(LANGUAGES), default="")
    usage.epg = ConfigSubsection()
    for source, default in (("eit", True), ("mhw", False), ("freesat", True), ("viasat", True), ("netmed", True),
                            ("virgin", False)):
        setattr(usage.epg, source, ConfigYesNo(default=default))


def _init_misc(misc):
    misc.timer_show_movie_available = ConfigYesNo(default=True)
    misc.epg_dvb_blacklist_mode = ConfigYesNo(default=False)
    misc.epg_is_client_stb = ConfigYesNo(default=False)
    misc.epg_data_timer = ConfigInteger(default=60, limits=(0, 1440), step=5)
    misc.epgcache_filename = ConfigText(default=env.epg_file(), fixed_size=False)
    misc.epgcache_filename.addNotifier(_cache_file_chosen)


def _cache_file_chosen(element):
    """Tell the cache its file, at every change and saved or not. A directory means the usual name in it."""
    if os.path.isdir(element.value):
        element.value = os.path.join(element.value, "epg.dat")
    else:
        eEPGCache.getInstance().setCacheFile(element.value)
