// The host's services: references, their names, and the content of bouquets.
#pragma once

#include "host/object.h"

namespace veltro::host {

/// An `eServiceReference`: a service, a bouquet, a marker.
struct ServiceReference : Object {
    explicit ServiceReference(Object object) : Object(std::move(object)) {}

    /// The host's three directory bits together: mustDescent, canDescent and isDirectory.
    static constexpr long kDirectoryBits = 7;

    [[nodiscard]] bool isDirectory(At at = At::here()) const
    {
        return flags(at).bitAnd(kDirectoryBits, at).equals(kDirectoryBits, at);
    }
    [[nodiscard]] bool hasAnyOf(const Mask& bits, At at = At::here()) const { return flags(at).hasAnyBitOf(bits, at); }
    [[nodiscard]] bool valid(At at = At::here()) const { return call({"valid"_t, at}).truth(at); }

private:
    [[nodiscard]] Object flags(At at) const { return attr({"flags"_t, at}); }
};

/// A flag bit of references, by its name in the host's class: "isMarker", "isDirectory".
[[nodiscard]] inline Object referenceFlag(Host host, Named flag)
{
    return host[{"eServiceReference"_t, flag.at}].attr(flag);
}

/// A service with its name (the host's `ServiceReference`), made from a reference or from its text.
struct NamedService : Object {
    explicit NamedService(Object object) : Object(std::move(object)) {}

    [[nodiscard]] static NamedService of(const Object& reference, At at = At::here())
    {
        return NamedService(reference.host().call({"ServiceReference"_t, at}, reference));
    }

    [[nodiscard]] Object name(At at = At::here()) const { return call({"getServiceName"_t, at}); }
    [[nodiscard]] Object reference(At at = At::here()) const { return attr({"ref"_t, at}).call({"toString"_t, at}); }
};

/// The direct content of a bouquet: an object with `getNext()`, or no value.
[[nodiscard]] inline Object contentOf(const ServiceReference& bouquet, At at = At::here())
{
    return bouquet.host()[{"eServiceCenter"_t, at}].call({"getInstance"_t, at}).call({"list"_t, at}, bouquet);
}

} // namespace veltro::host
