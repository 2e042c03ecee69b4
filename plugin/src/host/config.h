// The host's configuration tree (Components.config): read at every use, never kept between operations.
#pragma once

#include "host/object.h"

#include <optional>

namespace veltro::host {

/// Where a configuration element stands: config.<section>[.<subsection>].<name>
struct ConfigKey {
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

/// The tree as one operation sees it. Neighbouring keys fetch their common section once.
class ConfigTree {
public:
    explicit ConfigTree(Host host, At at = At::here()) : root_(host[{"config"_t, at}]), section_(root_) {}

    [[nodiscard]] ConfigElement element(const ConfigKey& key, At at = At::here())
    {
        if (!current_ || current_->section != key.section || current_->subsection != key.subsection) {
            section_ = root_.attr({key.section, at});
            if (key.subsection)
                section_ = section_.attr({*key.subsection, at});
            current_ = key;
        }
        return ConfigElement(section_.attr({key.name, at}));
    }

private:
    Object root_;
    Object section_;
    std::optional<ConfigKey> current_;
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
