#include "shop/DailyCounters.h"

#include <algorithm>

#include "shop/Calendar.h"
#include "shop/JsonFields.h"

namespace trotlet::shop {

nlohmann::ordered_json DailyCounters::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["day"] = day;
    out["passiveFish"] = passiveFish;
    out["activeSeconds"] = activeSeconds;
    out["passiveProgress"] = passiveProgress;
    out["goldenFishCaught"] = goldenFishCaught;
    out["goldenFishSpawned"] = goldenFishSpawned;
    out["metersRun"] = metersRun;
    out["secondsAsleep"] = secondsAsleep;
    out["panelOpenSeconds"] = panelOpenSeconds;
    out["panicMoments"] = panicMoments;
    out["peakCPU"] = peakCPU;
    out["peakCPUAt"] = json::timeOrNull(peakCPUAt);
    out["peakCPUProcess"] = peakCPUProcess;
    out["hottestCPU"] = hottestCPU ? nlohmann::ordered_json(*hottestCPU) : nlohmann::ordered_json(nullptr);
    out["hottestAt"] = json::timeOrNull(hottestAt);
    out["panelOpens"] = panelOpens;
    out["fishEarned"] = fishEarned;
    return out;
}

DailyCounters DailyCounters::fromJson(const nlohmann::json& object, bool* hadPassiveProgress) {
    DailyCounters c;
    if (hadPassiveProgress) *hadPassiveProgress = json::field(object, "passiveProgress") != nullptr;
    if (!object.is_object()) return c;
    json::read(object, "day", c.day);
    if (!DayKey::isValid(c.day)) c.day.clear();
    json::read(object, "passiveFish", c.passiveFish);
    json::read(object, "activeSeconds", c.activeSeconds);
    json::read(object, "passiveProgress", c.passiveProgress);
    json::read(object, "goldenFishCaught", c.goldenFishCaught);
    json::read(object, "goldenFishSpawned", c.goldenFishSpawned);
    json::read(object, "metersRun", c.metersRun);
    json::read(object, "secondsAsleep", c.secondsAsleep);
    json::read(object, "panelOpenSeconds", c.panelOpenSeconds);
    json::read(object, "panicMoments", c.panicMoments);
    json::read(object, "peakCPU", c.peakCPU);
    json::readTime(object, "peakCPUAt", c.peakCPUAt);
    json::read(object, "peakCPUProcess", c.peakCPUProcess);
    if (const auto* hottest = json::field(object, "hottestCPU"); hottest && hottest->is_number())
        c.hottestCPU = hottest->get<double>();
    json::readTime(object, "hottestAt", c.hottestAt);
    json::read(object, "panelOpens", c.panelOpens);
    json::read(object, "fishEarned", c.fishEarned);
    return c;
}

std::vector<DailyCounters> tidyPastDays(std::vector<DailyCounters> days, std::string_view today) {
    std::erase_if(days, [&](const DailyCounters& d) {
        return !DayKey::isValid(d.day) || (!today.empty() && d.day >= today);
    });
    // Day keys sort as text; a stable sort keeps the later of two entries for a day last.
    std::stable_sort(days.begin(), days.end(),
                     [](const DailyCounters& a, const DailyCounters& b) { return a.day < b.day; });
    std::vector<DailyCounters> out;
    for (auto& d : days) {
        if (!out.empty() && out.back().day == d.day) out.back() = std::move(d);
        else out.push_back(std::move(d));
    }
    if (out.size() > pastDaysKept) out.erase(out.begin(), out.end() - std::ptrdiff_t(pastDaysKept));
    return out;
}

nlohmann::ordered_json LifetimeStats::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["metersRun"] = metersRun;
    nlohmann::ordered_json byMascot = nlohmann::ordered_json::object();
    for (const auto& [id, meters] : metersByMascot) byMascot[id] = meters;
    out["metersByMascot"] = std::move(byMascot);
    out["panelOpens"] = panelOpens;
    out["pets"] = pets;
    out["processesQuit"] = processesQuit;
    out["goldenFishCaught"] = goldenFishCaught;
    out["goldenFishMissed"] = goldenFishMissed;
    out["bytesDownloaded"] = bytesDownloaded;
    out["secondsAsleep"] = secondsAsleep;
    out["activeSeconds"] = activeSeconds;
    out["panicMoments"] = panicMoments;
    out["fullThrottleMoments"] = fullThrottleMoments;
    out["overheatedMoments"] = overheatedMoments;
    out["nightOwlSeconds"] = nightOwlSeconds;
    return out;
}

LifetimeStats LifetimeStats::fromJson(const nlohmann::json& object) {
    LifetimeStats s;
    if (!object.is_object()) return s;
    json::read(object, "metersRun", s.metersRun);
    if (const auto* byMascot = json::field(object, "metersByMascot"); byMascot && byMascot->is_object())
        for (const auto& [id, meters] : byMascot->items())
            if (meters.is_number()) s.metersByMascot[id] = meters.get<double>();
    json::read(object, "panelOpens", s.panelOpens);
    json::read(object, "pets", s.pets);
    json::read(object, "processesQuit", s.processesQuit);
    json::read(object, "goldenFishCaught", s.goldenFishCaught);
    json::read(object, "goldenFishMissed", s.goldenFishMissed);
    json::read(object, "bytesDownloaded", s.bytesDownloaded);
    json::read(object, "secondsAsleep", s.secondsAsleep);
    json::read(object, "activeSeconds", s.activeSeconds);
    json::read(object, "panicMoments", s.panicMoments);
    json::read(object, "fullThrottleMoments", s.fullThrottleMoments);
    json::read(object, "overheatedMoments", s.overheatedMoments);
    json::read(object, "nightOwlSeconds", s.nightOwlSeconds);
    return s;
}

}  // namespace trotlet::shop
