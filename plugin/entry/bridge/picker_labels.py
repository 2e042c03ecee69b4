"""The labels of the picker's colour keys: what the keys do there, in as many words as the image's channel list has room for,
whatever that writes on them later."""

from __future__ import absolute_import

from Components.Sources.StaticText import StaticText

from ..texts import translate as _


class Fixed(StaticText):
    """A text that only its maker sets."""

    fixed = False

    def __init__(self, text):
        StaticText.__init__(self, text)
        self.fixed = True

    def setText(self, text):
        if not self.fixed:
            StaticText.setText(self, text)

    def __setattr__(self, name, value):
        if name != "text" or not self.fixed:
            StaticText.__setattr__(self, name, value)


class Labels(object):
    def __init__(self, *arguments, **keywords):
        super(Labels, self).__init__(*arguments, **keywords)
        texts = {"key_green": _("All services"), "key_yellow": _("Add bouquet")}
        for name in ("key_red", "key_green", "key_yellow", "key_blue"):
            self[name] = Fixed(texts.get(name, self[name].text))


SCREENS = {"DVB_EPG_blacklist_ChannelSelection": Labels}
