"""The receiver's main menu: what the plug-ins offer, and the switch."""

from Components.ActionMap import ActionMap
from Components.MenuList import MenuList
from Components.PluginComponent import plugins
from Components.Sources.StaticText import StaticText
from Plugins.Plugin import PluginDescriptor
from Screens.Screen import Screen
from Tools import Notifications
from enigma import quitMainloop


def entries():
    """The descriptors that want to be in the menu, in its order."""
    return plugins.getPlugins(PluginDescriptor.WHERE_PLUGINMENU)


class MainMenu(Screen):
    """The lowest screen of the session. Waiting notifications are shown from here."""

    def __init__(self, session):
        Screen.__init__(self, session)
        self.setTitle(_("Main menu"))
        self["list"] = MenuList([(plugin.name, plugin) for plugin in entries()] + [(_("Switch the receiver off"), None)])
        self["description"] = StaticText()
        self["actions"] = ActionMap(["OkCancelActions"], {"ok": self.ok})
        self["list"].onSelectionChanged.append(self.describe)
        self.onLayoutFinish.append(self.describe)
        self.onShown.append(self.showNotifications)
        Notifications.notificationAdded.append(self.showNotifications)

    def ok(self):
        plugin = self["list"].getCurrent()[1]
        if plugin is None:
            quitMainloop(1)
        else:
            plugin(session=self.session)

    def describe(self):
        plugin = self["list"].getCurrent()[1]
        self["description"].text = plugin.description if plugin else ""

    def showNotifications(self):
        if self.execing and Notifications.notifications:
            callback, screen, arguments, kwargs = Notifications.notifications.pop(0)
            if callback is None:
                self.session.open(screen, *arguments, **kwargs)
            else:
                self.session.openWithCallback(callback, screen, *arguments, **kwargs)
