#include "sky/SkyScene.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace trotlet::sky {
namespace {

using weather::WeatherCondition;
using Palette = std::array<Rgb, 3>;

constexpr Rgb white{1, 1, 1};
constexpr Rgb black{0, 0, 0};
constexpr Rgb darkInk = Rgb::hex(0x1D1D21);
constexpr Rgb lightInk = Rgb::hex(0xF5F6FA);
// The contrast the sky is tuned to: a little above the minimum, so that the gradient's
// sampling between checks never dips under it.
constexpr double tunedContrast = minimumTextContrast + 0.15;

struct TimePalettes {
    Palette night, dawn, dusk, dayLow, dayHigh;
};

// Light panels get a bright day and pastel twilights; dark panels a deep, quiet sky at every
// hour, so the header never glares out of a dark desktop.
constexpr TimePalettes lightPalettes{
    {Rgb::hex(0x0A1230), Rgb::hex(0x142049), Rgb::hex(0x26366A)},
    {Rgb::hex(0x8C9AD4), Rgb::hex(0xD2BEDD), Rgb::hex(0xF8CDB4)},
    {Rgb::hex(0x7A68B0), Rgb::hex(0xE09A98), Rgb::hex(0xF7BC86)},
    {Rgb::hex(0x74B1EC), Rgb::hex(0xAED5F4), Rgb::hex(0xDDEFFC)},
    {Rgb::hex(0x4F9DE7), Rgb::hex(0x9FCDF3), Rgb::hex(0xD8EDFC)},
};
constexpr TimePalettes darkPalettes{
    {Rgb::hex(0x050916), Rgb::hex(0x0B1230), Rgb::hex(0x151E3E)},
    {Rgb::hex(0x232850), Rgb::hex(0x473A62), Rgb::hex(0x6A4859)},
    {Rgb::hex(0x1E1A46), Rgb::hex(0x472A56), Rgb::hex(0x763C45)},
    {Rgb::hex(0x1A3963), Rgb::hex(0x234878), Rgb::hex(0x2C5683)},
    {Rgb::hex(0x163B70), Rgb::hex(0x204E88), Rgb::hex(0x2B5D94)},
};

Palette mixPalette(const Palette& a, const Palette& b, double t) {
    return {mix(a[0], b[0], t), mix(a[1], b[1], t), mix(a[2], b[2], t)};
}

// The clear sky for the sun's elevation: night, twilight (dawn's or dusk's), low day, high day.
Palette timePalette(const SunClock& clock, bool dark) {
    const TimePalettes& p = dark ? darkPalettes : lightPalettes;
    const Palette& twilight = clock.phase == SkyPhase::dusk ? p.dusk : p.dawn;
    const double e = clock.elevation;
    if (clock.phase == SkyPhase::night && e < -0.45) return p.night;
    if (e < 0) return mixPalette(p.night, twilight, (e + 0.45) / 0.45);
    if (e < 0.3) {
        const Palette& from = clock.phase == SkyPhase::day ? p.dayLow : twilight;
        return mixPalette(from, p.dayLow, e / 0.3);
    }
    return mixPalette(p.dayLow, p.dayHigh, (e - 0.3) / 0.7);
}

struct ConditionLook {
    double grey;        // how much colour the cloud deck takes out of the sky
    double cloudiness;  // how much of the sky the clouds cover
    Rgb shade;          // what the deck darkens or brightens the sky towards
    double shadeAmount;
};

ConditionLook lookOf(std::optional<WeatherCondition> condition, bool dark) {
    const Rgb slate = Rgb::hex(0x5C6676), storm = Rgb::hex(0x262B38), bright = Rgb::hex(0xE9EEF4);
    if (!condition) return {0, 0.15, white, 0};
    switch (*condition) {
        case WeatherCondition::clear:
            return {0, 0.05, white, 0};
        case WeatherCondition::mainlyClear:
            return {0, 0.22, white, 0};
        case WeatherCondition::partlyCloudy:
            return {0.12, 0.5, white, 0};
        case WeatherCondition::overcast:
            return {0.65, 0.95, slate, dark ? 0.1 : 0.18};
        case WeatherCondition::fog:
            return {0.6, 0.4, bright, dark ? 0.08 : 0.3};
        case WeatherCondition::drizzle:
            return {0.5, 0.8, slate, dark ? 0.12 : 0.2};
        case WeatherCondition::rain:
            return {0.6, 0.9, slate, dark ? 0.18 : 0.28};
        case WeatherCondition::snow:
            return {0.5, 0.85, bright, dark ? 0.05 : 0.25};
        case WeatherCondition::thunderstorm:
            return {0.7, 1.0, storm, dark ? 0.35 : 0.55};
    }
    return {0, 0.15, white, 0};
}

struct MoodLook {
    Rgb warmth;  // mixed into the whole sky
    double warmthAmount = 0;
    double grey = 0;
    Rgb glow;  // rising from the foot
    double glowAlpha = 0;
    double motion = 1;
};

MoodLook moodLook(mascot::MascotMood mood) {
    using mascot::MascotMood;
    switch (mood) {
        case MascotMood::panic:
            return {Rgb::hex(0xFF6A50), 0.1, 0, Rgb::hex(0xFF4A36), 0.24, 1.8};
        case MascotMood::overheated:
            return {Rgb::hex(0xFFA060), 0.14, 0, Rgb::hex(0xFF8A26), 0.3, 1.4};
        case MascotMood::sleeping:
            return {Rgb::hex(0x4A4E86), 0.12, 0.3, {}, 0, 0.5};
        case MascotMood::offline:
            return {{}, 0, 0.35, {}, 0, 0.8};
        case MascotMood::lowBattery:
            return {{}, 0, 0.12, {}, 0, 0.9};
        case MascotMood::celebrating:
            return {{}, 0, 0, Rgb::hex(0xFFD45A), 0.16, 1.2};
        case MascotMood::sitting:
            return {{}, 0, 0, {}, 0, 0.8};
        case MascotMood::running:
            return {};
    }
    return {};
}

// The mood's glow at a height: full at the foot, gone by 0.35 of the way down.
double glowAt(double y) { return std::clamp((y - 0.35) / 0.65, 0.0, 1.0); }

double worstContrast(const Rgb& ink, const std::vector<Rgb>& backgrounds) {
    double worst = 21;
    for (const auto& bg : backgrounds) worst = std::min(worst, contrast(ink, bg));
    return worst;
}

// Picks the ink that reads better over the sky, then nudges the sky away from it until every
// background the text may meet reaches the tuned contrast.
void settleInk(SkyScene& s) {
    auto backgrounds = textBackgrounds(s);
    const bool light = worstContrast(lightInk, backgrounds) > worstContrast(darkInk, backgrounds);
    s.ink.light = light;
    s.ink.text = light ? lightInk : darkInk;
    const Rgb away = light ? black : white;
    for (int i = 0; i < 40 && worstContrast(s.ink.text, backgrounds) < tunedContrast; ++i) {
        for (auto& c : s.gradient) c = mix(c, away, 0.06);
        s.cloudColor = mix(s.cloudColor, away, 0.06);
        s.fogColor = mix(s.fogColor, away, 0.06);
        s.moodTint = mix(s.moodTint, away, 0.06);
        backgrounds = textBackgrounds(s);
    }
    // Secondary text: as far towards the sky as the contrast allows, at most a third.
    const Rgb sky = s.skyAt(0.7);
    s.ink.textSecondary = s.ink.text;
    for (double t = 0.35; t > 0; t -= 0.05) {
        const Rgb candidate = mix(s.ink.text, sky, t);
        if (worstContrast(candidate, backgrounds) >= tunedContrast) {
            s.ink.textSecondary = candidate;
            break;
        }
    }
    // Chips: a veil of the ink's opposite, thick enough for the chip's own text.
    s.ink.chip = light ? black : white;
    s.ink.chipAlpha = light ? 0.22 : 0.45;
    while (s.ink.chipAlpha < 0.9 && worstContrast(s.ink.text, chipBackgrounds(s)) < tunedContrast)
        s.ink.chipAlpha += 0.05;
}

// The brightest flash (up to 0.5) that keeps the text above the minimum contrast.
double safeFlash(const SkyScene& s) {
    const auto backgrounds = textBackgrounds(s);
    double alpha = 0.5;
    for (; alpha > 0; alpha -= 0.02) {
        bool ok = true;
        for (const auto& bg : backgrounds)
            if (contrast(s.ink.text, over(bg, white, alpha)) < tunedContrast ||
                contrast(s.ink.textSecondary, over(bg, white, alpha)) < tunedContrast)
                ok = false;
        if (ok) break;
    }
    return std::max(alpha, 0.0);
}

}  // namespace

