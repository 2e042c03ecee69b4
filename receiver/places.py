"""Where the receiver's own files and the plug-in stand."""

import os
from pathlib import Path

HERE = Path(__file__).resolve().parent
HOST_MODULES = HERE / "host"
PLUGIN_FOLDERS = (HERE.parent / "plugin" / "entry", HERE.parent / os.environ.get("VELTRO_BUILD", "build/py3"))
