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
    require(PyObject_SetAttr(pointer_, host_.constant(name.text), value.get()), name.at);
}

Object Object::item(int index, At at) const
{
    // The short way, without an integer object.
    if (isPlainTuple())
        return share(host_, require(PyTuple_GetItem(pointer_, index), at));
    return itemOfOther(index, at);
}

Object Object::itemOfOther(int index, At at) const
{
    if (isPlainList())
        return share(host_, require(PyList_GetItem(pointer_, index), at));
    return fetchItem(Argument(host_, host_.integer(index)), at);
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

Object Object::callMethod(Named method, PyPointer* room, std::size_t count) const
{
    return adopt(host_, generation::callMethod(host_.constant(method.text), room, count), method.at);
}

Object Object::callSelf(At at, PyPointer* room, std::size_t count) const
{
    return adopt(host_, generation::call(pointer_, room, count), at);
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

bool Object::isEqual(Argument value, At at) const
{
    if (pointer_ == value.get() && isPlainText())
        return true; // two names of the same constant text, mostly
    return isEqualToOther(value, at);
}

bool Object::isEqualToOther(Argument value, At at) const
{
    if (isPlainText() && generation::isPlainText(value.get()))
        return generation::textEquals(pointer_, value.get());
    return adopt(host_, PyObject_RichCompare(pointer_, value.get(), Py_EQ), at).truth(at);
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

void Iteration::Cursor::advance()
{
    PyPointer next = nullptr;
    if (isList_) {
        // What the list's own iterator does: the list may change its length meanwhile.
        if (next_ < PyList_Size(source_))
            next = PyList_GetItem(source_, next_++);
        Py_XINCREF(next);
    } else {
        next = PyIter_Next(source_);
        if (next == nullptr && PyErr_Occurred() != nullptr)
            throwError(at_);
    }
    const PyPointer last = std::exchange(current_.pointer_, next);
    Py_XDECREF(last);
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
