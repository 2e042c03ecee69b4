// The one door to CPython. Included by this folder's .cpp files only; the units above are compiled without the
// interpreter's include directories and know a Python object as `struct _object`.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>
