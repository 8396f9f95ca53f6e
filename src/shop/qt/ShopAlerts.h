#pragma once

#include <optional>

#include "alerts/AppEvent.h"
#include "shop/EconomyEngine.h"

namespace trotlet::shop {

// The economy moments worth a desktop notification, as the alert rules' events: an unlocked
// achievement (title, what it took, its reward) and an adopted mascot (its display name).
// Other moments (the welcome gift, a streak saved or broken, the legend earned) belong to the
// panel and give nothing here.
std::optional<alerts::AppEvent> alertEventFor(const EconomyMoment& moment);

}  // namespace trotlet::shop
