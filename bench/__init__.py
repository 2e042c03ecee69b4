"""How fast the module is, beside plain Python that makes the same host calls.

script/bench runs it, docs/performance.md explains it.

floor       the plain Python
kinds       what is measured beside each other: the module, the floor, and the floor compiled by Cython
operations  what is measured, for all kinds in the same way
quick_host  the host on which it is measured
measure     clocks, repetition and memory
count       instructions
__main__    one interpreter's table
in_hosts    the figures from real GUIs, and in_gui what runs in them

Needs Python 2.7 or 3 alone; valgrind and Cython add their columns.
"""
