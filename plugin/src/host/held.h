// For the two files of generations, which speak CPython's own language.
#pragma once

#include "host/cpython.h"

namespace veltro::host::generation {

/// A new reference held until the scope ends; null when making it failed.
class Held {
public:
    explicit Held(PyObject* fresh) noexcept : object_(fresh) {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { Py_XDECREF(object_); }

    [[nodiscard]] PyObject* get() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

private:
    PyObject* object_;
};

} // namespace veltro::host::generation
