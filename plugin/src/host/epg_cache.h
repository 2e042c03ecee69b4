// The platform's EPG cache (enigma.eEPGCache). Every call blocks until the platform is done.
#pragma once

#include "host/object.h"

namespace veltro::host {

struct EPGCache : Object {
    /// The one cache of the process, asked for at every use and never kept.
    [[nodiscard]] static EPGCache getInstance(Host host, At at = At::here())
    {
        return EPGCache(host[{"eEPGCache"_t, at}].call({"getInstance"_t, at}));
    }

    void load(At at = At::here()) const { call({"load"_t, at}); }       // from the cache's current file
    void save(At at = At::here()) const { call({"save"_t, at}); }       // to the cache's current file
    void clearDB(At at = At::here()) const { call({"clearDB"_t, at}); } // drops every event in memory
    void setCacheFile(const Object& path, At at = At::here()) const { call({"setCacheFile"_t, at}, path); }

private:
    explicit EPGCache(Object object) : Object(std::move(object)) {}
};

} // namespace veltro::host
