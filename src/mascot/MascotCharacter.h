#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mascot/MascotMood.h"

namespace trotlet::mascot {

// The per-mascot animation parameters. The drawing itself lives with the renderer in the
// application layer; this is what the state machine, the animator and the dump need.
struct MascotCharacter {
    struct Size {
        int width = 22;
        int height = 22;
    };
    struct RateRange {
        double lower = 0;  // stride cycles per second at load 0
        double upper = 0;  // ... and at load 1
    };

    std::string id;
    Size menuBarSize;              // logical pixels of one menu-bar frame at @1x
    double colorAspectRatio = 1;   // width over height of the panel's colour artwork
    std::uint32_t signatureColor = 0;  // 0xRRGGBB
    RateRange cycleRate;
    double strideMeters = 0.5;     // distance covered by one stride, for the odometer
    int runFrames = 8;             // frames of one stride in each run loop
    int sitFrames = 4;
    int sleepFrames = 4;
    int celebrateFrames = 6;
    // Ascending load thresholds splitting the run loops into bands: n thresholds, n + 1 loops.
    std::vector<double> loadBands;

    // Frames of the loop that the menu bar plays for a mood (at least 1).
    int frameCount(MascotMood mood) const;
};

// The thirteen mascots of the catalog, in catalog order.
const std::vector<MascotCharacter>& allCharacters();

// The character for a mascot id; an unknown id gets the starter cat, so a stale setting or a
// hand-edited shop file still shows a mascot.
const MascotCharacter& characterFor(const std::string& id);

}  // namespace trotlet::mascot
