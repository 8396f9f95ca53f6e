#include "mascot/qt/MascotDumpEncoder.h"

#include <ctime>

#include "mascot/MascotDumpBlock.h"
#include "metrics/qt/MetricsDump.h"

namespace trotlet::mascot {

void installMascotDumpEncoder(std::function<std::string()> equippedId) {
    metrics::MetricsDump::setMascotEncoder(
        [equippedId = std::move(equippedId)](const metrics::MetricsSnapshot& snapshot,
                                             const cli::LaunchOptions& options) {
            MascotBehavior behavior;
            behavior.userIdleSeconds = options.idleSeconds;
            const std::time_t seconds = std::chrono::system_clock::to_time_t(snapshot.timestamp);
            std::tm local{};
            LocalCalendar calendar;
            if (localtime_r(&seconds, &local)) calendar = LocalCalendar::fromTm(local);
            std::string id = equippedId ? equippedId() : std::string();
            if (id.empty()) id = "cat";
            return std::optional<nlohmann::ordered_json>(
                mascotDumpBlock(snapshot, id, behavior, FrameEnvironment{}, calendar));
        });
}

}  // namespace trotlet::mascot
