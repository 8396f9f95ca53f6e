#pragma once

#include <string>
#include <string_view>

#include "settings/Platform.h"

namespace trotlet::shop {

// "Your computer's clock": shop texts name the machine with the app's one word for it.
inline std::string withPlatformNoun(std::string_view before, std::string_view after) {
    std::string text(before);
    text += settings::machineNoun;
    text += after;
    return text;
}

}  // namespace trotlet::shop
