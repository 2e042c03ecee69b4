#include "host/operation.h"

#include "host/generation.h"
#include "host/operation_object.h"
#include "host/traceback.h"

#include <algorithm>
#include <new>

namespace veltro::host {

namespace {

/// Counts the operations that run within each other. The interpreter's own count does not save us: from 3.12 on it lets
/// compiled code call itself ten times as deep as Python code, and the stack ends before.
class Nesting {
public:
    Nesting() noexcept { ++depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --depth; }

    [[nodiscard]] static bool isTooDeep() noexcept { return depth > kDeepest; }

private:
    static constexpr int kDeepest = 1000; // Python's own default
    static inline int depth = 0;          // under the interpreter's lock
};

/// Runs the C++ function: the one place where a C++ exception becomes a Python one.
PyObject* run(const OperationObject& operation, const PyPointer* arguments) noexcept
{
    const Nesting nesting;
    if (Nesting::isTooDeep()) {
        PyErr_SetString(generation::recursionError(), "maximum recursion depth exceeded");
        return nullptr;
    }
    try {
        return operation.table->thunk(Host(operation.bindings), arguments);
    } catch (Error& error) {
        error.restore();
        addFrame(operation.className, operation.table->name, error.at());
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory(); // GCOVR_EXCL_LINE: out of memory
    }
    return nullptr;
}

PyObject* newTuple(PyObject* const* from, PyObject* const* to)
{
    PyObject* const tuple = PyTuple_New(to > from ? to - from : 0);
    for (Py_ssize_t i = 0; tuple != nullptr && from < to; ++from, ++i) {
        Py_INCREF(*from);
        PyTuple_SetItem(tuple, i, *from);
    }
    return tuple;
}

/// Whether each parameter has its value by its position: what a key handler's call looks like.
bool isComplete(const OperationObject& operation, const Given& given)
{
    return given.count == operation.table->count && given.names == nullptr && given.keywords == nullptr &&
           operation.table->takes != Takes::anyPositions;
}

/// `makeRest` gives the tuple of *args, from the position on that it is told.
template <class MakeRest>
[[gnu::noinline]] PyObject* bindAndRun(const OperationObject& operation, const Given& given, const MakeRest& makeRest)
{
    std::array<PyPointer, OperationTable::kMostParameters> arguments{};
    if (!bindArguments(operation, given, arguments.data()))
        return nullptr;
    if (operation.table->takes != Takes::anyPositions)
        return run(operation, arguments.data());

    PyObject* const rest = makeRest(operation.table->positions());
    if (rest == nullptr)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    arguments[operation.table->positions()] = rest;
    PyObject* const result = run(operation, arguments.data());
    Py_DECREF(rest);
    return result;
}

/// "Veltro.keyOk" for an operation of a class, "doEPGAction" for a function of the module.
PyObject* qualifiedName(const OperationObject& operation)
{
    if (operation.className == nullptr)
        return generation::internText(operation.table->name);
    return generation::joinText(operation.className, ".", operation.table->name);
}

} // namespace

PyObject* operationCall(PyObject* self, PyObject* positions, PyObject* keywords)
{
    // Only as many as an operation has parameters are looked at one by one.
    std::array<PyPointer, OperationTable::kMostParameters> values{};
    const Py_ssize_t count = PyTuple_Size(positions);
    for (Py_ssize_t i = 0; i < std::min<Py_ssize_t>(count, values.size()); ++i)
        values[static_cast<std::size_t>(i)] = PyTuple_GetItem(positions, i);
    const Given given{values.data(), static_cast<std::size_t>(count), nullptr, keywords};
    const OperationObject& operation = operationOf(self);
    if (isComplete(operation, given))
        return run(operation, given.values);
    return bindAndRun(operation, given, [&](std::size_t named) {
        return PyTuple_GetSlice(positions, static_cast<Py_ssize_t>(named), count);
    });
}

PyObject* operationVectorCall(PyObject* self, PyObject* const* values, std::size_t count, PyObject* names)
{
    constexpr std::size_t kMark = std::size_t{1} << (8 * sizeof(std::size_t) - 1);
    const Given given{values, count & ~kMark, names, nullptr};
    const OperationObject& operation = operationOf(self);
    if (isComplete(operation, given))
        return run(operation, given.values);
    return bindAndRun(operation, given,
                      [&](std::size_t named) { return newTuple(values + named, values + given.count); });
}

PyObject* operationGet(PyObject* self, PyObject* instance, PyObject* type)
{
    return generation::bindMethod(Host(operationOf(self).bindings)[binding::kMethodType], self, instance, type);
}

PyObject* operationRepr(PyObject* self)
{
    PyObject* const name = qualifiedName(operationOf(self));
    if (name == nullptr)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    PyObject* const shown = generation::joinText("<operation ", generation::Chars(name).get(), ">");
    Py_DECREF(name);
    return shown;
}

int operationTraverse(PyObject* self, visitproc visit, void* context)
{
    // The type is left out: on 3.8 it must not be visited, and no cycle of ours runs through it.
    PyObject* const owner = operationOf(self).owner;
    return owner == nullptr ? 0 : visit(owner, context);
}

PyGetSetDef kOperationAttributes[] = {
    {const_cast<char*>("__name__"),
     [](PyObject* self, void*) { return generation::internText(operationOf(self).table->name); }, nullptr, nullptr,
     nullptr},
    {const_cast<char*>("__qualname__"), [](PyObject* self, void*) { return qualifiedName(operationOf(self)); }, nullptr,
     nullptr, nullptr},
    {const_cast<char*>("__doc__"),
     [](PyObject* self, void*) { return generation::internText(operationOf(self).table->doc); }, nullptr, nullptr,
     nullptr},
    {const_cast<char*>("__text_signature__"),
     [](PyObject* self, void*) { return generation::internText(operationOf(self).table->signature.data()); }, nullptr,
     nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

namespace detail {

PyPointer newNone()
{
    Py_INCREF(Py_None);
    return Py_None;
}

PyPointer newBool(bool value)
{
    return PyBool_FromLong(value ? 1 : 0);
}

} // namespace detail

bool Object::isOperation(const OperationTable& table) const noexcept
{
    return reinterpret_cast<PyPointer>(Py_TYPE(pointer_)) == host_[binding::kOperationType] &&
           operationOf(pointer_).table == &table;
}

Object makeOperation(Host host, const OperationTable& table, const char* className)
{
    Object object = Object::adopt(host, generation::allocateOperation(host[binding::kOperationType]));
    OperationObject& operation = operationOf(object.get());
    operation.table = &table;
    operation.className = className;
    operation.bindings = host.bindings();
    operation.owner = host[binding::kTuple];
    operation.vectorcall = &operationVectorCall;
    Py_INCREF(operation.owner);
    return object;
}

} // namespace veltro::host
