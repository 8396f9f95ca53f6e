#pragma once

#include <optional>

#include "mascot/MascotCharacter.h"
#include "mascot/MascotState.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::mascot {

using metrics::Timestamp;

// The animator's arithmetic, apart from its timer and images: the eased stride rate, the stride
// phase, the drawn ("visual") state and the one waiting for the stride to end, and the distance.
// Stepped by explicit times so that a test can play a minute in a loop.
class MascotMotion {
public:
    // What one tick did, for the caller that owns the images.
    struct Tick {
        double dt = 0;            // seconds this tick advanced, after the stall cap
        double step = 0;          // stride cycles advanced (0 while a one-shot plays)
        bool playedOneShot = false;
        bool visualChanged = false;  // a pending visual took over at the end of a stride
    };

    // The longest stretch one tick may advance: after a stall (a suspended laptop, a blocked
    // main thread) the legs resume where they were instead of jumping.
    static constexpr double maxTickSeconds = 0.5;
    static constexpr double springStiffness = 4;

    // A new logical state. Between run moods the drawn mascot switches at once and keeps its
    // phase; from a run to a still mood it waits for the stride to end, so the blend into a sit
    // always starts from the same pose.
    void apply(const MascotState& state);

    // One animation tick at `now`. When `oneShotQueued`, the caller shows its next one-shot
    // image instead of a loop frame and nothing else moves.
    Tick advance(Timestamp now, const MascotCharacter& character, bool oneShotQueued = false);

    // The loop frame for the current phase (-1 while a one-shot image is shown).
    int frameIndex(const MascotCharacter& character) const;

    const MascotState& state() const { return state_; }
    const MascotState& visual() const { return visual_; }
    const std::optional<MascotState>& pendingVisual() const { return pendingVisual_; }
    double displayRate() const { return displayRate_; }
    double rateVelocity() const { return rateVelocity_; }
    double phase() const { return phase_; }
    double distanceMeters() const { return distance_; }
    void setDistanceMeters(double meters) { distance_ = meters; }

private:
    MascotState state_;
    MascotState visual_;
    std::optional<MascotState> pendingVisual_;
    bool hasState_ = false;
    double displayRate_ = 0;
    double rateVelocity_ = 0;
    double phase_ = 0;
    double distance_ = 0;
    bool showingOneShot_ = false;
    std::optional<Timestamp> lastTick_;
};

// What the frame rate depends on besides the state.
struct FrameEnvironment {
    int maxFPS = 24;                     // "menuBar.maxFPS"
    bool saveEnergy = true;              // "menuBar.saveEnergy"
    bool lowPowerMode = false;           // the system's power-saver profile
    bool onLowBattery = false;           // on a battery below 20 % and not plugged in
    bool reduceMotion = false;           // the desktop asks for reduced motion
    bool animateWithReduceMotion = false;  // "menuBar.animateWithReduceMotion"
    bool pauseAnimation = false;         // "menuBar.pauseAnimation"

    // onLowBattery and lowPowerMode from a sample.
    static FrameEnvironment fromSnapshot(const metrics::MetricsSnapshot& snapshot,
                                         FrameEnvironment settings);
};

// Frames per second for the menu-bar loop of a state.
double menuBarFPS(const MascotState& state, const MascotCharacter& character,
                  const FrameEnvironment& environment);

// True when the mascot is drawn still, with no frame timer at all.
bool isStillFrame(const FrameEnvironment& environment, bool paused);

}  // namespace trotlet::mascot
