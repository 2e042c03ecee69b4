// The Python object of an operation, as the host layer's own files see it.
#pragma once

#include "host/cpython.h"
#include "host/operation.h"

namespace veltro::host {

/// The arguments of one call, as the interpreter hands them over. What is not there is null.
struct Given {
    PyObject* const* values; // by position, as far as an operation can name them; those for `names` follow
    std::size_t count;       // of all that are given by position
    PyObject* names;         // a tuple of keywords
    PyObject* keywords;      // a dictionary
};

struct OperationObject {
    PyObject_HEAD const OperationTable* table;
    const char* className;     // null for a function of the module
    const PyPointer* bindings; // what Host reads; see `owner`
    PyObject* owner;           // of the bindings; part of the module's reference cycles, so the collector visits it. It
                               // never clears it: each such cycle runs through a namespace, and breaks there. So even
                               // what is called while a load is taken apart finds its host.
    VectorCall vectorcall;     // how the interpreter calls it, from 3.9 on
};

[[nodiscard]] inline OperationObject& operationOf(PyObject* object) noexcept
{
    return *reinterpret_cast<OperationObject*>(object);
}

/// Sorts a call's arguments by the operation's parameters, with the language's own rules and errors. The values are
/// borrowed; a parameter that the call leaves out is filled with its default.
[[nodiscard]] bool bindArguments(const OperationObject& operation, const Given& given, PyPointer* arguments);

// The slots of the operation type; each generation's file puts them into the kind of type that the interpreter knows.
PyObject* operationCall(PyObject* self, PyObject* positions, PyObject* keywords);
PyObject* operationVectorCall(PyObject* self, PyObject* const* values, std::size_t count, PyObject* names);
PyObject* operationGet(PyObject* self, PyObject* instance, PyObject* type);
PyObject* operationRepr(PyObject* self);
int operationTraverse(PyObject* self, visitproc visit, void* context);
extern PyGetSetDef kOperationAttributes[];

} // namespace veltro::host
