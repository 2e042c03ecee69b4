// Text files, by the host's own file functions. Every byte of a line survives reading and writing.
#pragma once

#include "host/object.h"

#include <functional>

namespace veltro::host {

enum class FileMode { read, write };

/// Opens the file, hands it to `use`, and closes it, also when `use` fails: the first error then is the one that
/// counts.
void withFile(const Object& filename, FileMode mode, const std::function<void(const Object& file)>& use,
              At at = At::here());

[[nodiscard]] bool fileExists(const Object& filename, At at = At::here());
void unlinkFile(const Object& filename, At at = At::here());

} // namespace veltro::host
