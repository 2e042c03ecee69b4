#include "host/files.h"

#include "host/generation.h"

namespace veltro::host {

Object openFile(const Object& filename, FileMode mode, At at)
{
    const Host host = filename.host();
    const Text word = mode == FileMode::read ? "r"_t : "w"_t;
    return host.open().apply(host.tuple(filename, word), Object::adopt(host, generation::openKeywords()), at);
}

bool fileExists(const Object& filename, At at)
{
    return filename.host()[{"path"_t, at}].call({"exists"_t, at}, filename).truth(at);
}

void unlinkFile(const Object& filename, At at)
{
    filename.host().call({"unlink"_t, at}, filename);
}

} // namespace veltro::host
