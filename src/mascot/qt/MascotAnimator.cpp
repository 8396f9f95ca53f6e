#include "mascot/qt/MascotAnimator.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace trotlet::mascot {
namespace {

LocalCalendar calendarAt(Timestamp now) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    return localtime_r(&seconds, &local) ? LocalCalendar::fromTm(local) : LocalCalendar{};
}

}  // namespace

MascotAnimator::MascotAnimator(QObject* parent) : QObject(parent) {
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { advance(now()); });
    tryOnTimer_.setSingleShot(true);
    connect(&tryOnTimer_, &QTimer::timeout, this, [this] { advance(now()); });
}

void MascotAnimator::setSettings(const Settings& settings) {
    const bool resized = settings.menuBarPixelSize != settings_.menuBarPixelSize ||
                         settings.devicePixelRatio != settings_.devicePixelRatio;
    settings_ = settings;
    if (resized) renderer_.purge(drawnMascotId(), settings_.menuBarPixelSize);
    if (lastSnapshot_) {
        // Re-evaluate with the new behaviour without counting time twice.
        apply(machine_.update(*lastSnapshot_,
                              MascotBehavior{settings_.speedSource, settings_.speedSensitivity,
                                             settings_.stateReactions, settings_.sleepWhenIdle,
                                             idle_ ? idle_() : std::nullopt},
                              characterFor(drawnMascotId()), lastIngest_.value_or(now()), 0,
                              calendarAt(lastIngest_.value_or(now()))));
    }
    reschedule();
}

void MascotAnimator::ingest(const metrics::MetricsSnapshot& snapshot) {
    const Timestamp t = now();
    const double dt =
        lastIngest_ ? std::chrono::duration<double>(t - *lastIngest_).count() : 0.0;
    lastIngest_ = t;
    lastSnapshot_ = snapshot;
    const MascotBehavior behavior{settings_.speedSource, settings_.speedSensitivity,
                                  settings_.stateReactions, settings_.sleepWhenIdle,
                                  idle_ ? idle_() : std::nullopt};
    apply(machine_.update(snapshot, behavior, characterFor(drawnMascotId()), t, dt,
                          calendarAt(t)));
}

void MascotAnimator::celebrate() {
    const Timestamp t = now();
    machine_.setCelebrateUntil(t + std::chrono::seconds(2));
    if (lastSnapshot_) {
        lastIngest_.reset();  // a re-evaluation, not a new interval
        ingest(*lastSnapshot_);
    }
}

void MascotAnimator::apply(const MascotState& state) {
    const bool changed = !(state == motion_.state());
    motion_.apply(state);
    if (changed) emit stateChanged();
    reschedule();
    if (published_.isNull()) publishLoopFrame(now());
}

void MascotAnimator::advance(Timestamp t) {
    if (tryOnEndsAt_ && t >= *tryOnEndsAt_) endTryOn();
    const auto& character = characterFor(drawnMascotId());
    const double rateBefore = motion_.visual().cyclesPerSecond;
    const auto tick = motion_.advance(t, character, !oneShot_.isEmpty());
    if (tick.playedOneShot) {
        publish(oneShot_.takeFirst());
        if (oneShot_.isEmpty()) reschedule();
        return;
    }
    publishLoopFrame(t);
    if (tick.visualChanged || motion_.visual().cyclesPerSecond != rateBefore) reschedule();
}

void MascotAnimator::playOneShot(const QList<QImage>& images) {
    oneShot_.append(images);
    reschedule();
}

void MascotAnimator::publishLoopFrame(Timestamp t) {
    const auto& character = characterFor(drawnMascotId());
    const int index = std::max(0, motion_.frameIndex(character));
    publish(renderer_.frame(character, motion_.visual(), index, settings_.menuBarPixelSize,
                            settings_.devicePixelRatio, blinking(t)));
}

void MascotAnimator::publish(const QImage& image) {
    // Cached loop frames are shared images, so an unchanged frame has the same key.
    if (!published_.isNull() && image.cacheKey() == publishedKey_) return;
    published_ = image;
    publishedKey_ = image.cacheKey();
    ++serial_;
    emit menuBarFrameChanged();
}

// A blink of 150 ms every 4.5 s, only while the eyes are open anyway.
bool MascotAnimator::blinking(Timestamp t) const {
    const MascotMood mood = motion_.visual().mood;
    if (mood == MascotMood::sleeping || mood == MascotMood::lowBattery) return false;
    const double seconds = std::chrono::duration<double>(t.time_since_epoch()).count();
    return std::fmod(seconds, 4.5) < 0.15;
}

void MascotAnimator::reschedule() {
    const auto& character = characterFor(drawnMascotId());
    fps_ = oneShot_.isEmpty() ? menuBarFPS(motion_.visual(), character, settings_.frame) : 12.0;
    if (isStillFrame(settings_.frame, paused_)) {
        timer_.stop();
        return;
    }
    const int interval = std::max(1, static_cast<int>(std::lround(1000.0 / fps_)));
    if (!timer_.isActive() || timer_.interval() != interval) timer_.start(interval);
}

void MascotAnimator::equip(const std::string& mascotId) {
    const std::string before = drawnMascotId();
    equipped_ = mascotId;
    tryOn_.reset();
    tryOnEndsAt_.reset();
    tryOnTimer_.stop();
    renderer_.purge(drawnMascotId(), settings_.menuBarPixelSize);
    publishLoopFrame(now());
    reschedule();
    if (drawnMascotId() != before) emit drawnMascotChanged();
}

void MascotAnimator::tryOn(const std::string& mascotId, Timestamp until) {
    const std::string before = drawnMascotId();
    tryOn_ = mascotId;
    tryOnEndsAt_ = until;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - now()).count();
    tryOnTimer_.start(int(std::clamp<long long>(left + 1, 0, 24LL * 3600 * 1000)));
    publishLoopFrame(now());
    reschedule();
    if (drawnMascotId() != before) emit drawnMascotChanged();
}

void MascotAnimator::endTryOn() {
    tryOnTimer_.stop();
    if (!tryOn_) return;
    tryOn_.reset();
    tryOnEndsAt_.reset();
    renderer_.purge(drawnMascotId(), settings_.menuBarPixelSize);
    publishLoopFrame(now());
    reschedule();
    emit drawnMascotChanged();
}

void MascotAnimator::setPaused(bool paused) {
    paused_ = paused;
    reschedule();
}

const std::string& MascotAnimator::drawnMascotId() const { return tryOn_ ? *tryOn_ : equipped_; }

}  // namespace trotlet::mascot
