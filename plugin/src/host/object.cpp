#include "host/object.h"

#include "host/bindings.h"
#include "host/generation.h"

namespace veltro::host {

namespace {

PyPointer orThrow(PyPointer fresh, At at)
{
    if (fresh == nullptr)
        throw Error(at);
    return fresh;
}

int orThrow(int answer, At at)
{
    if (answer < 0)
        throw Error(at);
    return answer;
}

[[noreturn]] void raise(PyPointer type, const char* format, const char* detail, At at)
{
    PyErr_Format(type, format, detail);
    throw Error(at);
}

} // namespace

// --- Object: ownership -----------------------------------------------------------------------------------------------

Object Object::adopt(Host host, PyPointer fresh, At at)
{
    return {host, orThrow(fresh, at)};
}

Object Object::share(Host host, PyPointer borrowed) noexcept
{
    Py_INCREF(borrowed);
    return {host, borrowed};
}

Object::Object(const Object& other) noexcept : host_(other.host_), pointer_(other.pointer_)
{
    Py_XINCREF(pointer_);
}

Object::Object(Object&& other) noexcept : host_(other.host_), pointer_(other.release()) {}

Object& Object::operator=(Object other) noexcept
{
    std::swap(host_, other.host_);
    std::swap(pointer_, other.pointer_);
    return *this;
}

Object::~Object()
{
    Py_XDECREF(pointer_);
}

// --- Argument --------------------------------------------------------------------------------------------------------

Argument::Argument(Host, const Object& object) noexcept : pointer_(object.get()) {}

Argument::Argument(Host host, Text text) noexcept : pointer_(host.constant(text)) {}

Argument::Argument(Host, NoValue) noexcept : pointer_(Py_None) {}

PyPointer Argument::boolean(bool value) noexcept
{
    return value ? Py_True : Py_False;
}

// --- Object: attributes, items, calls --------------------------------------------------------------------------------

Object Object::attr(Named name) const
{
    return adopt(host_, PyObject_GetAttr(pointer_, host_.constant(name.text)), name.at);
}

void Object::storeAttr(Named name, Argument value) const
{
    orThrow(PyObject_SetAttr(pointer_, host_.constant(name.text), value.get()), name.at);
}

Object Object::fetchItem(Argument key, At at) const
{
    return adopt(host_, PyObject_GetItem(pointer_, key.get()), at);
}

void Object::storeItem(Named key, Argument value) const
{
    orThrow(PyObject_SetItem(pointer_, host_.constant(key.text), value.get()), key.at);
}

Object Object::callMethod(Named method, std::span<const Argument> arguments) const
{
    // The call reads arguments up to the first null, so the unused places are null.
    std::array<PyPointer, kMostArguments> a{};
    std::ranges::transform(arguments, a.begin(), &Argument::get);
    return adopt(host_,
                 PyObject_CallMethodObjArgs(pointer_, host_.constant(method.text), a[0], a[1], a[2], a[3], nullptr),
                 method.at);
}

Object Object::callSelf(At at, std::span<const Argument> arguments) const
{
    std::array<PyPointer, kMostArguments> a{};
    std::ranges::transform(arguments, a.begin(), &Argument::get);
    return adopt(host_, PyObject_CallFunctionObjArgs(pointer_, a[0], a[1], a[2], a[3], nullptr), at);
}

Object Object::apply(const Object& arguments, const Object& keywords, At at) const
{
    return adopt(host_, PyObject_Call(pointer_, arguments.get(), keywords.get()), at);
}

// --- Object: questions and arithmetic --------------------------------------------------------------------------------

bool Object::isNone() const noexcept
{
    return pointer_ == Py_None;
}

bool Object::truth(At at) const
{
    return orThrow(PyObject_IsTrue(pointer_), at) != 0;
}

std::size_t Object::size(At at) const
{
    const Py_ssize_t size = PyObject_Size(pointer_);
    if (size < 0)
        throw Error(at);
    return static_cast<std::size_t>(size);
}

bool Object::isInstanceOf(const Object& type, At at) const
{
    return orThrow(PyObject_IsInstance(pointer_, type.get()), at) != 0;
}

bool Object::isEqual(Argument value, At at) const
{
    return adopt(host_, PyObject_RichCompare(pointer_, value.get(), Py_EQ), at).truth(at);
}

bool Object::isPositive(At at) const
{
    return adopt(host_, PyObject_RichCompare(pointer_, host_.zero(), Py_GT), at).truth(at);
}

Object Object::toText(At at) const
{
    return adopt(host_, PyObject_Str(pointer_), at);
}

Object Object::toInteger(At at) const
{
    return adopt(host_, generation::toInteger(pointer_), at);
}

Object Object::bitAnd(const Object& mask, At at) const
{
    return adopt(host_, PyNumber_And(pointer_, mask.get()), at);
}

Object Object::bitAnd(long mask, At at) const
{
    return adopt(host_, PyNumber_And(pointer_, host_.integer(mask).get()), at);
}

Object Object::bitOr(const Object& other, At at) const
{
    return adopt(host_, PyNumber_Or(pointer_, other.get()), at);
}

Object Object::times(long factor, At at) const
{
    return adopt(host_, PyNumber_Multiply(pointer_, host_.integer(factor).get()), at);
}

Object Object::plus(const Object& other, At at) const
{
    return adopt(host_, PyNumber_Add(pointer_, other.get()), at);
}

Object Object::format(const Object& value, At at) const
{
    return adopt(host_, PyNumber_Remainder(pointer_, value.get()), at);
}

bool Object::isPlainText() const noexcept
{
    return generation::isPlainText(pointer_);
}

bool Object::isPlainRow() const noexcept
{
    return PyTuple_CheckExact(pointer_) || PyList_CheckExact(pointer_);
}

void Object::append(const Object& value, At at) const
{
    orThrow(PyList_Append(pointer_, value.get()), at);
}

void Object::add(const Object& value, At at) const
{
    orThrow(PySet_Add(pointer_, value.get()), at);
}

bool Object::contains(const Object& value, At at) const
{
    return orThrow(PySet_Contains(pointer_, value.get()), at) != 0;
}

// --- Iteration -------------------------------------------------------------------------------------------------------

Iteration::Iteration(const Object& iterable, At at)
    : iterator_(Object::adopt(iterable.host(), PyObject_GetIter(iterable.get()), at)), at_(at)
{
}

Iteration::Cursor& Iteration::Cursor::operator++()
{
    const PyPointer next = PyIter_Next(iterator_->get());
    if (next != nullptr)
        current_ = Object::adopt(iterator_->host(), next, at_);
    else if (PyErr_Occurred() != nullptr)
        throw Error(at_);
    else
        current_.reset();
    return *this;
}

std::pair<Object, Object> unpackTwo(const Object& iterable, At at)
{
    const Iteration values = each(iterable, at);
    auto cursor = values.begin();
    const auto next = [&](const char* count) {
        if (!(cursor != nullptr))
            raise(PyExc_ValueError, "need more than %s to unpack", count, at);
        Object value = *cursor;
        ++cursor;
        return value;
    };
    Object first = next("0 values");
    Object second = next("1 value");
    if (cursor != nullptr)
        raise(PyExc_ValueError, "too many values to unpack%s", "", at);
    return {std::move(first), std::move(second)};
}

// --- Host ------------------------------------------------------------------------------------------------------------

Object Host::operator[](Named name) const
{
    const PyPointer key = constant(name.text);
    for (const PyPointer names : {globals(), builtins()})
        if (const PyPointer found = generation::dictGet(names, key))
            return Object::share(*this, found);
    raise(PyExc_NameError, "name '%.200s' is not defined", name.text.chars(), name.at);
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
        orThrow(PyDict_SetItem(result.get(), constant(key), value.get()), At::here());
    return result;
}

namespace detail {

Object makeList(Host host, std::span<const Argument> values)
{
    Object result = Object::adopt(host, PyList_New(0));
    for (const Argument value : values)
        orThrow(PyList_Append(result.get(), value.get()), At::here());
    return result;
}

Object makeTuple(Host host, std::span<const Argument> values)
{
    Object result = Object::adopt(host, PyTuple_New(static_cast<Py_ssize_t>(values.size())));
    for (Py_ssize_t i = 0; const Argument value : values) {
        Py_INCREF(value.get());
        orThrow(PyTuple_SetItem(result.get(), i++, value.get()), At::here());
    }
    return result;
}

} // namespace detail

PyPointer Host::globals() const noexcept
{
    return PyTuple_GetItem(bindings_, binding::kGlobals);
}

PyPointer Host::builtins() const noexcept
{
    return PyTuple_GetItem(bindings_, binding::kBuiltins);
}

PyPointer Host::methodType() const noexcept
{
    return PyTuple_GetItem(bindings_, binding::kMethodType);
}

PyPointer Host::operationType() const noexcept
{
    return PyTuple_GetItem(bindings_, binding::kOperationType);
}

PyPointer Host::zero() const noexcept
{
    return PyTuple_GetItem(bindings_, binding::kZero);
}

PyPointer Host::constant(Text text) const noexcept
{
    return PyTuple_GetItem(bindings_, binding::kFirstText + static_cast<Py_ssize_t>(text.index()));
}

Object Host::open() const
{
    return Object::share(*this, PyTuple_GetItem(bindings_, binding::kOpen));
}

Object Host::ioError() const
{
    return Object::share(*this, PyTuple_GetItem(bindings_, binding::kIOError));
}

// --- Error -----------------------------------------------------------------------------------------------------------

Error::Error(At at) noexcept : at_(at)
{
    PyErr_Fetch(&type_, &value_, &traceback_);
}

Error::Error(const Error& other) noexcept
    : at_(other.at_), type_(other.type_), value_(other.value_), traceback_(other.traceback_)
{
    Py_XINCREF(type_);
    Py_XINCREF(value_);
    Py_XINCREF(traceback_);
}

Error::~Error()
{
    Py_XDECREF(type_);
    Py_XDECREF(value_);
    Py_XDECREF(traceback_);
}

bool Error::isOrdinary() const noexcept
{
    return isSet() && PyErr_GivenExceptionMatches(type_, PyExc_Exception) != 0;
}

bool Error::isAttributeError() const noexcept
{
    return isSet() && PyErr_GivenExceptionMatches(type_, PyExc_AttributeError) != 0;
}

bool Error::matches(const Object& type) const noexcept
{
    return isSet() && PyErr_GivenExceptionMatches(type_, type.get()) != 0;
}

void Error::restore() noexcept
{
    if (!isSet()) {
        PyErr_SetString(PyExc_SystemError, "a host call failed without an exception");
        return;
    }
    PyErr_Restore(std::exchange(type_, nullptr), std::exchange(value_, nullptr), std::exchange(traceback_, nullptr));
}

} // namespace veltro::host
