"""Takes the pictures of the documentation: every screen of the module in both resolutions, the page, and the page on a phone.

    script/pictures [FOLDER]

Folder, clock and keys are always the same, and so are the pictures until a screen changes.
"""

import contextlib
import importlib
import runpy
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from receiver import cli, options
from receiver.app import Receiver
from receiver.layout import RESOLUTIONS
from receiver.loop import VirtualLoop
from receiver.web import camera

FOLDER = Path(tempfile.gettempdir()) / "receiver"  # is seen in the pictures
NOW = 1772740800  # an evening in March 2026
FILES = ("hdd/backup", "hdd/movie", "hdd/music", "hdd/picon", "hdd/timeshift", "usb", "hdd/epg.old")
BLACKLIST = ("1:0:19:101:401:FE:640000:0:0:0:", "1:0:1:105:401:FE:640000:0:0:0:", "1:0:19:204:402:FE:640000:0:0:0:",
             "1:0:1:302:403:FE:640000:0:0:0:", "1:0:16:501:1001:2FFF:EEEE0000:0:0:0:")


def ask(receiver):
    """A question of the host's, on top of what is open."""
    message_box = importlib.import_module("Screens.MessageBox").MessageBox
    session = importlib.import_module("receiver.running").gui.session
    receiver.guard(lambda: session.open(message_box, _("Really close without saving settings?"), default=False))


def fail(receiver):
    """A plug-in's error that reaches the main loop."""
    path = FOLDER / "Example" / "plugin.py"
    path.parent.mkdir()
    path.write_text("from Components.config import config\n\n\n"
                    "def main():\n    show(config.plugins.example.path)\n\n\n"
                    "def show(path):\n    print(path.value)\n")
    receiver.guard(runpy.run_path(str(path))["main"])


SCREENS = (  # name, keys, what else happens
    ("settings", "down*8", None),
    ("status", "down*19 ok", None),
    ("popup", "down*2 ok", None),
    ("chooser", "down*16 ok down*2", None),
    ("editor", "down*15 ok down*2", None),
    ("picker", "down*15 ok blue down ok down", None),
    ("picker-all", "down*15 ok blue green down*30", None),
    ("message", "down*9 right", ask),
    ("menu", "exit", None),
    ("crash", "", fail),
)


def main(folder):
    """Write all pictures as PNGs into `folder`."""
    folder.mkdir(parents=True, exist_ok=True)
    with camera.browser() as browser:
        for name, keys, happens in SCREENS:
            for resolution, size in RESOLUTIONS.items():
                with played(keys, resolution, happens) as receiver:
                    image = camera.photograph(browser, camera.picture_document(receiver), *size)
                write(folder / (name + ("" if resolution == "hd" else "-" + resolution) + ".png"), image)
        with played("down*19 ok up*11", "hd") as receiver:
            write(folder / "page.png", camera.photograph(browser, camera.page_document(receiver), 1440, 900))
            browser.execute_cdp_cmd("Emulation.setTouchEmulationEnabled", {"enabled": True})
            write(folder / "phone.png", camera.photograph(browser, camera.page_document(receiver), 390, 844, 2))


@contextlib.contextmanager
def played(keys, resolution, happens=None):
    """A receiver with the documentation's folder, after these keys. The folder is there as long as the block runs."""
    FOLDER.mkdir()
    try:
        etc = FOLDER / "etc" / "enigma2"
        shutil.copytree(options.SAMPLE, etc)
        (etc / "blacklist_dvb_epg").write_text("".join("#SERVICE %s\n" % reference for reference in BLACKLIST))
        for name in FILES:
            place = FOLDER / "media" / name
            place.mkdir(parents=True, exist_ok=True) if "." not in name else place.write_text("")
        with contextlib.closing(VirtualLoop()) as loop:
            receiver = Receiver(loop, str(etc), str(FOLDER), resolution=resolution, now=lambda: NOW + loop.time())
            cli.play(receiver, options.parse_keys(keys))
            if happens is not None:
                happens(receiver)
                loop.settle()
            yield receiver
            receiver.switch_off()
    finally:
        shutil.rmtree(FOLDER)


def write(path, image):
    """Write a PNG with as many colours as it needs and no more than 256."""
    small = subprocess.run(["pngquant", "--speed", "1", "--strip", "--quality", "70-98", "-"], input=image, capture_output=True,
                           check=True).stdout
    path.write_bytes(min(small, image, key=len))
    print("%s  %d kB" % (path.name, len(small) // 1024))


if __name__ == "__main__":
    main(Path(sys.argv[1]))
