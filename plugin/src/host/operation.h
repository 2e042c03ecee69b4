// Operations as a table: name, parameters, doc text, and the C++ function behind it.
//
// In Python an operation is a small callable object of our own. It stands in a class like a function does, and binding
// it to an instance gives a real method object of the interpreter: hosts look at the type of what stands in a screen's
// callback lists and hand anything that is not a plain method to `exec`.
#pragma once

#include "host/object.h"

#include <array>
#include <cstddef>
#include <initializer_list>
#include <type_traits>
#include <utility>

namespace veltro::host {

enum class Default { required, zero, noValue };

struct Parameter {
    const char* name = nullptr;
    Default byDefault = Default::required;
};

enum class Takes {
    parameters,     // by position and by keyword
    positionsAlone, // by position alone
    anyPositions,   // *args, handed over as one tuple
};

/// Calls the C++ function with borrowed arguments, `self` first; returns a new reference.
using Thunk = PyPointer (*)(Host host, const PyPointer* arguments);

struct OperationTable {
    static constexpr std::size_t kMostParameters = 4;

    const char* name = nullptr;
    const char* doc = nullptr;
    Thunk thunk = nullptr;
    Takes takes = Takes::parameters;
    std::array<Parameter, kMostParameters> parameters{}; // `self` included; of *args the name alone
    std::size_t count = 0;
    std::array<char, 64> signature{}; // "(self, session, plugin_path, args=0)", for inspect.signature

    /// How many parameters stand before *args.
    [[nodiscard]] constexpr std::size_t positions() const noexcept
    {
        return takes == Takes::anyPositions ? count - 1 : count;
    }
};

namespace detail {

[[nodiscard]] PyPointer newNone();
[[nodiscard]] PyPointer newBool(bool value);

template <auto kFunction>
struct Behind;

/// An operation of a class: a member function of a view on the instance.
template <class View, class Result, class... Arguments, Result (View::*kFunction)(Arguments...) const>
struct Behind<kFunction> {
    static constexpr std::size_t kCount = sizeof...(Arguments) + 1;

    static PyPointer call(Host host, const PyPointer* arguments)
    {
        return call(host, arguments, std::index_sequence_for<Arguments...>());
    }

private:
    template <std::size_t... kIndex>
    static PyPointer call(Host host, const PyPointer* arguments, std::index_sequence<kIndex...>)
    {
        const View self(Object::share(host, arguments[0]));
        if constexpr (std::is_void_v<Result>) {
            (self.*kFunction)(Object::share(host, arguments[kIndex + 1])...);
            return newNone();
        } else {
            return newBool((self.*kFunction)(Object::share(host, arguments[kIndex + 1])...));
        }
    }
};

/// A function of the module.
template <class Result, class... Arguments, Result (*kFunction)(Host, Arguments...)>
struct Behind<kFunction> {
    static constexpr std::size_t kCount = sizeof...(Arguments);

    static PyPointer call(Host host, const PyPointer* arguments)
    {
        return call(host, arguments, std::index_sequence_for<Arguments...>());
    }

private:
    template <std::size_t... kIndex>
    static PyPointer call(Host host, const PyPointer* arguments, std::index_sequence<kIndex...>)
    {
        if constexpr (std::is_void_v<Result>) {
            kFunction(host, Object::share(host, arguments[kIndex])...);
            return newNone();
        } else {
            return newBool(kFunction(host, Object::share(host, arguments[kIndex])...));
        }
    }
};

/// Writes a signature at compile time; a text that does not fit does not compile.
class SignatureWriter {
public:
    consteval explicit SignatureWriter(std::array<char, 64>& target) : target_(target) {}

    consteval void write(const char* text)
    {
        while (*text != '\0')
            target_.at(length_++) = *text++;
    }

private:
    std::array<char, 64>& target_;
    std::size_t length_ = 0;
};

consteval void writeSignature(OperationTable& table)
{
    constexpr std::array kDefaults{"", "=0", "=None"};
    SignatureWriter out(table.signature);
    out.write("(");
    for (std::size_t i = 0; i < table.count; ++i) {
        out.write(i == 0 ? "" : ", ");
        out.write(i == table.positions() ? "*" : "");
        out.write(table.parameters[i].name);
        out.write(kDefaults[static_cast<std::size_t>(table.parameters[i].byDefault)]);
    }
    out.write(table.takes == Takes::positionsAlone ? ", /)" : ")");
}

template <auto kFunction>
consteval OperationTable operation(const char* name, const char* doc, std::initializer_list<Parameter> self,
                                   std::initializer_list<Parameter> parameters, Takes takes)
{
    OperationTable table;
    table.name = name;
    table.doc = doc;
    table.thunk = &Behind<kFunction>::call;
    table.takes = takes;
    for (const auto& list : {self, parameters})
        for (const Parameter& parameter : list)
            table.parameters[table.count++] = parameter;
    if (table.count != Behind<kFunction>::kCount)
        throw "one parameter for each argument of the C++ function";
    writeSignature(table);
    return table;
}

} // namespace detail

/// A function of the module, with its parameters.
template <auto kFunction>
consteval OperationTable function(const char* name, const char* doc, std::initializer_list<Parameter> parameters,
                                  Takes takes = Takes::parameters)
{
    return detail::operation<kFunction>(name, doc, {}, parameters, takes);
}

/// An operation of a class, with its parameters after `self`.
template <auto kFunction>
consteval OperationTable method(const char* name, const char* doc, std::initializer_list<Parameter> parameters = {},
                                Takes takes = Takes::parameters)
{
    return detail::operation<kFunction>(name, doc, {{"self"}}, parameters, takes);
}

/// Makes the Python object of an operation; `className` is null for a function of the module.
[[nodiscard]] Object makeOperation(Host host, const OperationTable& table, const char* className);

} // namespace veltro::host
