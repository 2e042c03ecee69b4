// How a call's arguments find their parameters.

#include "host/generation.h"
#include "host/operation_object.h"

#include <algorithm>

namespace veltro::host {

namespace {

/// Sets a TypeError that names the operation as traces do: "Veltro.doEPGAction() ...", "Veltro.EPGTimer.setSession()
/// ...".
bool refuse(const OperationObject& operation, const char* problem, const char* parameter = "")
{
    const char* const className = operation.className;
    PyErr_Format(PyExc_TypeError, "Veltro.%s%s%s() %s%s", className != nullptr ? className : "",
                 className != nullptr ? "." : "", operation.table->name, problem, parameter);
    return false;
}

bool bindPositions(const OperationObject& operation, const Given& given, PyPointer* arguments)
{
    const OperationTable& table = *operation.table;
    if (given.count > table.positions() && table.takes != Takes::anyPositions)
        return refuse(operation, "was given too many positional arguments");
    std::copy_n(given.values, std::min(given.count, table.positions()), arguments);
    return true;
}

bool bindKeyword(const OperationObject& operation, PyObject* key, PyObject* value, PyPointer* arguments)
{
    const OperationTable& table = *operation.table;
    for (std::size_t i = 0; i < table.count; ++i) {
        if (!generation::textEquals(key, table.parameters[i].name))
            continue;
        if (arguments[i] != nullptr)
            return refuse(operation, "got multiple values for argument ", table.parameters[i].name);
        arguments[i] = value;
        return true;
    }
    return refuse(operation, "got an unexpected keyword argument ", generation::Chars(key).get());
}

bool bindKeywords(const OperationObject& operation, const Given& given, PyPointer* arguments)
{
    const Py_ssize_t named = given.names != nullptr ? PyTuple_Size(given.names) : 0;
    const bool isDictionary = given.keywords != nullptr && PyDict_Size(given.keywords) != 0;
    if ((named != 0 || isDictionary) && operation.table->takes != Takes::parameters)
        return refuse(operation, "takes no keyword arguments");
    for (Py_ssize_t i = 0; i < named; ++i)
        if (!bindKeyword(operation, PyTuple_GetItem(given.names, i),
                         given.values[given.count + static_cast<std::size_t>(i)], arguments))
            return false;
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    for (Py_ssize_t position = 0; isDictionary && PyDict_Next(given.keywords, &position, &key, &value) != 0;)
        if (!bindKeyword(operation, key, value, arguments))
            return false;
    return true;
}

bool fillDefaults(const OperationObject& operation, PyPointer* arguments)
{
    const OperationTable& table = *operation.table;
    const Host host(operation.bindings);
    for (std::size_t i = 0; i < table.positions(); ++i) {
        if (arguments[i] != nullptr)
            continue;
        if (table.parameters[i].byDefault == Default::required)
            return refuse(operation, "is missing the argument ", table.parameters[i].name);
        arguments[i] = table.parameters[i].byDefault == Default::zero ? host[binding::kZero] : Py_None;
    }
    return true;
}

} // namespace

bool bindArguments(const OperationObject& operation, const Given& given, PyPointer* arguments)
{
    return bindPositions(operation, given, arguments) && bindKeywords(operation, given, arguments) &&
           fillDefaults(operation, arguments);
}

} // namespace veltro::host
