// The place in the C++ sources from which the host was called: what a traceback shows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace veltro::host {

namespace detail {

// The sources' paths, from the root on, each with its end. The build lists them.
inline constexpr char kFiles[] =
#include "files.inc"
    ;

/// Where each path starts.
inline constexpr auto kFileStarts = [] {
    constexpr auto count = [] {
        std::size_t ends = 0;
        for (std::size_t at = 0; at + 1 < sizeof kFiles; ++at)
            ends += kFiles[at] == '\0' ? 1 : 0;
        return ends;
    }();
    std::array<std::size_t, count> starts{};
    for (std::size_t at = 0, index = 1; index < count; ++at)
        if (kFiles[at] == '\0')
            starts[index++] = at + 1;
    return starts;
}();

/// Where a path starts among all. The optimiser knows the answer, which is why this is no loop and always inline;
/// without it, thirty comparisons at each place would make a debug build ten times as large.
template <std::size_t... kIndices>
#ifdef __OPTIMIZE__
[[gnu::always_inline]]
#endif
constexpr std::size_t
startOf(const char* path, std::index_sequence<kIndices...>) noexcept
{
    std::size_t start = 0;
    ((__builtin_strcmp(path, kFiles + kFileStarts[kIndices]) == 0 ? void(start = kFileStarts[kIndices]) : void()), ...);
    return start;
}

} // namespace detail

/// One number instead of a pointer and one: a place goes with every call, and an address costs three instructions.
class At {
public:
    [[gnu::always_inline]] static constexpr At here(const char* file = __builtin_FILE(),
                                                    std::uint32_t line = __builtin_LINE()) noexcept
    {
        return At(detail::startOf(file, std::make_index_sequence<detail::kFileStarts.size()>()), line);
    }

    [[nodiscard]] const char* file() const noexcept { return detail::kFiles + (place_ >> kLineBits); }
    [[nodiscard]] int line() const noexcept { return static_cast<int>(place_ & ((1U << kLineBits) - 1)); }

private:
    static constexpr unsigned kLineBits = 16;

    constexpr At(std::size_t file, std::uint32_t line) noexcept
        : place_(static_cast<std::uint32_t>(file << kLineBits) | line)
    {
    }

    std::uint32_t place_;
};

} // namespace veltro::host