Rgb SkyScene::skyAt(double y) const {
    y = std::clamp(y, 0.0, 1.0);
    return y < 0.5 ? mix(gradient[0], gradient[1], y / 0.5)
                   : mix(gradient[1], gradient[2], (y - 0.5) / 0.5);
}

std::vector<Rgb> textBackgrounds(const SkyScene& s, double step) {
    std::vector<Rgb> out;
    for (double y = skyTextTop; y <= 1.0 + 1e-9; y += step) {
        const Rgb sky = s.skyAt(y);
        out.push_back(sky);
        Rgb stacked = sky;
        if (s.cloudAlpha > 0) {
            out.push_back(over(sky, s.cloudColor, s.cloudAlpha));
            stacked = over(stacked, s.cloudColor, s.cloudAlpha);
        }
        if (s.fogAlpha > 0) {
            out.push_back(over(sky, s.fogColor, s.fogAlpha));
            stacked = over(stacked, s.fogColor, s.fogAlpha);
        }
        if (s.moodTintAlpha > 0) {
            out.push_back(over(sky, s.moodTint, s.moodTintAlpha * glowAt(y)));
            stacked = over(stacked, s.moodTint, s.moodTintAlpha * glowAt(y));
        }
        out.push_back(stacked);
    }
    return out;
}

