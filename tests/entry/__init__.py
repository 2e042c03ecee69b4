"""Tests of the plug-in entry and its bridge, on Python 2.7 and 3, against small boxes of both generations."""
