#include "host/object.h"

#include "host/generation.h"
#include "host/require.h"

#include <algorithm>
#include <limits>

namespace veltro::host {

// --- Object: ownership -----------------------------------------------------------------------------------------------

Object Object::adopt(Host host, PyPointer fresh, At at)
{
    return {host, require(fresh, at)};
}

Object Object::share(Host host, PyPointer borrowed) noexcept
{
    Py_INCREF(borrowed);
    return {host, borrowed};
}

PyPointer Object::another(PyPointer object) noexcept
{
    Py_XINCREF(object);
    return object;
}

void Object::drop(PyPointer object) noexcept
{
    Py_DECREF(object);
}

// --- Argument --------------------------------------------------------------------------------------------------------

Argument::Argument(Host, const Object& object) noexcept : pointer_(object.get()) {}

Argument::Argument(Host, NoValue) noexcept : pointer_(Py_None) {}

PyPointer Argument::boolean(bool value) noexcept
{
    return value ? Py_True : Py_False;
}

// --- Object: attributes, items, calls --------------------------------------------------------------------------------

PyPointer Object::fetchAttr(PyPointer object, PyPointer name, At at)
{
    return require(PyObject_GetAttr(object, name), at);
}

void Object::storeAttr(Named name, Argument value) const
{
    require(PyObject_SetAttr(pointer_, host_.constant(name.text), value.get()), name.at);
}

PyPointer Object::itemOfPlainTuple(PyPointer object, int index) noexcept
{
    return PyTuple_CheckExact(object) ? PyTuple_GetItem(object, index) : nullptr;
}

PyPointer Object::fetchItem(PyPointer object, int index, At at)
{
    if (PyTuple_CheckExact(object) || PyList_CheckExact(object)) { // without an integer object
        const PyPointer borrowed =
            require(PyList_CheckExact(object) ? PyList_GetItem(object, index) : PyTuple_GetItem(object, index), at);
        Py_INCREF(borrowed);
        return borrowed;
    }
    const PyPointer key = require(generation::newInteger(index));
    const PyPointer fresh = PyObject_GetItem(object, key);
    Py_DECREF(key);
    return require(fresh, at);
}

Object Object::fetchItem(Argument key, At at) const
{
    return adopt(host_, PyObject_GetItem(pointer_, key.get()), at);
}

void Object::storeItem(Named key, Argument value) const
{
    require(PyObject_SetItem(pointer_, host_.constant(key.text), value.get()), key.at);
}

void Object::setItem(std::size_t index, const Object& value, At at) const
{
    Py_INCREF(value.get());
    require(PyList_SetItem(pointer_, static_cast<Py_ssize_t>(index), value.get()), at);
}

PyPointer Object::callMethod(PyPointer name, PyPointer* room, std::size_t count, At at)
{
    return require(generation::callMethod(name, room, count), at);
}

PyPointer Object::callObject(PyPointer object, PyPointer* room, std::size_t count, At at)
{
    return require(generation::call(object, room, count), at);
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
    return require(PyObject_IsTrue(pointer_), at) != 0;
}

std::size_t Object::size(At at) const
{
    const Py_ssize_t size = PyObject_Size(pointer_);
    if (size < 0)
        throwError(at);
    return static_cast<std::size_t>(size);
}

bool Object::isInstanceOf(const Object& type, At at) const
{
    return require(PyObject_IsInstance(pointer_, type.get()), at) != 0;
}

bool Object::isSameText(PyPointer one, PyPointer other) noexcept
{
    return one == other && generation::isPlainText(one);
}

bool Object::isEqual(PyPointer one, PyPointer other, At at)
{
    if (generation::isPlainText(one) && generation::isPlainText(other))
        return generation::textEquals(one, other);
    const PyPointer answer = require(PyObject_RichCompare(one, other, Py_EQ), at);
    const int yes = PyObject_IsTrue(answer);
    Py_DECREF(answer);
    return require(yes, at) != 0;
}

bool Object::isPositive(At at) const
{
    return adopt(host_, PyObject_RichCompare(pointer_, host_[binding::kZero], Py_GT), at).truth(at);
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

bool Object::hasAnyBitOf(const Mask& mask, At at) const
{
    const std::optional<int> bits = mask.plain ? asIndex() : std::nullopt;
    return bits ? (*bits & *mask.plain) != 0 : bitAnd(mask.bits, at).truth(at);
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

std::optional<int> Object::asIndex() const noexcept
{
    const long index = generation::plainInteger(pointer_);
    if (index < 0 || index > std::numeric_limits<int>::max())
        return {};
    return static_cast<int>(index);
}

bool Object::isPlainText() const noexcept
{
    return generation::isPlainText(pointer_);
}

std::optional<bool> Object::startsWith(Text start) const noexcept
{
    if (!isPlainText())
        return {};
    return generation::textStartsWith(pointer_, host_.constant(start));
}

bool Object::isPlainList() const noexcept
{
    return PyList_CheckExact(pointer_);
}

bool Object::isPlainTuple() const noexcept
{
    return PyTuple_CheckExact(pointer_);
}

bool Object::hasItemsOf(const Object& list, std::size_t first, std::size_t end) const noexcept
{
    if (end > static_cast<std::size_t>(std::min(PyList_Size(pointer_), PyList_Size(list.pointer_))))
        return false;
    for (auto i = static_cast<Py_ssize_t>(first); i < static_cast<Py_ssize_t>(end); ++i)
        if (PyList_GetItem(pointer_, i) != PyList_GetItem(list.pointer_, i))
            return false;
    return true;
}

void Object::append(const Object& value, At at) const
{
    if (!isPlainList())
        return appendToOther(value, at); // which may have its own idea of it
    require(PyList_Append(pointer_, value.get()), at);
}

void Object::appendToOther(const Object& value, At at) const
{
    call({"append"_t, at}, value);
}

void Object::add(const Object& value, At at) const
{
    require(PySet_Add(pointer_, value.get()), at);
}

bool Object::contains(const Object& value, At at) const
{
    return require(PySet_Contains(pointer_, value.get()), at) != 0;
}

// --- Iteration -------------------------------------------------------------------------------------------------------

Iteration::Iteration(const Object& iterable, At at)
    : source_(iterable.isPlainList() ? iterable : Object::adopt(iterable.host(), PyObject_GetIter(iterable.get()), at)),
      at_(at)
{
}

PyPointer Iteration::Cursor::nextOfList() noexcept
{
    // What the list's own iterator does: the list may change its length meanwhile.
    if (next_ >= Py_SIZE(source_))
        return nullptr;
    const PyPointer next = PyList_GetItem(source_, next_++);
    Py_INCREF(next);
    return next;
}

PyPointer Iteration::Cursor::nextOfOther()
{
    const PyPointer next = PyIter_Next(source_);
    if (next == nullptr && PyErr_Occurred() != nullptr)
        throwError(at_);
    return next;
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

} // namespace veltro::host
