"""The floor under every figure: the host calls of the measured operations, by the tightest Python that makes them.

Not a second implementation: nothing here is checked, whatever a loop needs is looked up once before it, and what is the same
for every row is written out. The results are those of the compiled module, which the benchmark verifies before it measures
anything. What a subclass or another module may replace, and Python would look up anew at each key, is looked up here, too.
"""

from enigma import eEPGCache, eTimer  # noqa: F401 (the names that start-up takes belong to the cost of an import)
from Screens.Screen import Screen
from Screens.ChannelSelection import *  # noqa: F401,F403
from Screens.ChannelSelection import ServiceReference, SimpleChannelSelection, eEnv, eServiceCenter, eServiceReference
from Components.Label import Label
from Components.ActionMap import ActionMap
from Components.GUIComponent import GUIComponent  # noqa: F401
from Components.config import config, getConfigListEntry, ConfigSubsection, ConfigText, ConfigNothing, NoSave  # noqa: F401
from Components.config import ConfigSelection  # noqa: F401
from Components.ConfigList import ConfigListScreen, ConfigList, getSelectionChoices  # noqa: F401
from Components.FileList import FileList  # noqa: F401
from Components.Sources.StaticText import StaticText
from Components.Pixmap import Pixmap  # noqa: F401
from Screens.MessageBox import MessageBox  # noqa: F401
from Screens.ChoiceBox import ChoiceBox  # noqa: F401
from Tools.LoadPixmap import LoadPixmap  # noqa: F401
from Tools import Notifications  # noqa: F401
from skin import loadSkin  # noqa: F401
from os import system, path, unlink  # noqa: F401
import _enigma  # noqa: F401
import new  # noqa: F401
import sys

if sys.version_info[0] == 2:
    def openText(name, mode):
        return open(name, mode)
else:
    def openText(name, mode):
        return open(name, mode, encoding="utf-8", errors="surrogateescape", newline="\n")


def find_in_list(list, search, listpos=0):
    for row in list:
        if row[listpos] == search:
            return True
    return False


def doEPGAction(action):
    cache = eEPGCache.getInstance()
    if action == "load":
        cache.load()
    elif action == "save":
        cache.save()
    elif action == "cleardb":
        cache.clearDB()
        cache.save()


