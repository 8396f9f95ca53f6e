#pragma once

// What the app does with a value once a parser has accepted it. A decoder that lets through
// something its readers cannot take (a time that overflows their arithmetic, a size that sends
// a loop astray) is as much a fault as a crash in the decoder, so the targets hand every
// accepted value on to the code that meets it next in the app.

#include <cmath>
#include <string>

#include "alerts/AlertRules.h"
#include "layout/BentoPacker.h"
#include "layout/LayoutStore.h"
#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayoutResolver.h"
#include "mascot/MascotCharacter.h"
#include "mascot/MascotMotion.h"
#include "mascot/MascotStateMachine.h"
#include "mascot/MoodLine.h"
#include "menubar/TickerText.h"
#include "metrics/FixtureProvider.h"
#include "metrics/MetricsSnapshot.h"
#include "metrics/SamplingPlan.h"
#include "panel/CardContent.h"
#include "panel/HeaderContent.h"
#include "settings/AppSettings.h"
#include "weather/WeatherLocation.h"
#include "weather/WeatherReport.h"

#include "FuzzSupport.h"

namespace trotlet::fuzz {

// A moment in 2026, so that decoded samples and forecasts meet a plausible "now".
inline constexpr double kNowUnixSeconds = 1'790'000'000;

// The panel and the tray reading one sample: the mascot, the alerts, the ticker, the cards.
inline void consumeSnapshot(const metrics::MetricsSnapshot& sample,
                            const mascot::MascotBehavior& behavior = {},
                            const alerts::AlertRules::Preferences& preferences = {},
                            int maxFPS = 24) {
    const metrics::Timestamp now = sample.timestamp;
    using std::chrono::seconds;
    mascot::MascotStateMachine machine;
    const auto& character = mascot::characterFor("cat");
    mascot::MascotMotion motion;
    for (int tick = 0; tick < 3; ++tick) {
        const auto state = machine.update(sample, behavior, character, sample.timestamp, 2.0, {});
        FUZZ_CHECK(std::isfinite(machine.smoothedLoad()));
        mascot::FrameEnvironment env;
        env.maxFPS = maxFPS;
        const double fps = mascot::menuBarFPS(state, character,
                                              mascot::FrameEnvironment::fromSnapshot(sample, env));
        FUZZ_CHECK(std::isfinite(fps) && fps >= 1);
        motion.apply(state);
        motion.advance(now + seconds(tick), character);
        const int frame = motion.frameIndex(character);
        FUZZ_CHECK(frame >= -1 && frame < character.frameCount(motion.visual().mood));
        (void)mascot::MoodLine::text(state, sample, "Mochi", std::nullopt, behavior.speedSource,
                                     menubar::TemperatureUnit::celsius);
    }
    alerts::AlertRules rules(preferences, "Mochi");
    (void)rules.evaluate(sample, now, false);
    (void)rules.evaluate(sample, now + seconds(600), true);
    for (size_t m = 0; m < settings::MenuBarTextMetricNames.size(); ++m)
        (void)menubar::tickerText(static_cast<settings::MenuBarTextMetric>(m), sample,
                                  menubar::TemperatureUnit::fahrenheit, menubar::NetworkUnit::bits);
    panel::CardInputs inputs;
    inputs.sample = &sample;
    inputs.perCore = true;
    for (const auto& kind : layout::OverviewCardRegistry::standard().all())
        for (auto size : kind.sizes) {
            const auto card = panel::describeCard(kind.id, size, inputs);
            if (card.gauge) FUZZ_CHECK(*card.gauge >= 0 && *card.gauge <= 1);
        }
}

// The forecast as the header, the card and the tray meet it.
inline void consumeReport(const weather::WeatherReport& report) {
    for (weather::UnixTime at :
         {report.current.time, report.fetchedAt, static_cast<weather::UnixTime>(kNowUnixSeconds)}) {
        (void)weather::conditionsAt(report, at);
        if (auto summary = panel::summarizeWeather(report, at))
            (void)panel::headerChips(1250, summary, true, menubar::TemperatureUnit::fahrenheit);
    }
}

// The app reading its settings: the sampling plan, the mascot, the alerts, the layout, the
// chosen place.
inline void consumeSettings(settings::AppSettings& s) {
    for (auto tier : {metrics::ConsumerTier::menuBarOnly, metrics::ConsumerTier::panelClosed,
                      metrics::ConsumerTier::panelOpen}) {
        const auto plan = metrics::planFor(tier, s.monitoring().updateInterval(), true, {});
        FUZZ_CHECK(std::isfinite(plan.intervalSec) && plan.intervalSec >= 0.5 &&
                   plan.intervalSec <= 60);
    }
    mascot::MascotBehavior behavior;
    behavior.speedSource = s.menuBar().speedSource();
    behavior.speedSensitivity = s.menuBar().speedSensitivity();
    behavior.stateReactions = s.mascot().stateReactions();
    behavior.sleepWhenIdle = s.mascot().sleepWhenIdle();
    const auto& n = s.notifications();
    alerts::AlertRules::Preferences preferences;
    preferences.highCPU = n.highCPU();
    preferences.highCPUThreshold = n.highCPUThreshold();
    preferences.batteryLow = n.batteryLow();
    preferences.batteryLowThreshold = n.batteryLowThreshold();
    preferences.batteryFull = n.batteryFull();
    preferences.diskAlmostFull = n.diskAlmostFull();
    preferences.diskFreeThresholdGB = n.diskFreeThresholdGB();
    preferences.memoryCritical = n.memoryCritical();
    for (auto fixture : {metrics::MetricsFixture::lowBattery, metrics::MetricsFixture::stress})
        consumeSnapshot(
            metrics::fixtureSnapshot(fixture, metrics::fromUnixSeconds(kNowUnixSeconds)), behavior,
            preferences, s.menuBar().maxFPS());
    (void)menubar::tickerText(s.menuBar().textMetric(),
                              metrics::fixtureSnapshot(metrics::MetricsFixture::normal,
                                                       metrics::fromUnixSeconds(kNowUnixSeconds)),
                              s.monitoring().temperatureUnit(), s.monitoring().networkUnit());

    layout::LayoutStore layouts(s.layout(), s.monitoring());
    const auto shown = layouts.layout();
    (void)layouts.canReset();
    const auto& registry = layouts.registry();
    FUZZ_CHECK(shown.cards.size() == registry.all().size());
    const auto items = layout::OverviewLayoutResolver::items(
        shown, [](std::string_view) { return true; }, registry);
    (void)layout::BentoPacker::pack(items, layout::GridMetrics::columns);

    if (const auto& encoded = s.weather().encodedLocation())
        if (auto place = weather::decodeLocationSetting(*encoded))
            FUZZ_CHECK(weather::decodeLocationSetting(weather::encodeLocationSetting(*place)) ==
                       place);
}

}  // namespace trotlet::fuzz
