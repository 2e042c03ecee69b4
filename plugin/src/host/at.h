// The place in the C++ sources from which the host was called: what a traceback shows.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace veltro::host {

namespace detail {

// The sources' paths, from the root on, each with its end. The build lists those that name a place.
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
    std::array<std::uint16_t, count> starts{};
    for (std::uint16_t at = 0, index = 1; index < count; ++at)
        if (kFiles[at] == '\0')
            starts[index++] = static_cast<std::uint16_t>(at + 1);
    return starts;
}();

/// The place of a path among all. The optimiser knows the answer, which is why this is no loop and always inline;
/// without it, thirty comparisons at each place would make a debug build ten times as large.
template <std::size_t... kIndices>
#ifdef __OPTIMIZE__
[[gnu::always_inline]]
#endif
constexpr std::size_t
indexOfFile(const char* path, std::index_sequence<kIndices...>) noexcept
{
    std::size_t index = 0;
    ((__builtin_strcmp(path, kFiles + kFileStarts[kIndices]) == 0 ? void(index = kIndices) : void()), ...);
    return index;
}

} // namespace detail

/// One short number instead of a pointer and a number: a place goes with every call, and on MIPS an address costs three
/// instructions and a number of more than 16 bits two.
class At {
public:
    [[gnu::always_inline]] static constexpr At here(const char* file = __builtin_FILE(),
                                                    unsigned line = __builtin_LINE()) noexcept
    {
        return {detail::indexOfFile(file, std::make_index_sequence<detail::kFileStarts.size()>()), line};
    }

    [[nodiscard]] const char* file() const noexcept
    {
        return detail::kFiles + detail::kFileStarts[place_ >> kLineBits];
    }
    [[nodiscard]] int line() const noexcept { return static_cast<int>(place_ & kMostLines); }

private:
    static constexpr unsigned kLineBits = 10;
    static constexpr unsigned kMostLines = (1U << kLineBits) - 1;
    static_assert(detail::kFileStarts.size() <= 1U << (16 - kLineBits), "more sources than a place can name");

    constexpr At(std::size_t file, unsigned line) noexcept
        : place_(static_cast<std::uint16_t>(file << kLineBits | std::min(line, kMostLines)))
    {
    }

    std::uint16_t place_;
};

} // namespace veltro::host
