// Handles to the host's Python objects, and the error that a failing call throws.
//
// Ownership
//  1. An Object owns exactly one reference and is never empty, except after it was moved from and at the end of an
//     iteration.
//  2. A raw pointer comes in by two named doors only: `adopt` takes over a new reference and turns null into the
//     pending Python exception; `share` adds a reference to a borrowed one. Object's own functions of pointers, whose
//     results are new references already, are behind these doors.
//  3. An Error owns the Python exception. It is thrown at the failing call and caught once, where the operation ends.
//  4. Views (ConfigElement, EPGCache ...) add words to an Object, never data members: state lives in the Python
//     instance, where the host, a skin and a test can see it.
#pragma once

#include "host/at.h"
#include "host/bindings.h"
#include "host/text.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <utility>

struct _object; // CPython's PyObject

namespace veltro::host {

using PyPointer = _object*;

/// CPython's protocol for calls without a tuple; `count` may have a mark in its highest bit.
using VectorCall = PyPointer (*)(PyPointer callable, const PyPointer* arguments, std::size_t count, PyPointer names);

class Object;
struct Mask;
struct OperationTable;

/// A name together with the place that asks for it. Made by conversion, so `call("save"_t)` notes its own line.
struct Named {
    Text text;
    At at;

    constexpr Named(Text name, At place = At::here()) noexcept : text(name), at(place) {}
};

/// Python's None, as an argument or as a value to set.
struct NoValue {};
inline constexpr NoValue kNoValue{};

/// One load of the module as its operations see it: the module's namespace, the built-ins, the constant texts, and what
/// start-up bound. Borrowed: every operation of that load holds the tuple behind it.
class Host {
public:
    constexpr explicit Host(const PyPointer* bindings) noexcept : bindings_(bindings) {}

    /// Looks a name up now: in the module's namespace, then among the built-ins. NameError if neither has it.
    [[nodiscard]] Object operator[](Named name) const;

    /// The translation of a message id, by the host's `_` of this moment.
    [[nodiscard]] Object translate(Named id) const;

    [[nodiscard]] Object text(Text text) const;
    [[nodiscard]] Object none() const;
    [[nodiscard]] Object no() const; // False
    [[nodiscard]] Object integer(long value) const;
    [[nodiscard]] Object set() const; // a new, empty set

    /// Looks the callable up now and calls it.
    template <class... Values>
    Object call(Named callable, const Values&... values) const;

    template <class... Values>
    [[nodiscard]] Object list(const Values&... values) const;
    template <class... Values>
    [[nodiscard]] Object tuple(const Values&... values) const;

    /// A dictionary with constant keys, in the given order.
    [[nodiscard]] Object dict(std::initializer_list<std::pair<Text, Object>> items) const;

    /// What start-up bound for good: the file-opening function and the input/output error type of the built-ins.
    [[nodiscard]] Object open() const;
    [[nodiscard]] Object ioError() const;

    // For the host layer itself; borrowed.
    [[nodiscard]] PyPointer operator[](binding::Place place) const noexcept { return bindings_[place]; }
    [[nodiscard]] PyPointer constant(Text text) const noexcept { return bindings_[binding::kFirstText + text.index()]; }
    [[nodiscard]] const PyPointer* bindings() const noexcept { return bindings_; }

private:
    const PyPointer* bindings_;
};

/// One value on its way into a host call, borrowed: an Object, a constant text, a bool or no value.
class Argument {
public:
    Argument(Host host, const Object& object) noexcept;
    Argument(Host host, Text text) noexcept : pointer_(host.constant(text)) {}
    Argument(Host host, NoValue) noexcept;
    Argument(Host, std::same_as<bool> auto value) noexcept : pointer_(boolean(value)) {}

    [[nodiscard]] PyPointer get() const noexcept { return pointer_; }

private:
    // A C++ true reaches the host as Python's True, never as 1.
    [[nodiscard]] static PyPointer boolean(bool value) noexcept;

    PyPointer pointer_;
};

/// The arguments of a call as CPython likes them: a place that the callee may use, one for `self`, the arguments.
inline constexpr std::size_t kMostArguments = 4;
template <std::size_t kCount>
requires(kCount <= kMostArguments) using CallRoom = std::array<PyPointer, kCount + 2>;

class Object {
public:
    [[nodiscard]] static Object adopt(Host host, PyPointer fresh, At at = At::here());
    [[nodiscard]] static Object share(Host host, PyPointer borrowed) noexcept;

    Object(const Object& other) noexcept : host_(other.host_), pointer_(another(other.pointer_)) {}
    Object(Object&& other) noexcept : host_(other.host_), pointer_(other.release()) {}
    Object& operator=(Object other) noexcept
    {
        std::swap(host_, other.host_);
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~Object()
    {
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): the pairs of an initializer list escape it
        if (pointer_ != nullptr)
            drop(pointer_);
    }

    [[nodiscard]] Host host() const noexcept { return host_; }
    [[nodiscard]] PyPointer get() const noexcept { return pointer_; }
    [[nodiscard]] PyPointer release() noexcept { return std::exchange(pointer_, nullptr); }

