// The "title" widget, which two screens of the module would rather do without than fail.
#pragma once

#include "host/console.h"
#include "host/screen.h"

namespace veltro {

/// Registers the screen's current title as its "title" widget. Whatever fails there, of every kind of error, costs one
/// console line, and the screen works without the widget. Only an error of the console itself is thrown.
inline void addGuardedTitle(const host::Screen& screen, host::At at = host::At::here())
{
    using namespace host::literals;
    try {
        screen.addStaticText({"title"_t, at}, screen.attr({"title"_t, at}));
    } catch (const host::Error&) {
        host::printLine(screen.host(), "self[\"title\"] was not found in skin\n"_t, at);
    }
}

} // namespace veltro
