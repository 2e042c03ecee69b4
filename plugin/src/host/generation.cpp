#include "host/generation.h"

#include "host/load.h"
#include "host/operation_object.h"

#if PY_MAJOR_VERSION < 3
#include <frameobject.h>
#endif

#include <array>
#include <cstring>

namespace veltro::host::generation {

namespace {

constexpr const char* kModuleName = "Veltro";
constexpr const char* kOperationTypeName = "Veltro.operation";

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

} // namespace

#if PY_MAJOR_VERSION >= 3

// ===== Python 3, by the stable ABI ===================================================================================

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

PyObject* toInteger(PyObject* object)
{
    return PyNumber_Long(object);
}

PyObject* dictGet(PyObject* dict, PyObject* key)
{
    return PyDict_GetItemWithError(dict, key);
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
    Py_XDECREF(operationOf(self).bindings);
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
    std::array slots{
        PyType_Slot{Py_tp_new, slot(&refuseNew)},
        PyType_Slot{Py_tp_dealloc, slot(&freeOperation)},
        PyType_Slot{Py_tp_traverse, slot(&operationTraverse)},
        PyType_Slot{Py_tp_call, slot(&operationCall)},
        PyType_Slot{Py_tp_descr_get, slot(&operationGet)},
        PyType_Slot{Py_tp_repr, slot(&operationRepr)},
        PyType_Slot{Py_tp_getset, kOperationAttributes},
        PyType_Slot{0, nullptr},
    };
    // A method descriptor: `screen.up()` may call the operation with the screen in front and make no method object.
    PyType_Spec spec{kOperationTypeName, sizeof(OperationObject), 0,
                     Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_METHOD_DESCRIPTOR, slots.data()};
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
    const Held code(Py_CompileString("frame()", at.file, Py_eval_input));
    if (!code)
        return nullptr;
    const Held replace(PyObject_GetAttrString(code.get(), "replace"));
    const Held nothing(PyTuple_New(0));
    const Held changes(Py_BuildValue("{s:s,s:i}", "co_name", name, "co_firstlineno", at.line));
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

#else

// ===== Python 2.7 ====================================================================================================

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

PyObject* toInteger(PyObject* object)
{
    // Not PyNumber_Int: only calling the type does all that int() does, for a text with blanks as for a long number.
    return PyObject_CallFunctionObjArgs(reinterpret_cast<PyObject*>(&PyInt_Type), object, nullptr);
}

PyObject* dictGet(PyObject* dict, PyObject* key)
{
    return PyDict_GetItem(dict, key);
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
    Py_XDECREF(operationOf(self).bindings);
    PyObject_GC_Del(self);
}

// 2.7 cannot build such a type at run time. The type is the interpreter's, filled once and never freed.
PyTypeObject operationTypeObject;

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
    const Held code(reinterpret_cast<PyObject*>(PyCode_NewEmpty(at.file, name, at.line)));
    const Held globals(Py_BuildValue("{s:s,s:O}", "__name__", kModuleName, "__builtins__", PyEval_GetBuiltins()));
    if (!code || !globals)
        return nullptr; // GCOVR_EXCL_LINE: out of memory
    PyFrameObject* const frame =
        PyFrame_New(PyThreadState_GET(), reinterpret_cast<PyCodeObject*>(code.get()), globals.get(), nullptr);
    if (frame != nullptr)
        frame->f_lineno = at.line;
    return reinterpret_cast<PyObject*>(frame);
}

PyObject* openKeywords()
{
    return PyDict_New(); // text is bytes here; `open` leaves them alone
}

#endif

} // namespace veltro::host::generation

// ===== What the interpreter calls ====================================================================================

#if PY_MAJOR_VERSION >= 3

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

#else

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

#endif
