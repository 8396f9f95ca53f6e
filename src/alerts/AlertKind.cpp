#include "alerts/AlertKind.h"

#include "settings/RawEnum.h"

namespace trotlet::alerts {

using namespace std::chrono_literals;

std::string_view rawName(AlertKind kind) { return settings::rawName(kind, AlertKindNames); }

std::optional<AlertKind> alertKindNamed(std::string_view raw) {
    return settings::fromRawName<AlertKind>(raw, AlertKindNames);
}

bool isFun(AlertKind kind) {
    return kind == AlertKind::achievement || kind == AlertKind::purchase ||
           kind == AlertKind::checkInReminder;
}

AlertBudget budgetOf(AlertKind kind) { return isFun(kind) ? AlertBudget::fun : AlertBudget::alert; }

std::chrono::seconds cooldownOf(AlertKind kind) {
    switch (kind) {
        case AlertKind::highTemperature:
            return 30min;
        case AlertKind::batteryLow:
            return 20min;
        case AlertKind::batteryFull:
            return 20min;
        case AlertKind::memoryCritical:
            return 30min;
        case AlertKind::diskAlmostFull:
            return 24h;
        case AlertKind::highCPU:
            return 30min;
        case AlertKind::achievement:
        case AlertKind::purchase:
        case AlertKind::checkInReminder:
            return 0s;
    }
    return 0s;
}

std::size_t budgetLimit(AlertBudget budget) { return budget == AlertBudget::alert ? 4 : 6; }

std::string_view rawName(AlertBudget budget) {
    return budget == AlertBudget::alert ? "alert" : "fun";
}

std::string notificationIdentifier(AlertKind kind) {
    return "trotlet." + std::string(rawName(kind));
}

}  // namespace trotlet::alerts
