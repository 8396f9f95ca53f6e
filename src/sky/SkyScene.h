#pragma once

#include <array>
#include <optional>

#include "mascot/MascotMood.h"
#include "sky/SkyColor.h"
#include "sky/SunClock.h"
#include "weather/WeatherCondition.h"
#include "weather/WeatherReport.h"

namespace trotlet::sky {

// What the header sky is drawn from at one moment.
struct SkyInputs {
    const weather::WeatherReport* report = nullptr;  // none: no place chosen or nothing fetched
    weather::UnixTime now = 0;
    int localOffsetSeconds = 0;  // the computer's zone, for a day without weather
    mascot::MascotMood mood = mascot::MascotMood::running;
    bool reduceMotion = false;
    bool dark = false;                    // the panel's colour scheme
    std::optional<SkyPhase> forcedPhase;  // screenshots and QA pin the time of day
};

enum class Precipitation { none, drizzle, rain, snow };

// The text colours that read over a sky, and the fill of the chips that sit on it.
struct SkyInk {
    Rgb text;
    Rgb textSecondary;
    Rgb chip;
    double chipAlpha = 0.5;
    bool light = false;  // light text on a dark sky; it gets a soft shadow
    bool operator==(const SkyInk&) const = default;
};

// Everything the painter draws, decided here so that it can be tested without pixels.
// Vertical positions are shares of the header's height, 0 at the top.
struct SkyScene {
    SunClock clock;
    bool polar = false;
    std::optional<weather::WeatherCondition> condition;

    std::array<Rgb, 3> gradient;  // at the top, the middle and the bottom

    bool sun = false;
    Rgb sunColor;
    double sunAlpha = 0;  // dimmed by cloud
    bool moon = false;
    double moonAlpha = 0;
    double moonPhase = 0.5;  // 0 new, 0.5 full
    double starAlpha = 0;

    double cloudiness = 0;  // 0 clear … 1 overcast: how many clouds and how wide
    Rgb cloudColor;
    double cloudAlpha = 0;

    Precipitation precipitation = Precipitation::none;
    double amount = 0;  // 0…1, the condition's intensity
    Rgb precipitationColor;
    double precipitationAlpha = 0;
    double slant = 0;  // horizontal drift per unit of fall

    double fogAlpha = 0;
    Rgb fogColor;

    bool lightning = false;
    double flashAlpha = 0;  // the brightest flash that keeps the text readable
    double flashEverySeconds = 0;

    Rgb moodTint;
    double moodTintAlpha = 0;  // a warm glow rising from the foot for a hot or panicked mascot
    double motionScale = 1;    // restless moods drift and fall faster, a sleeping one slower

    SkyInk ink;
    int framesPerSecond = 0;  // 0: nothing moves, the sky is one cached picture

    bool operator==(const SkyScene&) const = default;

    // The sky's colour at a height (0 top, 1 bottom), as the gradient paints it.
    Rgb skyAt(double y) const;
    bool animated() const { return framesPerSecond > 0; }
};

// Unbacked header text (the name, the mood line, the greeting) sits below this share of the
// height; above it only the chips, which carry their own fill.
inline constexpr double skyTextTop = 0.3;
inline constexpr double minimumTextContrast = 4.5;
inline constexpr int maxSkyFramesPerSecond = 20;

SkyScene skyScene(const SkyInputs& inputs);

// Every colour unbacked text may sit on, at the heights text uses, with clouds, fog, the mood's
// glow and a lightning flash at its brightest laid over the sky. `step` is the sampling step.
std::vector<Rgb> textBackgrounds(const SkyScene& scene, double step = 0.05);
// The same for the chips' text: the chip's fill over the top band.
std::vector<Rgb> chipBackgrounds(const SkyScene& scene, double step = 0.05);

}  // namespace trotlet::sky
