// The host's main-loop timer (enigma.eTimer).
#pragma once

#include "host/object.h"

namespace veltro::host {

struct Timer : Object {
    explicit Timer(Object object) : Object(std::move(object)) {}

    /// A new, stopped timer. Dropping its last reference stops it for good.
    [[nodiscard]] static Timer create(Host host, At at = At::here()) { return Timer(host.call({"eTimer"_t, at})); }

    /// Adds a function that is called, without arguments, each time the timer fires.
    void onTimeout(const Object& function, At at = At::here()) const
    {
        attr({"callback"_t, at}).call({"append"_t, at}, function);
    }

    void startSingleShot(const Object& milliseconds, At at = At::here()) const
    {
        call({"start"_t, at}, milliseconds, true);
    }
};

} // namespace veltro::host
