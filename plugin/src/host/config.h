// The host's configuration tree (Components.config): read at every use, never kept between operations.
#pragma once

#include "host/object.h"

#include <array>
#include <cstdint>
#include <optional>

namespace veltro::host {

/// The sections of the tree that the module knows: two of the root, and two within `usage`.
enum class Section : std::uint8_t { usage, misc, usageEpg, usageAutolanguage };

/// Where a configuration element stands: its section, and its name there.
struct ConfigKey { // NOLINT(cppcoreguidelines-pro-type-member-init): it has no constructor that could leave one out
    Section section;
    Text name;
};

/// One element of the tree, owned by the host.
struct ConfigElement : Object {
    explicit ConfigElement(Object object) : Object(std::move(object)) {}

    [[nodiscard]] Object value(At at = At::here()) const { return attr({"value"_t, at}); }
    template <class Value>
    void setValue(const Value& value, At at = At::here()) const
    {
        setAttr({"value"_t, at}, value);
    }
    void save(At at = At::here()) const { call({"save"_t, at}); }     // keep the value
    void cancel(At at = At::here()) const { call({"cancel"_t, at}); } // back to the last saved value
};

/// The tree as one operation sees it: each section is fetched once, when the first of its keys is asked for. Elements
/// and values are not kept.
class ConfigTree {
public:
    explicit ConfigTree(Host host, At at = At::here()) : root_(host[{"config"_t, at}]) {}

    [[nodiscard]] ConfigElement element(const ConfigKey& key, At at = At::here())
    {
        return ConfigElement(section(key.section, at).attr({key.name, at}));
    }

private:
    struct Place { // NOLINT(cppcoreguidelines-pro-type-member-init): as ConfigKey
        Text name;
        std::optional<Section> parent; // none: the root
    };
    // By the values of Section.
    static constexpr std::array<Place, 4> kPlaces{
        {{"usage"_t, {}}, {"misc"_t, {}}, {"epg"_t, Section::usage}, {"autolanguage"_t, Section::usage}}};

    [[nodiscard]] const Object& section(Section which, At at)
    {
        const std::optional<Object>& known = sections_[static_cast<std::size_t>(which)];
        return known ? *known : fetchSection(which, at);
    }

    [[nodiscard, gnu::noinline]] const Object& fetchSection(Section which, At at)
    {
        const Place& place = kPlaces[static_cast<std::size_t>(which)];
        const Object& parent = place.parent ? section(*place.parent, at) : root_;
        return sections_[static_cast<std::size_t>(which)].emplace(parent.attr({place.name, at}));
    }

    Object root_;
    std::array<std::optional<Object>, kPlaces.size()> sections_;
};

/// One element of the tree, looked up now.
[[nodiscard]] inline ConfigElement config(Host host, const ConfigKey& key, At at = At::here())
{
    return ConfigTree(host, at).element(key, at);
}

/// A new element without a value (`ConfigNothing()`).
[[nodiscard]] inline Object newConfigNothing(Host host, At at = At::here())
{
    return host.call({"ConfigNothing"_t, at});
}

/// A new element without a value that the host never stores.
[[nodiscard]] inline Object newPlaceholder(Host host, At at = At::here())
{
    return host.call({"NoSave"_t, at}, newConfigNothing(host, at));
}

} // namespace veltro::host
