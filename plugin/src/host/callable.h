// A callable for many calls in a row.
#pragma once

#include "host/object.h"

namespace veltro::host {

/// What the interpreter would do anew at each call is done once: a bound method is taken apart, and the way into a
/// function is looked up.
class Callable {
public:
    explicit Callable(const Object& callable);

    /// callable(arguments...)
    template <class... Values>
    Object operator()(At at, const Values&... values) const
    {
        const std::array<PyPointer, sizeof...(values) + 1> room{self_, Argument(callable_.host(), values).get()...};
        return Object::adopt(callable_.host(), enter(room.data(), sizeof...(values)), at);
    }

private:
    [[nodiscard]] PyPointer enter(const PyPointer* room, std::size_t count) const
    {
        if (self_ != nullptr)
            return entry_(function_, room, count + 1, nullptr);
        return entry_(function_, room + 1, count, nullptr);
    }

    Object callable_;
    PyPointer function_; // the callable's, as is `self`; a callable that is no method is its own function
    PyPointer self_ = nullptr;
    VectorCall entry_;
};

} // namespace veltro::host
