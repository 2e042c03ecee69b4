#include "host/files.h"

#include "host/generation.h"

namespace veltro::host {

void withFile(const Object& filename, FileMode mode, const std::function<void(const Object& file)>& use, At at)
{
    const Host host = filename.host();
    const Text word = mode == FileMode::read ? "r"_t : "w"_t;
    const Object file =
        host.open().apply(host.tuple(filename, word), Object::adopt(host, generation::openKeywords()), at);
    inAnyCase([&] { use(file); }, [&] { file.call({"close"_t, at}); });
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
