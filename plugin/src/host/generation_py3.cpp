// Python 3, from 3.8 on, by the stable ABI.
#include "host/generation.h"

#include "host/held.h"
#include "host/load.h"
#include "host/operation_object.h"

#include <structmember.h>

#include <array>
#include <cstddef>

using veltro::host::VectorCall;

// Not in the stable ABI of 3.8. Where one is missing, the binary still loads, and the name is null.
extern "C" {
// From 3.11 on; from 3.9 on; the same by its name on 3.8. The last two take keywords as a dictionary.
__attribute__((weak)) PyObject* PyObject_Vectorcall(PyObject* callable, PyObject* const* arguments, std::size_t count,
                                                    PyObject* names);
__attribute__((weak)) PyObject* PyObject_VectorcallDict(PyObject* callable, PyObject* const* arguments,
                                                        std::size_t count, PyObject* keywords);
__attribute__((weak)) PyObject* _PyObject_FastCallDict(PyObject* callable, PyObject* const* arguments,
                                                       std::size_t count, PyObject* keywords);
// From 3.9 on; what 3.8 has for it.
__attribute__((weak)) PyObject* PyObject_VectorcallMethod(PyObject* name, PyObject* const* arguments, std::size_t count,
                                                          PyObject* names);
__attribute__((weak)) int _PyObject_GetMethod(PyObject* object, PyObject* name, PyObject** method);
// A function's way in, from 3.12 on.
__attribute__((weak)) VectorCall PyVectorcall_Function(PyObject* callable);
// All have them.
__attribute__((weak)) PyObject* PyMethod_New(PyObject* function, PyObject* self);
__attribute__((weak)) PyObject* PyMethod_Function(PyObject* method);
__attribute__((weak)) PyObject* PyMethod_Self(PyObject* method);
extern __attribute__((weak)) PyTypeObject PyFunction_Type;
}

