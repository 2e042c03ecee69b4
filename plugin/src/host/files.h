// Text files, by the host's own file functions. Every byte of a line survives reading and writing.
#pragma once

#include "host/object.h"

namespace veltro::host {

enum class FileMode { read, write };

[[nodiscard]] Object openFile(const Object& filename, FileMode mode, At at = At::here());

/// Opens the file, hands it to `use`, and closes it, also when `use` fails: the first error then is the one that
/// counts.
template <class Use>
void withFile(const Object& filename, FileMode mode, const Use& use, At at = At::here())
{
    const Object file = openFile(filename, mode, at);
    inAnyCase([&] { use(file); }, [&] { file.call({"close"_t, at}); });
}

[[nodiscard]] bool fileExists(const Object& filename, At at = At::here());
void unlinkFile(const Object& filename, At at = At::here());

} // namespace veltro::host
