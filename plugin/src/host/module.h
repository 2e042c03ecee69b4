// Classes as tables, and the module object that start-up fills.
#pragma once

#include "host/operation.h"

#include <span>

namespace veltro::host {

struct ClassTable {
    const char* name;
    const char* doc;
    std::span<const Text> bases; // looked up by name when the class is defined
    std::span<const OperationTable> operations;
};

/// The module while start-up runs. Every word throws Error when the host fails it.
class Module {
public:
    /// Binds the built-ins and the constant texts for a new module object. No host module is touched.
    explicit Module(PyPointer module);

    [[nodiscard]] Host host() const noexcept { return module_.host(); }

    void setDoc(const char* doc) const;

    /// from `name` import each of `names` (null ends them): ImportError "cannot import name ..." for one that the host
    /// lacks.
    void importNames(const char* name, std::span<const char* const> names, At at = At::here()) const;

    /// from `name` import *: `__all__` if there is one, else every name without a leading underscore.
    void importEverything(const char* name, At at = At::here()) const;

    /// import `name`
    void importModule(const char* name, At at = At::here()) const;

    void define(const OperationTable& function, At at = At::here()) const;
    void define(const ClassTable& table, At at = At::here()) const;
    void define(Named name, const Object& value) const;

private:
    [[nodiscard]] Object import(const char* name, const Object& names, At at) const;
    void take(const Object& from, const Object& name, At at) const;
    void bind(const char* name, const Object& value, At at) const;
    void bind(const Object& name, const Object& value, At at) const;

    Object bindings_; // the tuple: keeps what `host()` reads alive until the first operation does
    Object module_;
};

} // namespace veltro::host
