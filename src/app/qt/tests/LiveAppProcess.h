#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

namespace trotlet::app::testing {

// A private X server on a display number it picks itself, so parallel runs never collide.
class VirtualDisplay {
public:
    VirtualDisplay(int width, int height);
    ~VirtualDisplay();
    bool isRunning() const { return !name_.isEmpty(); }
    // ":N"
    QString name() const { return name_; }

private:
    QProcess process_;
    QString name_;
};

// The built app as a child process; its stderr is kept for the debug log lines. Waits run the
// event loop, so D-Bus services in the test answer meanwhile.
class LiveAppProcess {
public:
    LiveAppProcess();
    ~LiveAppProcess();

    // Starts the app again once it has ended; the log starts afresh.
    void start(const QStringList& arguments, const QProcessEnvironment& environment);
    bool isRunning() const { return process_.state() != QProcess::NotRunning; }
    // Waits until the log holds `text` `times` times; false when the app ended first.
    bool waitForLog(const QString& text, int times = 1, int timeoutMs = 10000);
    const QString& log() const { return log_; }

    // SIGTERM; the exit code once the app has ended by itself, nothing when it crashed or hung.
    std::optional<int> terminate(int timeoutMs);

private:
    QProcess process_;
    QString log_;
};

}  // namespace trotlet::app::testing
