"""What one receiver image does differently from another, as facts that the host modules ask for.

A further image is a further `Profile` in PROFILES; a further difference is a field here and one question at
the place in receiver/host where the images part.
"""

from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent


@dataclass(frozen=True)
class Profile:
    """The facts of one image; the defaults are those of a host that offers all that a plug-in may ask for."""

    name: str
    keymap: Path = HERE / "keymap.xml"
    # The channel list's own key map: a higher number lets a plug-in's map see the colour keys first.
    channel_map_priority: int = 1
    # Whether a settings list reports every key press as a change, or only those that changed the value.
    on_change_always: bool = False
    # Whether "nothing selected" in a channel list is None, or an invalid service reference.
    empty_selection_is_none: bool = True


PROFILES = {"full": Profile("full")}
