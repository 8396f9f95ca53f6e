#include "mascot/MascotMotion.h"

#include <algorithm>
#include <cmath>

namespace trotlet::mascot {

void MascotMotion::apply(const MascotState& state) {
    state_ = state;
    if (!hasState_) {
        hasState_ = true;
        visual_ = state;
        return;
    }
    if (isRunMood(visual_.mood) && !isRunMood(state.mood)) {
        pendingVisual_ = state;
        return;
    }
    // Run to run keeps the phase; a still mood to anything switches at once, as there is no
    // stride to finish.
    pendingVisual_.reset();
    visual_ = state;
}

MascotMotion::Tick MascotMotion::advance(Timestamp now, const MascotCharacter& character,
                                         bool oneShotQueued) {
    Tick tick;
    if (lastTick_) {
        const double elapsed = std::chrono::duration<double>(now - *lastTick_).count();
        tick.dt = std::clamp(std::isnan(elapsed) ? 0.0 : elapsed, 0.0, maxTickSeconds);
    }
    lastTick_ = now;
    const double dt = tick.dt;

    // A critically damped spring: the pace accelerates into a new target without overshoot.
    const double target = visual_.cyclesPerSecond;
    const double x = displayRate_ - target, v = rateVelocity_;
    const double e = std::exp(-springStiffness * dt);
    displayRate_ = target + e * (x + dt * (v + springStiffness * x));
    rateVelocity_ = e * (v - springStiffness * dt * (v + springStiffness * x));

    showingOneShot_ = oneShotQueued;
    if (oneShotQueued) {
        tick.playedOneShot = true;
        return tick;
    }

    tick.step = dt * std::max(displayRate_, 0.0);
    if (pendingVisual_ && phase_ + tick.step >= 1.0) {
        phase_ = 0;
        visual_ = *pendingVisual_;
        pendingVisual_.reset();
        tick.visualChanged = true;
    } else {
        phase_ = phase_ + tick.step;
        phase_ -= std::floor(phase_);
    }
    if (isRunMood(visual_.mood)) distance_ += tick.step * character.strideMeters;
    return tick;
}

int MascotMotion::frameIndex(const MascotCharacter& character) const {
    if (showingOneShot_) return -1;
    const int frames = character.frameCount(visual_.mood);
    return std::clamp(static_cast<int>(phase_ * frames), 0, frames - 1);
}

FrameEnvironment FrameEnvironment::fromSnapshot(const metrics::MetricsSnapshot& s,
                                                FrameEnvironment settings) {
    settings.lowPowerMode = s.battery.lowPowerMode;
    settings.onLowBattery = s.battery.present && !s.battery.pluggedIn && s.battery.percent < 20;
    return settings;
}

double menuBarFPS(const MascotState& state, const MascotCharacter& character,
                  const FrameEnvironment& env) {
    double fps = state.cyclesPerSecond * character.frameCount(state.mood);
    if (isRunMood(state.mood)) {
        static constexpr double gaitCap[] = {7, 9, 13, 18, 22, 24};
        fps = std::min(std::max(fps, 6.0), gaitCap[static_cast<int>(state.gait)]);
        if (state.mood == MascotMood::panic) fps = std::max(fps, 24.0);
    }
    fps = std::min(fps, static_cast<double>(env.maxFPS));
    if (env.saveEnergy && (env.lowPowerMode || env.onLowBattery)) fps = std::min(fps, 10.0);
    if (state.userAway) fps = std::min(fps, 9.0);
    if (env.reduceMotion) fps = std::min(fps, 8.0);
    return std::isnan(fps) ? 1.0 : std::max(fps, 1.0);
}

bool isStillFrame(const FrameEnvironment& env, bool paused) {
    return paused || env.pauseAnimation || (env.reduceMotion && !env.animateWithReduceMotion);
}

}  // namespace trotlet::mascot
