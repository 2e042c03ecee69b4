"""Takes the README's pictures of the receiver: three of one way through it.

    script/pictures [FOLDER]

Folder, clock and keys are always the same, and so are the pictures until a screen changes.
"""

import contextlib
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from receiver import cli, options
from receiver.app import Receiver
from receiver.loop import VirtualLoop
from receiver.web import camera, html

BLACKLIST = ("1:0:19:101:401:FE:640000:0:0:0:", "1:0:1:105:401:FE:640000:0:0:0:", "1:0:19:204:402:FE:640000:0:0:0:")
SAVED = "down*19 ok"  # the EPG file is there from the day before
WAY = (("settings", "down*15"), ("picker", "down*15 ok blue down ok down*2"), ("editor", "down*15 ok blue down ok down*2 ok down*3"))


def main(folder):
    """Write all pictures as PNGs into `folder`."""
    folder.mkdir(parents=True, exist_ok=True)
    with camera.browser() as browser, tempfile.TemporaryDirectory() as root:
        etc = Path(root) / "etc" / "enigma2"
        shutil.copytree(cli.SAMPLE, etc)
        (etc / "blacklist_dvb_epg").write_text("".join("#SERVICE %s\n" % reference for reference in BLACKLIST))
        with played(etc, root, SAVED):
            pass
        for number, (name, keys) in enumerate(WAY, 1):
            with played(etc, root, keys) as receiver:
                document = html.document(html.fragment(receiver.picture(), receiver.console.lines), camera.PAGES)
                write(folder / ("page-%d-%s.png" % (number, name)), camera.photograph(browser, document, 1280, 660))


@contextlib.contextmanager
def played(etc, root, keys):
    """A receiver with this box, after these keys, as long as the block runs."""
    with contextlib.closing(VirtualLoop()) as loop:
        receiver = Receiver(loop, str(etc), root)
        receiver.switch_on()
        loop.settle()
        for _, step in options.parse_keys(keys):
            step(receiver)
        yield receiver
        receiver.switch_off()


def write(path, image):
    """Write a PNG with as many colours as it needs and no more than 256."""
    small = subprocess.run(["pngquant", "--speed", "1", "--strip", "--quality", "70-98", "-"], input=image, capture_output=True,
                           check=True).stdout
    path.write_bytes(min(small, image, key=len))
    print("%s  %d kB" % (path.name, len(small) // 1024))


if __name__ == "__main__":
    main(Path(sys.argv[1]))
