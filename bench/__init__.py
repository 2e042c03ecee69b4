"""How fast the module is, beside plain Python that makes the same host calls.

script/bench runs it, docs/performance.md explains it.

floor       the plain Python
operations  what is measured, for both in the same way
measure     clocks, repetition and memory
__main__    one interpreter's table

Needs Python 2.7 or 3 alone; the host is the tests' double with its recorder switched off.
"""
