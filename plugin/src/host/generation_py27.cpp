// Python 2.7.
#include "host/generation.h"

#include "host/held.h"
#include "host/load.h"
#include "host/operation_object.h"

#include <frameobject.h>

#include <cstring>

namespace veltro::host::generation {

namespace {

constexpr const char* kModuleName = "Veltro";
constexpr const char* kOperationTypeName = "Veltro.operation";

// 2.7 cannot build such a type at run time. The type is the interpreter's, filled once and never freed.
PyTypeObject operationTypeObject;

} // namespace

const char* const kBuiltinsModule = "__builtin__";

PyObject* internText(const char* chars)
{
    return PyString_InternFromString(chars);
}

PyObject* joinText(const char* first, const char* second, const char* third)
{
    return PyString_FromFormat("%s%s%s", first, second, third);
}

bool textEquals(PyObject* text, const char* chars)
{
    return PyString_Check(text) && std::strcmp(PyString_AsString(text), chars) == 0;
}

bool textEquals(PyObject* one, PyObject* other)
{
    return one == other || (PyString_GET_SIZE(one) == PyString_GET_SIZE(other) && textStartsWith(one, other));
}

bool textStartsWith(PyObject* text, PyObject* start)
{
    const auto size = static_cast<std::size_t>(PyString_GET_SIZE(start));
    return PyString_GET_SIZE(text) >= PyString_GET_SIZE(start) &&
           std::memcmp(PyString_AS_STRING(text), PyString_AS_STRING(start), size) == 0;
}

bool isPlainText(PyObject* object)
{
    return PyString_CheckExact(object);
}

Chars::Chars(PyObject* text) noexcept : chars_(PyString_Check(text) ? PyString_AsString(text) : "?") {}

PyObject* recursionError()
{
    return PyExc_RuntimeError;
}

PyObject* newInteger(long value)
{
    return PyInt_FromLong(value);
}

long plainInteger(PyObject* object)
{
    return PyInt_CheckExact(object) ? PyInt_AS_LONG(object) : -1;
}

PyObject* toInteger(PyObject* object)
{
    // Not PyNumber_Int: only calling the type does all that int() does, for a text with blanks as for a long number.
    return PyObject_CallFunctionObjArgs(reinterpret_cast<PyObject*>(&PyInt_Type), object, nullptr);
}

PyObject* dictGet(PyObject* dict, PyObject* key)
{
    return PyDict_GetItem(dict, key);
}

namespace {

PyObject* callWithTuple(PyObject* callable, PyObject* const* arguments, std::size_t count)
{
    const Held tuple(PyTuple_New(static_cast<Py_ssize_t>(count)));
    if (!tuple)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    for (std::size_t i = 0; i < count; ++i) {
        Py_INCREF(arguments[i]);
        PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), arguments[i]);
    }
    return PyObject_Call(callable, tuple.get(), nullptr);
}

/// Calls Python code as the interpreter's own loop does, which hands the arguments over as they stand.
PyObject* callFunction(PyObject* function, PyObject** arguments, std::size_t count)
{
    PyObject* const defaults = PyFunction_GET_DEFAULTS(function);
    const bool hasDefaults = defaults != nullptr && PyTuple_GET_SIZE(defaults) > 0;
    return PyEval_EvalCodeEx(
        reinterpret_cast<PyCodeObject*>(PyFunction_GET_CODE(function)), PyFunction_GET_GLOBALS(function), nullptr,
        arguments, static_cast<int>(count), nullptr, 0, hasDefaults ? &PyTuple_GET_ITEM(defaults, 0) : nullptr,
        hasDefaults ? static_cast<int>(PyTuple_GET_SIZE(defaults)) : 0, PyFunction_GET_CLOSURE(function));
}

/// The function behind object.name if that is an ordinary method, so that no method object must be made for one call.
PyObject* functionOf(PyObject* object, PyObject* name)
{
    PyTypeObject* const type = Py_TYPE(object);
    if (type->tp_getattro != &PyObject_GenericGetAttr)
        return nullptr;
    PyObject* const found = _PyType_Lookup(type, name); // borrowed
    if (found == nullptr || !(PyFunction_Check(found) || Py_TYPE(found) == &operationTypeObject))
        return nullptr;
    PyObject** const attributes = _PyObject_GetDictPtr(object);
    if (attributes != nullptr && *attributes != nullptr && PyDict_GetItem(*attributes, name) != nullptr)
        return nullptr; // the object has one of its own
    Py_INCREF(found);
    return found;
}

/// Without a tuple where the callee does not need one.
PyObject* callPlain(PyObject* callable, PyObject** arguments, std::size_t count)
{
    if (PyFunction_Check(callable))
        return callFunction(callable, arguments, count);
    if (Py_TYPE(callable) == &operationTypeObject)
        return operationVectorCall(callable, arguments, count, nullptr);
    return callWithTuple(callable, arguments, count);
}

} // namespace

PyObject* call(PyObject* callable, PyObject** room, std::size_t count)
{
    if (!PyMethod_Check(callable) || PyMethod_GET_SELF(callable) == nullptr)
        return callPlain(callable, room + 2, count);
    room[1] = PyMethod_GET_SELF(callable);
    return callPlain(PyMethod_GET_FUNCTION(callable), room + 1, count + 1);
}