class Veltro(Screen, ConfigListScreen):
    def __init__(self, session, plugin_path):
        translate = _
        Screen.__init__(self, session)
        self.skin_path = plugin_path
        self.session = session
        self.input_epgpath = NoSave(ConfigNothing())
        self.input_epgbackup = NoSave(ConfigNothing())
        self.input_epgrestore = NoSave(ConfigNothing())
        self.input_epgdelete = NoSave(ConfigNothing())
        self.title = translate("ORSA Veltro")
        self["title"] = StaticText(self.title)
        self["status"] = Label()
        self["key_red"] = StaticText(translate("Exit"))
        self["key_green"] = StaticText(translate("Save"))
        self["shortcuts"] = ActionMap(["SetupActions", "ColorActions", "DirectionActions"], {
            "ok": self.keyOk, "cancel": self.keyClose, "red": self.keyCancel, "green": self.keySave, "up": self.up,
            "down": self.down}, -2)
        self.list = []
        ConfigListScreen.__init__(self, self.list, session=session, on_change=self.changedEntry)
        self.createSetup()

    def createSetup(self):
        translate, entry = _, getConfigListEntry
        usage, misc = config.usage, config.misc
        epg, language = usage.epg, usage.autolanguage
        epgPath = str(misc.epgcache_filename.value).replace("/epg.dat", "")
        list = [
            entry(translate("Multi-EPG bouquet selection"), usage.multiepg_ask_bouquet, "", "to_save"),
            entry(translate("Show icon when movie is in database"), misc.timer_show_movie_available, "", "to_save"),
            entry(translate("Default EPG view (EPG button)"), usage.epg_default_view, "", "to_save"),
            entry(translate("Save EPG for X days in future"), usage.epg_buffer, "", "to_save"),
            entry(translate("Show EPG data in single EPG list older than"), usage.show_old_epg, "", "to_save"),
            entry(translate("Show Now/Next EIT EPG at InfoBar"), usage.show_nownext_eit, "", "to_save"),
            entry(translate("EPG language selection 1"), language.epglanguage,
                  translate("Configure the primary EPG language."), "to_save"),
            entry(translate("EPG language selection 2"), language.epglanguage_alternative,
                  translate("Configure the secondary EPG language."), "to_save"),
            entry(translate("Enable EIT EPG"), epg.eit, translate("Use EIT EPG information when it is available."),
                  "to_save"),
            entry(translate("Enable MHW EPG"), epg.mhw, translate("Use MHW EPG information when it is available."),
                  "to_save"),
            entry(translate("Enable freesat EPG"), epg.freesat,
                  translate("Use FreeSat EPG information when it is available."), "to_save"),
            entry(translate("Enable ViaSat EPG"), epg.viasat,
                  translate("Use ViaSat EPG information when it is available."), "to_save"),
            entry(translate("Enable Netmed EPG"), epg.netmed,
                  translate("Use Netmed EPG information when it is available."), "to_save"),
            entry(translate("Enable Virgin EPG"), epg.virgin,
                  translate("Use Virgin EPG information when it is available."), "to_save"),
            entry(translate("Forbid DVB EPG update for black listed services"), misc.epg_dvb_blacklist_mode, "",
                  "to_save"),
            entry(translate("Edit blacklist for DVB EPG"), self.input_epgpath, "", "edit_dvb_epg_blacklist"),
            entry(translate("EPG Path :") + " " + epgPath, self.input_epgpath, "", "epgpath"),
            entry(translate("Enable EPG client mode (don't save EPG file)"), misc.epg_is_client_stb, "", "to_save"),
        ]
        self.list = list
        if misc.epg_is_client_stb.value:
            list.extend([
                entry(translate("Load EPG data from file every X minutes (0 = off)"), misc.epg_data_timer, "", "to_save"),
                entry(translate("Load EPG data from epg.dat"), self.input_epgrestore, "", "epgrestore"),
            ])
        else:
            list.extend([
                entry(translate("Save EPG data every X minutes to file (0 = off)"), misc.epg_data_timer, "", "to_save"),
                entry(translate("Save EPG cache to epg.dat"), self.input_epgbackup, "", "epgbackup"),
                entry(translate("Load EPG data from epg.dat"), self.input_epgrestore, "", "epgrestore"),
                entry(translate("Delete broken epg.dat"), self.input_epgdelete, "", "epgdelete"),
            ])
        widget = self["config"]
        widget.list = list
        widget.l.setList(list)

    def keyOk(self):
        """Of the save row alone."""
        if self["config"].l.getCurrentSelection()[3] != "epgbackup":
            raise NotImplementedError
        misc = config.misc
        if misc.epg_is_client_stb.value:
            raise NotImplementedError
        doEPGAction("save")
        self.statustext = _("Saving of EPG cache to %s finished") % misc.epgcache_filename.value
        self.epgBackupfinished(self.statustext)

    def epgBackupfinished(self, statustext):
        self.text = statustext
        self["status"].setText(self.text)

    def up(self):
        self.statustext = ""
        self.epgBackupfinished(self.statustext)
        widget = self["config"]
        if widget.list:
            instance = widget.instance
            instance.moveSelection(instance.moveUp)

    def down(self):
        raise NotImplementedError

    def changedEntry(self):
        self.statustext = ""
        self.epgBackupfinished(self.statustext)
        self.createSetup()

    def keyClose(self):
        raise NotImplementedError

    def keySave(self):
        eEPGCache.getInstance().setCacheFile(config.misc.epgcache_filename.value)
        for row in self.list:
            if row[3] == "to_save":
                row[1].save()
        self.close()


