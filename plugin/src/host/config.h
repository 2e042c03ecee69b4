// The host's configuration tree (Components.config): read at every use, never kept between operations.
#pragma once

#include "host/object.h"

#include <array>
#include <optional>

namespace veltro::host {

/// Where a configuration element stands: config.<section>[.<subsection>].<name>
struct ConfigKey { // NOLINT(cppcoreguidelines-pro-type-member-init): it has no constructor that could leave one out
    Text section;
    std::optional<Text> subsection;
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
        Object section = sectionOf(root_, key.section, at);
        if (key.subsection)
            section = sectionOf(section, *key.subsection, at);
        return ConfigElement(section.attr({key.name, at}));
    }

private:
    struct Section {
        PyPointer parent;
        Text name;
        Object object;
    };

    [[nodiscard]] Object sectionOf(const Object& parent, Text name, At at)
    {
        for (std::optional<Section>& section : sections_) {
            if (!section)
                section = Section{parent.get(), name, parent.attr({name, at})};
            if (section->parent == parent.get() && section->name == name)
                return section->object;
        }
        return parent.attr({name, at}); // GCOVR_EXCL_LINE: there are no more sections
    }

    Object root_;
    // Not a vector: to report its length errors it brings in functions that ask for a newer C library than boxes have.
    std::array<std::optional<Section>, 4> sections_; // usage, misc, and the two within usage
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
