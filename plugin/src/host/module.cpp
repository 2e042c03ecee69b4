#include "host/module.h"

#include "host/generation.h"
#include "host/require.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace veltro::host {

namespace {

constexpr Host kNoHostYet(nullptr);

Object borrowOrThrow(PyPointer borrowed)
{
    Py_XINCREF(borrowed);
    return Object::adopt(kNoHostYet, borrowed);
}

void freeArray(PyObject* capsule)
{
    PyMem_Free(PyCapsule_GetPointer(capsule, nullptr));
}

/// The tuple behind every Host of this load, with the array that Host reads.
Object makeBindings(PyPointer module)
{
    const std::string_view texts = Text::all();
    const auto size = binding::kFirstText + static_cast<std::size_t>(std::count(texts.begin(), texts.end(), '\0'));
    Object bindings = Object::adopt(kNoHostYet, PyTuple_New(static_cast<Py_ssize_t>(size)));
    // The interpreter's memory: the C++ library's operator for arrays would bring more code than this file has.
    auto* const array =
        static_cast<PyPointer*>(PyMem_Malloc(size * sizeof(PyPointer))); // NOLINT(bugprone-sizeof-expression): pointers
    if (array == nullptr) {
        PyErr_NoMemory();        // GCOVR_EXCL_LINE
        throw Error(At::here()); // GCOVR_EXCL_LINE
    }
    const auto keep = [&](std::size_t place, Object value) {
        require(PyTuple_SetItem(bindings.get(), static_cast<Py_ssize_t>(place), value.release()));
    };
    keep(binding::kTuple, Object::adopt(kNoHostYet, PyCapsule_New(array, nullptr, &freeArray)));
    array[binding::kTuple] = bindings.get();
    const auto bind = [&](std::size_t place, Object value) {
        array[place] = value.get();
        keep(place, std::move(value));
    };
    const auto own = [](PyPointer fresh) { return Object::adopt(kNoHostYet, fresh); };

    const Object builtins = own(PyImport_ImportModule(generation::kBuiltinsModule));
    bind(binding::kGlobals, borrowOrThrow(PyModule_GetDict(module)));
    bind(binding::kBuiltins, borrowOrThrow(PyModule_GetDict(builtins.get())));
    bind(binding::kOpen, own(PyObject_GetAttrString(builtins.get(), "open")));
    bind(binding::kIOError, own(PyObject_GetAttrString(builtins.get(), "IOError")));
    bind(binding::kMethodType, own(generation::methodType()));
    bind(binding::kOperationType,
         own(generation::operationType(own(PyObject_GetAttrString(module, "__name__")).get())));
    bind(binding::kZero, own(generation::newInteger(0)));
    std::size_t place = binding::kFirstText;
    for (const char* text = texts.begin(); text != texts.end(); text += std::strlen(text) + 1)
        bind(place++, own(generation::internText(text)));
    return bindings;
}

Host hostOf(const Object& bindings)
{
    PyObject* const capsule = PyTuple_GetItem(bindings.get(), binding::kTuple);
    return Host(static_cast<PyPointer*>(PyCapsule_GetPointer(capsule, nullptr)));
}

/// In a class body the language writes a private name `__x` as `_Class__x`.
Object mangledName(Host host, const char* className, std::string_view name)
{
    // Not starts_with and ends_with, which bring the library's reports of bad ranges along.
    const bool isPrivate = name.find("__") == 0 && name.rfind("__") != name.size() - 2;
    return Object::adopt(host, isPrivate ? generation::joinText("_", className, name.data())
                                         : generation::internText(name.data()));
}

/// Nothing if there is no such attribute. Any other failure of the look-up is a failure, as in the language.
std::optional<Object> attributeIfAny(const Object& object, Named name)
{
    try {
        return object.attr(name);
    } catch (const Error& error) {
        if (!error.isAttributeError())
            throw;
        return {};
    }
}

struct ClassBody {
    Host host = kNoHostYet;
    const ClassTable& table;
};

void fill(const ClassBody& body, PyPointer classNamespace)
{
    const Host host = body.host;
    const auto put = [&](const Object& key, const Object& value) {
        require(PyObject_SetItem(classNamespace, key.get(), value.get()));
    };
    put(host.text("__module__"_t), host["__name__"_t]);
    put(host.text("__doc__"_t), Object::adopt(host, generation::internText(body.table.doc)));
    for (const OperationTable& operation : body.table.operations)
        put(mangledName(host, body.table.name, operation.name), makeOperation(host, operation, body.table.name));
}

bool fillNamespace(const void* context, PyObject* classNamespace) noexcept
{
    try {
        fill(*static_cast<const ClassBody*>(context), classNamespace);
        return true;
    } catch (Error& error) {
        error.restore();
        return false;
    }
}

} // namespace

Module::Module(PyPointer module) : bindings_(makeBindings(module)), module_(Object::share(hostOf(bindings_), module)) {}

void Module::bind(const Object& name, const Object& value, At at) const
{
    require(PyObject_SetItem(host()[binding::kGlobals], name.get(), value.get()), at);
}

void Module::bind(const char* name, const Object& value, At at) const
{
    bind(Object::adopt(host(), generation::internText(name)), value, at);
}

void Module::setDoc(const char* doc) const
{
    bind("__doc__", Object::adopt(host(), generation::internText(doc)), At::here());
}

Object Module::import(const char* name, const Object& names, At at) const
{
    return Object::adopt(host(), generation::importModule(name, host()[binding::kGlobals], names.get()), at);
}

void Module::take(const Object& from, const Object& name, At at) const
{
    bind(name, Object::adopt(host(), PyObject_GetAttr(from.get(), name.get()), at), at);
}

void Module::importNames(const char* name, std::span<const char* const> names, At at) const
{
    const Object wanted = host().list();
    for (const char* const text : names)
        if (text != nullptr)
            wanted.append(Object::adopt(host(), generation::internText(text)));
    const Object from = import(name, wanted, at);
    for (const Object& text : each(wanted)) {
        try {
            take(from, text, at);
        } catch (const Error& error) {
            if (!error.isAttributeError())
                throw;
            raise(PyExc_ImportError, "cannot import name %.230s", generation::Chars(text.get()).get(), at);
        }
    }
}

void Module::importEverything(const char* name, At at) const
{
    const Object from = import(name, host().list("*"_t), at);
    const std::optional<Object> all = attributeIfAny(from, {"__all__"_t, at});
    // A copy: taking a name may run code of the host.
    const Object names = Object::adopt(host(), PySequence_List((all ? *all : from.attr({"__dict__"_t, at})).get()), at);
    for (const Object& text : each(names, at))
        if (all || generation::Chars(text.get()).get()[0] != '_')
            take(from, text, at);
}

void Module::importModule(const char* name, At at) const
{
    bind(name, import(name, host().list(), at), at);
}

void Module::define(const OperationTable& function, At at) const
{
    bind(function.name, makeOperation(host(), function, nullptr), at);
}

void Module::define(const ClassTable& table, At at) const
{
    const Object bases = host().list();
    for (const Text base : table.bases)
        bases.append(host()[{base, at}]);
    const Object baseTuple = Object::adopt(host(), PySequence_Tuple(bases.get()));
    const ClassBody body{host(), table};
    bind(table.name,
         Object::adopt(host(), generation::createClass(table.name, baseTuple.get(), &fillNamespace, &body), at), at);
}

void Module::define(Named name, const Object& value) const
{
    bind(host().text(name.text), value, name.at);
}

} // namespace veltro::host
