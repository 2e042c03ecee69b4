// How a call's arguments find their parameters.

#include "host/generation.h"
#include "host/operation_object.h"

namespace veltro::host {

namespace {

/// Sets a TypeError that names the operation as traces do: "Veltro.doEPGAction() ...", "Veltro.EPGTimer.setSession() ...".
bool refuse(const OperationObject& operation, const char* problem, const char* parameter = "")
{
    const char* const className = operation.className;
    PyErr_Format(PyExc_TypeError, "Veltro.%s%s%s() %s%s", className != nullptr ? className : "",
                 className != nullptr ? "." : "", operation.table->name, problem, parameter);
    return false;
}

bool bindPositions(const OperationObject& operation, PyObject* positions, PyPointer* arguments)
{
    const OperationTable& table = *operation.table;
    const auto given = static_cast<std::size_t>(PyTuple_Size(positions));
    if (given > table.positions() && table.takes != Takes::anyPositions)
        return refuse(operation, "was given too many positional arguments");
    for (std::size_t i = 0; i < std::min(given, table.positions()); ++i)
        arguments[i] = PyTuple_GetItem(positions, static_cast<Py_ssize_t>(i));
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

bool bindKeywords(const OperationObject& operation, PyObject* keywords, PyPointer* arguments)
{
    if (keywords == nullptr || PyDict_Size(keywords) == 0)
        return true;
    if (operation.table->takes != Takes::parameters)
        return refuse(operation, "takes no keyword arguments");
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    for (Py_ssize_t position = 0; PyDict_Next(keywords, &position, &key, &value) != 0;)
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
        arguments[i] = table.parameters[i].byDefault == Default::zero ? host.zero() : Py_None;
    }
    return true;
}

} // namespace

bool bindArguments(const OperationObject& operation, PyObject* positions, PyObject* keywords, PyPointer* arguments)
{
    return bindPositions(operation, positions, arguments) && bindKeywords(operation, keywords, arguments) &&
           fillDefaults(operation, arguments);
}

} // namespace veltro::host
