"""The help line of every row: what it is for, or that this image does nothing with it."""

from __future__ import absolute_import

from Components import config as host
from enigma import eEPGCache

from ..texts import translate as _
from . import keys


def N_(text):
    """Marks a text that is translated later."""
    return text


NOT_USED = N_("This image does not use this setting.")

# The rows that the compiled module leaves without a text: by the key, or by the name of their action.
TEXTS = {
    "usage.multiepg_ask_bouquet": N_("Ask for the bouquet each time the multi EPG opens."),
    "misc.timer_show_movie_available": N_("Mark programmes that are already among the recordings."),
    "usage.epg_default_view": N_("Choose what the EPG key opens."),
    "usage.epg_buffer": N_("For how many days ahead EPG data is kept."),
    "usage.show_old_epg": N_("How long past programmes stay in the EPG lists."),
    "usage.show_nownext_eit": N_("Take now and next in the infobar straight from the broadcast."),
    "misc.epg_dvb_blacklist_mode": N_("Services on the blacklist keep imported EPG data and take none from the broadcast."),
    "misc.epg_data_timer": N_("Save the EPG to its file at this interval."),
    "edit_dvb_epg_blacklist": N_("Choose the services that take no EPG data from the broadcast."),
    "epgpath": N_("Choose the directory in which the EPG file is kept."),
    "epgbackup": N_("Save the EPG to its file now."),
    "epgrestore": N_("Load the EPG from its file now."),
    "epgdelete": N_("Empty the EPG and delete its file."),
}
LOADS = N_("Load the EPG from its file at this interval.")
CLIENT = N_("For a receiver that shares the EPG file of another: the file is loaded, not saved.")
CLIENT_IN_PART = N_("The EPG file is loaded, not saved; the image's own saving goes on.")


def changes():
    """Rows with a help text."""
    return {"Components.config": {"getConfigListEntry": getConfigListEntry}}


def getConfigListEntry(*fields):
    """The host's row of these fields: label, element, help text, and what the row is for the module."""
    if len(fields) == 4:
        label, element, text, tag = fields
        fields = label, element, _help(element, text, tag), tag
    return host.getConfigListEntry(*fields)


def _help(element, text, tag):
    path = keys.path_of(element)
    setting = "misc.epg_dvb_blacklist_mode" if tag == "edit_dvb_epg_blacklist" else path
    if setting and not keys.is_used(setting):
        return _(NOT_USED)
    if text:
        return text
    if path == "misc.epg_is_client_stb":
        return _(CLIENT if hasattr(eEPGCache, "setSave") else CLIENT_IN_PART)
    if path == "misc.epg_data_timer" and host.config.misc.epg_is_client_stb.value:
        return _(LOADS)
    return _(TEXTS.get(path or tag, ""))
