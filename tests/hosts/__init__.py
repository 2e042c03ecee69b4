"""Tests in real GUIs: the package as it is made for boxes, keys in, screens, files and logs out.

VELTRO_HOSTS names a folder with a driver (host.py) and kits, each a GUI that runs on this machine. Without it all tests here
are skipped. VELTRO_KIT names the kit of this run, and VELTRO_PACKAGES the folder that `tests/hosts/package` has filled.
"""
