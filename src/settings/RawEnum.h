#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace trotlet::settings {

// Enumerations that are persisted or named on the command line by their raw strings.
// Each enum declares `inline constexpr std::array<std::string_view, N> <Enum>Names` in case
// order; these helpers map both ways and join the names for messages and help text.
template <typename E, size_t N>
constexpr std::string_view rawName(E value, const std::array<std::string_view, N>& names) {
    return names[static_cast<size_t>(value)];
}

template <typename E, size_t N>
constexpr std::optional<E> fromRawName(std::string_view raw,
                                       const std::array<std::string_view, N>& names) {
    for (size_t i = 0; i < N; ++i)
        if (names[i] == raw) return static_cast<E>(i);
    return std::nullopt;
}

template <size_t N>
std::string joinedNames(const std::array<std::string_view, N>& names,
                        std::string_view separator = ", ") {
    std::string out;
    for (size_t i = 0; i < N; ++i) {
        if (i) out += separator;
        out += names[i];
    }
    return out;
}

}  // namespace trotlet::settings
