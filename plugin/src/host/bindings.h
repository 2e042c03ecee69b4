// What a load of the module binds, in one tuple: the collector sees through it, and an operation holds one reference.
#pragma once

#include "host/cpython.h"

namespace veltro::host::binding {

enum Place : Py_ssize_t {
    kGlobals, // the module's namespace
    kBuiltins,
    kOpen,
    kIOError,
    kMethodType,
    kOperationType,
    kZero,
    kFirstText, // the constant texts, by their indices
};

} // namespace veltro::host::binding
