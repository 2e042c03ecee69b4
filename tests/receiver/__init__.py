"""Tests of the embedded receiver. The host modules are found the way the running receiver finds them: on sys.path."""
import os
import sys

_HOST = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir, "receiver", "host")
if os.path.normpath(_HOST) not in sys.path:
    sys.path.insert(0, os.path.normpath(_HOST))