namespace veltro::host::generation {

namespace {

constexpr const char* kModuleName = "Veltro";
constexpr const char* kOperationTypeName = "Veltro.operation";

// In the count of a vector call: the callee may use the place in front of the arguments.
constexpr std::size_t kRoomInFront = std::size_t{1} << (8 * sizeof(std::size_t) - 1);

// Of a type that can be called so (Py_TPFLAGS_HAVE_VECTORCALL).
constexpr unsigned long kHasVectorCall = 1UL << 11;

} // namespace

const char* const kBuiltinsModule = "builtins";

PyObject* internText(const char* chars)
{
    return PyUnicode_InternFromString(chars);
}

PyObject* joinText(const char* first, const char* second, const char* third)
{
    return PyUnicode_FromFormat("%s%s%s", first, second, third);
}

bool textEquals(PyObject* text, const char* chars)
{
    return PyUnicode_Check(text) && PyUnicode_CompareWithASCIIString(text, chars) == 0;
}

bool textEquals(PyObject* one, PyObject* other)
{
    const Held answer(one == other ? nullptr : PyUnicode_RichCompare(one, other, Py_EQ));
    return one == other || answer.get() == Py_True;
}

bool textStartsWith(PyObject* text, PyObject* start)
{
    // NOLINTNEXTLINE(readability-suspicious-call-argument): its words for the two are "str" and "substr"
    return PyUnicode_Tailmatch(text, start, 0, PyUnicode_GetLength(text), -1) == 1;
}

bool isPlainText(PyObject* object)
{
    return PyUnicode_CheckExact(object);
}

Chars::Chars(PyObject* text) noexcept
    : bytes_(PyUnicode_Check(text) ? PyUnicode_AsUTF8String(text) : nullptr),
      chars_(bytes_ != nullptr ? PyBytes_AsString(bytes_) : "?")
{
    PyErr_Clear();
}

PyObject* recursionError()
{
    return PyExc_RecursionError;
}

PyObject* newInteger(long value)
{
    return PyLong_FromLong(value);
}

long plainInteger(PyObject* object)
{
    const long value = PyLong_CheckExact(object) ? PyLong_AsLong(object) : -1;
    if (value == -1)
        PyErr_Clear();
    return value;
}

PyObject* toInteger(PyObject* object)
{
    return PyNumber_Long(object);
}

PyObject* dictGet(PyObject* dict, PyObject* key)
{
    return PyDict_GetItemWithError(dict, key);
}

namespace {

PyObject* vectorCall(PyObject* callable, PyObject* const* arguments, std::size_t count)
{
    if (PyObject_Vectorcall != nullptr)
        return PyObject_Vectorcall(callable, arguments, count | kRoomInFront, nullptr);
    if (PyObject_VectorcallDict != nullptr)
        return PyObject_VectorcallDict(callable, arguments, count | kRoomInFront, nullptr);
    return _PyObject_FastCallDict(callable, arguments, count | kRoomInFront, nullptr);
}

/// Apart, so that later interpreters, which do all of it themselves, don't pay for its stack frame.
[[gnu::noinline]] PyObject* callMethodOf38(PyObject* name, PyObject** room, std::size_t count)
{
    PyObject* found = nullptr;
    const bool takesSelf = _PyObject_GetMethod(room[1], name, &found) != 0;
    const Held held(found);
    if (!held)
        return nullptr;
    return takesSelf ? vectorCall(found, room + 1, count + 1) : vectorCall(found, room + 2, count);
}

} // namespace

PyObject* call(PyObject* callable, PyObject** room, std::size_t count)
{
    return vectorCall(callable, room + 2, count);
}

PyObject* callMethod(PyObject* name, PyObject** room, std::size_t count)
{
    if (PyObject_VectorcallMethod != nullptr)
        return PyObject_VectorcallMethod(name, room + 1, (count + 1) | kRoomInFront, nullptr);
    return callMethodOf38(name, room, count);
}

void takeApart(PyObject*& callable, PyObject*& self)
{
    if (PyMethod_Function == nullptr || PyMethod_Self == nullptr)
        return;
    self = PyMethod_Self(callable);
    callable = PyMethod_Function(callable);
}

VectorCall entryOf(PyObject* callable)
{
    // What is written in C may hand out a result and an exception at once, which only the general way notices.
    if (Py_TYPE(callable) == &PyFunction_Type && PyVectorcall_Function != nullptr)
        return PyVectorcall_Function(callable);
    if (PyObject_Vectorcall != nullptr)
        return PyObject_Vectorcall;
    return PyObject_VectorcallDict != nullptr ? PyObject_VectorcallDict : _PyObject_FastCallDict;
}

PyObject* importModule(const char* name, PyObject* globals, PyObject* names)
{
    return PyImport_ImportModuleLevel(name, globals, globals, names, 0);
}

PyObject* methodType()
{
    const Held types(PyImport_ImportModule("types"));
    return types ? PyObject_GetAttrString(types.get(), "MethodType") : nullptr;
}

PyObject* bindMethod(PyObject* methodType, PyObject* operation, PyObject* instance, PyObject*)
{
    if (instance == nullptr || instance == Py_None) {
        Py_INCREF(operation);
        return operation;
    }
    if (PyMethod_New != nullptr)
        return PyMethod_New(operation, instance);
    return PyObject_CallFunctionObjArgs(methodType, operation, instance, nullptr);
}

PyObject* createClass(const char* name, PyObject* bases, FillNamespace fill, const void* context)
{
    const Held types(PyImport_ImportModule("types"));
    if (!types)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    // (metaclass, namespace, keywords), with the most derived metaclass of the bases and its __prepare__.
    const Held prepared(PyObject_CallMethod(types.get(), "prepare_class", "sO", name, bases));
    if (!prepared)
        return nullptr;
    PyObject* const classNamespace = PyTuple_GetItem(prepared.get(), 1);
    if (classNamespace == nullptr || !fill(context, classNamespace))
        return nullptr;
    return PyObject_CallFunction(PyTuple_GetItem(prepared.get(), 0), "sOO", name, bases, classNamespace);
}

namespace {

PyObject* refuseNew(PyTypeObject*, PyObject*, PyObject*)
{
    PyErr_Format(PyExc_TypeError, "cannot create '%s' instances", kOperationTypeName);
    return nullptr;
}

void freeOperation(PyObject* self)
{
    auto* const type = reinterpret_cast<PyObject*>(Py_TYPE(self));
    PyObject_GC_UnTrack(self);
    Py_XDECREF(operationOf(self).owner);
    PyObject_GC_Del(self);
    Py_DECREF(type);
}

template <class Function>
constexpr void* slot(Function* function)
{
    return reinterpret_cast<void*>(function);
}

} // namespace

PyObject* operationType(PyObject* moduleName)
{
    std::array members{
        PyMemberDef{"__vectorcalloffset__", T_PYSSIZET, offsetof(OperationObject, vectorcall), READONLY, nullptr},
        PyMemberDef{nullptr, 0, 0, 0, nullptr},
    };
    const bool canVectorCall = PyObject_VectorcallMethod != nullptr;
    std::array slots{
        PyType_Slot{Py_tp_new, slot(&refuseNew)},
        PyType_Slot{Py_tp_dealloc, slot(&freeOperation)},
        PyType_Slot{Py_tp_traverse, slot(&operationTraverse)},
        PyType_Slot{Py_tp_call, slot(&operationCall)},
        PyType_Slot{Py_tp_descr_get, slot(&operationGet)},
        PyType_Slot{Py_tp_repr, slot(&operationRepr)},
        PyType_Slot{Py_tp_getset, kOperationAttributes},
        PyType_Slot{canVectorCall ? Py_tp_members : 0, canVectorCall ? members.data() : nullptr},
        PyType_Slot{0, nullptr},
    };
    // A method descriptor: `screen.up()` may call the operation with the screen in front and make no method object.
    PyType_Spec spec{kOperationTypeName, sizeof(OperationObject), 0,
                     static_cast<unsigned int>(Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_METHOD_DESCRIPTOR |
                                               (canVectorCall ? kHasVectorCall : 0)),
                     slots.data()};
    PyObject* const type = PyType_FromSpec(&spec);
    // Instances find __module__ on their type, so that help() counts the operations among the module's own.
    if (type == nullptr || PyObject_SetAttrString(type, "__module__", moduleName) == 0)
        return type;
    // GCOVR_EXCL_START: out of memory
    Py_DECREF(type);
    return nullptr;
    // GCOVR_EXCL_STOP
}

PyObject* allocateOperation(PyObject* type)
{
    return PyType_GenericAlloc(reinterpret_cast<PyTypeObject*>(type), 0);
}

PyObject* makeFrame(const char* name, At at)
{
    // The stable ABI has no way to build a frame, but every interpreter can run code that hands out its own. The code
    // takes the operation's name and the C++ line before it runs, so its frame shows both.
    const Held code(Py_CompileString("frame()", at.file(), Py_eval_input));
    if (!code)
        return nullptr;
    const Held replace(PyObject_GetAttrString(code.get(), "replace"));
    const Held nothing(PyTuple_New(0));
    const Held changes(Py_BuildValue("{s:s,s:i}", "co_name", name, "co_firstlineno", at.line()));
    if (!replace || !nothing || !changes)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    const Held named(PyObject_Call(replace.get(), nothing.get(), changes.get()));
    PyObject* const getFrame = PySys_GetObject("_getframe"); // borrowed
    if (!named || getFrame == nullptr)
        return nullptr;
    const Held globals(Py_BuildValue("{s:s,s:O,s:O}", "__name__", kModuleName, "__builtins__", PyEval_GetBuiltins(),
                                     "frame", getFrame));
    return globals ? PyEval_EvalCode(named.get(), globals.get(), globals.get()) : nullptr;
}

PyObject* openKeywords()
{
    // The locale's encoding would refuse or change bytes, and newline translation would too.
    return Py_BuildValue("{s:s,s:s,s:s}", "encoding", "utf-8", "errors", "surrogateescape", "newline", "\n");
}

} // namespace veltro::host::generation

// --- What the interpreter calls --------------------------------------------------------------------------------------

namespace {

// m_size 0: no state in the definition, so that every import after a failed or forgotten one is a start-up of its own.
PyModuleDef moduleDefinition{PyModuleDef_HEAD_INIT,
                             veltro::host::generation::kModuleName,
                             nullptr,
                             0,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr};

} // namespace

/// Start-up of the module: returns the module object, or null with the Python exception set.
extern "C" __attribute__((visibility("default"))) PyObject* initVeltro()
{
    PyObject* const module = PyModule_Create(&moduleDefinition);
    if (module == nullptr || veltro::host::load(module))
        return module;
    Py_DECREF(module);
    return nullptr;
}

extern "C" __attribute__((visibility("default"))) PyObject* PyInit_Veltro()
{
    return initVeltro();
}
