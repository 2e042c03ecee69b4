// CPython says "failed" with null or -1; from here on a failure is an exception.
#pragma once

#include "host/cpython.h"
#include "host/object.h"

namespace veltro::host {

/// Throws the pending exception as an Error. One piece of code for all places, out of the way of what succeeds.
[[noreturn, gnu::cold]] void throwError(At at);

inline PyObject* require(PyObject* fresh, At at = At::here())
{
    if (fresh == nullptr)
        throwError(at);
    return fresh;
}

inline int require(int answer, At at = At::here())
{
    if (answer < 0)
        throwError(at);
    return answer;
}

/// Throws a new Python exception of a built-in type; `format` takes one "%s".
[[noreturn]] inline void raise(PyObject* type, const char* format, const char* detail, At at)
{
    PyErr_Format(type, format, detail);
    throwError(at);
}

} // namespace veltro::host
