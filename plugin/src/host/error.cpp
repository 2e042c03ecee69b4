#include "host/object.h"

#include "host/require.h"

namespace veltro::host {

void throwError(At at)
{
    throw Error(at);
}

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
        // GCOVR_EXCL_START: of a host written in C
        PyErr_SetString(PyExc_SystemError, "a host call failed without an exception");
        return;
        // GCOVR_EXCL_STOP
    }
    PyErr_Restore(std::exchange(type_, nullptr), std::exchange(value_, nullptr), std::exchange(traceback_, nullptr));
}

} // namespace veltro::host