    [[nodiscard]] Object attr(Named name) const
    {
        return {host_, fetchAttr(pointer_, host_.constant(name.text), name.at)};
    }
    template <class Value>
    void setAttr(Named name, const Value& value) const
    {
        storeAttr(name, Argument(host_, value));
    }

    /// object[key], object[index] and object[key] = value.
    template <class Key>
    [[nodiscard]] Object item(const Key& key, At at = At::here()) const
    {
        return fetchItem(Argument(host_, key), at);
    }
    [[nodiscard]] Object item(int index, At at = At::here()) const
    {
        if (const PyPointer found = itemOfPlainTuple(pointer_, index))
            return share(host_, found);
        return {host_, fetchItem(pointer_, index, at)};
    }
    template <class Value>
    void setItem(Named key, const Value& value) const
    {
        storeItem(key, Argument(host_, value));
    }

    /// list[index] = value, of a list that the module made itself.
    void setItem(std::size_t index, const Object& value, At at = At::here()) const;

    /// object.method(arguments...)
    template <class... Values>
    Object call(Named method, const Values&... values) const
    {
        CallRoom<sizeof...(values)> room{nullptr, pointer_, Argument(host_, values).get()...};
        return {host_, callMethod(host_.constant(method.text), room.data(), sizeof...(values), method.at)};
    }

    /// object(arguments...)
    template <class... Values>
    Object operator()(At at, const Values&... values) const
    {
        CallRoom<sizeof...(values)> room{nullptr, nullptr, Argument(host_, values).get()...};
        return {host_, callObject(pointer_, room.data(), sizeof...(values), at)};
    }

    /// object(*arguments, **keywords)
    Object apply(const Object& arguments, const Object& keywords, At at = At::here()) const;

    [[nodiscard]] bool isNone() const noexcept;
    [[nodiscard]] bool truth(At at = At::here()) const;
    [[nodiscard]] std::size_t size(At at = At::here()) const;
    [[nodiscard]] bool isInstanceOf(const Object& type, At at = At::here()) const;

    /// object == other, by the object's own idea of equality: no shortcut for the same object.
    template <class Value>
    [[nodiscard]] bool equals(const Value& value, At at = At::here()) const
    {
        const PyPointer other = Argument(host_, value).get();
        return isSameText(pointer_, other) || isEqual(pointer_, other, at);
    }
    [[nodiscard]] bool equals(long value, At at = At::here()) const { return equals(host_.integer(value), at); }

    [[nodiscard]] bool isPositive(At at = At::here()) const;
    [[nodiscard]] Object toText(At at = At::here()) const;    // str(object)
    [[nodiscard]] Object toInteger(At at = At::here()) const; // int(object)
    [[nodiscard]] Object bitAnd(const Object& mask, At at = At::here()) const;
    [[nodiscard]] Object bitAnd(long mask, At at = At::here()) const;
    [[nodiscard]] bool hasAnyBitOf(const Mask& mask, At at = At::here()) const; // object & mask, as a condition
    [[nodiscard]] Object bitOr(const Object& other, At at = At::here()) const;
    [[nodiscard]] Object times(long factor, At at = At::here()) const;
    [[nodiscard]] Object plus(const Object& other, At at = At::here()) const;
    [[nodiscard]] Object format(const Object& value, At at = At::here()) const; // text % value

    /// The number of a plain integer that can be an index from the front; nothing for any other object.
    [[nodiscard]] std::optional<int> asIndex() const noexcept;

    /// The one native string type of the interpreter's generation, not a subclass: its equality is known to be plain.
    [[nodiscard]] bool isPlainText() const noexcept;
    // Of these types, not of subclasses.
    [[nodiscard]] bool isPlainList() const noexcept;
    [[nodiscard]] bool isPlainTuple() const noexcept;

    /// Whether the very same objects stand in both of two plain lists from `first` up to `end`; false if one is too
    /// short.
    [[nodiscard]] bool hasItemsOf(const Object& list, std::size_t first, std::size_t end) const noexcept;

    /// Whether this text starts with that one. Nothing if this is no plain text, and may have its own idea of it.
    [[nodiscard]] std::optional<bool> startsWith(Text start) const noexcept;

    /// Whether this is the module's own operation, not a replacement under its name.
    [[nodiscard]] bool isOperation(const OperationTable& table) const noexcept;

    /// object.append(value)
    void append(const Object& value, At at = At::here()) const;

    /// For sets that the module made itself.
    void add(const Object& value, At at = At::here()) const;
    [[nodiscard]] bool contains(const Object& value, At at = At::here()) const;

private:
    friend class Iteration;

    Object(Host host, PyPointer pointer) noexcept : host_(host), pointer_(pointer) {}

    void storeAttr(Named name, Argument value) const;
    void storeItem(Named key, Argument value) const;
    [[nodiscard]] Object fetchItem(Argument key, At at) const;
    [[gnu::noinline]] void appendToOther(const Object& value, At at) const;

