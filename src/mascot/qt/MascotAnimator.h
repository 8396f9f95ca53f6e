#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <QImage>
#include <QList>
#include <QObject>
#include <QTimer>

#include "mascot/MascotBehavior.h"
#include "mascot/MascotMotion.h"
#include "mascot/MascotStateMachine.h"
#include "mascot/qt/MascotRenderer.h"

namespace trotlet::mascot {

// Turns samples into the tray's moving picture. The decisions live in the state machine and
// in MascotMotion; this object owns the frame timer, the renderer and the published image.
class MascotAnimator : public QObject {
    Q_OBJECT

public:
    struct Settings {
        LoadSource speedSource = LoadSource::cpu;
        double speedSensitivity = 0.75;
        bool stateReactions = true;
        bool sleepWhenIdle = true;
        FrameEnvironment frame;
        int menuBarPixelSize = 22;
        qreal devicePixelRatio = 1;
    };
    using Clock = std::function<Timestamp()>;
    using IdleSeconds = std::function<std::optional<double>()>;

    explicit MascotAnimator(QObject* parent = nullptr);

    void setSettings(const Settings& settings);
    const Settings& settings() const { return settings_; }
    // Tests and harnesses replace the wall clock and the idle time (`--idle-seconds`).
    void setClock(Clock clock) { clock_ = std::move(clock); }
    void setIdleSeconds(IdleSeconds idle) { idle_ = std::move(idle); }

    // One metrics sample: runs the state machine and applies its result.
    void ingest(const metrics::MetricsSnapshot& snapshot);
    // A short celebration (a purchase, an achievement): two seconds from now.
    void celebrate();
    // One animation tick; the timer calls it with the clock's time.
    void advance(Timestamp now);
    // Images to show once each before the loop resumes.
    void playOneShot(const QList<QImage>& images);

    // Equipping ends a try-on: the user has chosen.
    void equip(const std::string& mascotId);
    // Shows another mascot until `until` (the shop's try-on), then the equipped one again.
    // The end comes on time even while the frame clock stands still.
    void tryOn(const std::string& mascotId, Timestamp until);
    void endTryOn();
    const std::optional<Timestamp>& tryOnEndsAt() const { return tryOnEndsAt_; }
    // Display sleep: no frames at all until woken.
    void setPaused(bool paused);

    const MascotState& state() const { return motion_.state(); }
    const MascotState& visual() const { return motion_.visual(); }
    const std::string& drawnMascotId() const;
    QImage publishedMenuBarFrame() const { return published_; }
    std::uint64_t menuBarFrameSerial() const { return serial_; }
    double distanceMeters() const { return motion_.distanceMeters(); }
    double framesPerSecond() const { return fps_; }
    bool timerActive() const { return timer_.isActive(); }
    const MascotRenderer& renderer() const { return renderer_; }

signals:
    void stateChanged();
    void menuBarFrameChanged();
    // The mascot being drawn changed: equipped, tried on, or back from a try-on.
    void drawnMascotChanged();

private:
    void apply(const MascotState& state);
    void publish(const QImage& image);
    void publishLoopFrame(Timestamp now);
    void reschedule();
    bool blinking(Timestamp now) const;
    Timestamp now() const { return clock_ ? clock_() : std::chrono::system_clock::now(); }

    Settings settings_;
    Clock clock_;
    IdleSeconds idle_;
    MascotStateMachine machine_;
    MascotMotion motion_;
    MascotRenderer renderer_;
    QTimer timer_;
    QTimer tryOnTimer_;
    QList<QImage> oneShot_;
    QImage published_;
    qint64 publishedKey_ = 0;
    std::uint64_t serial_ = 0;
    double fps_ = 1;
    bool paused_ = false;
    std::string equipped_ = "cat";
    std::optional<std::string> tryOn_;
    std::optional<Timestamp> tryOnEndsAt_;
    std::optional<Timestamp> lastIngest_;
    std::optional<metrics::MetricsSnapshot> lastSnapshot_;
};

}  // namespace trotlet::mascot
