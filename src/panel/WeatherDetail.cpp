#include "panel/WeatherDetail.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "menubar/Format.h"
#include "panel/CardTexts.h"
#include "panel/DetailTexts.h"
#include "weather/WeatherCondition.h"
#include "weather/WeatherText.h"

namespace trotlet::panel {
namespace {

using menubar::Format;
using Kind = DetailBlock::Kind;

constexpr std::int64_t kDay = 86400;
constexpr std::size_t kHours = 8;  // what fits the panel's width, a column each
constexpr std::size_t kDays = 7;

std::int64_t floorDiv(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

std::string temperature(double celsius, const CardInputs& in) {
    const auto parts = Format::temperatureParts(celsius, in.temperatureUnit);
    return parts.value + "°";
}

std::string chance(double probability) {
    // Below one in five the strip stays quiet; a number there would only be noise.
    return probability >= 20 ? Format::fixed(0, probability) + "%" : "";
}

}  // namespace

std::string placeClock(weather::UnixTime time, int utcOffsetSeconds) {
    const std::int64_t local = time + utcOffsetSeconds;
    const std::int64_t secondOfDay = local - floorDiv(local, kDay) * kDay;
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%02lld:%02lld", (long long)(secondOfDay / 3600),
                  (long long)(secondOfDay % 3600 / 60));
    return buffer;
}

std::string weekdayName(weather::UnixTime localMidnight) {
    static constexpr const char* names[] = {"Thu", "Fri", "Sat", "Sun", "Mon", "Tue", "Wed"};
    const std::int64_t day = floorDiv(localMidnight, kDay);  // 1970-01-01 was a Thursday
    return names[(day % 7 + 7) % 7];
}

void weatherDetail(DetailContent& c, const DetailInputs& in) {
    const auto& w = in.weather;
    if (!w.placeChosen) {
        c.standIn = noWeatherPlaceText();
        return;
    }
    const auto conditions = w.report ? weather::conditionsAt(*w.report, in.now) : std::nullopt;
    if (!conditions) {
        // No report yet, or one too old to pass for the weather outside.
        c.standIn = w.error ? w.error->message() : noForecastYetText();
        return;
    }
    const auto& r = *w.report;
    const auto parts = Format::temperatureParts(conditions->temperatureC, in.card.temperatureUnit);
    c.value = parts.value;
    c.unit = parts.unit;
    c.symbol = weather::symbol(conditions->code, conditions->isDay);
    c.headlineSymbol = c.symbol;
    c.caption = weather::title(conditions->code, conditions->isDay) + " · " + r.location.name;

    const std::string wind =
        weather::wind(conditions->windKmh, w.imperialWind) +
        (conditions->windKmh >= 1 ? " " + weather::compass(conditions->windDirection) : "");
    DetailBlock now;
    now.kind = Kind::rows;
    now.title = "Now";
    now.rows = {{"Feels like", temperature(conditions->apparentC, in.card)},
                {"Wind", wind},
                {"Humidity", Format::fixed(0, conditions->humidity) + "%"},
                {"Cloud cover", Format::fixed(0, conditions->cloudCover) + "%"}};
    c.blocks.push_back(std::move(now));

    DetailBlock hours;
    hours.kind = Kind::hours;
    hours.title = "Next hours";
    for (const auto& h : r.hourly) {
        if (h.time + 3600 <= in.now) continue;
        if (hours.hours.size() == kHours) break;
        hours.hours.push_back({hours.hours.empty() ? "Now" : placeClock(h.time, r.utcOffsetSeconds),
                               weather::symbol(h.code, h.isDay),
                               temperature(h.temperatureC, in.card),
                               chance(h.precipitationProbability)});
    }
    if (!hours.hours.empty()) c.blocks.push_back(std::move(hours));

    DetailBlock days;
    days.kind = Kind::days;
    days.title = "This week";
    const std::int64_t placeToday = floorDiv(in.now + r.utcOffsetSeconds, kDay) * kDay;
    const weather::WeatherDay* today = nullptr;
    double low = 1e9, high = -1e9;
    std::vector<const weather::WeatherDay*> shown;
    for (const auto& d : r.daily) {
        if (d.date < placeToday || shown.size() == kDays) continue;
        if (d.date == placeToday) today = &d;
        shown.push_back(&d);
        low = std::min(low, d.minC);
        high = std::max(high, d.maxC);
    }
    const double span = std::max(1.0, high - low);
    for (const auto* d : shown)
        days.days.push_back({d->date == placeToday ? "Today" : weekdayName(d->date),
                             weather::symbol(d->code, true), temperature(d->minC, in.card),
                             temperature(d->maxC, in.card), (d->minC - low) / span,
                             (d->maxC - low) / span, chance(d->precipitationProbability)});
    if (!days.days.empty()) c.blocks.push_back(std::move(days));

    if (today) {
        DetailBlock sun;
        sun.kind = Kind::rows;
        sun.title = "Sun";
        sun.rows = {{"Sunrise", placeClock(today->sunrise, r.utcOffsetSeconds)},
                    {"Sunset", placeClock(today->sunset, r.utcOffsetSeconds)}};
        c.blocks.push_back(std::move(sun));
    }

    DetailBlock age;
    age.kind = Kind::note;
    age.note = "Updated " + weather::age(double(std::max<std::int64_t>(0, in.now - r.fetchedAt))) +
               (w.loading ? " · updating…" : "") + " · Open-Meteo";
    if (w.error) {
        age.note = w.error->message() + ". Showing the forecast from " +
                   weather::age(double(std::max<std::int64_t>(0, in.now - r.fetchedAt))) + ".";
        age.level = Level::busy;
    }
    c.blocks.push_back(std::move(age));
}

void pawDetail(DetailContent& c, const DetailInputs& in) {
    // The Paw Report has a screen of its own (reports/); this is what a detail says of it
    // elsewhere: the card's reading and its facts.
    const CardContent card = describeCard("pawreport", layout::CardSize::wide, in.card);
    c.standIn = card.standIn;
    c.value = card.value;
    c.unit = card.unit;
    c.caption = card.caption;
    DetailBlock today;
    today.kind = Kind::rows;
    today.title = "Today";
    for (const auto& fact : card.facts) today.rows.push_back({fact.label, fact.value, fact.level});
    if (!today.rows.empty()) c.blocks.push_back(std::move(today));
}

}  // namespace trotlet::panel