    // Of pointers, not of this object, so that what is called most has its objects in registers. Results are new
    // references, never null.
    [[nodiscard]] static PyPointer another(PyPointer object) noexcept; // null of null
    static void drop(PyPointer object) noexcept;
    static PyPointer fetchAttr(PyPointer object, PyPointer name, At at);
    static PyPointer fetchItem(PyPointer object, int index, At at);
    static PyPointer callMethod(PyPointer name, PyPointer* room, std::size_t count, At at);
    static PyPointer callObject(PyPointer object, PyPointer* room, std::size_t count, At at);
    [[nodiscard]] static bool isEqual(PyPointer one, PyPointer other, At at);

    // The short ways. No item, borrowed, if the object is no plain tuple or has none there.
    [[nodiscard]] static PyPointer itemOfPlainTuple(PyPointer object, int index) noexcept;
    [[nodiscard]] static bool isSameText(PyPointer one, PyPointer other) noexcept; // the very same plain text

    Host host_;
    PyPointer pointer_;
};

/// What is asked of many numbers: bits, and their number if it is a plain one.
struct Mask {
    explicit Mask(Object object) noexcept : bits(std::move(object)), plain(bits.asIndex()) {}

    Object bits;
    std::optional<int> plain;
};

/// The Python exception of a failed host call, and where the call was made. Restored at the operation's end, unchanged.
class Error {
public:
    /// Takes over the interpreter's pending exception.
    explicit Error(At at) noexcept;
    Error(const Error& other) noexcept;
    Error& operator=(const Error&) = delete;
    ~Error();

    [[nodiscard]] bool isOrdinary() const noexcept; // an Exception: not KeyboardInterrupt, not SystemExit
    [[nodiscard]] bool isAttributeError() const noexcept;
    [[nodiscard]] bool matches(const Object& type) const noexcept;
    [[nodiscard]] At at() const noexcept { return at_; }

    /// False if the call failed without saying why, which `restore` then reports as a SystemError.
    [[nodiscard]] bool isSet() const noexcept { return type_ != nullptr; }
    void restore() noexcept;

private:
    At at_;
    PyPointer type_ = nullptr;
    PyPointer value_ = nullptr;
    PyPointer traceback_ = nullptr;
};

/// Does `first`, and then `last` even if `first` failed. The first error is the one that counts.
template <class First, class Last>
void inAnyCase(const First& first, const Last& last)
{
    try {
        first();
    } catch (const Error&) {
        try {
            last();
        } catch (const Error&) { // the other one is on its way
        }
        throw;
    }
    last();
}

/// for (const Object& row : each(rows)) - Python's own iteration.
class Iteration {
public:
    class Cursor {
    public:
        Cursor(const Object& source, At at)
            : current_(source.host(), nullptr), source_(source.get()), isList_(source.isPlainList()), at_(at)
        {
            advance();
        }
        const Object& operator*() const noexcept { return current_; }
        Cursor& operator++()
        {
            advance();
            return *this;
        }
        friend bool operator!=(const Cursor& cursor, std::nullptr_t) noexcept
        {
            return cursor.current_.get() != nullptr;
        }

    private:
        void advance()
        {
            const Object last(current_.host_, std::exchange(current_.pointer_, isList_ ? nextOfList() : nextOfOther()));
        }
        [[nodiscard]] PyPointer nextOfList() noexcept;
        [[nodiscard]] PyPointer nextOfOther();

        Object current_;   // empty at the end
        PyPointer source_; // the iteration's
        bool isList_;
        At at_;
        std::ptrdiff_t next_ = 0; // of a plain list
    };

    Iteration(const Object& iterable, At at);
    [[nodiscard]] Cursor begin() const { return {source_, at_}; }
    [[nodiscard]] static std::nullptr_t end() noexcept { return nullptr; }

private:
    Object source_; // a plain list, or an iterator
    At at_;
};

[[nodiscard]] inline Iteration each(const Object& iterable, At at = At::here())
{
    return {iterable, at};
}

/// Unpacks exactly two values, with Python's errors for fewer and for more.
[[nodiscard]] std::pair<Object, Object> unpackTwo(const Object& iterable, At at = At::here());

namespace detail {
[[nodiscard]] Object makeList(Host host, std::span<const Argument> values);
[[nodiscard]] Object makeTuple(Host host, std::span<const Argument> values);
} // namespace detail

template <class... Values>
Object Host::call(Named callable, const Values&... values) const
{
    return (*this)[callable](callable.at, values...);
}

template <class... Values>
Object Host::list(const Values&... values) const
{
    const std::array<Argument, sizeof...(Values)> arguments{Argument(*this, values)...};
    return detail::makeList(*this, arguments);
}

template <class... Values>
Object Host::tuple(const Values&... values) const
{
    static_assert(sizeof...(Values) <= 4, "makeTuple takes no more");
    const std::array<Argument, sizeof...(Values)> arguments{Argument(*this, values)...};
    return detail::makeTuple(*this, arguments);
}

} // namespace veltro::host
