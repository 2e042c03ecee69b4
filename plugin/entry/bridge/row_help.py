"""The help line of every row: what it is for, or that this image does nothing with it."""

from __future__ import absolute_import

from Components import config as host
from enigma import eEPGCache

from ..texts import N_, translate as _
from . import keys

NOT_USED = N_("This image does not use this setting.")
CLIENT = N_("For a receiver that shares the EPG file of another: the file is loaded, not saved.")
CLIENT_IN_PART = N_("The EPG file is loaded, not saved; the image's own saving goes on.")

# The rows that the compiled module leaves without a text: by the key, or by the name of their action.
TEXTS = {
    "usage.multiepg_ask_bouquet": N_("Ask for the bouquet each time the multi EPG opens."),
    "misc.timer_show_movie_available": N_("Mark programmes that are already among the recordings."),
    "usage.epg_default_view": N_("Choose what the EPG key opens."),
    "usage.epg_buffer": N_("For how many days ahead EPG data is kept."),
    "usage.show_old_epg": N_("How long past programmes stay in the EPG lists."),
    "usage.show_nownext_eit": N_("Take now and next in the infobar straight from the broadcast."),
    "misc.epg_dvb_blacklist_mode": N_("Services on the blacklist keep imported EPG data and take none from the broadcast."),
    "misc.epg_is_client_stb": CLIENT if hasattr(eEPGCache, "setSave") else CLIENT_IN_PART,
    "misc.epg_data_timer": N_("Save the EPG to its file at this interval."),
    "edit_dvb_epg_blacklist": N_("Choose the services that take no EPG data from the broadcast."),
    "epgpath": N_("Choose the directory in which the EPG file is kept."),
    "epgbackup": N_("Save the EPG to its file now."),
    "epgrestore": N_("Load the EPG from its file now."),
    "epgdelete": N_("Empty the EPG and delete its file."),
}
LOADS = N_("Load the EPG from its file at this interval.")


def changes():
    """Rows with a help text."""
    return {"Components.config": {"getConfigListEntry": getConfigListEntry}}


def getConfigListEntry(label, element, text, tag):
    """The host's row of these fields; tag -- what the row is for the module."""
    name = keys.used(element, tag)
    if name is None:
        text = _(NOT_USED)
    elif not text:
        text = _(LOADS if name == "misc.epg_data_timer" and keys.is_client() else TEXTS.get(name, ""))
    return host.getConfigListEntry(label, element, text, tag)