std::vector<Rgb> chipBackgrounds(const SkyScene& s, double step) {
    std::vector<Rgb> out;
    for (double y = 0.05; y <= skyTextTop + 1e-9; y += step) {
        const Rgb sky = s.skyAt(y);
        out.push_back(over(sky, s.ink.chip, s.ink.chipAlpha));
        if (s.cloudAlpha > 0)
            out.push_back(over(over(sky, s.cloudColor, s.cloudAlpha), s.ink.chip, s.ink.chipAlpha));
    }
    return out;
}

SkyScene skyScene(const SkyInputs& in) {
    SkyScene s;
    const DayLight light = dayLightAt(in.report, in.now, in.localOffsetSeconds);
    s.polar = light.kind != DayLight::Kind::normal;
    s.clock = in.forcedPhase ? sunClockFor(*in.forcedPhase) : sunClock(light);

    double amount = 0;
    double cover = -1;
    if (in.report) {
        if (const auto now = weather::conditionsAt(*in.report, in.now)) {
            s.condition = weather::conditionFromWmo(now->code);
            amount = weather::intensity(now->code);
            cover = std::clamp(now->cloudCover / 100.0, 0.0, 1.0);
        }
    }

    // The clear sky for the hour, then the weather's deck, then the mascot's mood.
    Palette sky = timePalette(s.clock, in.dark);
    const ConditionLook look = lookOf(s.condition, in.dark);
    const MoodLook mood = moodLook(in.mood);
    // A bright deck (fog, snow) lights a day; at night it only greys the dark.
    const double shade = luminance(look.shade) > 0.5 && s.clock.elevation < 0
                             ? look.shadeAmount * std::max(0.2, 1 + s.clock.elevation)
                             : look.shadeAmount;
    for (auto& c : sky) {
        c = desaturate(c, look.grey);
        c = mix(c, look.shade, shade);
        c = mix(c, mood.warmth, mood.warmthAmount);
        c = desaturate(c, mood.grey);
    }
    s.gradient = sky;
    // The condition sets the cloud; the reported cover moves it a little, and a clear sky
    // stays clear.
    s.cloudiness = look.cloudiness;
    if (cover >= 0 && s.condition != WeatherCondition::clear)
        s.cloudiness = std::clamp(look.cloudiness + (cover - look.cloudiness) * 0.25,
                                  look.cloudiness - 0.1, std::min(1.0, look.cloudiness + 0.1));
    s.moodTint = mood.glow;
    s.moodTintAlpha = mood.glowAlpha;
    s.motionScale = mood.motion;

    const double e = s.clock.elevation;
    const bool stormy = s.condition == WeatherCondition::thunderstorm;
    // Clouds take the sky's light: white by day, warm at twilight, faintly lit at night.
    const Rgb middle = s.skyAt(0.5);
    if (e >= 0.3)
        s.cloudColor = mix(middle, white, in.dark ? 0.32 : 0.78);
    else if (e >= -0.45)
        s.cloudColor = mix(mix(middle, Rgb::hex(0xFFD2B8), in.dark ? 0.25 : 0.55), white, 0.1);
    else
        s.cloudColor = mix(middle, white, 0.14);
    if (stormy) s.cloudColor = mix(middle, Rgb::hex(0x1A1E29), 0.45);
    s.cloudAlpha = s.cloudiness > 0 ? 0.45 + 0.4 * s.cloudiness : 0;

    const double clearSky = std::clamp(1 - s.cloudiness * 1.25, 0.0, 1.0);
    s.sun = e > -0.05 && clearSky > 0.05;
    s.sunAlpha = s.sun ? clearSky * (s.condition == WeatherCondition::fog ? 0.5 : 1) : 0;
    s.sunColor = mix(Rgb::hex(0xFF9A55), Rgb::hex(0xFFD862), std::clamp(e / 0.5, 0.0, 1.0));
    s.moonPhase = moonPhase(in.now);
    const double lit = (1 - std::cos(2 * M_PI * s.moonPhase)) / 2;  // the lit share of the disc
    s.moon = e < -0.2 && clearSky > 0.05 && lit > 0.04;
    s.moonAlpha = s.moon ? clearSky * std::clamp(-e * 1.5, 0.0, 1.0) *
                               (s.condition == WeatherCondition::fog ? 0.5 : 1)
                         : 0;
    s.starAlpha = std::clamp((-e - 0.35) * 1.6, 0.0, 1.0) * std::pow(clearSky, 1.5);

    if (s.condition) {
        switch (*s.condition) {
            case WeatherCondition::drizzle:
                s.precipitation = Precipitation::drizzle;
                break;
            case WeatherCondition::rain:
            case WeatherCondition::thunderstorm:
                s.precipitation = Precipitation::rain;
                break;
            case WeatherCondition::snow:
                s.precipitation = Precipitation::snow;
                break;
            default:
                break;
        }
        if (*s.condition == WeatherCondition::fog) {
            s.fogAlpha = 0.6 * amount;
            s.fogColor = mix(middle, white, in.dark ? 0.22 : (e >= 0 ? 0.7 : 0.2));
        }
    }
    s.amount = s.precipitation == Precipitation::none ? 0 : amount;

    settleInk(s);

    // Rain reads against the sky: dark streaks on a pale sky, pale ones on a dark sky.
    if (s.precipitation == Precipitation::snow) {
        s.precipitationColor = white;
        s.precipitationAlpha = in.dark ? 0.7 : 0.9;
        s.slant = 0.15;
    } else if (s.precipitation != Precipitation::none) {
        s.precipitationColor = s.ink.light ? Rgb::hex(0xC4D2E4) : Rgb::hex(0x4E6278);
        s.precipitationAlpha = s.precipitation == Precipitation::drizzle ? 0.4 : 0.5;
        s.slant = stormy ? 0.28 : 0.16;
    }

    if (stormy && !in.reduceMotion) {
        // A flash is light over the whole sky; the text must stay readable through it, and
        // reduced motion means no flashes at all.
        s.lightning = true;
        s.flashAlpha = safeFlash(s);
        s.flashEverySeconds = 6.0 / std::max(0.4, amount) / s.motionScale;
    }

    if (!in.reduceMotion) {
        double fps = 0;
        if (s.precipitation == Precipitation::rain)
            fps = 16;
        else if (s.precipitation == Precipitation::drizzle)
            fps = 14;
        else if (s.precipitation == Precipitation::snow)
            fps = 12;
        // Clouds drift when the weather brings them; the few of a sky without a forecast, fog
        // and the mood's glow stand still, so such a sky is one cached picture.
        else if (s.condition && s.cloudiness >= 0.1)
            fps = 10;
        if (fps > 0)
            s.framesPerSecond =
                std::clamp(int(std::lround(fps * std::clamp(s.motionScale, 0.7, 1.25))), 6,
                           maxSkyFramesPerSecond);
    }
    return s;
}

}  // namespace trotlet::sky
