// What an operation asks of its host, by name.

#include "host/generation.h"
#include "host/require.h"

#include <algorithm>

namespace veltro::host {

namespace {

[[noreturn, gnu::cold]] void throwNotFound(Named name)
{
    if (PyErr_Occurred() != nullptr) // a key of the host's own type may refuse to be compared
        throwError(name.at);
    raise(PyExc_NameError, "name '%.200s' is not defined", name.text.chars(), name.at);
}

} // namespace

Object Host::operator[](Named name) const
{
    const PyPointer key = constant(name.text);
    PyPointer found = generation::dictGet(bindings_[binding::kGlobals], key);
    if (found == nullptr && PyErr_Occurred() == nullptr)
        found = generation::dictGet(bindings_[binding::kBuiltins], key);
    if (found == nullptr)
        throwNotFound(name);
    return Object::share(*this, found);
}

Object Host::translate(Named id) const
{
    return call(Named("_"_t, id.at), id.text);
}

Object Host::text(Text text) const
{
    return Object::share(*this, constant(text));
}

Object Host::none() const
{
    return Object::share(*this, Py_None);
}

Object Host::no() const
{
    return Object::share(*this, Py_False);
}

Object Host::integer(long value) const
{
    return Object::adopt(*this, generation::newInteger(value));
}

Object Host::set() const
{
    return Object::adopt(*this, PySet_New(nullptr));
}

Object Host::dict(std::initializer_list<std::pair<Text, Object>> items) const
{
    Object result = Object::adopt(*this, PyDict_New());
    for (const auto& [key, value] : items)
        require(PyDict_SetItem(result.get(), constant(key), value.get()));
    return result;
}

namespace detail {

Object makeList(Host host, std::span<const Argument> values)
{
    Object result = Object::adopt(host, PyList_New(0));
    for (const Argument value : values)
        require(PyList_Append(result.get(), value.get()));
    return result;
}

Object makeTuple(Host host, std::span<const Argument> values)
{
    std::array<PyPointer, 4> items{};
    std::transform(values.begin(), values.end(), items.begin(), [](Argument value) { return value.get(); });
    return Object::adopt(host,
                         PyTuple_Pack(static_cast<Py_ssize_t>(values.size()), items[0], items[1], items[2], items[3]));
}

} // namespace detail

Object Host::open() const
{
    return Object::share(*this, bindings_[binding::kOpen]);
}

Object Host::ioError() const
{
    return Object::share(*this, bindings_[binding::kIOError]);
}

} // namespace veltro::host