PyObject* callMethod(PyObject* name, PyObject** room, std::size_t count)
{
    if (const Held function{functionOf(room[1], name)})
        return callPlain(function.get(), room + 1, count + 1);
    const Held found(PyObject_GetAttr(room[1], name));
    return found ? call(found.get(), room, count) : nullptr;
}

void takeApart(PyObject*& callable, PyObject*& self)
{
    self = PyMethod_GET_SELF(callable);
    if (self != nullptr) // an unbound one looks at what it is called with
        callable = PyMethod_GET_FUNCTION(callable);
}

VectorCall entryOf(PyObject*)
{
    return [](PyObject* callable, PyObject* const* arguments, std::size_t count, PyObject*) {
        return callPlain(callable, const_cast<PyObject**>(arguments), count);
    };
}

PyObject* importModule(const char* name, PyObject* globals, PyObject* names)
{
    return PyImport_ImportModuleLevel(const_cast<char*>(name), globals, globals, names, 0);
}

PyObject* methodType()
{
    auto* const type = reinterpret_cast<PyObject*>(&PyMethod_Type);
    Py_INCREF(type);
    return type;
}

PyObject* bindMethod(PyObject*, PyObject* operation, PyObject* instance, PyObject* type)
{
    return PyMethod_New(operation, instance == Py_None ? nullptr : instance, type);
}

namespace {

/// The first base decides; without a base it is a classic class, as the language has it.
PyObject* metaclassOf(PyObject* bases)
{
    auto* metaclass = reinterpret_cast<PyObject*>(&PyClass_Type);
    if (PyTuple_Size(bases) > 0) {
        PyObject* const base = PyTuple_GetItem(bases, 0);
        if (PyObject* const own = PyObject_GetAttrString(base, "__class__"))
            return own;
        PyErr_Clear();
        metaclass = reinterpret_cast<PyObject*>(Py_TYPE(base));
    }
    Py_INCREF(metaclass);
    return metaclass;
}

void freeOperation(PyObject* self)
{
    PyObject_GC_UnTrack(self);
    Py_XDECREF(operationOf(self).owner);
    PyObject_GC_Del(self);
}

} // namespace

PyObject* createClass(const char* name, PyObject* bases, FillNamespace fill, const void* context)
{
    const Held metaclass(metaclassOf(bases));
    const Held classNamespace(PyDict_New());
    if (!metaclass || !classNamespace || !fill(context, classNamespace.get()))
        return nullptr;
    return PyObject_CallFunction(metaclass.get(), const_cast<char*>("sOO"), name, bases, classNamespace.get());
}

PyObject* operationType(PyObject* moduleName)
{
    PyTypeObject& type = operationTypeObject;
    if ((type.tp_flags & Py_TPFLAGS_READY) == 0) {
        Py_REFCNT(&type) = 1;
        type.tp_name = kOperationTypeName;
        type.tp_basicsize = sizeof(OperationObject);
        type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC; // NOLINT(misc-redundant-expression)
        type.tp_dealloc = &freeOperation;
        type.tp_traverse = &operationTraverse;
        type.tp_call = &operationCall;
        type.tp_descr_get = &operationGet;
        type.tp_repr = &operationRepr;
        type.tp_getset = kOperationAttributes;
        if (PyType_Ready(&type) < 0)
            return nullptr; // GCOVR_EXCL_LINE: out of memory
    }
    // Instances find __module__ on their type, so that help() counts the operations among the module's own.
    if (PyDict_SetItemString(type.tp_dict, "__module__", moduleName) < 0)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    Py_INCREF(&type);
    return reinterpret_cast<PyObject*>(&type);
}

PyObject* allocateOperation(PyObject* type)
{
    return PyType_GenericAlloc(reinterpret_cast<PyTypeObject*>(type), 0);
}

PyObject* makeFrame(const char* name, At at)
{
    const Held code(reinterpret_cast<PyObject*>(PyCode_NewEmpty(at.file(), name, at.line())));
    const Held globals(Py_BuildValue("{s:s,s:O}", "__name__", kModuleName, "__builtins__", PyEval_GetBuiltins()));
    if (!code || !globals)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    PyFrameObject* const frame =
        PyFrame_New(PyThreadState_GET(), reinterpret_cast<PyCodeObject*>(code.get()), globals.get(), nullptr);
    if (frame != nullptr)
        frame->f_lineno = at.line();
    return reinterpret_cast<PyObject*>(frame);
}

PyObject* openKeywords()
{
    return PyDict_New(); // text is bytes here; `open` leaves them alone
}

} // namespace veltro::host::generation

// --- What the interpreter calls --------------------------------------------------------------------------------------

/// Start-up of the module: the module object enters sys.modules, or the Python exception is set.
extern "C" __attribute__((visibility("default"))) void initVeltro()
{
    PyObject* const module = Py_InitModule(veltro::host::generation::kModuleName, nullptr); // borrowed
    if (module == nullptr || veltro::host::load(module))
        return;
    // The interpreter has listed the module already; a module that did not start must not be found by a later import.
    PyObject* type = nullptr;
    PyObject* value = nullptr;
    PyObject* traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    if (PyDict_DelItemString(PyImport_GetModuleDict(), PyModule_GetName(module)) < 0)
        PyErr_Clear();
    PyErr_Restore(type, value, traceback);
}
