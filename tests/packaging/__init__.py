"""Tests of the packages for boxes, which script/package makes. script/test-boxes runs them."""
