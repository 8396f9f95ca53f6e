#include "mascot/MoodLine.h"

#include <array>
#include <cmath>
#include <cstdlib>

#include "mascot/LoadMapping.h"
#include "mascot/ProcessDisplayName.h"
#include "menubar/Format.h"
#include "settings/Platform.h"

namespace trotlet::mascot::MoodLine {
namespace {

using menubar::Format;
using Variants = std::array<std::string, 3>;

// Seconds from the Unix epoch to 1 January 2001 00:00 UTC, where the slots are counted from.
constexpr double referenceEpoch = 978307200;

// The word for this machine is shared with every other user-facing text.
const std::string machine(settings::machineNoun);

std::string capitalised(std::string_view word) {
    std::string s(word);
    if (!s.empty() && s[0] >= 'a' && s[0] <= 'z') s[0] = static_cast<char>(s[0] - 'a' + 'A');
    return s;
}

Variants variantsFor(const MascotState& state, const metrics::MetricsSnapshot& snapshot,
                     const std::string& name, const std::string& reading,
                     const std::optional<std::string>& culprit,
                     const std::optional<std::string>& temp, const std::string& pct) {
    const std::string gait = capitalised(GaitNames[static_cast<size_t>(state.gait)]);
    switch (state.mood) {
        case MascotMood::panic:
            if (culprit)
                return {name + " is PANICKING! " + *culprit + " is maxing your CPU.",
                        "Full sprint! " + *culprit + " is eating every core.",
                        name + " can't keep up. Blame " + *culprit + "."};
            return {name + " is PANICKING! " + reading + " and climbing.",
                    "Full sprint! " + reading + ".", name + " can't keep up. " + reading + "."};
        case MascotMood::overheated:
            if (!temp)
                return {"Phew, your " + machine + " is running hot.",
                        name + " is melting. Things are heating up.",
                        "Hot paws! Maybe close something?"};
            if (culprit)
                return {"Phew, " + *temp + "! " + *culprit + " leads the pack.",
                        name + " is melting. " + *temp + " and climbing.",
                        "Hot paws! " + *culprit + " is working hard."};
            return {"Phew, it's " + *temp + " in here.",
                    name + " is melting. " + *temp + " and climbing.",
                    "Hot paws! Maybe close something?"};
        case MascotMood::lowBattery: {
            const auto& b = snapshot.battery;
            if (!b.present || !b.timeRemainingMin || *b.timeRemainingMin < 1)
                return {"Running on fumes, " + pct + "% left.",
                        name + " needs a snack. " + pct + "% battery.",
                        "Low battery, " + pct + "%. Find a charger?"};
            const std::string d = Format::duration(static_cast<double>(*b.timeRemainingMin) * 60);
            return {"Running on fumes, " + pct + "% left (" + d + ").",
                    name + " needs a snack. " + pct + "% battery.",
                    "Low battery, about " + d + " left. Find a charger?"};
        }
        case MascotMood::offline:
            return {"No internet. " + name + " brought an umbrella.",
                    "Offline. " + name + " is waiting out the storm.",
                    "The internet went for a walk."};
        case MascotMood::sleeping:
            if (state.load < 0.1)
                return {"Shh, " + name + " is napping. Your " + machine + " is chill.",
                        "Zzz. Nothing to chase right now.", name + " is dreaming of fish."};
            return {"Shh, " + name + " is napping while you're away.",
                    "Zzz. " + name + " dozes, " + reading + ".", name + " is dreaming of fish."};
        case MascotMood::sitting:
            return {name + " is taking a breather.", "All quiet. " + name + " sits and watches.",
                    reading + ". Time for a little sit."};
        case MascotMood::celebrating:
            return {name + " is celebrating!", "Yay! " + name + " does a happy hop.",
                    "Woohoo! Nice one."};
        case MascotMood::running:
            break;
    }
    const std::string base = gait + ", " + reading;
    if (state.gait >= Gait::sprinting) {
        if (culprit)
            return {base + ". " + *culprit + " is busy.", base,
                    name + " is flying. " + *culprit + " leads the pack."};
        return {base, base + ". Hang on!", name + " is flying. " + reading + "."};
    }
    if (state.userAway) return {base + ". " + name + " holds the fort.", base, base};
    return {base, base + ". All good.", base};
}

}  // namespace

long long slot(metrics::Timestamp t) {
    const double seconds = metrics::unixSeconds(t) - referenceEpoch;
    return static_cast<long long>(std::trunc(seconds * 0.125));
}

std::string reading(const metrics::MetricsSnapshot& s, LoadSource source) {
    switch (source) {
        case LoadSource::gpu:
            return s.gpu ? "GPU " + Format::percent(s.gpu->utilization) : "GPU idle";
        case LoadSource::memory:
            // An unsampled memory group has no total: say the word and no number.
            if (s.memory.total == 0) return "Memory";
            return "Memory " + Format::percent(static_cast<double>(s.memory.used) /
                                               static_cast<double>(s.memory.total));
        case LoadSource::network:
            return "Down " + Format::rateParts(s.network.downBps, false).joined();
        case LoadSource::cpu:
        case LoadSource::busiest:
            break;
    }
    return "CPU " + Format::percent(s.cpu.total);
}

std::string text(const MascotState& state, const metrics::MetricsSnapshot& snapshot,
                 const std::string& name, std::optional<metrics::Timestamp> date, LoadSource source,
                 menubar::TemperatureUnit unit) {
    const metrics::Timestamp t = date.value_or(snapshot.timestamp);
    const LoadSource winner = LoadMapping::winningSource(snapshot, source);
    const std::string read = reading(snapshot, winner);

    // Only a CPU race has a process to blame.
    std::optional<std::string> culprit;
    if (winner == LoadSource::cpu && !snapshot.processes.topCPU.empty())
        culprit = ProcessDisplayName::of(snapshot.processes.topCPU.front()).text();

    std::optional<std::string> temp;
    if (auto hottest = snapshot.thermal.hottestC()) {
        auto parts = Format::temperatureParts(*hottest, unit);
        temp = parts.value + parts.unit;
    }
    const std::string pct = Format::fixed(
        0, snapshot.battery.present ? static_cast<double>(snapshot.battery.percent) : 0.0);

    const long long signedSlot = slot(t);
    const long long k = std::llabs(signedSlot);
    if (state.accessories.contains(MascotAccessories::charging) &&
        state.mood == MascotMood::running && state.gait < Gait::sprinting && signedSlot >= 0 &&
        signedSlot % 4 == 3)
        return "Charging, " + pct + "%. " + name + " is powered up.";

    const Variants variants = variantsFor(state, snapshot, name, read, culprit, temp, pct);
    return variants[static_cast<size_t>(k % 3)];
}

}  // namespace trotlet::mascot::MoodLine
