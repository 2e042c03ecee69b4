"""Takes the pictures of real GUIs: for the README our screens, for docs/look.md an image's own and ours side by side.

    script/pictures [FOLDER]
"""

from __future__ import absolute_import

import contextlib
import os
import shutil
import subprocess
import sys
import tempfile
import time

from PIL import Image

from tests.hosts import case

SAMPLE = os.path.join(os.path.dirname(os.path.abspath(case.__file__)), os.pardir, os.pardir, "receiver", "sample")
HALF, WHOLE = 800, 960  # pixels that a screen is wide in its picture, beside another one and alone
BLACKLIST = ("1:0:19:101:401:FE:640000:0:0:0:", "1:0:1:105:401:FE:640000:0:0:0:", "1:0:19:204:402:FE:640000:0:0:0:",
             "1:0:1:302:403:FE:640000:0:0:0:", "1:0:16:501:1001:2FFF:EEEE0000:0:0:0:")
EVENTS = """
import time
from enigma import eEPGCache
TITLES = "Evening News", "The Weather", "A Night at the Harbour", "Gardens of the North", "Late Concert"
begin = int(time.time()) // 1800 * 1800
for line in open("/etc/enigma2/userbouquet.favourites.tv"):
    if line.startswith("#SERVICE"):
        eEPGCache.getInstance().importEvents(line.split()[1], [
            (begin + 1800 * n, 1800, TITLES[(n + len(line)) % len(TITLES)], "", "What happens, where, and to whom. " * 6, 0)
            for n in range(12)])
"""
MODULE = "from Plugins.Extensions.Veltro import plugin\n"


def setup(host, key="usage"):
    host.python("from Screens.Setup import Setup\nsession.open(Setup, %r)" % key)
    host.settle()
    host.press("down")


def epg_setup(host):
    setup(host, "epgsettings")


def settings(host):
    host.python(MODULE + "plugin.main(session)")
    host.settle()
    host.press("down", "down")


def sources(host):
    settings(host)
    host.press(*["down"] * 6)


def editor(host):
    host.python(MODULE + "session.open(plugin.load().Edit_DVB_EPG_Blacklist, plugin.plugin_path)")
    host.settle()
    host.press("down")


def picker(host):
    editor(host)
    host.press("blue")
    enter_bouquet(host)


def channels(host):
    host.press("down")
    enter_bouquet(host)


def enter_bouquet(host):
    if host.python("session.current_dialog.getCurrentSelection().flags & 7 == 7"):
        host.python("from enigma import eServiceReference\nsession.current_dialog.setCurrentSelection(eServiceReference(%r))"
                    % '1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.favourites.tv" ORDER BY bouquet')
        host.press("ok")
    host.python("session.current_dialog.servicelist.instance.moveSelectionTo(1)")
    host.settle()
    time.sleep(0.5)  # the host looks for the service's event a little later


def locations(host):
    host.python("from Screens.LocationBox import LocationBox\nsession.open(LocationBox, currDir='/media/')")
    host.settle()


def chooser(host):
    host.python(MODULE + "session.open(plugin.load().DirChoose, '/media/')")
    host.settle()
    host.press("down", "down")


PICTURES = (  # name, kit, resolution, language, the two screens, whether in the skin with everything elsewhere
    ("settings-openpli", "openpli", "hd", "de_DE", (setup, settings), False),
    ("settings-openpli-2.7", "openpli-2.7", "fhd", "ru_RU", (setup, settings), False),
    ("settings-openvix", "openvix", "fhd", "de_DE", (epg_setup, settings), False),
    ("settings-openvix-hd", "openvix", "hd", "ru_RU", (epg_setup, settings), False),
    ("picker-openpli", "openpli", "fhd", "ru_RU", (channels, picker), False),
    ("picker-openpli-2.7", "openpli-2.7", "hd", "de_DE", (channels, picker), False),
    ("picker-openvix", "openvix", "hd", "de_DE", (channels, picker), False),
    ("chooser-openpli", "openpli", "hd", "de_DE", (locations, chooser), False),
    ("editor-openvix", "openvix", "fhd", "ru_RU", (setup, editor), False),
    ("settings-elsewhere", "openpli", "hd", "de_DE", (settings, editor), True),
    ("picker-elsewhere", "openpli", "hd", "de_DE", (picker, chooser), True),
)


README = (("openpli", "hd", {"settings": sources, "picker": picker, "editor": editor}),
          ("openvix", "fhd", {"settings": sources}))


def main(folder):
    """Write all pictures as PNGs into `folder`."""
    os.makedirs(folder, exist_ok=True)
    readme(folder)
    for name, kit, resolution, language, screens, elsewhere in PICTURES:
        with host(kit, resolution, language, elsewhere) as running:
            halves = [taken(running, screen) for screen in screens]
        write(beside(halves), os.path.join(folder, "look-%s.png" % name))


def readme(folder):
    """Write the README's pictures into `folder`."""
    for kit, resolution, screens in README:
        with host(kit, resolution, "en_US", False) as running:
            for name, screen in sorted(screens.items()):
                whole = taken(running, screen)
                whole = whole.resize((WHOLE, WHOLE * whole.height // whole.width), Image.LANCZOS)
                write(whole, os.path.join(folder, "host-%s-%s.png" % (kit, name)))


def write(image, path):
    image.save(path)
    subprocess.check_call(["pngquant", "--force", "--output", path, "--speed", "1", "--strip", path])
    print(path)


@contextlib.contextmanager
def host(kit, resolution, language, elsewhere):
    """A GUI with the receiver's sample channels, a programme guide, and a blacklist."""
    case.KIT = kit
    with tempfile.TemporaryDirectory() as folder:
        files = os.path.join(folder, "files")
        shutil.copytree(SAMPLE, files)
        case._write_icons(os.path.join(files, "icons"))
        shutil.copy(os.path.join(os.path.dirname(case.__file__), "elsewhere.xml"), files)
        with open(os.path.join(files, "blacklist_dvb_epg"), "w") as blacklist:
            blacklist.writelines("#SERVICE %s\n" % reference for reference in BLACKLIST)
        with case.Host(os.path.join(case.HOSTS, kit), os.path.join(folder, "state"), plugin=case.plugin(), settings=files,
                       resolution=resolution, language=language) as running:
            running.python(EVENTS + "from Components.config import config\nconfig.usage.setup_level.value = 'expert'")
            if elsewhere:
                running.python("import skin\nskin.loadSkin('/etc/enigma2/elsewhere.xml')")
            yield running


def taken(running, screen):
    for _ in range(8):
        if running.python("session.current_dialog.__class__.__name__") == "InfoBar":
            break
        running.press("exit")
    screen(running)
    path = os.path.join(running.state, "picture.png")
    running.picture(path)
    return Image.open(path).convert("RGB")


def beside(halves):
    """Both in one picture, each HALF wide."""
    height = HALF * halves[0].height // halves[0].width
    whole = Image.new("RGB", (2 * HALF + 8, height), "white")
    for index, half in enumerate(halves):
        whole.paste(half.resize((HALF, height), Image.LANCZOS), (index * (HALF + 8), 0))
    return whole


if __name__ == "__main__":
    main(sys.argv[1])
