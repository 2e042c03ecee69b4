"""A module of Python 2's library that old plug-ins still import and do not use."""
