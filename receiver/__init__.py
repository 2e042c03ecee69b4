"""A small enigma2-like receiver for a PC, in which the Veltro module is worked, tested and developed without a box."""
