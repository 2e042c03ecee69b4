"""Tests of the TV in a browser: the running receiver, Chromium, keys pressed in the page."""
