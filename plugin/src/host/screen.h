// Host screens: what every screen of the module does with its base class, its widgets and its session.
#pragma once

#include "host/object.h"

#include <span>

namespace veltro::host {

struct Screen : Object {
    explicit Screen(Object object) : Object(std::move(object)) {}

    /// Base.__init__(self, arguments...), the base class looked up by name now.
    template <class... Values>
    void initBase(Named base, const Values&... arguments) const
    {
        host()[base].call({"__init__"_t, base.at}, *this, arguments...);
    }

    [[nodiscard]] Object widget(Named name) const { return item(name.text, name.at); }

    /// self["name"] = StaticText(text), and the same with the translation of a message id.
    void addStaticText(Named name, const Object& text) const
    {
        setItem(name, host().call({"StaticText"_t, name.at}, text));
    }
    void addKeyLabel(Named name, Text id) const { addStaticText(name, host().translate({id, name.at})); }

    void addEmptyLabel(Named name) const { setItem(name, host().call({"Label"_t, name.at})); }

    /// The screen's own operation, bound: an override by a subclass is what is bound and called.
    [[nodiscard]] Object own(Named operation) const { return attr(operation); }

    /// session.openWithCallback(callback, screen, arguments...)
    template <class... Values>
    void openWithCallback(Named callback, Text screen, const Values&... arguments) const
    {
        attr({"session"_t, callback.at})
            .call({"openWithCallback"_t, callback.at}, own(callback), host()[{screen, callback.at}], arguments...);
    }

    /// Closes the screen with a result, or without one. The host clears the instance: nothing is read from it
    /// afterwards.
    void close(At at = At::here()) const { call({"close"_t, at}); }
    template <class Value>
    void close(const Value& result, At at = At::here()) const
    {
        call({"close"_t, at}, result);
    }
};

/// One line of a key map: the action that the host raises, and the screen's operation for it.
struct Binding {
    Text action;
    Text operation;
};

/// {action: bound operation, ...} for an ActionMap.
[[nodiscard]] inline Object keyMap(const Screen& screen, std::span<const Binding> bindings, At at = At::here())
{
    Object actions = screen.host().dict({});
    for (const Binding& binding : bindings)
        actions.setItem({binding.action, at}, screen.own({binding.operation, at}));
    return actions;
}

} // namespace veltro::host
