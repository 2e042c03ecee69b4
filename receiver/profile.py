"""What one receiver image does differently from another, as facts.

The host modules, receiver/imitation.py and the keymap ask for them. A further image is a further `Profile` in PROFILES; a
further difference is a field here and one question at the place where the images part.
"""

from dataclasses import dataclass, field

from receiver.places import HERE

KEYMAP = HERE / "keymap.xml"


@dataclass(frozen=True)
class Profile:
    """The facts of one image; the defaults are those of a host that offers all that a plug-in may ask for."""

    name: str
    # Keymap files. A context that several of them have is the last one's.
    keymaps: tuple = (KEYMAP,)
    # The channel list's own key map: a higher number lets a plug-in's map see the colour keys first.
    channel_map_priority: int = 1
    # The context in which it has the colour keys.
    channel_colours: str = "ChannelSelectBaseActions"
    # Whether an error of the module's operations costs a message, as does an EPG file that can't be saved. On images such an
    # error ends the GUI, and a failed save shows nowhere.
    forgiving: bool = True
    # Whether a settings list reports every key press as a change, or only those that changed the value.
    on_change_always: bool = False
    # Whether "nothing selected" in a channel list is None, or an invalid service reference.
    empty_selection_is_none: bool = True
    # Whether a settings list has a line with the help text of its row.
    describes_rows: bool = True
    # What the image does not have: "module" or "module:name" or "module:name.name".
    missing: tuple = ()
    # What Python sees of the EPG cache besides load, save and setCacheFile.
    cache_methods: tuple = ("clearDB",)
    # A cache of fewer bytes is not saved; nobody is told.
    smallest_cache: int = 0
    # Whether the EPG is saved when the GUI ends in good order.
    saves_at_end: bool = False
    # Where a key is that the receiver has elsewhere by default; None: nowhere.
    keys: dict = field(default_factory=dict)
    # Whether the user can give the remote's keys functions by name.
    key_functions: bool = False
    # Whether the path of the EPG file is built at each start from a directory and a name of its own.
    builds_cache_path: bool = False


MISSING_EVERYWHERE = ("Screens.ChannelSelection:eEnv", "Components.ConfigList:getSelectionChoices",
                      "Components.ServiceList:ServiceList.setPythonConfig", "new")

# No image has what the plug-in itself would have to define.
KEYS_EVERYWHERE = {
    **dict.fromkeys(("misc.timer_show_movie_available", "misc.epg_dvb_blacklist_mode", "misc.epg_is_client_stb",
                     "misc.epg_data_timer", "usage.epg_default_view", "usage.epg_buffer"), None),
    "usage.show_old_epg": "epg.histminutes",
    "usage.show_nownext_eit": "usage.show_eit_nownext",
    "usage.autolanguage.epglanguage": "autolanguage.audio_epglanguage",
    "usage.autolanguage.epglanguage_alternative": "autolanguage.audio_epglanguage_alternative",
    **{"usage.epg." + source: "epg." + source for source in ("eit", "mhw", "freesat", "viasat", "netmed", "virgin")},
}


def _image(name, **facts):
    """A box's image: what all of them have in common, and its own facts."""
    return Profile(name, keymaps=(KEYMAP, HERE / ("keymap-%s.xml" % name)), missing=MISSING_EVERYWHERE,
                   forgiving=False, empty_selection_is_none=False, describes_rows=False, smallest_cache=10240, saves_at_end=True,
                   **facts)


PROFILES = {profile.name: profile for profile in (
    Profile("full"),
    _image("openpli", channel_map_priority=-2, cache_methods=("flushEPG",), key_functions=True,
           keys=KEYS_EVERYWHERE),
    _image("openatv", channel_map_priority=0, channel_colours="ColorActions",
           cache_methods=("flushEPG", "clear", "setSave"), builds_cache_path=True,
           keys={**KEYS_EVERYWHERE, "usage.epg_default_view": "plisettings.PLIEPG_mode",
                 "usage.epg_buffer": "epg.maxdays"}),
    _image("openvix", channel_map_priority=-1, cache_methods=("flushEPG", "reloadEITConfig"), on_change_always=True,
           builds_cache_path=True, keys={**KEYS_EVERYWHERE, "usage.epg_default_view": "usage.defaultEPGType"}),
)}
