"""The keys that the receiver's settings screens show: their kinds of value, choices and defaults."""
import contextlib
import glob
import os
from functools import partial

from Components.config import ConfigInteger, ConfigSelection, ConfigSelectionNumber, ConfigSubsection, ConfigText, ConfigYesNo
from enigma import eEPGCache
from receiver.data import env

VIEWS = [("single", "Single EPG"), ("multi", "Multi EPG"), ("graphical", "Graphical multi EPG"), ("vertical", "Vertical EPG"),
         ("eventview", "Event view")]

# Both three-letter codes that broadcasters use for a language count as that language.
LANGUAGES = [tuple(language.replace("_", " ").split(":")) for language in (
    ":none ara:Arabic bul:Bulgarian cat:Catalan ces_cze:Czech dan:Danish deu_ger:German ell_gre:Greek eng:English est:Estonian "
    "fas_per:Persian fin:Finnish fra_fre:French heb:Hebrew hrv_scr:Croatian hun:Hungarian isl_ice:Icelandic ita:Italian "
    "lav:Latvian lit:Lithuanian nld_dut:Dutch nor_nob:Norwegian pol:Polish por:Portuguese ron_rum:Romanian rus:Russian "
    "slk_slo:Slovak slv:Slovenian spa:Spanish srp_scc:Serbian swe:Swedish tur:Turkish ukr:Ukrainian").split()]

# How long past events are shown, in minutes.
AGES = [(count * minutes, "%d %s%s" % (count, unit, "" if count == 1 else "s"))
        for minutes, unit, counts in ((1, "minute", (0, 15, 30, 45)), (60, "hour", (1, 2, 3, 4, 6, 8, 12, 18)),
                                      (1440, "day", range(1, 8))) for count in counts]

# Every key with what makes its element, at the place where a plug-in looks for it; images have most of them elsewhere.
KEYS = {
    **dict.fromkeys(("misc.timer_show_movie_available", "usage.show_nownext_eit", "usage.epg.eit", "usage.epg.freesat",
                     "usage.epg.viasat", "usage.epg.netmed"), partial(ConfigYesNo, True)),
    **dict.fromkeys(("usage.multiepg_ask_bouquet", "usage.epg.mhw", "usage.epg.virgin", "misc.epg_dvb_blacklist_mode",
                     "misc.epg_is_client_stb"), partial(ConfigYesNo, False)),
    "usage.epg_default_view": partial(ConfigSelection, VIEWS, "graphical"),
    "usage.epg_buffer": partial(ConfigSelectionNumber, 1, 28, 1, 7),
    "usage.show_old_epg": partial(ConfigSelection, AGES),
    "usage.autolanguage.epglanguage": partial(ConfigSelection, LANGUAGES),
    "usage.autolanguage.epglanguage_alternative": partial(ConfigSelection, LANGUAGES),
    "misc.epg_data_timer": partial(ConfigInteger, 60, limits=(0, 1440), step=5),
    "misc.epgcache_filename": partial(ConfigText, env.EPG_FILE),
}

# What is of another kind where an image has it.
ELSEWHERE = {"epg.maxdays": partial(ConfigSelectionNumber, 1, 365, 1, 7)}


def InitUsageConfig(config, profile):
    """Define every key on `config` that the image of `profile` has, where it has it."""
    for key, make in KEYS.items():
        path = profile.keys.get(key, key)
        if path is not None:
            _define(config, path, ELSEWHERE.get(path, make)())
    if "setSave" in profile.cache_methods:
        _define(config, "epg.saveepg", ConfigYesNo(default=True))
        config.epg.saveepg.addNotifier(lambda element: eEPGCache.getInstance().setSave(element.value))
    if profile.key_functions:
        _define(config, "misc.hotkey.epg", ConfigText(default="Plugins/Extensions/GraphMultiEPG/1"))
    if profile.builds_cache_path:
        _build_cache_path(config.misc)
    else:
        config.misc.epgcache_filename.addNotifier(_cache_file_chosen)


def _define(config, path, element):
    *branches, name = path.split(".")
    for branch in branches:
        if not hasattr(config, branch):
            setattr(config, branch, ConfigSubsection())
        config = getattr(config, branch)
    setattr(config, name, element)


def _cache_file_chosen(element):
    """Tell the cache its file, at every change and saved or not. A directory means the usual name in it."""
    if os.path.isdir(element.value):
        element.value = os.path.join(element.value, "epg.dat")
    else:
        eEPGCache.getInstance().setCacheFile(element.value)


def _build_cache_path(misc):
    """The path of the EPG file is what these two keys say, at every start and whenever one of them is saved."""
    etc = env.ETC + "/"
    misc.epgcachepath = ConfigSelection([etc, *sorted(mount + "/" for mount in glob.glob("/media/*"))], default=etc)
    misc.epgcachefilename = ConfigText(default="epg")

    def path():
        return os.path.join(misc.epgcachepath.value, misc.epgcachefilename.value.replace(".dat", "") + ".dat")

    misc.epgcache_filename = ConfigText(default=path())

    def build(element):
        misc.epgcache_filename.value = path()
        misc.epgcache_filename.save()
        eEPGCache.getInstance().setCacheFile(misc.epgcache_filename.value)
        eEPGCache.getInstance().save()
        if misc.epgcachepath.value != etc:
            with contextlib.suppress(OSError):
                os.unlink(etc + os.path.basename(path()))

    misc.epgcachepath.addNotifier(build, initial_call=False, immediate_feedback=False)
    misc.epgcachefilename.addNotifier(build, immediate_feedback=False)
