"""The files of a box and what the receiver knows from them: channel lists, settings, EPG cache. No GUI in here."""
