// Everything in which Python 2.7 and Python 3 differ, behind one set of words. Each binary has one of the two files
// that say how: generation_py3.cpp or generation_py27.cpp, which also hold the entry points. Pointers follow CPython's
// habit: results are new references, null means that a Python exception is set.
#pragma once

#include "host/cpython.h"
#include "host/object.h"

namespace veltro::host::generation {

extern const char* const kBuiltinsModule;

/// The native string (bytes on 2.7, text on 3) of an ASCII literal, interned.
[[nodiscard]] PyObject* internText(const char* chars);
[[nodiscard]] PyObject* joinText(const char* first, const char* second, const char* third);
[[nodiscard]] bool textEquals(PyObject* text, const char* chars);
[[nodiscard]] bool textEquals(PyObject* one, PyObject* other);      // of two plain ones
[[nodiscard]] bool textStartsWith(PyObject* text, PyObject* start); // of two plain ones

/// A native string of the interpreter's generation, not of a subclass.
[[nodiscard]] bool isPlainText(PyObject* object);

/// The characters of a native string while this lives; "?" for anything else.
class Chars {
public:
    explicit Chars(PyObject* text) noexcept;
    Chars(const Chars&) = delete;
    Chars& operator=(const Chars&) = delete;
    ~Chars() { Py_XDECREF(bytes_); }

    [[nodiscard]] const char* get() const noexcept { return chars_; }

private:
    PyObject* bytes_ = nullptr;
    const char* chars_;
};

/// What the language raises when calls go too deep; borrowed.
[[nodiscard]] PyObject* recursionError();

[[nodiscard]] PyObject* newInteger(long value);
[[nodiscard]] long plainInteger(PyObject* object);   // -1 for what is no plain integer, and for one that is too large
[[nodiscard]] PyObject* toInteger(PyObject* object); // int(object)

/// A dictionary's value for a native string: borrowed; null without an exception when there is none.
[[nodiscard]] PyObject* dictGet(PyObject* dict, PyObject* key);

/// object(arguments...), and object.name(arguments...) where the object stands in the place for `self`. `room` is a
/// CallRoom of `count` arguments, and the callee's meanwhile.
[[nodiscard]] PyObject* call(PyObject* callable, PyObject** room, std::size_t count);
[[nodiscard]] PyObject* callMethod(PyObject* name, PyObject** room, std::size_t count);

/// A bound method in `callable` becomes its function, and `self` what it is bound to: both the method's own.
void takeApart(PyObject*& callable, PyObject*& self);

/// The shortest way into a callable, for calls by position. It stays the same as long as the callable is there.
[[nodiscard]] VectorCall entryOf(PyObject* callable);

/// import `name`, or from `name` import `names`; never relative to a package.
[[nodiscard]] PyObject* importModule(const char* name, PyObject* globals, PyObject* names);

/// The interpreter's own type of bound methods, and `operation` bound to an instance.
[[nodiscard]] PyObject* methodType();
[[nodiscard]] PyObject* bindMethod(PyObject* methodType, PyObject* operation, PyObject* instance, PyObject* type);

/// What a `class` statement does: picks the metaclass as the language does and calls it. `fill` stands for the class
/// body; it puts names into the given namespace, or returns false with an exception set.
using FillNamespace = bool (*)(const void* context, PyObject* classNamespace) noexcept;
[[nodiscard]] PyObject* createClass(const char* name, PyObject* bases, FillNamespace fill, const void* context);

/// The type of the module's operations, and a new, empty instance of it.
[[nodiscard]] PyObject* operationType(PyObject* moduleName);
[[nodiscard]] PyObject* allocateOperation(PyObject* type);

/// A frame of the given name at a place in the C++ sources, as a traceback shows it.
[[nodiscard]] PyObject* makeFrame(const char* name, At at);

/// The keyword arguments with which the built-in `open` keeps every byte of a text file as it is.
[[nodiscard]] PyObject* openKeywords();

} // namespace veltro::host::generation
