#pragma once

#include <string>
#include <string_view>

namespace trotlet::shop {

// How user-facing texts name the machine ("your computer's clock"). One place, so a port to
// another desktop changes one word.
inline constexpr std::string_view platformNoun = "computer";

inline std::string withPlatformNoun(std::string_view before, std::string_view after) {
    std::string text(before);
    text += platformNoun;
    text += after;
    return text;
}

}  // namespace trotlet::shop
