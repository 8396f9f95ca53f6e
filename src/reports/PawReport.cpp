#include "reports/PawReport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "menubar/Format.h"
#include "panel/HeaderContent.h"

namespace trotlet::reports {
namespace {

using menubar::Format;
using shop::DailyCounters;

std::string number(std::int64_t n) { return panel::groupedNumber(n); }

std::string lowerFirst(std::string s) {
    if (!s.empty() && s[0] >= 'A' && s[0] <= 'Z') s[0] = char(s[0] - 'A' + 'a');
    return s;
}

std::string temperature(double celsius, menubar::TemperatureUnit unit) {
    const auto parts = Format::temperatureParts(celsius, unit);
    return parts.value + parts.unit;
}

struct MeasureInfo {
    const char* label;
    const char* symbol;
};

constexpr MeasureInfo measureInfo[pawMeasureCount] = {
    {"Active time", "clock"},     {"Fish earned", "fish.fill"}, {"Distance", "pawprint.fill"},
    {"Time asleep", "moon.fill"}, {"Panel opens", "eye"},       {"Golden Fish", "fish.fill"},
    {"Peak CPU", "cpu"},          {"Hottest", "temperature"},   {"High-load moments", "bolt.fill"},
};

// A measure's number for one day's counters; none when the day has no such reading.
std::optional<double> measureOf(PawMeasure m, const DailyCounters& d,
                                std::optional<std::int64_t> fish) {
    switch (m) {
        case PawMeasure::activeTime:
            return d.activeSeconds;
        case PawMeasure::fishEarned:
            return double(fish.value_or(d.fishEarned));
        case PawMeasure::distance:
            return d.metersRun;
        case PawMeasure::asleep:
            return d.secondsAsleep;
        case PawMeasure::panelOpens:
            return double(d.panelOpens);
        case PawMeasure::goldenFish:
            return double(d.goldenFishCaught);
        case PawMeasure::peakCPU:
            return d.peakCPUAt ? std::optional(d.peakCPU) : std::nullopt;
        case PawMeasure::hottest:
            return d.hottestCPU;
        case PawMeasure::highLoad:
            return double(d.panicMoments);
    }
    return std::nullopt;
}

PawRow rowFor(PawMeasure m, const PawReportInputs& in, const shop::Calendar& calendar) {
    const DailyCounters& d = in.today;
    PawRow row;
    row.measure = m;
    row.label = measureInfo[std::size_t(m)].label;
    row.symbol = measureInfo[std::size_t(m)].symbol;
    switch (m) {
        case PawMeasure::activeTime:
            row.value = Format::duration(d.activeSeconds);
            break;
        case PawMeasure::fishEarned:
            row.value = number(in.fishEarnedToday);
            break;
        case PawMeasure::distance:
            row.value = distanceText(d.metersRun);
            break;
        case PawMeasure::asleep:
            row.value = Format::duration(d.secondsAsleep);
            break;
        case PawMeasure::panelOpens:
            row.value = number(d.panelOpens);
            break;
        case PawMeasure::goldenFish:
            row.value = number(d.goldenFishCaught);
            if (d.goldenFishSpawned > 0) row.detail = "of " + number(d.goldenFishSpawned) + " seen";
            break;
        case PawMeasure::peakCPU:
            if (!d.peakCPUAt) {
                row.value = "No reading yet";
                break;
            }
            row.value = Format::percent(d.peakCPU);
            row.detail = (d.peakCPUProcess.empty() ? "at " : d.peakCPUProcess + " at ") +
                         clockTime(*d.peakCPUAt, calendar);
            break;
        case PawMeasure::hottest:
            if (!d.hottestCPU) {
                row.value = "No reading yet";
                break;
            }
            row.value = temperature(*d.hottestCPU, in.temperatureUnit);
            if (d.hottestAt) row.detail = "at " + clockTime(*d.hottestAt, calendar);
            break;
        case PawMeasure::highLoad:
            row.value = number(d.panicMoments);
            break;
    }
    return row;
}

}  // namespace

std::string weekdayName(const std::string& day) {
    static constexpr const char* names[] = {"Thu", "Fri", "Sat", "Sun", "Mon", "Tue", "Wed"};
    const auto start = shop::DayKey::startOf(day, shop::FixedOffsetCalendar(0));
    if (!start) return {};
    const long long days = static_cast<long long>(std::floor(*start / 86400));
    return names[((days % 7) + 7) % 7];  // 1970-01-01 was a Thursday
}

std::string clockTime(shop::Timestamp t, const shop::Calendar& calendar) {
    const double local = calendar.localSeconds(t);
    const long long minuteOfDay = static_cast<long long>(std::floor(local / 60)) -
                                  static_cast<long long>(std::floor(local / 86400)) * 1440;
    char text[48];
    std::snprintf(text, sizeof text, "%02lld:%02lld", minuteOfDay / 60, minuteOfDay % 60);
    return text;
}

std::array<std::optional<DailyCounters>, weekDays> weekEnding(
    const DailyCounters& today, const std::vector<DailyCounters>& pastDays) {
    std::array<std::optional<DailyCounters>, weekDays> week;
    week[weekDays - 1] = today;
    for (std::size_t i = 0; i + 1 < weekDays; ++i) {
        const auto key = shop::DayKey::offset(today.day, -static_cast<long long>(weekDays - 1 - i));
        if (!key) continue;
        for (const auto& d : pastDays)
            if (d.day == *key) week[i] = d;
    }
    return week;
}

PawReport buildPawReport(const PawReportInputs& given, const shop::Calendar& calendar) {
    PawReportInputs rolled;
    const bool stale = !given.currentDay.empty() && given.today.day < given.currentDay;
    if (stale) {
        rolled = given;
        rolled.pastDays.push_back(given.today);
        rolled.pastDays = shop::tidyPastDays(std::move(rolled.pastDays), given.currentDay);
        rolled.today = shop::DailyCounters{};
        rolled.today.day = given.currentDay;
        rolled.fishEarnedToday = 0;
    }
    const PawReportInputs& in = stale ? rolled : given;
    PawReport r;
    r.day = in.today.day;
    r.fishEarnedToday = in.fishEarnedToday;
    r.track = pawTrack(in.today, in.lifetime);
    const auto week = weekEnding(in.today, in.pastDays);
    for (std::size_t i = 0; i < weekDays; ++i) {
        PawDay& day = r.days[i];
        day.isToday = i == weekDays - 1;
        day.day = day.isToday ? in.today.day
                              : shop::DayKey::offset(in.today.day,
                                                     -static_cast<long long>(weekDays - 1 - i))
                                    .value_or("");
        day.label = day.isToday ? "Today" : weekdayName(day.day);
        day.recorded = week[i].has_value();
    }
    for (std::size_t m = 0; m < pawMeasureCount; ++m) {
        const auto measure = PawMeasure(m);
        PawRow row = rowFor(measure, in, calendar);
        for (std::size_t i = 0; i < weekDays; ++i)
            if (week[i])
                row.week[i] =
                    measureOf(measure, *week[i],
                              i == weekDays - 1 ? std::optional(in.fishEarnedToday) : std::nullopt);
        r.rows.push_back(std::move(row));
    }
    r.voice = mascotVoice(r, in, calendar);
    return r;
}

std::string mascotVoice(const PawReport& report, const PawReportInputs& in,
                        const shop::Calendar& calendar) {
    const DailyCounters& d = in.today;
    // The longest run of the week needs a week to beat: two other recorded days at least.
    const auto& distance = report.row(PawMeasure::distance).week;
    std::size_t others = 0;
    bool longest = d.metersRun >= 1000;
    for (std::size_t i = 0; i + 1 < weekDays; ++i) {
        if (!distance[i]) continue;
        ++others;
        if (*distance[i] >= d.metersRun) longest = false;
    }
    if (d.goldenFishCaught == 1) return "Caught a Golden Fish today. Shiny!";
    if (d.goldenFishCaught > 1)
        return "Caught " + number(d.goldenFishCaught) + " Golden Fish today. Shiny!";
    if (longest && others >= 2)
        return distanceText(d.metersRun) + " today, my longest run this week!";
    if (d.peakCPUAt && d.peakCPU >= 0.9) {
        const std::string when = " around " + clockTime(*d.peakCPUAt, calendar);
        // The process ends the sentence: its name is often all lower case.
        const std::string sprint = "Sprinted at " + Format::percent(d.peakCPU) + when;
        return d.peakCPUProcess.empty() ? sprint + ". Phew."
                                        : sprint + ", thanks to " + d.peakCPUProcess + ".";
    }
    if (d.panicMoments >= 3) return number(d.panicMoments) + " busy moments today. I kept up!";
    if (d.hottestCPU && *d.hottestCPU >= 85)
        return "Hot paws: " + temperature(*d.hottestCPU, in.temperatureUnit) +
               (d.hottestAt ? " around " + clockTime(*d.hottestAt, calendar) : std::string()) +
               ". Some shade, please?";
    if (d.secondsAsleep >= 7200 && d.secondsAsleep > d.activeSeconds)
        return Format::duration(d.secondsAsleep) + " of naps today. Bliss.";
    if (d.activeSeconds >= 4 * 3600)
        return Format::duration(d.activeSeconds) + " at the keyboard together. Good team.";
    if (in.fishEarnedToday >= 40)
        return number(in.fishEarnedToday) + " Fish today. The pantry is happy.";
    if (d.metersRun >= 1)
        return distanceText(d.metersRun) + " so far: " + lowerFirst(comparisonText(d.metersRun)) +
               ".";
    return "A quiet day so far. Saving my legs for later.";
}

}  // namespace trotlet::reports
