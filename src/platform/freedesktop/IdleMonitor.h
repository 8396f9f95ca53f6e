#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace trotlet::platform {

class IdleMonitorX11;

// Seconds since the user's last keyboard or mouse input, from the first source the desktop
// answers on: the X screen-saver extension (X11 sessions only), GNOME Mutter's idle monitor,
// then org.freedesktop.ScreenSaver. Absent when none answers, never zero.
//
// Queries are asynchronous: `refresh` asks, the answer arrives later and is kept, so the
// sampling tick never waits on the bus. A source that stops answering is dropped and the
// sources are probed again on the next refresh.
class IdleMonitor : public QObject {
    Q_OBJECT
public:
    enum class Source { none, fixed, x11, mutter, screenSaver };

    struct Options {
        bool tryX11 = true;
        // Pretend the last input was this many seconds ago (TROTLET_QA_IDLE_SECONDS).
        std::optional<double> fixedSeconds;
        // X11 only when the session is an X11 one; TROTLET_QA_IDLE_SECONDS when set.
        static Options fromEnvironment();
    };

    IdleMonitor(const QDBusConnection& sessionBus, Options options, QObject* parent = nullptr);
    ~IdleMonitor() override;

    std::optional<double> idleSeconds() const { return seconds_; }
    Source source() const { return source_; }
    // True once every source was tried and none answered.
    bool exhausted() const { return exhausted_; }
    static QString sourceName(Source source);

    void refresh();

signals:
    void updated();

private:
    void probeFrom(int index);
    void query(Source source, int probeIndex);
    void accept(Source source, double seconds);
    void reject(Source source, int probeIndex);

    QDBusConnection bus_;
    Options options_;
    std::unique_ptr<IdleMonitorX11> x11_;
    Source source_ = Source::none;
    std::optional<double> seconds_;
    bool pending_ = false;
    bool exhausted_ = false;
};

}  // namespace trotlet::platform