class Edit_DVB_EPG_Blacklist(Screen):
    def __init__(self, session, plugin_path):
        translate = _
        Screen.__init__(self, session)
        self.skin_path = plugin_path
        self.filename = eEnv.resolve("${sysconfdir}/enigma2/blacklist_dvb_epg")
        self.start_str = "#SERVICE "
        self["key_red"] = StaticText(translate("Cancel"))
        self["key_green"] = StaticText(translate("Save"))
        self["key_yellow"] = StaticText(translate("Delete"))
        self["key_blue"] = StaticText(translate("Add Service"))
        self["actions"] = ActionMap(["ColorActions", "SetupActions"], {
            "green": self.greenPressed, "red": self.redPressed, "yellow": self.yellowPressed, "blue": self.bluePressed,
            "cancel": self.cancel}, -1)
        servicelist = self.servicelist = []
        widget = ConfigList(servicelist)
        widget.list = servicelist
        widget.l.setList(servicelist)
        self["ServiceList"] = widget
        self.onShown.append(self.setWindowTitle)
        self.loadFile()

    def setWindowTitle(self):
        raise NotImplementedError

    greenPressed = redPressed = yellowPressed = bluePressed = cancel = setWindowTitle

    def finishedChannelSelection(self, refs):
        servicelist = self.servicelist
        known = set([row[0] for row in servicelist])
        append, note, service, element = servicelist.append, known.add, ServiceReference, ConfigNothing
        types = ("1", "4097")
        for ref in refs:
            service_ref = service(ref)
            name = service_ref.getServiceName() or "N/A"
            if name not in known:
                text = service_ref.ref.toString()
                if text.split(":", 1)[0] in types:
                    append((name, element(), 0, text))
                    note(name)
        self["ServiceList"].l.setList(servicelist)

    def saveFile(self):
        rows = self.servicelist
        start = self.start_str
        text = start + ("\n" + start).join([row[3] for row in rows]) + "\n" if rows else ""
        with openText(self.filename, "w") as file:
            file.write(text)

    def loadFile(self):
        if not path.exists(self.filename):
            return
        start = self.start_str
        with openText(self.filename, "r") as file:
            items = [line.replace(start, "").strip(" \t\r\n") for line in file if line.startswith(start)]
        if items:
            self.finishedChannelSelection(items)
        self["ServiceList"].l.setList(self.servicelist)


class DVB_EPG_blacklist_ChannelSelection(SimpleChannelSelection):
    def __init__(self, session, plugin_path):
        translate = _
        title = translate("Select service to add...")
        self.skin_path = plugin_path
        SimpleChannelSelection.__init__(self, session, title)
        self.onShown.append(self.setModeTv)
        self.servicelist.setPythonConfig()
        self["actions"] = ActionMap(["OkCancelActions", "TvRadioActions", "ChannelSelectBaseActions"], {
            "showProviders": self.doNothing, "showSatellites": self.showAllServices, "showAllServices": self.cancel,
            "cancel": self.cancel, "ok": self.channelSelected, "keyRadio": self.setModeRadio, "keyTV": self.setModeTv})
        self["key_red"] = StaticText(translate("Close"))
        self["key_green"] = StaticText(translate("All"))
        self["key_yellow"] = StaticText(translate("Add bouquet services"))
        self["key_blue"] = StaticText(translate("Favourites"))

    def doNothing(self):
        ref = self.getCurrentSelection()
        if ref is None or ref.flags & 7 != 7:
            return
        refs = []
        services = eServiceCenter.getInstance().list(ref)
        if services is not None:
            append, getNext = refs.append, services.getNext
            notPlayable = eServiceReference.isMarker | eServiceReference.isDirectory
            service = getNext()
            while service.valid():
                if not service.flags & notPlayable:
                    append(service)
                service = getNext()
        self.close(refs)

    def channelSelected(self):
        raise NotImplementedError

    cancel = setModeTv = setModeRadio = channelSelected


class DirChoose(Screen):
    pass


class EPGTimer:
    pass


epg_timer = EPGTimer()
