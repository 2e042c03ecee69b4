// CPython says "failed" with null or -1; from here on a failure is an exception.
#pragma once

#include "host/cpython.h"
#include "host/object.h"

namespace veltro::host {

inline PyObject* require(PyObject* fresh, At at = At::here())
{
    if (fresh == nullptr)
        throw Error(at);
    return fresh;
}

inline int require(int answer, At at = At::here())
{
    if (answer < 0)
        throw Error(at);
    return answer;
}

/// Throws a new Python exception of a built-in type; `format` takes one "%s".
[[noreturn]] inline void raise(PyObject* type, const char* format, const char* detail, At at)
{
    PyErr_Format(type, format, detail);
    throw Error(at);
}

} // namespace veltro::host
