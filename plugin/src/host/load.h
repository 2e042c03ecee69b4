// Between the interpreter's entry points and the module's own start-up.
#pragma once

struct _object;

namespace veltro::host {

/// Runs start-up on a new module object. False with the Python exception set if start-up failed; the traceback then
/// names the place "init Veltro".
[[nodiscard]] bool load(_object* module) noexcept;

} // namespace veltro::host
